// A list whose notes hold lists of their own. The tree and each note carry the same chain of
// children, so every operation is written once over either holder.
#include <mox/containers.h>
#include <mox/core.h>

#include <cstddef>

#include "core/instance.h"
#include "containers/chain.h"

// The list's search serves the tree because the shared fields stand in the same places.
static_assert(offsetof(mox_tree_note, key) == offsetof(mox_list_note, key) &&
              offsetof(mox_tree_note, data) == offsetof(mox_list_note, data) &&
              offsetof(mox_tree_note, prev) == offsetof(mox_list_note, prev) &&
              offsetof(mox_tree_note, next) == offsetof(mox_list_note, next));
static_assert(offsetof(mox_tree, count) == offsetof(mox_list, count) &&
              offsetof(mox_tree, first) == offsetof(mox_list, first) &&
              offsetof(mox_tree, last) == offsetof(mox_list, last));
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_tree) == 28);
static_assert(sizeof(mox_tree_note) == 48 && offsetof(mox_tree_note, count) == 32 &&
              offsetof(mox_tree_note, destroy) == 44);
#endif

namespace {

template <class Holder> mox_bool create_child(Holder* holder, mox_tree_note** out, uint8_t position) {
    if (holder == nullptr || out == nullptr)
        return 0;
    mox_tree_note* note = nullptr;
    if (!mox_tree_note_new(&note, holder))
        return 0;
    mox::chain::link(holder, note, position);
    *out = note;
    return 1;
}

template <class Holder> mox_bool delete_child(Holder* holder, mox_tree_note** slot) {
    if (holder == nullptr || slot == nullptr || *slot == nullptr)
        return 0;
    mox::chain::unlink(holder, *slot);
    return mox_tree_note_free(slot);
}

// Ends the children from the head on; each one takes its subtree with it.
template <class Holder> mox_bool clear_children(Holder* holder) {
    if (holder == nullptr)
        return 0;
    while (holder->first != nullptr) {
        mox_tree_note* note = holder->first;
        mox::chain::unlink(holder, note);
        mox_tree_note_destruct(note);
        mox_memory_free(reinterpret_cast<void**>(&note));
    }
    return 1;
}

} // namespace

extern "C" {

MOX_API mox_bool mox_tree_construct(mox_tree* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_TREE_CLASS_ID))
        return 0;
    self->count = 0;
    self->first = nullptr;
    self->last = nullptr;
    return 1;
}

MOX_API mox_bool mox_tree_destruct(mox_tree* self) {
    if (self == nullptr)
        return 0;
    clear_children(self);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_tree_new(mox_tree** out, void* owner) {
    return mox::new_instance<mox_tree, mox_tree_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_tree_free(mox_tree** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_tree_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_tree_note_construct(mox_tree_note* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_TREE_NOTE_CLASS_ID))
        return 0;
    self->key = 0;
    self->data = 0;
    self->prev = nullptr;
    self->next = nullptr;
    self->count = 0;
    self->first = nullptr;
    self->last = nullptr;
    self->destroy = nullptr;
    return 1;
}

// Depth first: the whole subtree ends before this note's own payload is released. The recursion has
// no depth limit.
MOX_API mox_bool mox_tree_note_destruct(mox_tree_note* self) {
    if (self == nullptr)
        return 0;
    clear_children(self);
    if (self->destroy != nullptr)
        self->destroy(&self->data);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_tree_note_new(mox_tree_note** out, void* owner) {
    return mox::new_instance<mox_tree_note, mox_tree_note_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_tree_note_free(mox_tree_note** slot) {
    if (slot == nullptr)
        return 0;
    mox_tree_note_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_tree_create_note(mox_tree* self, mox_tree_note** out, uint8_t position) {
    return create_child(self, out, position);
}

MOX_API mox_bool mox_tree_note_create_note(mox_tree_note* self, mox_tree_note** out, uint8_t position) {
    return create_child(self, out, position);
}

MOX_API mox_bool mox_tree_delete_note(mox_tree* self, mox_tree_note** slot) {
    return delete_child(self, slot);
}

MOX_API mox_bool mox_tree_note_delete_note(mox_tree_note* self, mox_tree_note** slot) {
    return delete_child(self, slot);
}

MOX_API mox_bool mox_tree_find_note(mox_tree* self, uint32_t key, mox_tree_note** out) {
    return mox::chain::find_note(self, key, out);
}

MOX_API mox_bool mox_tree_note_find_note(mox_tree_note* self, uint32_t key, mox_tree_note** out) {
    return mox::chain::find_note(self, key, out);
}

MOX_API mox_bool mox_tree_clear_note(mox_tree* self) { return clear_children(self); }

MOX_API mox_bool mox_tree_note_clear_note(mox_tree_note* self) { return clear_children(self); }

} // extern "C"
