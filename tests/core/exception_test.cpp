#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstring>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

#include "support/child.h"
#include "support/error_listener.h"

using mox_test::ChildOutcome;
using mox_test::ErrorListener;
using mox_test::run_in_child;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressSanitizer = true;
#else
constexpr bool kAddressSanitizer = false;
#endif

// The entry on top of the exception stack, found through the `prev` of a new entry.
mox_exception* current_top() {
    mox_exception* probe = nullptr;
    if (!mox_exception_new(&probe, nullptr))
        return nullptr;
    mox_exception* top = probe->prev;
    mox_exception_free(&probe);
    return top;
}

#if defined(_WIN32)
// The file of the module an address lies in.
std::string module_of(void* address) {
    HMODULE module = nullptr;
    char name[MAX_PATH] = "?";
    if (GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<const char*>(address), &module))
        GetModuleFileNameA(module, name, sizeof name);
    // File names on Windows are compared without case.
    std::string file = name;
    for (char& c : file)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return file;
}
// Windows places a raised exception inside its own RaiseException, which the library's raise calls.
constexpr const char* kRaisingModule = "kernelbase.dll";
#else
std::string module_of(void* address) {
    Dl_info where{};
    return dladdr(address, &where) != 0 && where.dli_fname != nullptr ? where.dli_fname : "?";
}
// The raise places the exception inside the raising entry of the library.
constexpr const char* kRaisingModule = "libmox";
#endif

// How a process ends when the library's filter has the system end it for an exception: on POSIX
// systems with the low byte of the code (255 where that is 0); on Windows with the code itself, which
// for the codes of processor faults the child runner reports as the matching signal.
::testing::AssertionResult ended_by_code(const ChildOutcome& outcome, uint32_t code, int fault_signal = 0) {
#if defined(_WIN32)
    if (fault_signal != 0 ? (outcome.signaled && outcome.signal == fault_signal)
                          : (outcome.exited && static_cast<uint32_t>(outcome.status) == code))
        return ::testing::AssertionSuccess();
#else
    (void)fault_signal;
    const int low = static_cast<int>(code & 0xFF);
    if (outcome.exited && outcome.status == (low != 0 ? low : 255))
        return ::testing::AssertionSuccess();
#endif
    return ::testing::AssertionFailure()
           << "exited=" << outcome.exited << " status=" << outcome.status << " signaled=" << outcome.signaled
           << " signal=" << outcome.signal << " output: " << outcome.output;
}

mox_bool printing_hook(void* address, uint32_t code, uint32_t flags) {
    const std::string module = module_of(address);
    std::printf("top hook code=%08x flags=%08x address=%p module=%s\n", code, flags, address, module.c_str());
    return 1;
}

mox_bool other_hook(void*, uint32_t code, uint32_t) {
    std::printf("other hook code=%08x\n", code);
    return 1;
}

// The address comes from memory, so that the compiler cannot see the null write and turn it into
// something else. The sanitizers are kept out: the processor is to fault for real, at an instruction
// within the first bytes of the function.
volatile uintptr_t g_null_address = 0;

__attribute__((noinline, no_sanitize_undefined, no_sanitize_address)) void write_through_null() {
    *reinterpret_cast<volatile int*>(g_null_address) = 1;
}

void* g_fault_address = nullptr;

mox_bool address_hook(void* address, uint32_t code, uint32_t) {
    g_fault_address = address;
    auto start = reinterpret_cast<uintptr_t>(&write_through_null);
    auto at = reinterpret_cast<uintptr_t>(address);
    std::printf("fault code=%08x inside=%d\n", code, at >= start && at < start + 64 ? 1 : 0);
    return 1;
}

#if defined(_WIN32)
// What stood before the library's filter is the program's own unhandled-exception filter.
LONG WINAPI earlier_segv_filter(EXCEPTION_POINTERS*) {
    std::printf("earlier handler\n");
    std::fflush(stdout);
    _exit(42);
}

LONG WINAPI earlier_trap_filter(EXCEPTION_POINTERS*) {
    std::printf("earlier trap handler\n");
    std::fflush(stdout);
    _exit(43);
}

void set_earlier_segv_handler() { SetUnhandledExceptionFilter(earlier_segv_filter); }
void set_earlier_trap_handler() { SetUnhandledExceptionFilter(earlier_trap_filter); }
#else
void earlier_segv_handler(int) {
    const char text[] = "earlier handler\n";
    ssize_t ignored = write(STDOUT_FILENO, text, sizeof text - 1);
    (void)ignored;
    _exit(42);
}

void earlier_trap_handler(int) {
    const char text[] = "earlier trap handler\n";
    ssize_t ignored = write(STDOUT_FILENO, text, sizeof text - 1);
    (void)ignored;
    _exit(43);
}

