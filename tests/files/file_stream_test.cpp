#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/temp_folder.h"

using mox_test::ErrorListener;
using mox_test::read_text;
using mox_test::TempFolder;
using mox_test::write_text;

namespace {

// Shared for reading, so that the test may look at the disc while the file is open (Windows refuses
// that look to a file opened without sharing).
constexpr uint32_t kReadWrite = MOX_FILE_READ | MOX_FILE_WRITE | MOX_FILE_SHARE_READ;

struct StreamTest : ::testing::Test {
    TempFolder folder;
    mox_file file{};
    mox_file_stream stream{};
    void SetUp() override {
        ASSERT_EQ(mox_file_construct(&file, nullptr), 1);
        ASSERT_EQ(mox_file_stream_construct(&stream, nullptr), 1);
        stream.file = &file;
    }
    void TearDown() override {
        mox_file_stream_destruct(&stream);
        mox_file_destruct(&file);
    }
    void open_with(const std::string& text, uint32_t cache) {
        write_text(folder.file("s.txt"), text);
        ASSERT_EQ(mox_file_open(&file, folder.library_path("s.txt").c_str(), kReadWrite), 1);
        ASSERT_EQ(mox_file_stream_cache_size(&stream, cache), 1);
    }
    std::string read(uint32_t size) {
        std::string out(size, '\0');
        EXPECT_EQ(mox_file_stream_read(&stream, out.data(), size), 1);
        return out;
    }
    std::string disc() const { return read_text(folder.file("s.txt")); }
};

} // namespace

TEST_F(StreamTest, ConstructZeroesEveryField) {
    mox_file_stream other;
    std::memset(&other, 0x5A, sizeof other);
    EXPECT_EQ(mox_file_stream_construct(&other, &file), 1);
    EXPECT_EQ(other.header.class_id, 0x204D3260u);
    EXPECT_EQ(other.header.owner, &file);
    EXPECT_EQ(other.file, nullptr);
    EXPECT_EQ(other.cache_size, 0u);
    EXPECT_EQ(other.cache_position, 0u);
    EXPECT_EQ(other.cache_filled, 0u);
    EXPECT_EQ(other.cache, nullptr);
}

