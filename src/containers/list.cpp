// The doubly linked list of notes that almost every class keeps its children in.
#include <mox/containers.h>
#include <mox/core.h>

#include <cstddef>

#include "core/instance.h"
#include "containers/chain.h"

// On a 32-bit target the records have the library's defined layout.
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_list) == 28 && offsetof(mox_list, count) == 16 && offsetof(mox_list, last) == 24);
static_assert(sizeof(mox_list_note) == 36 && offsetof(mox_list_note, key) == 16 &&
              offsetof(mox_list_note, data) == 20 && offsetof(mox_list_note, destroy) == 32);
#endif

extern "C" {

MOX_API mox_bool mox_list_construct(mox_list* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_LIST_CLASS_ID))
        return 0;
    self->count = 0;
    self->first = nullptr;
    self->last = nullptr;
    return 1;
}

MOX_API mox_bool mox_list_destruct(mox_list* self) {
    if (self == nullptr)
        return 0;
    mox_list_clear_note(self);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_list_new(mox_list** out, void* owner) {
    return mox::new_instance<mox_list, mox_list_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_list_free(mox_list** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_list_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_list_note_construct(mox_list_note* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_LIST_NOTE_CLASS_ID))
        return 0;
    self->key = 0;
    self->data = 0;
    self->prev = nullptr;
    self->next = nullptr;
    self->destroy = nullptr;
    return 1;
}

MOX_API mox_bool mox_list_note_destruct(mox_list_note* self) {
    if (self == nullptr)
        return 0;
    if (self->destroy != nullptr)
        self->destroy(&self->data);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_list_note_new(mox_list_note** out, void* owner) {
    return mox::new_instance<mox_list_note, mox_list_note_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_list_note_free(mox_list_note** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_list_note_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_list_note_get_index(mox_list_note* self, uint32_t* index) {
    if (self == nullptr || index == nullptr)
        return 0;
    auto* owner = static_cast<mox_object*>(self->header.owner);
    if (owner == nullptr || owner->class_id != MOX_LIST_CLASS_ID)
        return 0;
    return mox_list_find_index(reinterpret_cast<mox_list*>(owner), self, index);
}

MOX_API mox_bool mox_list_create_note(mox_list* self, mox_list_note** out, uint8_t position) {
    if (self == nullptr || out == nullptr)
        return 0;
    mox_list_note* note = nullptr;
    if (!mox_list_note_new(&note, self))
        return 0;
    mox::chain::link(self, note, position);
    *out = note;
    return 1;
}

MOX_API mox_bool mox_list_delete_note(mox_list* self, mox_list_note** slot) {
    if (self == nullptr || slot == nullptr || *slot == nullptr)
        return 0;
    mox::chain::unlink(self, *slot);
    return mox_list_note_free(slot);
}

MOX_API mox_bool mox_list_delete_note_data(mox_list* self, uintptr_t data) {
    if (self == nullptr)
        return 0;
    for (mox_list_note* note = self->first; note != nullptr; note = note->next) {
        if (note->data == data)
            return mox_list_delete_note(self, &note);
    }
    return 0;
}

MOX_API mox_bool mox_list_clear_note(mox_list* self) {
    if (self == nullptr)
        return 0;
    while (self->first != nullptr) {
        mox_list_note* note = self->first;
        mox::chain::unlink(self, note);
        mox_list_note_free(&note);
    }
    return 1;
}

MOX_API mox_bool mox_list_find_note(mox_list* self, uint32_t key, mox_list_note** out) {
    return mox::chain::find_note(self, key, out);
}

// The index is written only when the note is found; a miss leaves it as it was.
MOX_API mox_bool mox_list_find_index(mox_list* self, mox_list_note* note, uint32_t* index) {
    if (self == nullptr || note == nullptr || index == nullptr)
        return 0;
    uint32_t position = 0;
    for (mox_list_note* walk = self->first; walk != nullptr; walk = walk->next, ++position) {
        if (walk == note) {
            *index = position;
            return 1;
        }
    }
    return 0;
}

} // extern "C"
