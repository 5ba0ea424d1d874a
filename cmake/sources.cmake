# The units of the library. Every .cpp file in a subsystem folder under src/ is a unit of the
# library; the platform backend is chosen by the target system.
set(MOX_SUBSYSTEMS core containers strings files math image scene window system time checksum authoring database)

set(MOX_SOURCES)
foreach(subsystem ${MOX_SUBSYSTEMS})
    file(GLOB units CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${subsystem}/*.cpp)
    list(APPEND MOX_SOURCES ${units})
endforeach()

if(WIN32)
    set(MOX_PLATFORM win32)
else()
    set(MOX_PLATFORM posix)
endif()
file(GLOB MOX_PLATFORM_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/platform/${MOX_PLATFORM}/*.cpp)
list(APPEND MOX_SOURCES ${MOX_PLATFORM_SOURCES})

# System libraries the platform backend needs.
set(MOX_SYSTEM_LIBS)
