// The held-child pattern: a parent keeps its children in an embedded mox_list, one note per child,
// with the note as the child's owner and the child's `free` entry as the note's `destroy`. Sibling
// links live in the notes only, so a child finds its neighbours through its owner. A class gets the
// whole pattern by naming its list member and its child's new and free entries:
//
//   using Children = mox::HeldChildren<mox_parent, &mox_parent::children, mox_child, mox_child_new,
//                                      mox_child_free, mox::NullArguments::silent>;
//   MOX_API mox_bool mox_parent_create_child(mox_parent* self, mox_child** out, uint8_t position) {
//       return Children::create(self, out, position);
//   }
#pragma once

#include <mox/containers.h>
#include <mox/core.h>

#include "core/instance.h"

namespace mox {

template <class Parent, mox_list Parent::*children, class Child, mox_bool (*child_new)(Child**, void*),
          mox_bool (*child_free)(Child**), NullArguments rule>
struct HeldChildren {
    // The note hands over the address of its data word, which is the child's slot.
    static mox_bool destroy(void* data_slot) { return child_free(static_cast<Child**>(data_slot)); }

    static mox_bool create(Parent* parent, Child** out, uint8_t position) {
        if (parent == nullptr || out == nullptr)
            return refuse_null<rule>();
        *out = nullptr;
        mox_list* list = &(parent->*children);
        mox_list_note* note = nullptr;
        if (!mox_list_create_note(list, &note, position))
            return 0;
        if (!child_new(out, note)) {
            mox_list_delete_note(list, &note);
            return 0;
        }
        note->data = reinterpret_cast<uintptr_t>(*out);
        note->destroy = &destroy;
        return 1;
    }

    // Intended: false on success as well; only the cleared slot tells that the child has gone.
    static mox_bool remove(Parent* parent, Child** slot) {
        if (parent == nullptr || slot == nullptr)
            return refuse_null<rule>();
        if (mox_list_delete_note_data(&(parent->*children), reinterpret_cast<uintptr_t>(*slot)))
            *slot = nullptr;
        return 0;
    }

    static mox_bool clear(Parent* parent) {
        if (parent == nullptr)
            return refuse_null<rule>();
        return mox_list_clear_note(&(parent->*children));
    }

    static mox_bool first(Parent* parent, Child** out) { return end(parent, out, true); }
    static mox_bool last(Parent* parent, Child** out) { return end(parent, out, false); }

    static mox_bool next(Child* self, Child** out) { return neighbour(self, out, true); }
    static mox_bool prev(Child* self, Child** out) { return neighbour(self, out, false); }

private:
    static mox_bool end(Parent* parent, Child** out, bool head) {
        if (parent == nullptr || out == nullptr)
            return refuse_null<rule>();
        *out = nullptr;
        mox_list* list = &(parent->*children);
        mox_list_note* note = head ? list->first : list->last;
        if (note == nullptr)
            return 0;
        *out = reinterpret_cast<Child*>(note->data);
        return 1;
    }

    // A child made outside a list has no note for an owner, and so no neighbours.
    static mox_bool neighbour(Child* self, Child** out, bool forward) {
        if (self == nullptr || out == nullptr)
            return refuse_null<rule>();
        *out = nullptr;
        auto* owner = static_cast<mox_object*>(reinterpret_cast<mox_object*>(self)->owner);
        if (owner == nullptr || owner->class_id != MOX_LIST_NOTE_CLASS_ID)
            return 0;
        auto* note = reinterpret_cast<mox_list_note*>(owner);
        mox_list_note* other = forward ? note->next : note->prev;
        if (other == nullptr)
            return 0;
        *out = reinterpret_cast<Child*>(other->data);
        return 1;
    }
};

} // namespace mox
