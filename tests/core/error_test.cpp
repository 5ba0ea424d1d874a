#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

// The entry on top of the stack, found by having it told something.
mox_error* current_top() {
    ErrorListener listener;
    mox_global_error_hint("probe");
    return listener.told().empty() ? nullptr : listener.told().front();
}

int g_hook_calls = 0;
mox_error* g_hook_self = nullptr;
uintptr_t g_hook_word = 0;

mox_bool counting_hook(mox_error* self, uintptr_t word) {
    ++g_hook_calls;
    g_hook_self = self;
    g_hook_word = word;
    return 0;
}

void reset_hook() {
    g_hook_calls = 0;
    g_hook_self = nullptr;
    g_hook_word = 0;
}

} // namespace

TEST(Error, AFreshLibraryHasOneEntryWithNoHook) {
    EXPECT_EQ(mox_global_error_hint("x"), 1);
    EXPECT_EQ(mox_global_error_warning("x"), 1);
    EXPECT_EQ(mox_global_error_fatal(5), 1);
    mox_error* bottom = current_top();
    ASSERT_NE(bottom, nullptr);
    EXPECT_EQ(bottom->prev, nullptr);
    EXPECT_EQ(bottom->header.class_id, MOX_ERROR_CLASS_ID);
    EXPECT_EQ(bottom->header.owner, nullptr);
}

TEST(Error, AFailingEntryTellsTheBottomEntryCoreParams) {
    ErrorListener listener;
    EXPECT_EQ(mox_memory_new(nullptr, 4), 0);
    ASSERT_EQ(listener.hints().size(), 1u);
    EXPECT_EQ(listener.hints()[0], "core.params");
    mox_error* told = listener.told()[0];
    EXPECT_EQ(told->prev, nullptr);
    EXPECT_EQ(told->on_hint, &ErrorListener::on_hint);
}

TEST(Error, GlobalFatalPassesTheValueThrough) {
    ErrorListener listener;
    EXPECT_EQ(mox_global_error_fatal(0xDEADBEEF), 1);
    ASSERT_EQ(listener.fatals().size(), 1u);
    EXPECT_EQ(listener.fatals()[0], 0xDEADBEEFu);
    EXPECT_TRUE(listener.hints().empty());
    EXPECT_TRUE(listener.warnings().empty());
}

TEST(Error, GlobalWarningGoesToTheWarningHookOnly) {
    ErrorListener listener;
    EXPECT_EQ(mox_global_error_warning("w"), 1);
    ASSERT_EQ(listener.warnings().size(), 1u);
    EXPECT_EQ(listener.warnings()[0], "w");
    EXPECT_TRUE(listener.hints().empty());
}

TEST(Error, ConstructPutsTheRecordOnTop) {
    mox_error* bottom = current_top();
    mox_error entry;
    std::memset(&entry, 0x5A, sizeof entry);
    int owner_storage = 0;
    ASSERT_EQ(mox_error_construct(&entry, &owner_storage), 1);
    EXPECT_EQ(entry.header.class_id, MOX_ERROR_CLASS_ID);
    EXPECT_EQ(entry.header.owner, &owner_storage);
    EXPECT_EQ(entry.header.flags, 0u);
    EXPECT_EQ(entry.header.user, 0u);
    EXPECT_EQ(entry.on_hint, nullptr);
    EXPECT_EQ(entry.on_warning, nullptr);
    EXPECT_EQ(entry.on_fatal, nullptr);
    EXPECT_EQ(entry.prev, bottom);
    EXPECT_EQ(current_top(), &entry);
    ASSERT_EQ(mox_error_destruct(&entry), 1);
    EXPECT_EQ(current_top(), bottom);
}

TEST(Error, AnEntryOnTopSwallowsWordsTheBottomWouldHear) {
    mox_global_error_set_on_hint(counting_hook);
    reset_hook();
    mox_error* entry = nullptr;
    ASSERT_EQ(mox_error_new(&entry, nullptr), 1);
    EXPECT_EQ(mox_global_error_hint("lost"), 1);
    EXPECT_EQ(g_hook_calls, 0);
    mox_error* held = entry;
    ASSERT_EQ(mox_error_free(&entry), 1);
    EXPECT_EQ(entry, held) << "free leaves the slot holding the released pointer";
    EXPECT_EQ(mox_global_error_hint("heard"), 1);
    EXPECT_EQ(g_hook_calls, 1);
    EXPECT_STREQ(reinterpret_cast<const char*>(g_hook_word), "heard");
    mox_global_error_set_on_hint(nullptr);
}

TEST(Error, ConstructingTheSameRecordTwiceCutsTheStackBelowIt) {
    mox_error* bottom = current_top();
    ASSERT_NE(bottom, nullptr);
    mox_error entry;
    ASSERT_EQ(mox_error_construct(&entry, nullptr), 1);
    EXPECT_EQ(entry.prev, bottom);
    ASSERT_EQ(mox_error_construct(&entry, nullptr), 1);
    EXPECT_EQ(entry.prev, nullptr);
    EXPECT_EQ(current_top(), &entry);
    ASSERT_EQ(mox_error_destruct(&entry), 1);
    EXPECT_EQ(mox_global_error_hint("nobody"), 0) << "the stack below was forgotten";
    EXPECT_EQ(mox_global_error_set_on_hint(counting_hook), 0);
    // Put the bottom entry back for the tests that follow.
    ASSERT_EQ(mox_error_construct(bottom, nullptr), 1);
    EXPECT_EQ(current_top(), bottom);
}

