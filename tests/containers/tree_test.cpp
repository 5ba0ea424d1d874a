#include <mox/mox.h>

#include <gtest/gtest.h>

#include <vector>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

// The data words handed to destroy hooks, in the order of the calls.
std::vector<uintptr_t> destroyed;

mox_bool record_destroy(void* data_slot) {
    destroyed.push_back(*static_cast<uintptr_t*>(data_slot));
    return 1;
}

class Tree : public ::testing::Test {
protected:
    void SetUp() override {
        destroyed.clear();
        ASSERT_EQ(mox_tree_construct(&tree, nullptr), 1);
    }
    void TearDown() override { mox_tree_destruct(&tree); }

    mox_tree_note* top(uintptr_t data, uint8_t position = 0) {
        mox_tree_note* note = nullptr;
        EXPECT_EQ(mox_tree_create_note(&tree, &note, position), 1);
        if (note != nullptr) {
            note->key = static_cast<uint32_t>(data);
            note->data = data;
            note->destroy = record_destroy;
        }
        return note;
    }

    static mox_tree_note* child(mox_tree_note* parent, uintptr_t data, uint8_t position = 0) {
        mox_tree_note* note = nullptr;
        EXPECT_EQ(mox_tree_note_create_note(parent, &note, position), 1);
        if (note != nullptr) {
            note->key = static_cast<uint32_t>(data);
            note->data = data;
            note->destroy = record_destroy;
        }
        return note;
    }

    template <class Holder> static std::vector<uint32_t> keys(const Holder* holder) {
        std::vector<uint32_t> result;
        for (mox_tree_note* note = holder->first; note != nullptr; note = note->next)
            result.push_back(note->key);
        return result;
    }

    mox_tree tree;
};

} // namespace

TEST_F(Tree, ConstructAndNewGiveEmptyRecordsWithTheirClassIds) {
    int owner = 0;
    EXPECT_EQ(tree.header.class_id, 0x49B7430Du);
    EXPECT_EQ(tree.count, 0u);
    EXPECT_EQ(tree.first, nullptr);
    EXPECT_EQ(tree.last, nullptr);
    mox_tree* heap = nullptr;
    ASSERT_EQ(mox_tree_new(&heap, &owner), 1);
    EXPECT_EQ(heap->header.owner, &owner);
    EXPECT_EQ(heap->header.class_id, MOX_TREE_CLASS_ID);
    EXPECT_EQ(mox_tree_free(&heap), 1);
    EXPECT_EQ(heap, nullptr);
    EXPECT_EQ(mox_tree_free(&heap), 0);

    mox_tree_note* note = nullptr;
    ASSERT_EQ(mox_tree_note_new(&note, &owner), 1);
    EXPECT_EQ(note->header.owner, &owner);
    EXPECT_EQ(note->header.class_id, 0x0203A5B4u);
    EXPECT_EQ(note->key, 0u);
    EXPECT_EQ(note->data, 0u);
    EXPECT_EQ(note->count, 0u);
    EXPECT_EQ(note->first, nullptr);
    EXPECT_EQ(note->destroy, nullptr);
    EXPECT_EQ(mox_tree_note_free(&note), 1);
    EXPECT_EQ(note, nullptr);
}

TEST_F(Tree, NullArgumentsAreFalseAndSilent) {
    ErrorListener listener;
    mox_tree_note* note = nullptr;
    mox_tree_note* some = reinterpret_cast<mox_tree_note*>(&tree);
    EXPECT_EQ(mox_tree_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_tree_destruct(nullptr), 0);
    EXPECT_EQ(mox_tree_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_tree_free(nullptr), 0);
    EXPECT_EQ(mox_tree_note_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_tree_note_destruct(nullptr), 0);
    EXPECT_EQ(mox_tree_note_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_tree_note_free(nullptr), 0);
    EXPECT_EQ(mox_tree_note_free(&note), 0);
    EXPECT_EQ(mox_tree_create_note(nullptr, &note, 0), 0);
    EXPECT_EQ(mox_tree_create_note(&tree, nullptr, 0), 0);
    EXPECT_EQ(mox_tree_note_create_note(nullptr, &note, 0), 0);
    EXPECT_EQ(mox_tree_delete_note(nullptr, &some), 0);
    EXPECT_EQ(mox_tree_delete_note(&tree, &note), 0);
    EXPECT_EQ(mox_tree_note_delete_note(nullptr, &some), 0);
    EXPECT_EQ(mox_tree_find_note(nullptr, 0, &some), 0);
    EXPECT_EQ(mox_tree_note_find_note(nullptr, 0, &some), 0);
    EXPECT_EQ(mox_tree_clear_note(nullptr), 0);
    EXPECT_EQ(mox_tree_note_clear_note(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Tree, CreatePlacesNotesAsTheListDoesAndSetsTheOwner) {
    mox_tree_note* a = top(1);
    top(2, 1);
    top(3, 7);
    EXPECT_EQ(keys(&tree), (std::vector<uint32_t>{2, 1, 3}));
    EXPECT_EQ(tree.count, 3u);
    EXPECT_EQ(tree.last->key, 3u);
    EXPECT_EQ(a->header.owner, &tree);
    mox_tree_note* b = child(a, 10);
    child(a, 11, 1);
    EXPECT_EQ(keys(a), (std::vector<uint32_t>{11, 10}));
    EXPECT_EQ(a->count, 2u);
    EXPECT_EQ(b->header.owner, a);
    EXPECT_EQ(a->last, b);
}

TEST_F(Tree, EndingANoteCallsTheHooksFromTheLeavesUp) {
    mox_tree_note* root = top(1);
    mox_tree_note* left = child(root, 2);
    child(left, 3);
    child(left, 4);
    mox_tree_note* right = child(root, 5);
    child(right, 6);
    mox_tree_note* spare = top(9);
    EXPECT_EQ(mox_tree_delete_note(&tree, &root), 1);
    EXPECT_EQ(root, nullptr);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{3, 4, 2, 6, 5, 1}));
    EXPECT_EQ(tree.first, spare);
    EXPECT_EQ(tree.count, 1u);
}

