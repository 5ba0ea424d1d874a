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
const std::vector<std::string> kRange{"core.range"};
const std::vector<std::string> kFull{"mox.array.full"};

struct ArrayTest : ::testing::Test {
    mox_array array{};
    void SetUp() override { ASSERT_EQ(mox_array_construct(&array, nullptr), 1); }
    void TearDown() override { mox_array_destruct(&array); }
    std::string bytes() const { return std::string(reinterpret_cast<const char*>(array.data), array.size); }
};

int g_hook_calls = 0;

// Grows the array by four bytes, as the library's own growers do by more.
mox_bool grow_by_four(mox_array* self) {
    ++g_hook_calls;
    return mox_array_resize(self, self->size + 4);
}

// Grows, then fills the new bytes, so that a read shows where its source went on from.
mox_bool grow_and_fill(mox_array* self) {
    ++g_hook_calls;
    uint32_t old_size = self->size;
    mox_array_resize(self, old_size + 4);
    std::memcpy(self->data + old_size, "WXYZ", 4);
    return 1;
}

mox_bool count_only(mox_array*) {
    ++g_hook_calls;
    return 1;
}

} // namespace

TEST_F(ArrayTest, ConstructZeroesEveryField) {
    mox_array other;
    std::memset(&other, 0x3C, sizeof other);
    int owner = 0;
    EXPECT_EQ(mox_array_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.class_id, 0x502685E8u);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.flags, 0u);
    EXPECT_EQ(other.size, 0u);
    EXPECT_EQ(other.position, 0u);
    EXPECT_EQ(other.data, nullptr);
    EXPECT_EQ(other.on_full, nullptr);
}

TEST_F(ArrayTest, NullArgumentsPostParams) {
    ErrorListener listener;
    uint8_t byte = 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    EXPECT_EQ(mox_array_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_array_destruct(nullptr), 0);
    EXPECT_EQ(mox_array_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_array_free(nullptr), 0);
    EXPECT_EQ(mox_array_resize(nullptr, 4), 0);
    EXPECT_EQ(mox_array_write(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_array_read(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_array_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_array_save_to_file(&array, nullptr), 0);
    EXPECT_EQ(mox_array_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_array_load_from_file(&array, nullptr), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(11, "core.params"));
}

TEST_F(ArrayTest, NewAndFree) {
    mox_array* made = nullptr;
    ASSERT_EQ(mox_array_new(&made, &array), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_ARRAY_CLASS_ID);
    EXPECT_EQ(made->header.owner, &array);
    ASSERT_EQ(mox_array_resize(made, 16), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_array_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_array_free(&made), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST_F(ArrayTest, ResizeKeepsOldBytesZeroesNewOnesAndRewinds) {
    ASSERT_EQ(mox_array_resize(&array, 3), 1);
    EXPECT_EQ(array.size, 3u);
    EXPECT_EQ(bytes(), std::string(3, '\0'));
    ASSERT_EQ(mox_array_write(&array, "ab", 2), 1);
    EXPECT_EQ(array.position, 2u);
    ASSERT_EQ(mox_array_resize(&array, 5), 1);
    EXPECT_EQ(array.position, 0u);
    EXPECT_EQ(bytes(), std::string("ab\0\0\0", 5));
}

TEST_F(ArrayTest, ResizeToTheSameSizeOnlyRewinds) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    uint8_t* block = array.data;
    ASSERT_EQ(mox_array_write(&array, "xy", 2), 1);
    EXPECT_EQ(mox_array_resize(&array, 4), 1);
    EXPECT_EQ(array.position, 0u);
    EXPECT_EQ(array.data, block);
    EXPECT_EQ(bytes(), std::string("xy\0\0", 4));
}

TEST_F(ArrayTest, ResizeToZeroReleasesAndOfNothingFails) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    EXPECT_EQ(mox_array_resize(&array, 0), 1);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(array.size, 0u);
    // Equal sizes: nothing to do, true.
    EXPECT_EQ(mox_array_resize(&array, 0), 1);
}

TEST_F(ArrayTest, WriteThatFillsExactlyIsTrueAndPostsFull) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_array_write(&array, "abcd", 4), 1);
    EXPECT_EQ(listener.hints(), kFull);
    EXPECT_EQ(array.position, 4u);
    EXPECT_EQ(bytes(), "abcd");
    listener.clear();
    EXPECT_EQ(mox_array_write(&array, "e", 1), 0);
    EXPECT_EQ(listener.hints(), kFull);
    EXPECT_EQ(array.position, 4u);
}

