// A registry of callbacks by identifier, kept in an embedded list: one note per identifier.
#include <mox/containers.h>
#include <mox/core.h>

#include <cstddef>

#include "core/instance.h"
#include "core/words.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_action) == 44 && offsetof(mox_action, entries) == 16);
#endif

namespace {

// The search needs a non-null slot on entry; any non-null value serves, and the registry itself is
// at hand.
mox_list_note* find_entry(mox_action* self, uint32_t id) {
    auto* note = reinterpret_cast<mox_list_note*>(self);
    if (!mox_list_find_note(&self->entries, id, &note))
        return nullptr;
    return note;
}

} // namespace

extern "C" {

MOX_API mox_bool mox_action_construct(mox_action* self, void* owner) {
    if (self == nullptr)
        return mox::fail_params();
    mox_object_construct(self, owner, MOX_ACTION_CLASS_ID);
    return mox_list_construct(&self->entries, self);
}

MOX_API mox_bool mox_action_destruct(mox_action* self) {
    if (self == nullptr)
        return mox::fail_params();
    mox_list_destruct(&self->entries);
    return mox_object_destruct(self);
}

// A failed allocation is silent; only a null slot is reported.
MOX_API mox_bool mox_action_new(mox_action** out, void* owner) {
    return mox::new_instance<mox_action, mox_action_construct, mox::NullArguments::posted>(out, owner);
}

MOX_API mox_bool mox_action_free(mox_action** slot) {
    if (slot == nullptr || *slot == nullptr)
        return mox::fail_params();
    mox_action_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_action_reg(mox_action* self, uint32_t id, mox_action_callback callback) {
    if (self == nullptr)
        return mox::fail_params();
    mox_list_note* note = find_entry(self, id);
    if (note == nullptr && !mox_list_create_note(&self->entries, &note, 0))
        return 0;
    note->key = id;
    note->data = reinterpret_cast<uintptr_t>(callback);
    return 1;
}

MOX_API mox_bool mox_action_unreg(mox_action* self, uint32_t id) {
    if (self == nullptr)
        return mox::fail_params();
    mox_list_note* note = find_entry(self, id);
    if (note == nullptr)
        return 0;
    return mox_list_delete_note(&self->entries, &note);
}

// The note is not looked at after the call, so a callback may unregister its own identifier.
MOX_API mox_bool mox_action_call(mox_action* self, uint32_t id, uintptr_t argument) {
    if (self == nullptr)
        return mox::fail_params();
    mox_list_note* note = find_entry(self, id);
    if (note == nullptr || note->data == 0)
        return 0;
    reinterpret_cast<mox_action_callback>(note->data)(self, id, argument);
    return 1;
}

} // extern "C"
