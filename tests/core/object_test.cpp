#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "support/child.h"
#include "support/error_listener.h"

using mox_test::ErrorListener;
using mox_test::run_in_child;

namespace {

constexpr uint32_t kClassId = 0x12345678;

mox_object garbage_object() {
    mox_object object;
    std::memset(&object, 0xA5, sizeof object);
    return object;
}

} // namespace

TEST(Object, ConstructFillsTheHeaderWhateverTheStorageHeld) {
    mox_object object = garbage_object();
    int owner_storage = 0;
    EXPECT_EQ(mox_object_construct(&object, &owner_storage, kClassId), 1);
    EXPECT_EQ(object.owner, &owner_storage);
    EXPECT_EQ(object.class_id, kClassId);
    EXPECT_EQ(object.flags, 0u);
    EXPECT_EQ(object.user, 0u);
}

TEST(Object, ConstructOfNullIsFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_object_construct(nullptr, nullptr, kClassId), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Object, ConstructAgainOnALiveObjectStartsItAfresh) {
    mox_object object = garbage_object();
    ASSERT_EQ(mox_object_construct(&object, nullptr, kClassId), 1);
    object.flags = 7;
    object.user = 99;
    EXPECT_EQ(mox_object_construct(&object, &object, 0xAAAA5555u), 1);
    EXPECT_EQ(object.owner, &object);
    EXPECT_EQ(object.class_id, 0xAAAA5555u);
    EXPECT_EQ(object.flags, 0u);
    EXPECT_EQ(object.user, 0u);
}

TEST(Object, DestructLeavesTheRecordAsItIs) {
    mox_object object = garbage_object();
    mox_object before = object;
    EXPECT_EQ(mox_object_destruct(&object), 1);
    EXPECT_EQ(std::memcmp(&object, &before, sizeof object), 0);
}

TEST(Object, DestructOfNullIsFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_object_destruct(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Object, NewAllocatesAFilledHeaderAndFreeClearsTheSlot) {
    void* object = nullptr;
    int owner_storage = 0;
    ASSERT_EQ(mox_object_new(&object, &owner_storage, kClassId), 1);
    ASSERT_NE(object, nullptr);
    auto* header = static_cast<mox_object*>(object);
    EXPECT_EQ(header->owner, &owner_storage);
    EXPECT_EQ(header->class_id, kClassId);
    EXPECT_EQ(header->flags, 0u);
    EXPECT_EQ(header->user, 0u);
    EXPECT_EQ(mox_object_free(&object), 1);
    EXPECT_EQ(object, nullptr);
}

TEST(Object, NewAndFreeOnNullSlotsAreFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_object_new(nullptr, nullptr, kClassId), 0);
    EXPECT_EQ(mox_object_free(nullptr), 0);
    void* empty = nullptr;
    EXPECT_EQ(mox_object_free(&empty), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Object, LockSetsTheLockBitAndKeepsTheOthers) {
    mox_object object;
    ASSERT_EQ(mox_object_construct(&object, nullptr, kClassId), 1);
    object.flags = 0xF0;
    EXPECT_EQ(mox_object_lock(&object), 1);
    EXPECT_EQ(object.flags, 0xF1u);
}

TEST(Object, UnlockStoresTheComplementOfTheLockBitOnly) {
    mox_object object;
    ASSERT_EQ(mox_object_construct(&object, nullptr, kClassId), 1);
    EXPECT_EQ(mox_object_unlock(&object), 1);
    EXPECT_EQ(object.flags, 1u) << "unlocking an unlocked object locks it";
    EXPECT_EQ(mox_object_unlock(&object), 1);
    EXPECT_EQ(object.flags, 0u);

    object.flags = 0xF1;
    EXPECT_EQ(mox_object_unlock(&object), 1);
    EXPECT_EQ(object.flags, 0u) << "higher bits do not survive an unlock";
    object.flags = 0xF0;
    EXPECT_EQ(mox_object_unlock(&object), 1);
    EXPECT_EQ(object.flags, 1u);
}

TEST(Object, LockThenUnlockLeavesNoBits) {
    mox_object object;
    ASSERT_EQ(mox_object_construct(&object, nullptr, kClassId), 1);
    object.flags = 0x100;
    ASSERT_EQ(mox_object_lock(&object), 1);
    ASSERT_EQ(mox_object_unlock(&object), 1);
    EXPECT_EQ(object.flags, 0u);
}

TEST(Object, LockAndUnlockOfNullAreFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_object_lock(nullptr), 0);
    EXPECT_EQ(mox_object_unlock(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Object, LockingALockedObjectNeverReturns) {
    auto outcome = run_in_child(
        [] {
            mox_object object;
            mox_object_construct(&object, nullptr, kClassId);
            mox_object_lock(&object);
            std::printf("first lock held\n");
            mox_object_lock(&object);
            std::printf("second lock returned\n");
        },
        400);
    EXPECT_TRUE(outcome.timed_out);
    EXPECT_NE(outcome.output.find("first lock held"), std::string::npos);
    EXPECT_EQ(outcome.output.find("second lock returned"), std::string::npos);
}

TEST(Object, LockKeepsSpinningWhenAnotherThreadUnlocks) {
    auto outcome = run_in_child(
        [] {
            static mox_object object;
            mox_object_construct(&object, nullptr, kClassId);
            mox_object_lock(&object);
            std::thread unlocker([] {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                mox_object_unlock(&object);
                std::printf("unlocked at %u\n", object.flags);
            });
            unlocker.detach();
            mox_object_lock(&object);
            std::printf("second lock returned\n");
        },
        500);
    EXPECT_TRUE(outcome.timed_out);
    EXPECT_NE(outcome.output.find("unlocked at 0"), std::string::npos);
    EXPECT_EQ(outcome.output.find("second lock returned"), std::string::npos);
}
