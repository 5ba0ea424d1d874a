# Cross builds for Windows with the distribution's mingw-w64 compilers (the POSIX-threads variant, so
# that the C++ standard library's threads work in the tests). The toolchain file of each target sets
# MOX_MINGW_ARCH and includes this one.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${MOX_MINGW_ARCH})

set(CMAKE_C_COMPILER ${MOX_MINGW_ARCH}-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER ${MOX_MINGW_ARCH}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${MOX_MINGW_ARCH}-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${MOX_MINGW_ARCH}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
