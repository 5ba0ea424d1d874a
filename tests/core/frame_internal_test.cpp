// What the frame keeps that no entry shows: the allocation counters and the attach counter.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include "core/lifecycle.h"
#include "core/memory.h"
#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

void** slot_of(void** pointer) { return pointer; }

} // namespace

TEST(MemoryCounters, NewAndFreeCountOnlySuccesses) {
    mox::MemoryCounters before = mox::memory_counters();
    void* block = nullptr;
    ASSERT_EQ(mox_memory_new(slot_of(&block), 16), 1);
    EXPECT_EQ(mox::memory_counters().allocations, before.allocations + 1);
    EXPECT_EQ(mox::memory_counters().releases, before.releases);

    mox_memory_new(nullptr, 16);
    void* empty = nullptr;
    mox_memory_free(&empty);
    mox_memory_free(nullptr);
    EXPECT_EQ(mox::memory_counters().allocations, before.allocations + 1);
    EXPECT_EQ(mox::memory_counters().releases, before.releases);

    ASSERT_EQ(mox_memory_free(slot_of(&block)), 1);
    EXPECT_EQ(mox::memory_counters().releases, before.releases + 1);
}

TEST(MemoryCounters, ResizeCountsOnlyWhenItAllocatesOrFrees) {
    mox::MemoryCounters before = mox::memory_counters();
    void* block = nullptr;
    ASSERT_EQ(mox_memory_resize(&block, 8), 1);
    EXPECT_EQ(mox::memory_counters().allocations, before.allocations + 1);
    ASSERT_EQ(mox_memory_resize(&block, 4096), 1);
    ASSERT_EQ(mox_memory_resize(&block, 2), 1);
    EXPECT_EQ(mox::memory_counters().allocations, before.allocations + 1) << "a reallocation counts nothing";
    EXPECT_EQ(mox::memory_counters().releases, before.releases);
    ASSERT_EQ(mox_memory_resize(&block, 0), 1);
    EXPECT_EQ(mox::memory_counters().releases, before.releases + 1);
}

TEST(MemoryCounters, ObjectsCountOneBlockEach) {
    mox::MemoryCounters before = mox::memory_counters();
    mox_error* entry = nullptr;
    ASSERT_EQ(mox_error_new(&entry, nullptr), 1);
    mox_error_free(&entry);
    EXPECT_EQ(mox::memory_counters().allocations, before.allocations + 1);
    EXPECT_EQ(mox::memory_counters().releases, before.releases + 1);
}

TEST(Lifecycle, TheLoadedLibraryIsAttachedOnce) { EXPECT_EQ(mox::attach_count(), 1u); }

TEST(Lifecycle, FurtherAttachesOnlyCount) {
    ErrorListener listener;
    mox::process_attach();
    EXPECT_EQ(mox::attach_count(), 2u);
    EXPECT_TRUE(listener.silent()) << "a second attach runs no startup";
    mox::process_detach();
    EXPECT_EQ(mox::attach_count(), 1u);
    EXPECT_EQ(mox_global_error_hint("still here"), 1);
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"still here"}) << "the stacks stay up";
}

TEST(Lifecycle, TheLastDetachEndsExceptionsBeforeErrors) {
    mox::MemoryCounters before = mox::memory_counters();
    {
        ErrorListener listener;
        // With the exception stack already gone, ending it posts: the hint is heard only while the
        // error stack still stands.
        ASSERT_EQ(mox_global_exception_cleanup(), 1);
        mox::process_detach();
        EXPECT_EQ(mox::attach_count(), 0u);
        EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"});
    }
    EXPECT_EQ(mox_global_error_hint("x"), 0) << "no error entry is left";
    EXPECT_EQ(mox::memory_counters().releases, before.releases + 2) << "both bottom entries were released";

    mox::process_attach();
    EXPECT_EQ(mox::attach_count(), 1u);
    EXPECT_EQ(mox::memory_counters().allocations, before.allocations + 2) << "both stacks are rebuilt";
    EXPECT_EQ(mox_global_error_hint("x"), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_global_exception_startup(), 1);
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"}) << "the exception stack is up too";
}

TEST(Lifecycle, AttachKeepsStandingEntriesAndTheExceptionStartupPosts) {
    mox::process_detach();
    ASSERT_EQ(mox::attach_count(), 0u);
    // An exception entry made while the library is detached makes the exception startup post; an
    // error entry with a hook, made likewise, hears it only if it stands when that startup runs.
    mox_error listener_entry;
    mox_error_construct(&listener_entry, nullptr);
    listener_entry.on_hint = &ErrorListener::on_hint;
    mox_exception early;
    mox_exception_construct(&early, nullptr);
    ErrorListener listener;
    mox_global_error_set_on_hint(&ErrorListener::on_hint);
    mox::process_attach();
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"});
    ASSERT_EQ(listener.told().size(), 1u);
    EXPECT_EQ(listener.told()[0], &listener_entry) << "the error startup found an entry and added none";
    mox_exception_destruct(&early);
    mox_error_destruct(&listener_entry);
    // Both stacks were cut to nothing above; give them their bottom entries back.
    mox_global_error_startup();
    mox_global_exception_startup();
    EXPECT_EQ(mox_global_error_hint("x"), 1);
}
