// Names on their way to the system: the library's separator is the backslash, the system's the slash.
#pragma once

#include <cstddef>
#include <cstring>

namespace mox::os {

// Copies `name` into `out` with every backslash turned into a slash. False for a null or empty name
// and for one that doesn't fit with its terminator.
inline bool system_path(const char* name, char* out, size_t capacity) {
    if (name == nullptr)
        return false;
    size_t length = std::strlen(name);
    if (length == 0 || length >= capacity)
        return false;
    for (size_t i = 0; i <= length; ++i)
        out[i] = name[i] == '\\' ? '/' : name[i];
    return true;
}

} // namespace mox::os
