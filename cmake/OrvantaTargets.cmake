# What all our targets share: language level, warnings, the strict Qt defines.
option(ORVANTA_WARNINGS_AS_ERRORS "Treat warnings in our own code as errors" ON)

add_library(orvanta_options INTERFACE)
target_compile_features(orvanta_options INTERFACE cxx_std_20)
target_include_directories(orvanta_options INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_compile_options(orvanta_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                       -Woverloaded-virtual -Wcast-align -Wnull-dereference)
if(ORVANTA_WARNINGS_AS_ERRORS)
  target_compile_options(orvanta_options INTERFACE -Werror)
endif()
target_compile_definitions(orvanta_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_KEYWORDS QT_NO_FOREACH QT_STRICT_ITERATORS
  ORVANTA_VERSION="${PROJECT_VERSION}")
if(WIN32)
  target_compile_definitions(orvanta_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
                             _WIN32_WINNT=0x0A00)
endif()

# The toolkit's headers take two thirds of a compile: they are precompiled for everything that has windows.
add_library(orvanta_toolkit_headers OBJECT "${CMAKE_CURRENT_LIST_DIR}/toolkit_headers.cpp")
target_link_libraries(orvanta_toolkit_headers PRIVATE orvanta_options Qt6::Widgets QCoro6::Core)
target_precompile_headers(orvanta_toolkit_headers PRIVATE <algorithm> <array> <functional> <memory> <optional>
  <QCheckBox> <QCoroTask> <QCoreApplication> <QLabel> <QLineEdit> <QMenu> <QPlainTextEdit> <QPushButton> <QString>
  <QStringList> <QTableView> <QTimer> <QWidget>)
set_target_properties(orvanta_toolkit_headers PROPERTIES AUTOMOC OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
  # Without it a compiler cache cannot tell what a precompiled header contains.
  target_compile_options(orvanta_options INTERFACE -fpch-preprocess)
endif()

# orvanta_library(NAME [PLAIN] SOURCES ... LINK ...): one static library for one folder of the house. PLAIN: without
# the toolkit's widgets.
function(orvanta_library name)
  cmake_parse_arguments(ARG "PLAIN" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC orvanta_options ${ARG_LINK})
  if(NOT ARG_PLAIN)
    target_precompile_headers(${name} REUSE_FROM orvanta_toolkit_headers)
  endif()
endfunction()

# orvanta_test(NAME [PLAIN] SOURCES ... LINK ... [LABELS ...] [TIMEOUT seconds]): one Qt Test program, run offscreen.
function(orvanta_test name)
  cmake_parse_arguments(ARG "PLAIN" "TIMEOUT" "SOURCES;LINK;LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE orvanta_options Qt6::Test ${ARG_LINK})
  if(NOT ARG_PLAIN)
    target_precompile_headers(${name} REUSE_FROM orvanta_toolkit_headers)
  endif()
  if(WIN32)
    target_link_libraries(${name} PRIVATE orvanta_manifest)
    qt_import_plugins(${name} INCLUDE Qt6::QOffscreenIntegrationPlugin)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
                       ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=UTC;XDG_STATE_HOME=${CMAKE_BINARY_DIR}/test-state")
endfunction()
