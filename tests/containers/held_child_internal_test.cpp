// The held-child pattern over a parent and child class that exist only in this test: one silent
// family and one that posts, as later classes will use it.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include <vector>

#include "containers/held_child.h"
#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

constexpr uint32_t kChildClassId = 0x7E57C41Du;
constexpr uint32_t kParentClassId = 0x7E57FA7Eu;

struct test_child {
    mox_object header;
    uint32_t value;
};

struct test_parent {
    mox_object header;
    mox_list children;
};

int child_news = 0;
int failing_news = 0; // the next so many calls of child_new fail
std::vector<uint32_t> freed_values;

mox_bool child_new(test_child** out, void* owner) {
    ++child_news;
    if (failing_news > 0) {
        --failing_news;
        *out = nullptr;
        return 0;
    }
    if (!mox_memory_new(reinterpret_cast<void**>(out), sizeof(test_child)))
        return 0;
    return mox_object_construct(*out, owner, kChildClassId);
}

mox_bool child_free(test_child** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        freed_values.push_back((*slot)->value);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

using Silent = mox::HeldChildren<test_parent, &test_parent::children, test_child, child_new, child_free,
                                 mox::NullArguments::silent>;
using Posting = mox::HeldChildren<test_parent, &test_parent::children, test_child, child_new, child_free,
                                  mox::NullArguments::posted>;

class HeldChild : public ::testing::Test {
protected:
    void SetUp() override {
        child_news = 0;
        failing_news = 0;
        freed_values.clear();
        mox_object_construct(&parent, nullptr, kParentClassId);
        mox_list_construct(&parent.children, &parent);
    }
    void TearDown() override { mox_list_destruct(&parent.children); }

    test_child* add(uint32_t value, uint8_t position = 0) {
        test_child* child = nullptr;
        EXPECT_EQ(Silent::create(&parent, &child, position), 1);
        if (child != nullptr)
            child->value = value;
        return child;
    }

    std::vector<uint32_t> values_forward() {
        std::vector<uint32_t> values;
        test_child* child = nullptr;
        for (bool more = Silent::first(&parent, &child); more; more = Silent::next(child, &child))
            values.push_back(child->value);
        return values;
    }

    std::vector<uint32_t> values_backward() {
        std::vector<uint32_t> values;
        test_child* child = nullptr;
        for (bool more = Silent::last(&parent, &child); more; more = Silent::prev(child, &child))
            values.insert(values.begin(), child->value);
        return values;
    }

    test_parent parent;
};

} // namespace

TEST_F(HeldChild, CreateLinksTheChildThroughItsNote) {
    test_child* child = reinterpret_cast<test_child*>(&parent);
    ASSERT_EQ(Silent::create(&parent, &child, 0), 1);
    ASSERT_NE(child, nullptr);
    mox_list_note* note = parent.children.first;
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(parent.children.count, 1u);
    EXPECT_EQ(child->header.owner, note);
    EXPECT_EQ(child->header.class_id, kChildClassId);
    EXPECT_EQ(note->data, reinterpret_cast<uintptr_t>(child));
    EXPECT_NE(note->destroy, nullptr);
    EXPECT_EQ(note->header.owner, &parent.children);
}

TEST_F(HeldChild, CreateHonoursThePosition) {
    add(1);
    add(2);
    add(3, 1);
    EXPECT_EQ(values_forward(), (std::vector<uint32_t>{3, 1, 2}));
    EXPECT_EQ(values_backward(), (std::vector<uint32_t>{3, 1, 2}));
}

TEST_F(HeldChild, AFailedChildTakesItsNoteAway) {
    add(1);
    failing_news = 1;
    test_child* child = reinterpret_cast<test_child*>(&parent);
    EXPECT_EQ(Silent::create(&parent, &child, 0), 0);
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(child_news, 2);
    EXPECT_EQ(parent.children.count, 1u);
    EXPECT_EQ(parent.children.first, parent.children.last);
    EXPECT_TRUE(freed_values.empty());
}

// Intended: deleting is false on success, and the cleared slot is what tells it.
TEST_F(HeldChild, DeleteIsFalseAndClearsTheSlotOnSuccess) {
    add(1);
    test_child* middle = add(2);
    add(3);
    EXPECT_EQ(Silent::remove(&parent, &middle), 0);
    EXPECT_EQ(middle, nullptr);
    EXPECT_EQ(freed_values, std::vector<uint32_t>{2});
    EXPECT_EQ(values_forward(), (std::vector<uint32_t>{1, 3}));
    EXPECT_EQ(parent.children.count, 2u);
}

