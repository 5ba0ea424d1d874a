// The code pages the system itself calls its ANSI and OEM pages: both UTF-8 on Linux, the user's
// settings on Windows.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace mox_test {

inline uint32_t system_ansi_page() {
#if defined(_WIN32)
    return GetACP();
#else
    return 65001;
#endif
}

inline uint32_t system_oem_page() {
#if defined(_WIN32)
    return GetOEMCP();
#else
    return 65001;
#endif
}

} // namespace mox_test
