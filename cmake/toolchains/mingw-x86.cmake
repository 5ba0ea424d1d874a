# Windows x86 (32-bit): built, and its record layouts checked; there is no 32-bit wine to run it here.
set(MOX_MINGW_ARCH i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
