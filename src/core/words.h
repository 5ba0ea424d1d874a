// The words the library posts, each written once, and the helpers that post them.
#pragma once

#include <mox/core.h>

namespace mox {

inline constexpr const char* kWordParams = "core.params";
inline constexpr const char* kWordRange = "core.range";
inline constexpr const char* kWordArrayFull = "mox.array.full";
inline constexpr const char* kWordArrayEmpty = "mox.array.empty";
inline constexpr const char* kWordUnsupported = "core.unsupported";

// A null argument, or an object that must exist and doesn't.
inline void hint_params() { mox_global_error_hint(kWordParams); }
inline void hint_range() { mox_global_error_hint(kWordRange); }
inline void hint_array_full() { mox_global_error_hint(kWordArrayFull); }
inline void hint_array_empty() { mox_global_error_hint(kWordArrayEmpty); }
// A facility this build doesn't have.
inline void warn_unsupported() { mox_global_error_warning(kWordUnsupported); }

// Posts "core.params" and gives false, for the families that report null arguments.
inline mox_bool fail_params() {
    hint_params();
    return 0;
}

} // namespace mox
