// The Windows backend's view of both worlds. os.h comes first: its constants carry the names that
// <windows.h> gives to macros, and once those macros exist the declarations of os.h couldn't be read.
// Inside the backend a name with "::" in front is the system's own; without, it is ours.
#pragma once

#include "platform/os.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// Our stand-in handle is the system's handle.
static_assert(sizeof(mox::os::HANDLE) == sizeof(::HANDLE));
