#include <mox/mox.h>

#include <gtest/gtest.h>

#include <vector>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

// Records every call of a destroy hook: which data word it was handed, through the slot.
std::vector<uintptr_t> destroyed;

mox_bool record_destroy(void* data_slot) {
    destroyed.push_back(*static_cast<uintptr_t*>(data_slot));
    return 1;
}

class List : public ::testing::Test {
protected:
    void SetUp() override {
        destroyed.clear();
        ASSERT_EQ(mox_list_construct(&list, nullptr), 1);
    }
    void TearDown() override { mox_list_destruct(&list); }

    mox_list_note* add(uint32_t key, uint8_t position = 0) {
        mox_list_note* note = nullptr;
        EXPECT_EQ(mox_list_create_note(&list, &note, position), 1);
        if (note != nullptr)
            note->key = key;
        return note;
    }

    std::vector<uint32_t> keys_forward() const {
        std::vector<uint32_t> keys;
        for (mox_list_note* note = list.first; note != nullptr; note = note->next)
            keys.push_back(note->key);
        return keys;
    }
    std::vector<uint32_t> keys_backward() const {
        std::vector<uint32_t> keys;
        for (mox_list_note* note = list.last; note != nullptr; note = note->prev)
            keys.insert(keys.begin(), note->key);
        return keys;
    }

    mox_list list;
};

} // namespace

TEST_F(List, ConstructGivesAnEmptyListWithItsClassId) {
    int owner = 0;
    mox_list other;
    other.count = 9;
    ASSERT_EQ(mox_list_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.class_id, 0xBA41E5C9u);
    EXPECT_EQ(other.header.flags, 0u);
    EXPECT_EQ(other.count, 0u);
    EXPECT_EQ(other.first, nullptr);
    EXPECT_EQ(other.last, nullptr);
}

TEST_F(List, NewAndFreeMakeAndReleaseAList) {
    mox_list* heap = nullptr;
    int owner = 0;
    ASSERT_EQ(mox_list_new(&heap, &owner), 1);
    ASSERT_NE(heap, nullptr);
    EXPECT_EQ(heap->header.owner, &owner);
    EXPECT_EQ(heap->header.class_id, MOX_LIST_CLASS_ID);
    mox_list_note* note = nullptr;
    ASSERT_EQ(mox_list_create_note(heap, &note, 0), 1);
    note->data = 41;
    note->destroy = record_destroy;
    EXPECT_EQ(mox_list_free(&heap), 1);
    EXPECT_EQ(heap, nullptr);
    EXPECT_EQ(destroyed, std::vector<uintptr_t>{41});
    EXPECT_EQ(mox_list_free(&heap), 0);
}

