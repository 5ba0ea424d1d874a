#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/disc_file.h"

using mox_test::ErrorListener;

namespace {

const std::vector<std::string> kParams{"core.params"};
const std::vector<std::string> kFull{"mox.array.full"};
const std::vector<std::string> kEmpty{"mox.array.empty"};

struct StackTest : ::testing::Test {
    mox_stack stack{};
    void SetUp() override { ASSERT_EQ(mox_stack_construct(&stack, nullptr), 1); }
    void TearDown() override { mox_stack_destruct(&stack); }
    std::string pop(uint32_t size) {
        std::string out(size, '.');
        EXPECT_EQ(mox_stack_pop(&stack, out.data(), size), 1);
        return out;
    }
};

int g_hook_calls = 0;

mox_bool grow_by_two(mox_stack* self) {
    ++g_hook_calls;
    return mox_stack_resize(self, self->size + 2);
}

// Stands for a refill from elsewhere: the stack says it holds its whole block again.
mox_bool refill(mox_stack* self) {
    ++g_hook_calls;
    std::memcpy(self->data, "WXYZ", 4);
    self->position = self->size;
    return 1;
}

} // namespace

TEST_F(StackTest, ConstructZeroesEveryField) {
    mox_stack other;
    std::memset(&other, 0x42, sizeof other);
    EXPECT_EQ(mox_stack_construct(&other, &stack), 1);
    EXPECT_EQ(other.header.class_id, 0xB0821035u);
    EXPECT_EQ(other.header.owner, &stack);
    EXPECT_EQ(other.size, 0u);
    EXPECT_EQ(other.position, 0u);
    EXPECT_EQ(other.data, nullptr);
    EXPECT_EQ(other.on_limit, nullptr);
}

TEST_F(StackTest, NullArgumentsPostParams) {
    ErrorListener listener;
    uint8_t byte = 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    EXPECT_EQ(mox_stack_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_stack_destruct(nullptr), 0);
    EXPECT_EQ(mox_stack_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_stack_free(nullptr), 0);
    EXPECT_EQ(mox_stack_resize(nullptr, 4), 0);
    EXPECT_EQ(mox_stack_push(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_stack_push(&stack, nullptr, 1), 0);
    EXPECT_EQ(mox_stack_pop(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_stack_pop(&stack, nullptr, 1), 0);
    EXPECT_EQ(mox_stack_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_stack_save_to_file(&stack, nullptr), 0);
    EXPECT_EQ(mox_stack_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_stack_load_from_file(&stack, nullptr), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(13, "core.params"));
}

TEST_F(StackTest, NewAndFree) {
    mox_stack* made = nullptr;
    ASSERT_EQ(mox_stack_new(&made, nullptr), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_STACK_CLASS_ID);
    ASSERT_EQ(mox_stack_resize(made, 8), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_stack_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_stack_free(&made), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST_F(StackTest, ZeroSizesPostRange) {
    ASSERT_EQ(mox_stack_resize(&stack, 4), 1);
    ErrorListener listener;
    uint8_t byte = 0;
    EXPECT_EQ(mox_stack_push(&stack, &byte, 0), 0);
    EXPECT_EQ(mox_stack_pop(&stack, &byte, 0), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.range", "core.range"}));
}

TEST_F(StackTest, PushThatFillsExactlyPostsNothing) {
    ASSERT_EQ(mox_stack_resize(&stack, 4), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_stack_push(&stack, "abcd", 4), 1);
    EXPECT_EQ(stack.position, 4u);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_stack_push(&stack, "e", 1), 0);
    EXPECT_EQ(listener.hints(), kFull);
    EXPECT_EQ(stack.position, 4u);
}

TEST_F(StackTest, BlocksComeBackInTheOrderPushed) {
    ASSERT_EQ(mox_stack_resize(&stack, 8), 1);
    ASSERT_EQ(mox_stack_push(&stack, "ab", 2), 1);
    ASSERT_EQ(mox_stack_push(&stack, "cd", 2), 1);
    EXPECT_EQ(pop(2), "cd");
    EXPECT_EQ(stack.position, 2u);
    EXPECT_EQ(pop(2), "ab");
    EXPECT_EQ(stack.position, 0u);
}

TEST_F(StackTest, PopOnAnEmptyStackPostsEmpty) {
    ASSERT_EQ(mox_stack_resize(&stack, 4), 1);
    ErrorListener listener;
    char out = '.';
    EXPECT_EQ(mox_stack_pop(&stack, &out, 1), 0);
    EXPECT_EQ(listener.hints(), kEmpty);
    EXPECT_EQ(out, '.');
}

// Intended: a pop of more than the stack holds starts in front of the block, delivers `position`
// bytes from there (nothing lies there, so zeros), and fails.
TEST_F(StackTest, PopOfMoreThanHeldStartsInFrontOfTheBlock) {
    ASSERT_EQ(mox_stack_resize(&stack, 4), 1);
    ASSERT_EQ(mox_stack_push(&stack, "ab", 2), 1);
    char out[4];
    std::memset(out, '.', sizeof out);
    ErrorListener listener;
    EXPECT_EQ(mox_stack_pop(&stack, out, 4), 0);
    EXPECT_EQ(listener.hints(), kEmpty);
    EXPECT_EQ(stack.position, 0u);
    EXPECT_EQ(std::string(out, 4), std::string("\0\0..", 4));
}

TEST_F(StackTest, AGrowingHookLetsThePushGoOn) {
    ASSERT_EQ(mox_stack_resize(&stack, 2), 1);
    stack.on_limit = grow_by_two;
    g_hook_calls = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_stack_push(&stack, "abcde", 5), 1);
    EXPECT_EQ(g_hook_calls, 2);
    EXPECT_EQ(stack.size, 6u);
    EXPECT_EQ(stack.position, 5u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(stack.data), 5), "abcde");
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(pop(5), "abcde");
}

// Intended: after the hook of a pop the destination lies in the stack's own block, at `position`
// less the bytes still to go.
TEST_F(StackTest, AfterThePopHookBytesGoIntoTheStack) {
    ASSERT_EQ(mox_stack_resize(&stack, 4), 1);
    ASSERT_EQ(mox_stack_push(&stack, "ab", 2), 1);
    stack.on_limit = refill;
    g_hook_calls = 0;
    char out[3];
    std::memset(out, '.', sizeof out);
    ErrorListener listener;
    EXPECT_EQ(mox_stack_pop(&stack, out, 3), 1);
    EXPECT_EQ(g_hook_calls, 1);
    // From offset -1 (nothing, so 0) and 0 ('a') to the caller; then the hook refilled to 4 and the
    // last byte, from offset 1 ('X' after the refill), went to offset 4 - 1 = 3.
    EXPECT_EQ(std::string(out, 3), std::string("\0a.", 3));
    EXPECT_EQ(stack.position, 3u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(stack.data), 4), "WXYX");
    EXPECT_TRUE(listener.silent());
}

TEST_F(StackTest, ResizeToASmallerSizeKeepsThePosition) {
    ASSERT_EQ(mox_stack_resize(&stack, 8), 1);
    ASSERT_EQ(mox_stack_push(&stack, "abcdef", 6), 1);
    EXPECT_EQ(mox_stack_resize(&stack, 4), 1);
    EXPECT_EQ(stack.size, 4u);
    EXPECT_EQ(stack.position, 6u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(stack.data), 4), "abcd");
}

