# Windows x64. Programs built here run under wine.
set(MOX_MINGW_ARCH x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/lib/wine/wine64)