TEST_F(ArrayTest, WritePastTheEndKeepsTheEarlierBytes) {
    ASSERT_EQ(mox_array_resize(&array, 3), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_array_write(&array, "abcde", 5), 0);
    EXPECT_EQ(listener.hints(), kFull);
    EXPECT_EQ(array.position, 3u);
    EXPECT_EQ(bytes(), "abc");
}

TEST_F(ArrayTest, WriteOfNullOnlyMovesThePosition) {
    ASSERT_EQ(mox_array_resize(&array, 8), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_array_write(&array, nullptr, 3), 1);
    EXPECT_EQ(array.position, 3u);
    EXPECT_EQ(bytes(), std::string(8, '\0'));
    EXPECT_TRUE(listener.silent());
}

TEST_F(ArrayTest, ZeroSizesPostRange) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    ErrorListener listener;
    uint8_t byte;
    EXPECT_EQ(mox_array_write(&array, "a", 0), 0);
    EXPECT_EQ(mox_array_read(&array, &byte, 0), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.range", "core.range"}));
}

TEST_F(ArrayTest, AGrowingHookLetsTheWriteGoOnFromTheStart) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    array.on_full = grow_by_four;
    g_hook_calls = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_array_write(&array, "abcdef", 6), 1);
    EXPECT_EQ(g_hook_calls, 1);
    EXPECT_EQ(array.size, 8u);
    EXPECT_EQ(array.position, 2u);
    // The growth rewound the position, so the first bytes were written over.
    EXPECT_EQ(bytes(), std::string("efcd\0\0\0\0", 8));
    EXPECT_TRUE(listener.silent());
}

TEST_F(ArrayTest, TheEndStepCallsTheHookAndAGrowthSilencesIt) {
    ASSERT_EQ(mox_array_resize(&array, 2), 1);
    array.on_full = grow_by_four;
    g_hook_calls = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_array_write(&array, "ab", 2), 1);
    EXPECT_EQ(g_hook_calls, 1);
    EXPECT_EQ(array.size, 6u);
    EXPECT_EQ(array.position, 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(ArrayTest, AHookThatMakesNoRoomLeadsToFull) {
    ASSERT_EQ(mox_array_resize(&array, 2), 1);
    array.on_full = count_only;
    g_hook_calls = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_array_write(&array, "abc", 3), 0);
    // Once at the third byte; the end step isn't reached.
    EXPECT_EQ(g_hook_calls, 1);
    EXPECT_EQ(listener.hints(), kFull);
}

TEST_F(ArrayTest, ReadIsTheMirrorOfWrite) {
    ASSERT_EQ(mox_array_resize(&array, 6), 1);
    ASSERT_EQ(mox_array_write(&array, "abcdef", 6), 1);
    ASSERT_EQ(mox_array_resize(&array, 6), 1);
    char out[4] = {};
    ErrorListener listener;
    EXPECT_EQ(mox_array_read(&array, out, 4), 1);
    EXPECT_EQ(std::string(out, 4), "abcd");
    EXPECT_EQ(array.position, 4u);
    EXPECT_TRUE(listener.silent());
    // Reading exactly to the end is true and posts "full".
    EXPECT_EQ(mox_array_read(&array, out, 2), 1);
    EXPECT_EQ(std::string(out, 2), "ef");
    EXPECT_EQ(listener.hints(), kFull);
    listener.clear();
    // Intended: past the end a read posts "full", not "empty".
    EXPECT_EQ(mox_array_read(&array, out, 1), 0);
    EXPECT_EQ(listener.hints(), kFull);
}

TEST_F(ArrayTest, ReadOfNullOnlyMovesThePosition) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    ASSERT_EQ(mox_array_write(&array, "abc", 3), 1);
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    EXPECT_EQ(mox_array_read(&array, nullptr, 3), 1);
    EXPECT_EQ(array.position, 3u);
    EXPECT_EQ(bytes(), std::string("abc\0", 4));
}

// Intended: after the hook a read copies into the array itself, from where its source had got to.
TEST_F(ArrayTest, AReadThatRunsIntoTheHookFillsTheArrayNotTheCaller) {
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    ASSERT_EQ(mox_array_write(&array, "abcd", 4), 1);
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    array.on_full = grow_and_fill;
    g_hook_calls = 0;
    char out[6];
    std::memset(out, '.', sizeof out);
    ErrorListener listener;
    EXPECT_EQ(mox_array_read(&array, out, 6), 1);
    EXPECT_EQ(g_hook_calls, 1);
    EXPECT_EQ(std::string(out, 6), "abcd..");
    EXPECT_EQ(array.size, 8u);
    EXPECT_EQ(array.position, 2u);
    // The source went on at offset 4 ("WX"), the destination started at the new position 0.
    EXPECT_EQ(bytes(), "WXcdWXYZ");
    EXPECT_TRUE(listener.silent());
}

