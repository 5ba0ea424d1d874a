#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/error_listener.h"
#include "support/disc_file.h"

using mox_test::ErrorListener;
using mox_test::run_in_child;

namespace {

struct FifoTest : ::testing::Test {
    mox_fifo fifo{};
    void SetUp() override { ASSERT_EQ(mox_fifo_construct(&fifo, nullptr), 1); }
    void TearDown() override { mox_fifo_destruct(&fifo); }
    void write(const std::string& text) {
        ASSERT_EQ(mox_fifo_write(&fifo, text.data(), static_cast<uint32_t>(text.size())), 1);
    }
    std::string read(uint32_t size) {
        std::string out(size, '.');
        EXPECT_EQ(mox_fifo_read(&fifo, out.data(), size), 1);
        return out;
    }
    std::string copy(uint32_t size) {
        std::string out(size, '.');
        EXPECT_EQ(mox_fifo_copy(&fifo, out.data(), size), 1);
        return out;
    }
};

int g_overflows = 0;

mox_bool count_overflow(mox_fifo*) {
    ++g_overflows;
    return 1;
}

// Doubles the ring, which empties it.
mox_bool double_ring(mox_fifo* self) {
    ++g_overflows;
    return mox_fifo_resize(self, self->size * 2);
}

} // namespace

TEST_F(FifoTest, ConstructZeroesEveryField) {
    mox_fifo other;
    std::memset(&other, 0x11, sizeof other);
    EXPECT_EQ(mox_fifo_construct(&other, &fifo), 1);
    EXPECT_EQ(other.header.class_id, 0x682C2A55u);
    EXPECT_EQ(other.header.owner, &fifo);
    EXPECT_EQ(other.size, 0u);
    EXPECT_EQ(other.count, 0u);
    EXPECT_EQ(other.read_position, 0u);
    EXPECT_EQ(other.write_position, 0u);
    EXPECT_EQ(other.limit, 0u);
    EXPECT_EQ(other.data, nullptr);
    EXPECT_EQ(other.on_overflow, nullptr);
}

TEST_F(FifoTest, NullArgumentsFailSilently) {
    ErrorListener listener;
    char byte = 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    EXPECT_EQ(mox_fifo_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_fifo_destruct(nullptr), 0);
    EXPECT_EQ(mox_fifo_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_fifo_free(nullptr), 0);
    EXPECT_EQ(mox_fifo_resize(nullptr, 4), 0);
    EXPECT_EQ(mox_fifo_write(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_fifo_write(&fifo, nullptr, 1), 0);
    EXPECT_EQ(mox_fifo_read(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_fifo_read(&fifo, nullptr, 1), 0);
    EXPECT_EQ(mox_fifo_copy(&fifo, nullptr, 1), 0);
    EXPECT_EQ(mox_fifo_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_fifo_save_to_file(&fifo, nullptr), 0);
    EXPECT_EQ(mox_fifo_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_fifo_load_from_file(&fifo, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FifoTest, NewAndFree) {
    mox_fifo* made = nullptr;
    ASSERT_EQ(mox_fifo_new(&made, nullptr), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_FIFO_CLASS_ID);
    ASSERT_EQ(mox_fifo_resize(made, 8), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_fifo_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(mox_fifo_free(&made), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FifoTest, ResizeEmptiesTheRing) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    write("abc");
    EXPECT_EQ(mox_fifo_resize(&fifo, 6), 1);
    EXPECT_EQ(fifo.size, 6u);
    EXPECT_EQ(fifo.count, 0u);
    EXPECT_EQ(fifo.read_position, 0u);
    EXPECT_EQ(fifo.write_position, 0u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(fifo.data), 6), std::string("abc\0\0\0", 6));
    EXPECT_EQ(mox_fifo_resize(&fifo, 0), 1);
    EXPECT_EQ(fifo.data, nullptr);
    EXPECT_EQ(fifo.size, 0u);
    // Releasing what isn't there fails, and the size is 0.
    EXPECT_EQ(mox_fifo_resize(&fifo, 0), 0);
}

TEST_F(FifoTest, WriteThenReadInOrder) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 8), 1);
    write("abc");
    EXPECT_EQ(fifo.count, 3u);
    EXPECT_EQ(fifo.write_position, 3u);
    EXPECT_EQ(fifo.read_position, 0u);
    EXPECT_EQ(read(2), "ab");
    EXPECT_EQ(fifo.count, 1u);
    write("defgh");
    EXPECT_EQ(read(6), "cdefgh");
    EXPECT_EQ(fifo.count, 0u);
}

TEST_F(FifoTest, AFullRingOverwritesItsOldestByte) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    write("abcd");
    write("e");
    EXPECT_EQ(fifo.count, 4u);
    EXPECT_EQ(read(4), "bcde");
}

// Intended: `count` is raised before the loop, so each byte of a write that ends at full moves the
// read position, not only those that overwrite.
TEST_F(FifoTest, AWriteThatEndsAtFullMovesTheReadPositionForEachByte) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    write("a");
    EXPECT_EQ(fifo.read_position, 0u);
    write("bcd");
    EXPECT_EQ(fifo.count, 4u);
    EXPECT_EQ(fifo.read_position, 3u);
    EXPECT_EQ(read(4), "dabc");
}

// Intended: reading more than the ring holds wraps `count` through zero and delivers old bytes.
TEST_F(FifoTest, ReadingMoreThanHeldWrapsTheCount) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    write("ab");
    EXPECT_EQ(read(3), std::string("ab\0", 3));
    EXPECT_EQ(fifo.count, 0xFFFFFFFFu);
    EXPECT_EQ(fifo.read_position, 3u);
}

