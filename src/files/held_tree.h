// Trees of tags that keep their children by the held-child pattern (the SON and XML documents): the
// way up from a child to its parent through the notes, a walk in document order and the end of a
// whole subtree, all without recursion, so that the depth of a document costs no stack.
#pragma once

#include <mox/containers.h>
#include <mox/core.h>
#include <mox/strings.h>

namespace mox {

template <class Tag, mox_list Tag::*children, uint32_t tag_class_id> struct HeldTree {
    static Tag* child_of(mox_list_note* note) { return reinterpret_cast<Tag*>(note->data); }

    // The tag whose children list holds `child`, through the note that carries it; null for a tag
    // that no list of ours holds.
    static Tag* parent_of(Tag* child) {
        auto* note = static_cast<mox_object*>(child->header.owner);
        if (note == nullptr || note->class_id != MOX_LIST_NOTE_CLASS_ID)
            return nullptr;
        auto* list = static_cast<mox_object*>(note->owner);
        if (list == nullptr || list->class_id != MOX_LIST_CLASS_ID)
            return nullptr;
        auto* parent = static_cast<mox_object*>(list->owner);
        if (parent == nullptr || parent->class_id != tag_class_id)
            return nullptr;
        auto* tag = reinterpret_cast<Tag*>(parent);
        return &(tag->*children) == reinterpret_cast<mox_list*>(list) ? tag : nullptr;
    }

    // Ends every descendant of `top`, deepest first, so that each note ends a tag without children
    // and no chain of releases nests. A note that doesn't carry one of our tags the normal way is
    // ended as the list ends it.
    static void end_descendants(Tag* top) {
        Tag* tag = top;
        for (;;) {
            mox_list_note* first = (tag->*children).first;
            if (first != nullptr) {
                Tag* child = child_of(first);
                if (child != nullptr && child->header.owner == first &&
                    child->header.class_id == tag_class_id && parent_of(child) == tag) {
                    tag = child;
                } else {
                    mox_list_delete_note(&(tag->*children), &first);
                }
                continue;
            }
            if (tag == top)
                return;
            Tag* parent = parent_of(tag);
            auto* note = static_cast<mox_list_note*>(tag->header.owner);
            mox_list_delete_note(&(parent->*children), &note);
            tag = parent;
        }
    }

    // Every tag from `top` down in document order, by the notes: `enter` before a tag's children and
    // `leave` after them, each with the tag's depth below `top`. Either stops the walk by answering
    // false, and the walk is then false.
    template <class Visitor> static bool walk(Tag* top, Visitor& visitor) {
        Tag* tag = top;
        uint32_t depth = 0;
        for (;;) {
            if (!visitor.enter(tag, depth))
                return false;
            if ((tag->*children).first != nullptr) {
                tag = child_of((tag->*children).first);
                ++depth;
                continue;
            }
            // Up until a tag with a next sibling, leaving the tags on the way.
            for (;;) {
                if (!visitor.leave(tag, depth))
                    return false;
                if (tag == top)
                    return true;
                auto* note = static_cast<mox_list_note*>(tag->header.owner);
                if (note->next != nullptr) {
                    tag = child_of(note->next);
                    break;
                }
                tag = parent_of(tag);
                --depth;
            }
        }
    }
};

// The first child in `list` whose `name` equals `name`, ignoring case. False on a null argument or
// no match; once the arguments are there, `*out` is null until a match is found.
template <class Child> mox_bool find_named(mox_list* list, const char* name, Child** out) {
    if (name == nullptr || out == nullptr)
        return 0;
    *out = nullptr;
    for (mox_list_note* note = list->first; note != nullptr; note = note->next) {
        auto* child = reinterpret_cast<Child*>(note->data);
        if (child != nullptr && mox_astring_compare(child->name, name)) {
            *out = child;
            return 1;
        }
    }
    return 0;
}

} // namespace mox