TEST_F(StackTest, ResizeToZeroOfAnEmptyStackFailsAndClears) {
    stack.position = 5;
    EXPECT_EQ(mox_stack_resize(&stack, 0), 0);
    EXPECT_EQ(stack.position, 0u);
    EXPECT_EQ(stack.size, 0u);
}

TEST_F(StackTest, SaveAndLoadKeepThePosition) {
    mox_test::DiscFile disc("s.bin");
    ASSERT_TRUE(disc.open_with({}));
    mox_file& file = disc.file;
    ASSERT_EQ(mox_stack_resize(&stack, 3), 1);
    ASSERT_EQ(mox_stack_push(&stack, "uv", 2), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_stack_save_to_file(&stack, &file), 1);
    EXPECT_EQ(file.position, 11u);
    EXPECT_EQ(disc.on_disc(), (std::vector<uint8_t>{3, 0, 0, 0, 2, 0, 0, 0, 'u', 'v', 0}));
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    // A fresh stack gets its block from the load, and keeps the position.
    mox_stack other;
    mox_stack_construct(&other, nullptr);
    EXPECT_EQ(mox_stack_load_from_file(&other, &file), 1);
    EXPECT_EQ(other.size, 3u);
    EXPECT_EQ(other.position, 2u);
    ASSERT_NE(other.data, nullptr);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(other.data), 3), std::string("uv\0", 3));
    EXPECT_EQ(file.position, 11u);
    EXPECT_TRUE(listener.silent());
    mox_stack_destruct(&other);
    mox_file_destruct(&file);
}

TEST_F(StackTest, LoadOfSizeZeroIntoAnEmptyStackFails) {
    mox_test::DiscFile disc("s.bin");
    ASSERT_TRUE(disc.open_with({0, 0, 0, 0, 7, 0, 0, 0}, MOX_FILE_READ));
    mox_file& file = disc.file;
    EXPECT_EQ(mox_stack_load_from_file(&stack, &file), 0);
    EXPECT_EQ(stack.size, 0u);
    EXPECT_EQ(stack.position, 0u);
    mox_file_destruct(&file);
}

TEST_F(StackTest, DestructReleasesTheBlock) {
    ASSERT_EQ(mox_stack_resize(&stack, 8), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_stack_destruct(&stack), 1);
    EXPECT_EQ(stack.data, nullptr);
    EXPECT_TRUE(listener.silent());
}