TEST_F(HeldChild, DeleteOfAChildHeldElsewhereKeepsTheSlot) {
    add(1);
    test_child* stranger = nullptr;
    ASSERT_EQ(child_new(&stranger, nullptr), 1);
    test_child* slot = stranger;
    EXPECT_EQ(Silent::remove(&parent, &slot), 0);
    EXPECT_EQ(slot, stranger);
    EXPECT_EQ(parent.children.count, 1u);
    EXPECT_TRUE(freed_values.empty());
    child_free(&stranger);
}

TEST_F(HeldChild, ClearEndsEveryChildWithItsNote) {
    add(1);
    add(2);
    add(3);
    EXPECT_EQ(Silent::clear(&parent), 1);
    EXPECT_EQ(freed_values, (std::vector<uint32_t>{1, 2, 3}));
    EXPECT_EQ(parent.children.count, 0u);
    EXPECT_EQ(parent.children.first, nullptr);
}

TEST_F(HeldChild, FirstAndLastOfAnEmptyParentAreFalseAndNull) {
    test_child* out = reinterpret_cast<test_child*>(&parent);
    EXPECT_EQ(Silent::first(&parent, &out), 0);
    EXPECT_EQ(out, nullptr);
    out = reinterpret_cast<test_child*>(&parent);
    EXPECT_EQ(Silent::last(&parent, &out), 0);
    EXPECT_EQ(out, nullptr);
}

TEST_F(HeldChild, FirstAndLastGiveTheEndChildren) {
    test_child* a = add(1);
    test_child* b = add(2);
    test_child* out = nullptr;
    EXPECT_EQ(Silent::first(&parent, &out), 1);
    EXPECT_EQ(out, a);
    EXPECT_EQ(Silent::last(&parent, &out), 1);
    EXPECT_EQ(out, b);
}

TEST_F(HeldChild, NextAndPrevStopAtTheEndsWithANullResult) {
    test_child* a = add(1);
    test_child* b = add(2);
    test_child* out = a;
    EXPECT_EQ(Silent::prev(a, &out), 0);
    EXPECT_EQ(out, nullptr);
    out = a;
    EXPECT_EQ(Silent::next(b, &out), 0);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(Silent::next(a, &out), 1);
    EXPECT_EQ(out, b);
    EXPECT_EQ(Silent::prev(b, &out), 1);
    EXPECT_EQ(out, a);
}

TEST_F(HeldChild, AChildMadeByHandHasNoNeighbours) {
    add(1);
    test_child* loose = nullptr;
    ASSERT_EQ(child_new(&loose, nullptr), 1);
    test_child* out = loose;
    EXPECT_EQ(Silent::next(loose, &out), 0);
    EXPECT_EQ(out, nullptr);
    loose->header.owner = &parent; // an owner that is not a note
    out = loose;
    EXPECT_EQ(Silent::prev(loose, &out), 0);
    EXPECT_EQ(out, nullptr);
    child_free(&loose);
}

TEST_F(HeldChild, TheSilentFamilyRefusesNullsWithoutAWord) {
    ErrorListener listener;
    test_child* child = nullptr;
    EXPECT_EQ(Silent::create(nullptr, &child, 0), 0);
    EXPECT_EQ(Silent::create(&parent, nullptr, 0), 0);
    EXPECT_EQ(Silent::remove(nullptr, &child), 0);
    EXPECT_EQ(Silent::remove(&parent, nullptr), 0);
    EXPECT_EQ(Silent::clear(nullptr), 0);
    EXPECT_EQ(Silent::first(nullptr, &child), 0);
    EXPECT_EQ(Silent::last(&parent, nullptr), 0);
    EXPECT_EQ(Silent::next(nullptr, &child), 0);
    EXPECT_EQ(Silent::prev(child, nullptr), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(child_news, 0);
}

TEST_F(HeldChild, ThePostingFamilyTellsEveryNullArgument) {
    ErrorListener listener;
    test_child* child = nullptr;
    EXPECT_EQ(Posting::create(nullptr, &child, 0), 0);
    EXPECT_EQ(Posting::remove(&parent, nullptr), 0);
    EXPECT_EQ(Posting::clear(nullptr), 0);
    EXPECT_EQ(Posting::first(&parent, nullptr), 0);
    EXPECT_EQ(Posting::last(nullptr, &child), 0);
    EXPECT_EQ(Posting::next(nullptr, &child), 0);
    EXPECT_EQ(Posting::prev(nullptr, &child), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(7, "core.params"));
    EXPECT_TRUE(listener.warnings().empty());
}

TEST_F(HeldChild, DestroyingTheListEndsTheChildren) {
    add(4);
    add(5);
    EXPECT_EQ(mox_list_destruct(&parent.children), 1);
    EXPECT_EQ(freed_values, (std::vector<uint32_t>{4, 5}));
    mox_list_construct(&parent.children, &parent);
}