TEST_F(FifoTest, ReadAndCopyOfAnEmptyRingFail) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    char out[2];
    EXPECT_EQ(mox_fifo_read(&fifo, out, 1), 0);
    EXPECT_EQ(mox_fifo_copy(&fifo, out, 1), 0);
}

TEST_F(FifoTest, CopyLooksWithoutTaking) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 8), 1);
    write("xyz");
    EXPECT_EQ(copy(3), "xyz");
    EXPECT_EQ(copy(3), "xyz");
    EXPECT_EQ(fifo.count, 3u);
    EXPECT_EQ(fifo.read_position, 0u);
    // More than held: only what is there, still true.
    EXPECT_EQ(copy(5), "xyz..");
    char out[9];
    EXPECT_EQ(mox_fifo_copy(&fifo, out, 9), 0);
    EXPECT_EQ(mox_fifo_copy(&fifo, out, 0), 0);
}

TEST_F(FifoTest, CopyWrapsAroundTheRing) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    write("abc");
    EXPECT_EQ(read(2), "ab");
    write("de");
    EXPECT_EQ(fifo.read_position, 2u);
    EXPECT_EQ(fifo.write_position, 1u);
    EXPECT_EQ(copy(3), "cde");
    EXPECT_EQ(fifo.read_position, 2u);
}

// Intended: the read position is compared with the size asked for, not with the ring's size.
TEST_F(FifoTest, CopyResetsAReadPositionAtOrBeyondTheSizeAsked) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 8), 1);
    write("abcdefg");
    EXPECT_EQ(read(3), "abc");
    EXPECT_EQ(fifo.read_position, 3u);
    EXPECT_EQ(copy(2), "ab");
    EXPECT_EQ(fifo.read_position, 0u);
    EXPECT_EQ(fifo.count, 4u);
}

// Intended: the ring isn't looked at before it is followed, so a null one ends the process.
TEST_F(FifoTest, CopyFollowsANullRing) {
    char out[2];
    EXPECT_EQ(mox_fifo_copy(nullptr, nullptr, 1), 0);
    EXPECT_EQ(mox_fifo_copy(nullptr, out, 0), 0);
    auto outcome = run_in_child([&] { mox_fifo_copy(nullptr, out, 1); });
    EXPECT_FALSE(outcome.exited && outcome.status == 0);
    EXPECT_FALSE(outcome.timed_out);
}

TEST_F(FifoTest, OverflowHookWantsALimitNotAboveTheSize) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    fifo.on_overflow = count_overflow;
    g_overflows = 0;
    // A limit of 0 never lets the hook fire.
    write("abcde");
    EXPECT_EQ(g_overflows, 0);
    fifo.limit = 5;
    write("f");
    EXPECT_EQ(g_overflows, 0);
    fifo.limit = 4;
    write("g");
    EXPECT_EQ(g_overflows, 1);
    fifo.limit = 2;
    write("h");
    EXPECT_EQ(g_overflows, 2);
    // A write that doesn't pass full doesn't fire.
    ASSERT_EQ(mox_fifo_resize(&fifo, 4), 1);
    write("abcd");
    EXPECT_EQ(g_overflows, 2);
}

TEST_F(FifoTest, AnOverflowHookThatGrowsTheRing) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 2), 1);
    fifo.limit = 1;
    fifo.on_overflow = double_ring;
    g_overflows = 0;
    write("ab");
    write("cd");
    EXPECT_EQ(g_overflows, 1);
    // The growth emptied the ring; the write went on into the new block.
    EXPECT_EQ(fifo.size, 4u);
    EXPECT_EQ(fifo.count, 0u);
    EXPECT_EQ(fifo.write_position, 2u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(fifo.data), 4), std::string("cd\0\0", 4));
}

TEST_F(FifoTest, SaveWritesTheFiveFieldsAndTheBytes) {
    mox_test::DiscFile disc("f.bin");
    ASSERT_TRUE(disc.open_with({}));
    mox_file& file = disc.file;
    ASSERT_EQ(mox_fifo_resize(&fifo, 3), 1);
    write("pqrs");
    EXPECT_EQ(fifo.read_position, 1u);
    EXPECT_EQ(fifo.write_position, 1u);
    fifo.limit = 0x01020304;
    EXPECT_EQ(mox_fifo_save_to_file(&fifo, &file), 1);
    EXPECT_EQ(file.position, 23u);
    EXPECT_EQ(disc.on_disc(), (std::vector<uint8_t>{3, 0, 0, 0, 3, 0, 0, 0, 1,   0,   0,  0,
                                                    1, 0, 0, 0, 4, 3, 2, 1, 's', 'q', 'r'}));
    // Loaded back into a ring with a block of that size.
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_fifo other;
    mox_fifo_construct(&other, nullptr);
    ASSERT_EQ(mox_fifo_resize(&other, 3), 1);
    uint8_t* block = other.data;
    EXPECT_EQ(mox_fifo_load_from_file(&other, &file), 1);
    EXPECT_EQ(other.data, block);
    EXPECT_EQ(other.size, 3u);
    EXPECT_EQ(other.count, 3u);
    EXPECT_EQ(other.read_position, 1u);
    EXPECT_EQ(other.write_position, 1u);
    EXPECT_EQ(other.limit, 0x01020304u);
    char out[3];
    ASSERT_EQ(mox_fifo_read(&other, out, 3), 1);
    EXPECT_EQ(std::string(out, 3), "qrs");
    mox_fifo_destruct(&other);
    mox_file_destruct(&file);
}

TEST_F(FifoTest, DestructReleasesTheBlock) {
    ASSERT_EQ(mox_fifo_resize(&fifo, 8), 1);
    EXPECT_EQ(mox_fifo_destruct(&fifo), 1);
    EXPECT_EQ(fifo.data, nullptr);
}