TEST(Error, DestructOutOfOrderForgetsTheEntriesAbove) {
    mox_error* bottom = current_top();
    mox_error lower, upper;
    ASSERT_EQ(mox_error_construct(&lower, nullptr), 1);
    ASSERT_EQ(mox_error_construct(&upper, nullptr), 1);
    EXPECT_EQ(upper.prev, &lower);
    upper.on_hint = counting_hook;
    reset_hook();
    ASSERT_EQ(mox_error_destruct(&lower), 1);
    EXPECT_EQ(current_top(), bottom);
    EXPECT_EQ(mox_global_error_hint("x"), 1);
    EXPECT_EQ(g_hook_calls, 0) << "the entry above is no longer told";
    // It still works as an object.
    EXPECT_EQ(mox_error_hint(&upper, "direct"), 1);
    EXPECT_EQ(g_hook_calls, 1);
    EXPECT_EQ(g_hook_self, &upper);
}

TEST(Error, EntryChannelsCallTheirHooks) {
    mox_error entry;
    ASSERT_EQ(mox_error_construct(&entry, nullptr), 1);
    EXPECT_EQ(mox_error_hint(&entry, "h"), 1) << "no hook: true";
    EXPECT_EQ(mox_error_warning(&entry, "w"), 1);
    EXPECT_EQ(mox_error_fatal(&entry, 1), 1);

    entry.on_hint = counting_hook;
    entry.on_warning = counting_hook;
    entry.on_fatal = counting_hook;
    const char* word = "the word";
    reset_hook();
    EXPECT_EQ(mox_error_hint(&entry, word), 1) << "the hook's false result is ignored";
    EXPECT_EQ(g_hook_self, &entry);
    EXPECT_EQ(g_hook_word, reinterpret_cast<uintptr_t>(word));
    EXPECT_EQ(mox_error_warning(&entry, word), 1);
    EXPECT_EQ(g_hook_word, reinterpret_cast<uintptr_t>(word));
    EXPECT_EQ(mox_error_fatal(&entry, 0xCAFEF00D), 1);
    EXPECT_EQ(g_hook_word, 0xCAFEF00Du);
    EXPECT_EQ(g_hook_calls, 3);
    mox_error_destruct(&entry);
}

TEST(Error, EntriesOnNullAreFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_error_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_error_destruct(nullptr), 0);
    EXPECT_EQ(mox_error_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_error_free(nullptr), 0);
    mox_error* empty = nullptr;
    EXPECT_EQ(mox_error_free(&empty), 0);
    EXPECT_EQ(mox_error_hint(nullptr, "x"), 0);
    EXPECT_EQ(mox_error_warning(nullptr, "x"), 0);
    EXPECT_EQ(mox_error_fatal(nullptr, 1), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Error, SetOnHookStoresInTheTopEntry) {
    mox_error entry;
    ASSERT_EQ(mox_error_construct(&entry, nullptr), 1);
    EXPECT_EQ(mox_global_error_set_on_hint(counting_hook), 1);
    EXPECT_EQ(mox_global_error_set_on_warning(counting_hook), 1);
    EXPECT_EQ(mox_global_error_set_on_fatal(counting_hook), 1);
    EXPECT_EQ(entry.on_hint, counting_hook);
    EXPECT_EQ(entry.on_warning, counting_hook);
    EXPECT_EQ(entry.on_fatal, counting_hook);
    mox_error_destruct(&entry);
    mox_error* bottom = current_top();
    EXPECT_EQ(bottom->on_warning, nullptr) << "the bottom entry kept its own hooks";
}

TEST(Error, GlobalCleanupPopsTheTopAndStartupRebuildsTheStack) {
    mox_error* bottom = current_top();
    mox_error* entry = nullptr;
    ASSERT_EQ(mox_error_new(&entry, nullptr), 1);
    EXPECT_EQ(mox_global_error_startup(), 1);
    EXPECT_EQ(current_top(), entry) << "a second startup adds nothing";
    EXPECT_EQ(mox_global_error_cleanup(), 1);
    EXPECT_EQ(current_top(), bottom);

    ASSERT_EQ(mox_global_error_cleanup(), 1);
    EXPECT_EQ(mox_global_error_hint("x"), 0);
    EXPECT_EQ(mox_global_error_warning("x"), 0);
    EXPECT_EQ(mox_global_error_fatal(1), 0);
    EXPECT_EQ(mox_global_error_set_on_hint(counting_hook), 0);
    EXPECT_EQ(mox_global_error_set_on_warning(counting_hook), 0);
    EXPECT_EQ(mox_global_error_set_on_fatal(counting_hook), 0);
    EXPECT_EQ(mox_global_error_cleanup(), 1) << "no top: true";

    ASSERT_EQ(mox_global_error_startup(), 1);
    mox_error* fresh = current_top();
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->prev, nullptr);
    EXPECT_EQ(fresh->on_hint, nullptr);
    EXPECT_EQ(mox_global_error_hint("x"), 1);
}
