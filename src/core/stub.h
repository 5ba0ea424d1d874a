// The bodies of the entries that stand for facilities this build lacks. Many entries of many families
// share them; each entry is a one-line forward to one of these.
#pragma once

#include "core/words.h"

namespace mox::stub {

inline mox_bool unsupported() {
    warn_unsupported();
    return 0;
}

inline mox_bool plain_failure() { return 0; }

inline mox_bool plain_success() { return 1; }

inline mox_bool two_pointers(const void* first, const void* second) {
    return first != nullptr && second != nullptr;
}

inline mox_bool two_pointers_posting(const void* first, const void* second) {
    if (first != nullptr && second != nullptr)
        return 1;
    return fail_params();
}

inline mox_bool one_pointer(const void* first) { return first != nullptr; }

} // namespace mox::stub