TEST_F(Tree, NoteDestructEmptiesItsChildrenAndKeepsItsBlock) {
    mox_tree_note note;
    mox_tree_note_construct(&note, nullptr);
    note.data = 50;
    note.destroy = record_destroy;
    child(&note, 51);
    child(&note, 52);
    EXPECT_EQ(mox_tree_note_destruct(&note), 1);
    EXPECT_EQ(note.count, 0u);
    EXPECT_EQ(note.first, nullptr);
    EXPECT_EQ(note.last, nullptr);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{51, 52, 50}));
}

TEST_F(Tree, DeleteTheLastNoteLeavesAnEmptyTree) {
    mox_tree_note* only = top(1);
    EXPECT_EQ(mox_tree_delete_note(&tree, &only), 1);
    EXPECT_EQ(tree.first, nullptr);
    EXPECT_EQ(tree.last, nullptr);
    EXPECT_EQ(tree.count, 0u);
}

TEST_F(Tree, NoteDeleteRelinksTheChildren) {
    mox_tree_note* parent = top(1);
    child(parent, 2);
    mox_tree_note* middle = child(parent, 3);
    child(middle, 30);
    child(parent, 4);
    EXPECT_EQ(mox_tree_note_delete_note(parent, &middle), 1);
    EXPECT_EQ(middle, nullptr);
    EXPECT_EQ(keys(parent), (std::vector<uint32_t>{2, 4}));
    EXPECT_EQ(parent->first->next, parent->last);
    EXPECT_EQ(parent->last->prev, parent->first);
    EXPECT_EQ(parent->count, 2u);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{30, 3}));
}

TEST_F(Tree, FindLooksOneLevelDeepAndNeedsANonNullSlot) {
    mox_tree_note* a = top(1);
    mox_tree_note* b = top(2);
    mox_tree_note* grandchild = child(child(a, 10), 2);
    mox_tree_note* out = a;
    EXPECT_EQ(mox_tree_find_note(&tree, 2, &out), 1);
    EXPECT_EQ(out, b);
    out = a;
    EXPECT_EQ(mox_tree_note_find_note(a, 10, &out), 1);
    EXPECT_EQ(out, a->first);
    out = a;
    EXPECT_EQ(mox_tree_note_find_note(a, 2, &out), 0);
    EXPECT_EQ(out, nullptr);
    out = a;
    EXPECT_EQ(mox_tree_find_note(&tree, 10, &out), 0);
    EXPECT_EQ(out, nullptr);
    EXPECT_NE(grandchild, nullptr);
    // Intended: a zeroed slot fails without searching, at either level.
    out = nullptr;
    EXPECT_EQ(mox_tree_find_note(&tree, 1, &out), 0);
    EXPECT_EQ(mox_tree_note_find_note(a, 10, &out), 0);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Tree, FindGivesTheMatchNearestTheHead) {
    top(4);
    mox_tree_note* near = top(5);
    mox_tree_note* far = top(5);
    mox_tree_note* out = far;
    EXPECT_EQ(mox_tree_find_note(&tree, 5, &out), 1);
    EXPECT_EQ(out, near);
}

TEST_F(Tree, ClearEndsEveryTopNoteWithItsSubtree) {
    EXPECT_EQ(mox_tree_clear_note(&tree), 1);
    mox_tree_note* a = top(1);
    child(a, 2);
    top(3);
    EXPECT_EQ(mox_tree_clear_note(&tree), 1);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{2, 1, 3}));
    EXPECT_EQ(tree.count, 0u);
    EXPECT_EQ(tree.first, nullptr);
    EXPECT_EQ(tree.last, nullptr);
}

TEST_F(Tree, NoteClearEndsTheChildrenAndIsTrueOnALeaf) {
    mox_tree_note* a = top(1);
    mox_tree_note* leaf = top(9);
    child(child(a, 2), 3);
    child(a, 4);
    EXPECT_EQ(mox_tree_note_clear_note(leaf), 1);
    EXPECT_EQ(mox_tree_note_clear_note(a), 1);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{3, 2, 4}));
    EXPECT_EQ(a->count, 0u);
    EXPECT_EQ(a->first, nullptr);
    EXPECT_EQ(tree.count, 2u);
}

TEST_F(Tree, DestructAndFreeEndEveryNote) {
    mox_tree* heap = nullptr;
    ASSERT_EQ(mox_tree_new(&heap, nullptr), 1);
    mox_tree_note* note = nullptr;
    mox_tree_create_note(heap, &note, 0);
    note->data = 70;
    note->destroy = record_destroy;
    mox_tree_note* below = nullptr;
    mox_tree_note_create_note(note, &below, 0);
    below->data = 71;
    below->destroy = record_destroy;
    EXPECT_EQ(mox_tree_free(&heap), 1);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{71, 70}));

    mox_tree local;
    mox_tree_construct(&local, nullptr);
    mox_tree_create_note(&local, &note, 0);
    note->data = 72;
    note->destroy = record_destroy;
    EXPECT_EQ(mox_tree_destruct(&local), 1);
    EXPECT_EQ(local.count, 0u);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{71, 70, 72}));
}
