// What the entries of every class share: how a family treats a null argument, and the body of the
// `new` entry.
#pragma once

#include <mox/core.h>

#include "core/words.h"

namespace mox {

// Whether the family reports a null argument on the hint channel or stays silent.
enum class NullArguments { silent, posted };

template <NullArguments rule> inline mox_bool refuse_null() {
    if constexpr (rule == NullArguments::posted)
        return fail_params();
    else
        return 0;
}

// `mox_X_new`: a zero-filled block of the record's size in the slot, then the class's construct.
template <class Record, mox_bool (*construct)(Record*, void*), NullArguments rule>
mox_bool new_instance(Record** out, void* owner) {
    if (out == nullptr)
        return refuse_null<rule>();
    if (!mox_memory_new(reinterpret_cast<void**>(out), sizeof(Record)))
        return 0;
    return construct(*out, owner);
}

} // namespace mox
