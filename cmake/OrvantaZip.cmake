# libzip, as orvanta_zip: packages are zip archives.
# pkg-config first: the CMake package of some distributions asks for libzip's tools as well. A cross build, for which
# pkg-config would find the host's library, uses the CMake package.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(PkgConfig)
endif()
if(PkgConfig_FOUND)
  pkg_check_modules(libzip IMPORTED_TARGET libzip)
endif()
add_library(orvanta_zip INTERFACE)
if(TARGET PkgConfig::libzip)
  target_link_libraries(orvanta_zip INTERFACE PkgConfig::libzip)
else()
  find_package(libzip CONFIG REQUIRED)
  target_link_libraries(orvanta_zip INTERFACE libzip::zip)
endif()