TEST_F(StreamTest, NullArgumentsFailSilently) {
    ErrorListener listener;
    char byte = 0;
    EXPECT_EQ(mox_file_stream_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_file_stream_destruct(nullptr), 0);
    EXPECT_EQ(mox_file_stream_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_file_stream_free(nullptr), 0);
    EXPECT_EQ(mox_file_stream_cache_size(nullptr, 4), 0);
    EXPECT_EQ(mox_file_stream_write(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_file_stream_write(&stream, nullptr, 1), 0);
    EXPECT_EQ(mox_file_stream_read(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_file_stream_read(&stream, nullptr, 1), 0);
    EXPECT_EQ(mox_file_stream_peek(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_file_stream_peek(&stream, nullptr, 1), 0);
    EXPECT_EQ(mox_file_stream_flush(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(StreamTest, NewAndFreeReleaseTheCache) {
    mox_file_stream* made = nullptr;
    ASSERT_EQ(mox_file_stream_new(&made, nullptr), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_FILE_STREAM_CLASS_ID);
    ASSERT_EQ(mox_file_stream_cache_size(made, 16), 1);
    EXPECT_EQ(mox_file_stream_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(mox_file_stream_free(&made), 0);
}

TEST_F(StreamTest, CacheSizeResetsCountsAndKeepsFilled) {
    stream.cache_position = 3;
    stream.cache_filled = 7;
    EXPECT_EQ(mox_file_stream_cache_size(&stream, 8), 1);
    EXPECT_EQ(stream.cache_size, 8u);
    EXPECT_EQ(stream.cache_position, 0u);
    EXPECT_EQ(stream.cache_filled, 7u);
    ASSERT_NE(stream.cache, nullptr);
    EXPECT_EQ(mox_file_stream_cache_size(&stream, 0), 1);
    EXPECT_EQ(stream.cache, nullptr);
    EXPECT_EQ(stream.cache_size, 0u);
    // Releasing a cache that isn't there is the failed release of the memory entries.
    EXPECT_EQ(mox_file_stream_cache_size(&stream, 0), 0);
}

TEST_F(StreamTest, WriteStaysInTheCacheUntilFlush) {
    open_with("", 8);
    ASSERT_EQ(mox_file_stream_write(&stream, "abc", 3), 1);
    EXPECT_EQ(stream.cache_position, 3u);
    EXPECT_EQ(disc(), "");
    EXPECT_EQ(file.position, 0u);
    ASSERT_EQ(mox_file_stream_flush(&stream), 1);
    EXPECT_EQ(stream.cache_position, 0u);
    EXPECT_EQ(disc(), "abc");
    EXPECT_EQ(file.position, 3u);
}

TEST_F(StreamTest, FlushWithNothingPendingIsTrue) {
    open_with("xyz", 4);
    ErrorListener listener;
    EXPECT_EQ(mox_file_stream_flush(&stream), 1);
    EXPECT_EQ(disc(), "xyz");
    EXPECT_TRUE(listener.silent());
}

TEST_F(StreamTest, AWriteOfTheCacheSizeLeavesItFullAndUnwritten) {
    open_with("", 4);
    ASSERT_EQ(mox_file_stream_write(&stream, "abcd", 4), 1);
    EXPECT_EQ(stream.cache_position, 4u);
    EXPECT_EQ(disc(), "");
    // The next byte sends the full cache out first.
    ASSERT_EQ(mox_file_stream_write(&stream, "e", 1), 1);
    EXPECT_EQ(disc(), "abcd");
    EXPECT_EQ(stream.cache_position, 1u);
    ASSERT_EQ(mox_file_stream_write(&stream, "fghijk", 6), 1);
    EXPECT_EQ(disc(), "abcdefgh");
    EXPECT_EQ(stream.cache_position, 3u);
    ASSERT_EQ(mox_file_stream_flush(&stream), 1);
    EXPECT_EQ(disc(), "abcdefghijk");
}

TEST_F(StreamTest, AShortWriteGivesFalse) {
    open_with("", 2);
    mox_file_close(&file);
    ASSERT_EQ(mox_file_open(&file, folder.library_path("s.txt").c_str(), MOX_FILE_READ), 1);
    ASSERT_EQ(mox_file_stream_write(&stream, "ab", 2), 1);
    EXPECT_EQ(mox_file_stream_write(&stream, "c", 1), 0);
    // The failed send counts the cache as emptied.
    EXPECT_EQ(stream.cache_position, 0u);
    ASSERT_EQ(mox_file_stream_write(&stream, "d", 1), 1);
    EXPECT_EQ(mox_file_stream_flush(&stream), 0);
    EXPECT_EQ(stream.cache_position, 1u);
}

TEST_F(StreamTest, DestructDropsPendingBytes) {
    open_with("", 8);
    ASSERT_EQ(mox_file_stream_write(&stream, "abc", 3), 1);
    EXPECT_EQ(mox_file_stream_destruct(&stream), 1);
    EXPECT_EQ(stream.cache, nullptr);
    EXPECT_EQ(disc(), "");
    EXPECT_EQ(stream.file, &file);
}

TEST_F(StreamTest, ReadAcrossRefills) {
    open_with("0123456789", 4);
    EXPECT_EQ(read(3), "012");
    EXPECT_EQ(stream.cache_filled, 4u);
    EXPECT_EQ(stream.cache_position, 3u);
    EXPECT_EQ(file.position, 4u);
    EXPECT_EQ(read(6), "345678");
    EXPECT_EQ(stream.cache_filled, 2u);
    EXPECT_EQ(stream.cache_position, 1u);
    EXPECT_EQ(file.position, 10u);
    EXPECT_EQ(read(1), "9");
    EXPECT_EQ(stream.cache_filled, 2u);
    EXPECT_EQ(stream.cache_position, 2u);
}

TEST_F(StreamTest, ReadOnEmptyFileIsFalse) {
    open_with("", 4);
    char byte = 'x';
    EXPECT_EQ(mox_file_stream_read(&stream, &byte, 1), 0);
    EXPECT_EQ(stream.cache_filled, 0u);
    EXPECT_EQ(byte, 'x');
}

// Intended: past the end the first byte of the cache comes again for every byte.
TEST_F(StreamTest, ReadPastTheEndRepeatsTheFirstCachedByte) {
    open_with("abcdef", 4);
    EXPECT_EQ(read(6), "abcdef");
    // The cache holds "efcd" now: the second block over the first.
    EXPECT_EQ(read(3), "eee");
    EXPECT_EQ(stream.cache_filled, 0u);
    EXPECT_EQ(read(2), "ee");
    EXPECT_EQ(file.position, 6u);
}

TEST_F(StreamTest, ReadWhenTheFileIsAlreadyAtItsEnd) {
    open_with("wxyz", 4);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 4), 1);
    // Fresh cache of zeroes, nothing read: the zero byte at the start of the cache comes out.
    EXPECT_EQ(read(2), std::string(2, '\0'));
    EXPECT_EQ(stream.cache_filled, 0u);
}

TEST_F(StreamTest, PeekThenReadInsideTheBlockGiveTheSameBytes) {
    open_with("0123456789", 8);
    EXPECT_EQ(read(2), "01");
    char peeked[3];
    ASSERT_EQ(mox_file_stream_peek(&stream, peeked, 3), 1);
    EXPECT_EQ(std::string(peeked, 3), "234");
    EXPECT_EQ(stream.cache_position, 2u);
    EXPECT_EQ(stream.cache_filled, 8u);
    EXPECT_EQ(file.position, 8u);
    EXPECT_EQ(read(3), "234");
}

TEST_F(StreamTest, PeekOnAFreshStreamRestoresTheFilePosition) {
    open_with("0123456789", 4);
    char peeked[2];
    ASSERT_EQ(mox_file_stream_peek(&stream, peeked, 2), 1);
    EXPECT_EQ(std::string(peeked, 2), "01");
    EXPECT_EQ(stream.cache_filled, 0u);
    EXPECT_EQ(stream.cache_position, 0u);
    EXPECT_EQ(file.position, 0u);
    EXPECT_EQ(read(5), "01234");
}

// Intended: the peek puts the indexes back but not the cache, so after a peek across a block
// boundary the read takes the new block's bytes at the old index.
TEST_F(StreamTest, PeekAcrossABlockLeavesTheNewBlockUnderTheOldIndexes) {
    open_with("ABCDEFGHIJ", 4);
    EXPECT_EQ(read(2), "AB");
    char peeked[4];
    ASSERT_EQ(mox_file_stream_peek(&stream, peeked, 4), 1);
    EXPECT_EQ(std::string(peeked, 4), "CDEF");
    EXPECT_EQ(stream.cache_position, 2u);
    EXPECT_EQ(stream.cache_filled, 4u);
    EXPECT_EQ(file.position, 4u);
    // The cache holds "EFGH", the indexes still say "the third byte of the first block".
    EXPECT_EQ(read(4), "GHEF");
}

TEST_F(StreamTest, PeekWithoutAFileIsFalse) {
    stream.file = nullptr;
    ASSERT_EQ(mox_file_stream_cache_size(&stream, 4), 1);
    char byte;
    ErrorListener listener;
    EXPECT_EQ(mox_file_stream_peek(&stream, &byte, 1), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(StreamTest, WriteThenReadBackAfterRewind) {
    open_with("", 3);
    std::string text = "the quick brown fox";
    ASSERT_EQ(mox_file_stream_write(&stream, text.data(), static_cast<uint32_t>(text.size())), 1);
    ASSERT_EQ(mox_file_stream_flush(&stream), 1);
    EXPECT_EQ(disc(), text);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    stream.cache_filled = 0;
    stream.cache_position = 0;
    EXPECT_EQ(read(static_cast<uint32_t>(text.size())), text);
}

TEST_F(StreamTest, ByteByByteReadsRefillOncePerBlock) {
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text.push_back(static_cast<char>('a' + i % 26));
    open_with(text, 256);
    std::string got;
    for (int i = 0; i < 300; ++i)
        got += read(1);
    EXPECT_EQ(got, text.substr(0, 300));
    // Two blocks were fetched for three hundred bytes.
    EXPECT_EQ(file.position, 512u);
    EXPECT_EQ(stream.cache_position, 300u - 256u);
}

TEST_F(StreamTest, ByteByByteWritesGoOutOncePerBlock) {
    open_with("", 64);
    for (int i = 0; i < 100; ++i) {
        char byte = static_cast<char>('0' + i % 10);
        ASSERT_EQ(mox_file_stream_write(&stream, &byte, 1), 1);
    }
    EXPECT_EQ(file.position, 64u);
    EXPECT_EQ(disc().size(), 64u);
    ASSERT_EQ(mox_file_stream_flush(&stream), 1);
    EXPECT_EQ(file.position, 100u);
    EXPECT_EQ(disc().substr(90), "0123456789");
}

// A stream whose cache was never sized has nowhere to keep a byte.
TEST_F(StreamTest, WithoutACacheReadAndWriteFail) {
    write_text(folder.file("s.txt"), "abc");
    ASSERT_EQ(mox_file_open(&file, folder.library_path("s.txt").c_str(), kReadWrite), 1);
    char byte = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_file_stream_write(&stream, "x", 1), 0);
    EXPECT_EQ(mox_file_stream_read(&stream, &byte, 1), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(file.position, 0u);
}