// What stood before the library's filter is the program's own signal handler.
void set_earlier_segv_handler() { std::signal(SIGSEGV, earlier_segv_handler); }
void set_earlier_trap_handler() { std::signal(SIGTRAP, earlier_trap_handler); }
#endif

bool contains(const ChildOutcome& outcome, const char* text) {
    return outcome.output.find(text) != std::string::npos;
}

} // namespace

TEST(Exception, ConstructPutsTheEntryOnTopAndInstallsTheFilter) {
    mox_exception* bottom = current_top();
    ASSERT_NE(bottom, nullptr);
    EXPECT_EQ(bottom->header.class_id, MOX_EXCEPTION_CLASS_ID);
    EXPECT_EQ(bottom->prev, nullptr);
    EXPECT_EQ(bottom->prev_filter, nullptr) << "no filter stood before the library's";

    mox_exception entry;
    std::memset(&entry, 0x5A, sizeof entry);
    int owner_storage = 0;
    ASSERT_EQ(mox_exception_construct(&entry, &owner_storage), 1);
    EXPECT_EQ(entry.header.class_id, MOX_EXCEPTION_CLASS_ID);
    EXPECT_EQ(entry.header.owner, &owner_storage);
    EXPECT_EQ(entry.header.flags, 0u);
    EXPECT_EQ(entry.on_exception, nullptr);
    EXPECT_EQ(entry.prev, bottom);
    EXPECT_NE(entry.prev_filter, nullptr) << "the library's own filter stood before";
    EXPECT_EQ(current_top(), &entry);
    EXPECT_EQ(mox_exception_destruct(&entry), 1);
    EXPECT_EQ(current_top(), bottom);
}

TEST(Exception, ConstructingTheTopAgainMakesNoCycle) {
    mox_exception* bottom = current_top();
    mox_exception entry;
    ASSERT_EQ(mox_exception_construct(&entry, nullptr), 1);
    ASSERT_EQ(mox_exception_construct(&entry, nullptr), 1);
    EXPECT_EQ(entry.prev, nullptr);
    ASSERT_EQ(mox_exception_destruct(&entry), 1);
    // The stack below was cut off; the old bottom goes back on top for the tests that follow, with
    // the filter it had replaced at its first construct.
    void* filter_before_the_library = bottom->prev_filter;
    ASSERT_EQ(mox_exception_construct(bottom, nullptr), 1);
    EXPECT_NE(bottom->prev_filter, nullptr) << "the library's filter stood when it was constructed again";
    bottom->prev_filter = filter_before_the_library;
    EXPECT_EQ(current_top(), bottom);
}

TEST(Exception, NullArgumentsPostCoreParams) {
    ErrorListener listener;
    EXPECT_EQ(mox_exception_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_exception_destruct(nullptr), 0);
    EXPECT_EQ(mox_exception_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_exception_free(nullptr), 0);
    EXPECT_EQ(listener.hints(),
              (std::vector<std::string>{"core.params", "core.params", "core.params", "core.params"}));
}

TEST(Exception, FreeOfAnEmptySlotPostsAndIsFalse) {
    ErrorListener listener;
    mox_exception* empty = nullptr;
    EXPECT_EQ(mox_exception_free(&empty), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"});
}

TEST(Exception, FreeLeavesTheSlotHoldingTheReleasedPointer) {
    mox_exception* bottom = current_top();
    mox_exception* entry = nullptr;
    ASSERT_EQ(mox_exception_new(&entry, nullptr), 1);
    mox_exception* held = entry;
    ErrorListener listener;
    EXPECT_EQ(mox_exception_free(&entry), 1);
    EXPECT_EQ(entry, held);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(current_top(), bottom);
}

TEST(Exception, SecondGlobalStartupPostsAndAddsNothing) {
    mox_exception* bottom = current_top();
    ErrorListener listener;
    EXPECT_EQ(mox_global_exception_startup(), 1);
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"});
    EXPECT_EQ(current_top(), bottom);
}

TEST(Exception, GlobalCleanupWithoutAStackPostsAndIsTrue) {
    ErrorListener listener;
    ASSERT_EQ(mox_global_exception_cleanup(), 1);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_global_exception_cleanup(), 1);
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"});
    listener.clear();
    EXPECT_EQ(mox_global_exception_startup(), 1);
    EXPECT_TRUE(listener.silent());
    mox_exception* fresh = current_top();
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->prev, nullptr);
    EXPECT_EQ(fresh->prev_filter, nullptr);
}

