#include <mox/mox.h>

#include <gtest/gtest.h>

#include <vector>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

struct Call {
    char which;
    mox_action* action;
    uint32_t id;
    uintptr_t argument;
    bool operator==(const Call& other) const {
        return which == other.which && action == other.action && id == other.id && argument == other.argument;
    }
};

std::vector<Call> calls;

mox_bool callback_a(mox_action* action, uint32_t id, uintptr_t argument) {
    calls.push_back({'a', action, id, argument});
    return 1;
}

// Its result is false, which the registry ignores.
mox_bool callback_b(mox_action* action, uint32_t id, uintptr_t argument) {
    calls.push_back({'b', action, id, argument});
    return 0;
}

mox_bool unregisters_itself(mox_action* action, uint32_t id, uintptr_t argument) {
    calls.push_back({'u', action, id, argument});
    mox_action_unreg(action, id);
    return 1;
}

class Action : public ::testing::Test {
protected:
    void SetUp() override {
        calls.clear();
        ASSERT_EQ(mox_action_construct(&action, nullptr), 1);
    }
    void TearDown() override { mox_action_destruct(&action); }

    mox_action action;
};

} // namespace

TEST_F(Action, ConstructGivesAnEmptyRegistryOwningItsList) {
    int owner = 0;
    mox_action other;
    ASSERT_EQ(mox_action_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.class_id, 0xBCE9EA9Cu);
    EXPECT_EQ(other.entries.header.owner, &other);
    EXPECT_EQ(other.entries.header.class_id, MOX_LIST_CLASS_ID);
    EXPECT_EQ(other.entries.count, 0u);
    EXPECT_EQ(mox_action_destruct(&other), 1);
}

TEST_F(Action, NewAndFree) {
    mox_action* heap = nullptr;
    ASSERT_EQ(mox_action_new(&heap, nullptr), 1);
    ASSERT_NE(heap, nullptr);
    EXPECT_EQ(heap->header.class_id, MOX_ACTION_CLASS_ID);
    ASSERT_EQ(mox_action_reg(heap, 1, callback_a), 1);
    EXPECT_EQ(mox_action_free(&heap), 1);
    EXPECT_EQ(heap, nullptr);
}

TEST_F(Action, RegisteredIdentifiersReachTheirCallbacks) {
    ASSERT_EQ(mox_action_reg(&action, 10, callback_a), 1);
    ASSERT_EQ(mox_action_reg(&action, 20, callback_b), 1);
    EXPECT_EQ(action.entries.count, 2u);
    EXPECT_EQ(action.entries.first->key, 10u);
    EXPECT_EQ(action.entries.first->data, reinterpret_cast<uintptr_t>(callback_a));
    EXPECT_EQ(action.entries.first->destroy, nullptr);
    EXPECT_EQ(mox_action_call(&action, 20, 7), 1);
    EXPECT_EQ(mox_action_call(&action, 10, 8), 1);
    std::vector<Call> expected = {{'b', &action, 20, 7}, {'a', &action, 10, 8}};
    EXPECT_EQ(calls, expected);
}

TEST_F(Action, ASecondRegistrationReplacesTheFirstInPlace) {
    ASSERT_EQ(mox_action_reg(&action, 1, callback_a), 1);
    ASSERT_EQ(mox_action_reg(&action, 2, callback_a), 1);
    ASSERT_EQ(mox_action_reg(&action, 1, callback_b), 1);
    EXPECT_EQ(action.entries.count, 2u);
    EXPECT_EQ(action.entries.first->key, 1u);
    EXPECT_EQ(mox_action_call(&action, 1, 0), 1);
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].which, 'b');
}

TEST_F(Action, CallingAnUnknownIdentifierIsFalseAndSilent) {
    ErrorListener listener;
    mox_action_reg(&action, 1, callback_a);
    EXPECT_EQ(mox_action_call(&action, 2, 0), 0);
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(listener.silent());
}

TEST_F(Action, ANullCallbackIsKeptButCannotBeCalled) {
    ErrorListener listener;
    EXPECT_EQ(mox_action_reg(&action, 5, nullptr), 1);
    EXPECT_EQ(action.entries.count, 1u);
    EXPECT_EQ(mox_action_call(&action, 5, 0), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Action, UnregRemovesTheNoteOrIsFalseAndSilent) {
    ErrorListener listener;
    mox_action_reg(&action, 1, callback_a);
    mox_action_reg(&action, 2, callback_b);
    EXPECT_EQ(mox_action_unreg(&action, 3), 0);
    EXPECT_EQ(action.entries.count, 2u);
    EXPECT_EQ(mox_action_unreg(&action, 1), 1);
    EXPECT_EQ(action.entries.count, 1u);
    EXPECT_EQ(mox_action_call(&action, 1, 0), 0);
    EXPECT_EQ(mox_action_call(&action, 2, 0), 1);
    EXPECT_EQ(calls.size(), 1u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Action, ACallbackMayUnregisterItself) {
    mox_action_reg(&action, 4, unregisters_itself);
    EXPECT_EQ(mox_action_call(&action, 4, 99), 1);
    EXPECT_EQ(action.entries.count, 0u);
    std::vector<Call> expected = {{'u', &action, 4, 99}};
    EXPECT_EQ(calls, expected);
    EXPECT_EQ(mox_action_call(&action, 4, 99), 0);
}

TEST_F(Action, TheArgumentWordCarriesAPointer) {
    mox_action_reg(&action, 1, callback_a);
    int target = 0;
    ASSERT_EQ(mox_action_call(&action, 1, reinterpret_cast<uintptr_t>(&target)), 1);
    EXPECT_EQ(calls.at(0).argument, reinterpret_cast<uintptr_t>(&target));
}

TEST_F(Action, NullArgumentsPostCoreParams) {
    ErrorListener listener;
    mox_action* nothing = nullptr;
    EXPECT_EQ(mox_action_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_action_destruct(nullptr), 0);
    EXPECT_EQ(mox_action_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_action_free(nullptr), 0);
    EXPECT_EQ(mox_action_free(&nothing), 0);
    EXPECT_EQ(mox_action_reg(nullptr, 1, callback_a), 0);
    EXPECT_EQ(mox_action_unreg(nullptr, 1), 0);
    EXPECT_EQ(mox_action_call(nullptr, 1, 0), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(8, "core.params"));
    EXPECT_TRUE(listener.warnings().empty());
    EXPECT_TRUE(calls.empty());
}

TEST_F(Action, PersistenceIsAPlaceholderThatChecksTwoPointers) {
    ErrorListener listener;
    auto* file = reinterpret_cast<mox_file*>(&action);
    EXPECT_EQ(mox_action_save_to_file(&action, file), 1);
    EXPECT_EQ(mox_action_load_from_file(&action, file), 1);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_action_save_to_file(&action, nullptr), 0);
    EXPECT_EQ(mox_action_load_from_file(nullptr, file), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(2, "core.params"));
}
