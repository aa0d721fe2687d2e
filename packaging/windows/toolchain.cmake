# How this project and the libraries of its kit are built for Windows with Debian's MinGW.
# The kit (see build-kit) is given as the variable ORVANTA_WINDOWS_KIT of CMake or of the environment.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(ORVANTA_WINDOWS_KIT "$ENV{ORVANTA_WINDOWS_KIT}" CACHE PATH "Folder of the libraries built by build-kit")
# Trial compilations of CMake read this file again and must find the same kit.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORVANTA_WINDOWS_KIT)

# What is set here wins over -D, so the kit must be in this list.
set(CMAKE_FIND_ROOT_PATH "${ORVANTA_WINDOWS_KIT}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Qt's code generators run on the machine that builds; their version must be the kit's.
set(QT_HOST_PATH /usr CACHE PATH "Where the code generators of Qt are installed")
set(QT_HOST_PATH_CMAKE_DIR "/usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake" CACHE PATH
    "Where the code generators of Qt are described")

# One file: otherwise this library would be found as a DLL, and the compiler's own libraries would be missing.
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a CACHE FILEPATH "The library itself, no way to a DLL")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
set(CMAKE_C_FLAGS_INIT "-ffunction-sections -fdata-sections")
set(CMAKE_CXX_FLAGS_INIT "-ffunction-sections -fdata-sections")