TEST_F(List, NullArgumentsAreFalseAndSilent) {
    ErrorListener listener;
    mox_list_note* note = nullptr;
    mox_list_note* some = reinterpret_cast<mox_list_note*>(&list);
    uint32_t index = 0;
    EXPECT_EQ(mox_list_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_list_destruct(nullptr), 0);
    EXPECT_EQ(mox_list_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_list_free(nullptr), 0);
    EXPECT_EQ(mox_list_note_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_list_note_destruct(nullptr), 0);
    EXPECT_EQ(mox_list_note_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_list_note_free(nullptr), 0);
    EXPECT_EQ(mox_list_note_free(&note), 0);
    EXPECT_EQ(mox_list_note_get_index(nullptr, &index), 0);
    EXPECT_EQ(mox_list_create_note(nullptr, &note, 0), 0);
    EXPECT_EQ(mox_list_create_note(&list, nullptr, 0), 0);
    EXPECT_EQ(mox_list_delete_note(nullptr, &some), 0);
    EXPECT_EQ(mox_list_delete_note(&list, nullptr), 0);
    EXPECT_EQ(mox_list_delete_note(&list, &note), 0);
    EXPECT_EQ(mox_list_delete_note_data(nullptr, 0), 0);
    EXPECT_EQ(mox_list_clear_note(nullptr), 0);
    EXPECT_EQ(mox_list_find_note(nullptr, 0, &some), 0);
    EXPECT_EQ(mox_list_find_note(&list, 0, nullptr), 0);
    EXPECT_EQ(mox_list_find_index(nullptr, some, &index), 0);
    EXPECT_EQ(mox_list_find_index(&list, nullptr, &index), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(list.count, 0u);
}

TEST_F(List, TheFirstNoteIsBothEndsAtEitherPosition) {
    for (uint8_t position : {0, 1}) {
        mox_list fresh;
        mox_list_construct(&fresh, nullptr);
        mox_list_note* note = nullptr;
        ASSERT_EQ(mox_list_create_note(&fresh, &note, position), 1);
        EXPECT_EQ(fresh.first, note);
        EXPECT_EQ(fresh.last, note);
        EXPECT_EQ(fresh.count, 1u);
        EXPECT_EQ(note->prev, nullptr);
        EXPECT_EQ(note->next, nullptr);
        EXPECT_EQ(note->header.owner, &fresh);
        EXPECT_EQ(note->header.class_id, MOX_LIST_NOTE_CLASS_ID);
        mox_list_destruct(&fresh);
    }
}

TEST_F(List, PositionOnePutsAtTheHeadAndEveryOtherValueAtTheTail) {
    add(1);
    add(2, 1);
    add(3, 0);
    add(4, 2);
    add(5, 255);
    add(6, 1);
    EXPECT_EQ(keys_forward(), (std::vector<uint32_t>{6, 2, 1, 3, 4, 5}));
    EXPECT_EQ(keys_backward(), keys_forward());
    EXPECT_EQ(list.count, 6u);
    EXPECT_EQ(list.first->prev, nullptr);
    EXPECT_EQ(list.last->next, nullptr);
}

TEST_F(List, CreateKeepsTheOutSlotOnFailure) {
    mox_list_note* marker = reinterpret_cast<mox_list_note*>(&list);
    mox_list_note* out = marker;
    EXPECT_EQ(mox_list_create_note(nullptr, &out, 0), 0);
    EXPECT_EQ(out, marker);
}

TEST_F(List, FindNoteNeedsANonNullOutSlotOnEntry) {
    add(7);
    // Intended: a zeroed slot makes the search fail without looking.
    mox_list_note* out = nullptr;
    EXPECT_EQ(mox_list_find_note(&list, 7, &out), 0);
    EXPECT_EQ(out, nullptr);
}

TEST_F(List, FindNoteGivesTheMatchNearestTheHead) {
    add(1);
    mox_list_note* near = add(5);
    add(5);
    mox_list_note* out = list.last;
    EXPECT_EQ(mox_list_find_note(&list, 5, &out), 1);
    EXPECT_EQ(out, near);
}

TEST_F(List, FindNoteWithoutAMatchClearsTheSlot) {
    add(1);
    mox_list_note* out = list.first;
    EXPECT_EQ(mox_list_find_note(&list, 2, &out), 0);
    EXPECT_EQ(out, nullptr);
}

TEST_F(List, FindIndexCountsFromTheHead) {
    mox_list_note* a = add(1);
    mox_list_note* b = add(2);
    mox_list_note* c = add(3);
    uint32_t index = 99;
    EXPECT_EQ(mox_list_find_index(&list, a, &index), 1);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(mox_list_find_index(&list, c, &index), 1);
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(mox_list_note_get_index(b, &index), 1);
    EXPECT_EQ(index, 1u);
}

TEST_F(List, FindIndexOfAForeignNoteIsFalse) {
    add(1);
    mox_list other;
    mox_list_construct(&other, nullptr);
    mox_list_note* foreign = nullptr;
    mox_list_create_note(&other, &foreign, 0);
    uint32_t index = 77;
    EXPECT_EQ(mox_list_find_index(&list, foreign, &index), 0);
    EXPECT_EQ(index, 77u);
    mox_list_destruct(&other);
}

TEST_F(List, GetIndexNeedsAListForOwner) {
    mox_list_note* note = add(1);
    uint32_t index = 5;
    mox_object stranger;
    mox_object_construct(&stranger, nullptr, 0x1234u);
    note->header.owner = &stranger;
    EXPECT_EQ(mox_list_note_get_index(note, &index), 0);
    note->header.owner = nullptr;
    EXPECT_EQ(mox_list_note_get_index(note, &index), 0);
    EXPECT_EQ(mox_list_note_get_index(note, nullptr), 0);
    EXPECT_EQ(index, 5u);
    note->header.owner = &list;
}

TEST_F(List, DeleteTheOnlyNoteLeavesAnEmptyList) {
    mox_list_note* note = add(1);
    note->data = 12;
    note->destroy = record_destroy;
    EXPECT_EQ(mox_list_delete_note(&list, &note), 1);
    EXPECT_EQ(note, nullptr);
    EXPECT_EQ(list.first, nullptr);
    EXPECT_EQ(list.last, nullptr);
    EXPECT_EQ(list.count, 0u);
    EXPECT_EQ(destroyed, std::vector<uintptr_t>{12});
}

TEST_F(List, DeleteRelinksTheNeighbours) {
    add(1);
    mox_list_note* middle = add(2);
    add(3);
    ASSERT_EQ(mox_list_delete_note(&list, &middle), 1);
    EXPECT_EQ(keys_forward(), (std::vector<uint32_t>{1, 3}));
    EXPECT_EQ(keys_backward(), (std::vector<uint32_t>{1, 3}));
    mox_list_note* head = list.first;
    ASSERT_EQ(mox_list_delete_note(&list, &head), 1);
    EXPECT_EQ(keys_forward(), (std::vector<uint32_t>{3}));
    EXPECT_EQ(list.first, list.last);
    EXPECT_EQ(list.first->prev, nullptr);
    EXPECT_EQ(list.count, 1u);
}

TEST_F(List, DeleteNoteDataEndsTheFirstNoteHoldingTheValue) {
    mox_list_note* a = add(1);
    mox_list_note* b = add(2);
    mox_list_note* c = add(3);
    a->data = 10;
    b->data = 20;
    c->data = 20;
    b->destroy = record_destroy;
    c->destroy = record_destroy;
    EXPECT_EQ(mox_list_delete_note_data(&list, 20), 1);
    EXPECT_EQ(keys_forward(), (std::vector<uint32_t>{1, 3}));
    EXPECT_EQ(destroyed, std::vector<uintptr_t>{20});
    EXPECT_EQ(mox_list_delete_note_data(&list, 30), 0);
    EXPECT_EQ(keys_forward(), (std::vector<uint32_t>{1, 3}));
    EXPECT_EQ(list.count, 2u);
}

TEST_F(List, ClearEndsEveryNoteFromTheHead) {
    EXPECT_EQ(mox_list_clear_note(&list), 1);
    for (uint32_t key : {1u, 2u, 3u}) {
        mox_list_note* note = add(key);
        note->data = key * 100;
        note->destroy = record_destroy;
    }
    EXPECT_EQ(mox_list_clear_note(&list), 1);
    EXPECT_EQ(destroyed, (std::vector<uintptr_t>{100, 200, 300}));
    EXPECT_EQ(list.count, 0u);
    EXPECT_EQ(list.first, nullptr);
    EXPECT_EQ(list.last, nullptr);
}

TEST_F(List, DestructClearsTheNotes) {
    mox_list other;
    mox_list_construct(&other, nullptr);
    mox_list_note* note = nullptr;
    mox_list_create_note(&other, &note, 0);
    note->data = 3;
    note->destroy = record_destroy;
    EXPECT_EQ(mox_list_destruct(&other), 1);
    EXPECT_EQ(other.count, 0u);
    EXPECT_EQ(destroyed, std::vector<uintptr_t>{3});
}

TEST_F(List, NoteLifetimeRunsDestroyWithoutUnlinking) {
    mox_list_note* note = nullptr;
    int owner = 0;
    ASSERT_EQ(mox_list_note_new(&note, &owner), 1);
    EXPECT_EQ(note->header.owner, &owner);
    EXPECT_EQ(note->header.class_id, MOX_LIST_NOTE_CLASS_ID);
    EXPECT_EQ(note->key, 0u);
    EXPECT_EQ(note->data, 0u);
    EXPECT_EQ(note->destroy, nullptr);
    mox_list_note neighbour;
    mox_list_note_construct(&neighbour, nullptr);
    note->next = &neighbour;
    note->data = 8;
    note->destroy = record_destroy;
    EXPECT_EQ(mox_list_note_destruct(note), 1);
    EXPECT_EQ(note->next, &neighbour);
    EXPECT_EQ(destroyed, std::vector<uintptr_t>{8});
    note->destroy = nullptr;
    EXPECT_EQ(mox_list_note_free(&note), 1);
    EXPECT_EQ(note, nullptr);
    EXPECT_EQ(destroyed.size(), 1u);
}

// A note whose destroy is a child's free entry ends the child, and its data word is null by then.
TEST_F(List, DestroyHookGetsTheDataWordAsTheChildSlot) {
    mox_list_note* note = add(1);
    mox_object* child = nullptr;
    ASSERT_EQ(mox_object_new(reinterpret_cast<void**>(&child), note, 0x77u), 1);
    note->data = reinterpret_cast<uintptr_t>(child);
    note->destroy = [](void* slot) -> mox_bool {
        mox_bool freed = mox_object_free(static_cast<void**>(slot));
        destroyed.push_back(*static_cast<uintptr_t*>(slot));
        return freed;
    };
    EXPECT_EQ(mox_list_note_destruct(note), 1);
    EXPECT_EQ(note->data, 0u);
    EXPECT_EQ(destroyed, std::vector<uintptr_t>{0});
    note->destroy = nullptr;
}