TEST(Exception, ARaiseReachesTheHookWithItsCodeAndFlagsAndEndsTheProcess) {
    auto outcome = run_in_child([] {
        mox_exception* entry = nullptr;
        mox_exception_new(&entry, nullptr);
        entry->on_exception = printing_hook;
        mox_exception_raise(0xE0001234, 1);
        std::printf("raise returned\n");
    });
    EXPECT_TRUE(ended_by_code(outcome, 0xE0001234));
    EXPECT_TRUE(contains(outcome, "top hook code=e0001234 flags=00000001")) << outcome.output;
    EXPECT_TRUE(contains(outcome, kRaisingModule))
        << "the address lies in the raising entry: " << outcome.output;
    EXPECT_FALSE(contains(outcome, "raise returned"));
}

TEST(Exception, ACodeWhoseLowByteIsZeroStillEndsWithAFailure) {
    auto outcome = run_in_child([] {
        mox_exception* entry = nullptr;
        mox_exception_new(&entry, nullptr);
        entry->on_exception = printing_hook;
        mox_exception_raise(0xE0000100, 0);
    });
    EXPECT_TRUE(ended_by_code(outcome, 0xE0000100));
    EXPECT_TRUE(contains(outcome, "top hook code=e0000100 flags=00000000")) << outcome.output;
}

TEST(Exception, TheHookOfWhicheverEntryIsOnTopIsTold) {
    auto outcome = run_in_child([] {
        mox_exception* bottom = current_top();
        bottom->on_exception = other_hook;
        mox_exception* entry = nullptr;
        mox_exception_new(&entry, nullptr);
        entry->on_exception = printing_hook;
        mox_exception_free(&entry);
        mox_exception_raise(0xE0000007, 0);
    });
    EXPECT_TRUE(ended_by_code(outcome, 0xE0000007));
    EXPECT_TRUE(contains(outcome, "other hook code=e0000007")) << outcome.output;
    EXPECT_FALSE(contains(outcome, "top hook code=")) << outcome.output;
}

TEST(Exception, AHardwareFaultReachesTheHookWithItsAddress) {
    auto outcome = run_in_child([] {
        mox_exception* entry = nullptr;
        mox_exception_new(&entry, nullptr);
        entry->on_exception = address_hook;
        write_through_null();
        std::printf("write returned\n");
    });
    EXPECT_TRUE(ended_by_code(outcome, 0xC0000005, SIGSEGV));
    EXPECT_TRUE(contains(outcome, "fault code=c0000005 inside=1")) << outcome.output;
    EXPECT_FALSE(contains(outcome, "write returned"));
}

TEST(Exception, WithNoHookTheEarlierHandlerRuns) {
    auto outcome = run_in_child([] {
        // Take the library's filter away, so that the program's own handler is what stood before it.
        mox_global_exception_cleanup();
        set_earlier_segv_handler();
        mox_global_exception_startup();
        write_through_null();
    });
    ASSERT_TRUE(outcome.exited) << outcome.output;
    EXPECT_EQ(outcome.status, 42);
    EXPECT_TRUE(contains(outcome, "earlier handler")) << outcome.output;
}

TEST(Exception, WithNoHookAndNoEarlierHandlerTheFaultEndsTheProcess) {
    auto outcome = run_in_child([] { write_through_null(); });
    if (kAddressSanitizer) {
        // The sanitizer's own handler is what stood before the library's filter.
        EXPECT_TRUE(contains(outcome, "SEGV")) << outcome.output;
    } else {
        ASSERT_TRUE(outcome.signaled) << outcome.output;
        EXPECT_EQ(outcome.signal, SIGSEGV);
    }
}

TEST(Exception, ARaiseWithNoHookEndsTheProcessByTheDefaultAction) {
    auto outcome = run_in_child([] {
        mox_exception_raise(0xE0000001, 0);
        std::printf("raise returned\n");
    });
#if defined(_WIN32)
    // Windows ends the process with the code of the exception.
    ASSERT_TRUE(outcome.exited) << outcome.output;
    EXPECT_EQ(static_cast<uint32_t>(outcome.status), 0xE0000001u);
#else
    ASSERT_TRUE(outcome.signaled) << outcome.output;
    EXPECT_EQ(outcome.signal, SIGTRAP);
#endif
    EXPECT_FALSE(contains(outcome, "raise returned"));
}

TEST(Exception, DestructPutsBackTheFilterThatStoodAtConstruct) {
    auto outcome = run_in_child([] {
        mox_global_exception_cleanup();
        set_earlier_trap_handler();
        mox_exception* entry = nullptr;
        mox_exception_new(&entry, nullptr);
        entry->on_exception = printing_hook;
        mox_exception_free(&entry);
        // No library filter stands now: the raise goes straight to the program's handler.
        mox_exception_raise(0xE0000002, 0);
    });
    ASSERT_TRUE(outcome.exited) << outcome.output;
    EXPECT_EQ(outcome.status, 43);
    EXPECT_TRUE(contains(outcome, "earlier trap handler")) << outcome.output;
    EXPECT_FALSE(contains(outcome, "top hook code=")) << outcome.output;
}
