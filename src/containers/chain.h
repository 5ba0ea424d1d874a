// The doubly linked chain that the list and the tree share: a holder with `count`, `first` and
// `last`, and notes with `key`, `prev` and `next`. The tree's records put these fields where the
// list's have them, so one set of steps serves both.
#pragma once

#include <mox/containers.h>

namespace mox::chain {

// Position 1 is the head; every other value is the tail.
template <class Holder, class Note> void link(Holder* holder, Note* note, uint8_t position) {
    if (holder->first == nullptr) {
        holder->first = note;
        holder->last = note;
    } else if (position == 1) {
        note->next = holder->first;
        holder->first->prev = note;
        holder->first = note;
    } else {
        note->prev = holder->last;
        holder->last->next = note;
        holder->last = note;
    }
    ++holder->count;
}

// Takes the note out of the chain without asking whether it belongs to it; a foreign note corrupts
// both chains, which is the behaviour callers have always had.
template <class Holder, class Note> void unlink(Holder* holder, Note* note) {
    if (holder->first == note)
        holder->first = note->next;
    if (holder->last == note)
        holder->last = note->prev;
    if (note->prev != nullptr)
        note->prev->next = note->next;
    if (note->next != nullptr)
        note->next->prev = note->prev;
    note->prev = nullptr;
    note->next = nullptr;
    --holder->count;
}

// Intended: the out slot must hold something non-null on entry, or the search is not made. The
// library's own callers reuse an argument's slot for it.
template <class Holder, class Note> mox_bool find_note(Holder* holder, uint32_t key, Note** out) {
    if (holder == nullptr || out == nullptr || *out == nullptr)
        return 0;
    *out = nullptr;
    for (Note* note = holder->first; note != nullptr; note = note->next) {
        if (note->key == key) {
            *out = note;
            return 1;
        }
    }
    return 0;
}

} // namespace mox::chain