TEST_F(ArrayTest, SaveWritesSizePositionAndBytes) {
    mox_test::DiscFile disc("a.bin");
    ASSERT_TRUE(disc.open_with({}, MOX_FILE_READ | MOX_FILE_WRITE));
    mox_file& file = disc.file;
    ASSERT_EQ(mox_array_resize(&array, 3), 1);
    ASSERT_EQ(mox_array_write(&array, "xy", 2), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_array_save_to_file(&array, &file), 1);
    EXPECT_EQ(file.position, 11u);
    EXPECT_TRUE(listener.silent());
    mox_file_destruct(&file);
    EXPECT_EQ(disc.on_disc(), (std::vector<uint8_t>{3, 0, 0, 0, 2, 0, 0, 0, 'x', 'y', 0}));
}

TEST_F(ArrayTest, SaveOfAnEmptyArrayHandsTheFileANullBlock) {
    mox_test::DiscFile disc("a.bin");
    ASSERT_TRUE(disc.open_with({}, MOX_FILE_WRITE));
    mox_file& file = disc.file;
    ErrorListener listener;
    EXPECT_EQ(mox_array_save_to_file(&array, &file), 1);
    EXPECT_EQ(listener.hints(), kParams);
    mox_file_destruct(&file);
    EXPECT_EQ(disc.on_disc(), (std::vector<uint8_t>(8, 0)));
}

// Intended: the load takes the size from the file, allocates nothing and rewinds the position.
TEST_F(ArrayTest, LoadIntoABlockOfTheSameSizeRewinds) {
    mox_test::DiscFile disc("a.bin");
    ASSERT_TRUE(disc.open_with({4, 0, 0, 0, 3, 0, 0, 0, 'p', 'q', 'r', 's', 0xEE}, MOX_FILE_READ));
    mox_file& file = disc.file;
    ASSERT_EQ(mox_array_resize(&array, 4), 1);
    uint8_t* block = array.data;
    ErrorListener listener;
    EXPECT_EQ(mox_array_load_from_file(&array, &file), 1);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(array.size, 4u);
    EXPECT_EQ(array.position, 0u);
    EXPECT_EQ(array.data, block);
    EXPECT_EQ(bytes(), "pqrs");
    EXPECT_EQ(file.position, 12u);
    mox_file_destruct(&file);
}

TEST_F(ArrayTest, LoadIntoAFreshArrayTakesNoBytesAndPosts) {
    mox_test::DiscFile disc("a.bin");
    ASSERT_TRUE(disc.open_with({2, 0, 0, 0, 1, 0, 0, 0, 'p', 'q'}, MOX_FILE_READ));
    mox_file& file = disc.file;
    ErrorListener listener;
    EXPECT_EQ(mox_array_load_from_file(&array, &file), 1);
    EXPECT_EQ(listener.hints(), kParams);
    EXPECT_EQ(array.size, 2u);
    EXPECT_EQ(array.position, 0u);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(file.position, 8u);
    mox_file_destruct(&file);
    // The size is taken, the block isn't there: callers must not use such an array further.
    array.size = 0;
}

TEST_F(ArrayTest, SaveThenLoadRoundTrip) {
    mox_test::DiscFile disc("a.bin");
    ASSERT_TRUE(disc.open_with({}, MOX_FILE_READ | MOX_FILE_WRITE));
    mox_file& file = disc.file;
    ASSERT_EQ(mox_array_resize(&array, 5), 1);
    ASSERT_EQ(mox_array_write(&array, "hello", 5), 1);
    ASSERT_EQ(mox_array_save_to_file(&array, &file), 1);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_array other;
    mox_array_construct(&other, nullptr);
    ASSERT_EQ(mox_array_resize(&other, 5), 1);
    EXPECT_EQ(mox_array_load_from_file(&other, &file), 1);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(other.data), 5), "hello");
    EXPECT_EQ(other.position, 0u);
    mox_array_destruct(&other);
    mox_file_destruct(&file);
}

TEST_F(ArrayTest, DestructReleasesTheBlock) {
    ASSERT_EQ(mox_array_resize(&array, 8), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_array_destruct(&array), 1);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_TRUE(listener.silent());
}
