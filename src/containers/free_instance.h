// The body of the `free` entry (spelled `dree` by two dataset classes) of the silent container
// classes.
#pragma once

#include <mox/core.h>

namespace mox {

// A null slot is refused; a slot holding null skips the destruct and answers as the release does.
template <class Record, mox_bool (*destruct)(Record*)> mox_bool free_instance(Record** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

} // namespace mox
