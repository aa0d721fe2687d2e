# The program for the headset: one static file that needs no library of the device, made by Debian's cross compiler
# (package g++-aarch64-linux-gnu). Its zlib is compiled along from source, because Debian has a library for this
# processor only in a foreign architecture, which few machines have added. The source is taken from, in this order:
#   ORVANTA_ZLIB_SOURCE      a folder with zlib's source, given by hand
#   /usr/src/binutils/*.tar.xz   Debian's package binutils-source, which holds a copy
find_program(ORVANTA_AARCH64_CXX aarch64-linux-gnu-g++ DOC "Compiler for the program that runs on the headset")
set(ORVANTA_ZLIB_SOURCE "" CACHE PATH "Folder with zlib's source, for the program that runs on the headset")
file(GLOB zlib_archive /usr/src/binutils/binutils-*.tar.xz)

if(NOT ORVANTA_AARCH64_CXX)
  message(STATUS "No aapt-arm-pie for the headset: there is no aarch64-linux-gnu-g++ (package g++-aarch64-linux-gnu)")
  return()
endif()
if(NOT ORVANTA_ZLIB_SOURCE AND NOT zlib_archive)
  message(STATUS "No aapt-arm-pie for the headset: there is no source of zlib (package binutils-source)")
  return()
endif()

set(zlib_files adler32.c crc32.c inffast.c inflate.c inftrees.c zutil.c)
set(zlib_headers crc32.h gzguts.h inffast.h inffixed.h inflate.h inftrees.h zconf.h zlib.h zutil.h)
set(headset_folder "${CMAKE_CURRENT_BINARY_DIR}/headset")
file(MAKE_DIRECTORY "${headset_folder}" "${CMAKE_BINARY_DIR}/bin")
if(ORVANTA_ZLIB_SOURCE)
  set(zlib_folder "${ORVANTA_ZLIB_SOURCE}")
else()
  list(GET zlib_archive -1 zlib_archive)
  get_filename_component(zlib_version "${zlib_archive}" NAME)
  string(REGEX REPLACE "[.]tar[.]xz$" "" zlib_version "${zlib_version}")
  set(zlib_folder "${headset_folder}/${zlib_version}/zlib")
  list(TRANSFORM zlib_files PREPEND "${zlib_folder}/" OUTPUT_VARIABLE zlib_outputs)
  # CMake's own tar stumbles over a hard link in this archive.
  set(zlib_members ${zlib_files} ${zlib_headers})
  list(TRANSFORM zlib_members PREPEND "${zlib_version}/zlib/")
  add_custom_command(OUTPUT ${zlib_outputs}
    COMMAND tar --extract --touch --file "${zlib_archive}" ${zlib_members}
    DEPENDS "${zlib_archive}" WORKING_DIRECTORY "${headset_folder}" VERBATIM
    COMMENT "Unpacking the source of zlib")
endif()

# -Os: it is pushed over USB at every listing, and time goes into reading the package, not into the processor.
set(headset_flags -Os -fPIE -ffunction-sections -fdata-sections -fstack-protector-strong)
set(headset_objects "")
foreach(file ${zlib_files})
  set(object "${headset_folder}/${file}.o")
  add_custom_command(OUTPUT "${object}"
    COMMAND "${ORVANTA_AARCH64_CXX}" -x c -std=gnu11 ${headset_flags} -DHAVE_UNISTD_H -w
            -c "${zlib_folder}/${file}" -o "${object}"
    DEPENDS "${zlib_folder}/${file}" VERBATIM)
  list(APPEND headset_objects "${object}")
endforeach()
foreach(file ${badging_sources} main.cpp)
  get_filename_component(object "${file}" NAME)
  set(object "${headset_folder}/${object}.o")
  add_custom_command(OUTPUT "${object}"
    COMMAND "${ORVANTA_AARCH64_CXX}" -std=c++20 ${headset_flags} -fno-exceptions -fno-rtti -Wall -Wextra
            -I "${CMAKE_CURRENT_SOURCE_DIR}" -isystem "${zlib_folder}" -MD -MF "${object}.d" -c "${CMAKE_CURRENT_SOURCE_DIR}/${file}" -o "${object}"
    DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${file}" "${zlib_folder}/inflate.c" DEPFILE "${object}.d" VERBATIM)
  list(APPEND headset_objects "${object}")
endforeach()
set(headset_program "${CMAKE_BINARY_DIR}/bin/aapt-arm-pie")
add_custom_command(OUTPUT "${headset_program}"
  COMMAND "${ORVANTA_AARCH64_CXX}" -static-pie -s -Wl,--gc-sections,-z,relro,-z,now ${headset_objects}
          -o "${headset_program}"
  DEPENDS ${headset_objects} VERBATIM COMMENT "Linking aapt-arm-pie for the headset")
add_custom_target(aapt_arm_pie ALL DEPENDS "${headset_program}")
