# The units of the library, by subsystem. A new unit is added to its subsystem's list.
set(MOX_CORE_SOURCES
    src/core/object.cpp
    src/core/library.cpp
    src/core/lifecycle.cpp
    src/core/error.cpp
    src/core/exception.cpp
    src/core/memory.cpp
    src/core/swap.cpp
    src/core/stubs.cpp)

set(MOX_PLATFORM_SOURCES
    src/platform/posix/heap.cpp
    src/platform/posix/exception.cpp
    src/platform/posix/codepage.cpp
    src/platform/posix/loader.cpp)

set(MOX_SOURCES ${MOX_CORE_SOURCES} ${MOX_PLATFORM_SOURCES})
set(MOX_SYSTEM_LIBS)
