#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/error_listener.h"
#include "support/temp_folder.h"

using mox_test::ErrorListener;
using mox_test::read_bytes;
using mox_test::read_text;
using mox_test::TempFolder;
using mox_test::write_text;

namespace {

const std::vector<std::string> kParams{"core.params"};
constexpr uint32_t kReadWrite = MOX_FILE_READ | MOX_FILE_WRITE;
constexpr uint32_t kShareBoth = MOX_FILE_SHARE_READ | MOX_FILE_SHARE_WRITE;
// Open for reading and writing, and shared for reading, so that the test may look at the disc
// meanwhile (Windows refuses that look to a file opened without sharing).
constexpr uint32_t kReadWriteLookable = kReadWrite | MOX_FILE_SHARE_READ;

struct FileTest : ::testing::Test {
    TempFolder folder;
    mox_file file{};
    void SetUp() override { ASSERT_EQ(mox_file_construct(&file, nullptr), 1); }
    void TearDown() override { mox_file_destruct(&file); }
    // Opens `name` in the folder, after writing `text` into it.
    bool open_with(const std::string& name, const std::string& text, uint32_t mode) {
        write_text(folder.file(name), text);
        return mox_file_open(&file, folder.library_path(name).c_str(), mode) == 1;
    }
};

} // namespace

TEST_F(FileTest, ConstructSetsClosedHandleAndZeroes) {
    mox_file other;
    std::memset(&other, 0xAB, sizeof other);
    int owner = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_file_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.class_id, 0x72162BC1u);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.flags, 0u);
    EXPECT_EQ(other.handle, MOX_FILE_CLOSED);
    EXPECT_EQ(other.handle, static_cast<uintptr_t>(-1));
    EXPECT_EQ(other.mode, 0u);
    EXPECT_EQ(other.position, 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileTest, NullArgumentsPostParams) {
    ErrorListener listener;
    uint32_t size32 = 0;
    uint64_t size64 = 0;
    uint8_t byte = 0;
    EXPECT_EQ(mox_file_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_file_destruct(nullptr), 0);
    EXPECT_EQ(mox_file_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_file_free(nullptr), 0);
    EXPECT_EQ(mox_file_open(nullptr, "x", MOX_FILE_READ), 0);
    EXPECT_EQ(mox_file_close(nullptr), 0);
    EXPECT_EQ(mox_file_get_size_u32(nullptr, &size32), 0);
    EXPECT_EQ(mox_file_get_size_u32(&file, nullptr), 0);
    EXPECT_EQ(mox_file_get_size_u64(nullptr, &size64), 0);
    EXPECT_EQ(mox_file_get_size_u64(&file, nullptr), 0);
    EXPECT_EQ(mox_file_set_eof(nullptr), 0);
    EXPECT_EQ(mox_file_set_pointer_u32(nullptr, 0), 0);
    EXPECT_EQ(mox_file_set_pointer_u64(nullptr, 0), 0);
    EXPECT_EQ(mox_file_write(nullptr, &byte, 1), 0u);
    EXPECT_EQ(mox_file_write(&file, nullptr, 1), 0u);
    EXPECT_EQ(mox_file_read(nullptr, &byte, 1), 0u);
    EXPECT_EQ(mox_file_read(&file, nullptr, 1), 0u);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(17, "core.params"));
}

TEST_F(FileTest, NewAndFree) {
    mox_file* made = nullptr;
    ASSERT_EQ(mox_file_new(&made, &file), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_FILE_CLASS_ID);
    EXPECT_EQ(made->header.owner, &file);
    EXPECT_EQ(made->handle, MOX_FILE_CLOSED);
    write_text(folder.file("a.bin"), "abc");
    ASSERT_EQ(mox_file_open(made, folder.library_path("a.bin").c_str(), MOX_FILE_READ), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_file_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_TRUE(listener.silent());
    // The handle was closed by free: an opener that shares nothing gets in.
    ASSERT_EQ(mox_file_open(&file, folder.library_path("a.bin").c_str(), kReadWrite), 1);
}

TEST_F(FileTest, FreeOfEmptySlotPostsAndFails) {
    mox_file* made = nullptr;
    ErrorListener listener;
    EXPECT_EQ(mox_file_free(&made), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST_F(FileTest, OpenOfMissingFileFailsSilentlyAndCreatesNothing) {
    ErrorListener listener;
    EXPECT_EQ(mox_file_open(&file, folder.library_path("missing.txt").c_str(), kReadWrite), 0);
    EXPECT_EQ(file.handle, MOX_FILE_CLOSED);
    EXPECT_TRUE(listener.silent());
    EXPECT_FALSE(std::filesystem::exists(folder.file("missing.txt")));
}

TEST_F(FileTest, OpenWithNullNameFailsSilently) {
    ErrorListener listener;
    EXPECT_EQ(mox_file_open(&file, nullptr, MOX_FILE_READ), 0);
    EXPECT_EQ(file.handle, MOX_FILE_CLOSED);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileTest, FailedOpenKeepsModeAndPositionButClosesTheOldHandle) {
    ASSERT_TRUE(open_with("a.txt", "hello", MOX_FILE_READ));
    uint8_t bytes[3];
    ASSERT_EQ(mox_file_read(&file, bytes, 3), 3u);
    EXPECT_EQ(mox_file_open(&file, folder.library_path("none").c_str(), kReadWrite), 0);
    EXPECT_EQ(file.handle, MOX_FILE_CLOSED);
    EXPECT_EQ(file.mode, MOX_FILE_READ);
    EXPECT_EQ(file.position, 3u);
    // The old handle is gone: an exclusive opener gets in.
    mox_file other;
    mox_file_construct(&other, nullptr);
    EXPECT_EQ(mox_file_open(&other, folder.library_path("a.txt").c_str(), kReadWrite), 1);
    mox_file_destruct(&other);
}

TEST_F(FileTest, OpenStoresModeAndResetsPosition) {
    ASSERT_TRUE(open_with("a.txt", "hello", MOX_FILE_READ | MOX_FILE_SHARE_READ));
    EXPECT_NE(file.handle, MOX_FILE_CLOSED);
    EXPECT_EQ(file.mode, MOX_FILE_READ | MOX_FILE_SHARE_READ);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 4), 1);
    EXPECT_EQ(file.position, 4u);
    ASSERT_EQ(mox_file_open(&file, folder.library_path("a.txt").c_str(), kReadWrite), 1);
    EXPECT_EQ(file.position, 0u);
    EXPECT_EQ(file.mode, kReadWrite);
    char text[5];
    EXPECT_EQ(mox_file_read(&file, text, 5), 5u);
    EXPECT_EQ(std::string(text, 5), "hello");
}

TEST_F(FileTest, BackslashesAreFolderSeparators) {
    ASSERT_TRUE(std::filesystem::create_directory(folder.file("sub")));
    write_text(folder.file("sub/inner.txt"), "xyz");
    std::string name = folder.library_path("sub") + "\\inner.txt";
    ASSERT_EQ(mox_file_open(&file, name.c_str(), MOX_FILE_READ), 1);
    char text[3];
    EXPECT_EQ(mox_file_read(&file, text, 3), 3u);
    EXPECT_EQ(std::string(text, 3), "xyz");
}

TEST_F(FileTest, AFolderIsNotAFile) {
    ASSERT_TRUE(std::filesystem::create_directory(folder.file("sub")));
    EXPECT_EQ(mox_file_open(&file, folder.library_path("sub").c_str(), MOX_FILE_READ), 0);
}

TEST_F(FileTest, CloseTwiceIsTrueAndKeepsPosition) {
    ASSERT_TRUE(open_with("a.txt", "hello", MOX_FILE_READ));
    uint8_t bytes[2];
    ASSERT_EQ(mox_file_read(&file, bytes, 2), 2u);
    ErrorListener listener;
    EXPECT_EQ(mox_file_close(&file), 1);
    EXPECT_EQ(file.handle, MOX_FILE_CLOSED);
    EXPECT_EQ(file.position, 2u);
    EXPECT_EQ(mox_file_close(&file), 1);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileTest, ReadCountsAndEndOfFile) {
    ASSERT_TRUE(open_with("a.txt", "0123456789abcd", MOX_FILE_READ));
    char buffer[10] = {};
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 10), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_file_read(&file, buffer, 10), 4u);
    EXPECT_EQ(std::string(buffer, 4), "abcd");
    EXPECT_EQ(file.position, 14u);
    EXPECT_EQ(mox_file_read(&file, buffer, 10), 0u);
    EXPECT_EQ(file.position, 14u);
    EXPECT_EQ(mox_file_read(&file, buffer, 0), 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileTest, WriteGoesToDiscAtThePosition) {
    ASSERT_TRUE(open_with("a.txt", "abcdef", kReadWriteLookable));
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 2), 1);
    EXPECT_EQ(mox_file_write(&file, "XYZ", 3), 3u);
    EXPECT_EQ(file.position, 5u);
    EXPECT_EQ(mox_file_write(&file, "12", 2), 2u);
    EXPECT_EQ(file.position, 7u);
    EXPECT_EQ(read_text(folder.file("a.txt")), "abXYZ12");
}

TEST_F(FileTest, AccessComesFromTheModeBits) {
    ASSERT_TRUE(open_with("a.txt", "abc", MOX_FILE_READ));
    EXPECT_EQ(mox_file_write(&file, "Z", 1), 0u);
    EXPECT_EQ(file.position, 0u);
    EXPECT_EQ(mox_file_set_eof(&file), 0);
    ASSERT_EQ(
        mox_file_open(&file, folder.library_path("a.txt").c_str(), MOX_FILE_WRITE | MOX_FILE_SHARE_READ), 1);
    char byte = 0;
    EXPECT_EQ(mox_file_read(&file, &byte, 1), 0u);
    EXPECT_EQ(mox_file_write(&file, "Z", 1), 1u);
    EXPECT_EQ(read_text(folder.file("a.txt")), "Zbc");
    // Neither bit: the file opens, and neither reads nor writes.
    ASSERT_EQ(mox_file_open(&file, folder.library_path("a.txt").c_str(), 0), 1);
    EXPECT_EQ(mox_file_read(&file, &byte, 1), 0u);
    EXPECT_EQ(mox_file_write(&file, "Q", 1), 0u);
    uint32_t size = 0;
    EXPECT_EQ(mox_file_get_size_u32(&file, &size), 1);
    EXPECT_EQ(size, 3u);
}

TEST_F(FileTest, AnOpenerThatSharesNoWritingRefusesASecondWriter) {
    ASSERT_TRUE(open_with("a.txt", "abc", MOX_FILE_READ | MOX_FILE_SHARE_READ));
    mox_file other;
    mox_file_construct(&other, nullptr);
    std::string name = folder.library_path("a.txt");
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_WRITE | kShareBoth), 0);
    // A reader is still welcome.
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_READ | kShareBoth), 1);
    mox_file_destruct(&other);
}

TEST_F(FileTest, ShareModesDecideWhoMayOpen) {
    std::string name;
    write_text(folder.file("a.txt"), "abc");
    name = folder.library_path("a.txt");
    mox_file other;
    mox_file_construct(&other, nullptr);

    // Reading shared with readers only: a second reader gets in, a second writer does not.
    ASSERT_EQ(mox_file_open(&file, name.c_str(), MOX_FILE_READ | MOX_FILE_SHARE_READ), 1);
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_READ | MOX_FILE_SHARE_READ), 1);
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_WRITE | MOX_FILE_SHARE_READ), 0);
    mox_file_close(&other);

    // An opener that shares writing lets a second writer in.
    ASSERT_EQ(mox_file_open(&file, name.c_str(), kReadWrite | kShareBoth), 1);
    EXPECT_EQ(mox_file_open(&other, name.c_str(), kReadWrite | kShareBoth), 1);
    mox_file_close(&other);
    // But not one that refuses to share writing with the first.
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_READ | MOX_FILE_SHARE_READ), 0);

    // Sharing nothing: nobody else gets in with read or write access.
    ASSERT_EQ(mox_file_open(&file, name.c_str(), MOX_FILE_READ), 1);
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_READ | kShareBoth), 0);
    mox_file_close(&file);
    EXPECT_EQ(mox_file_open(&other, name.c_str(), MOX_FILE_READ | kShareBoth), 1);
    mox_file_destruct(&other);
}

TEST_F(FileTest, GetSizeOfClosedFileIsTrueWithAllOnes) {
    uint32_t size32 = 0;
    uint64_t size64 = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_file_get_size_u32(&file, &size32), 1);
    EXPECT_EQ(size32, 0xFFFFFFFFu);
    EXPECT_EQ(mox_file_get_size_u64(&file, &size64), 1);
    EXPECT_EQ(size64, 0xFFFFFFFFull);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileTest, GetSizeOfOpenFile) {
    ASSERT_TRUE(open_with("a.txt", "0123456789", MOX_FILE_READ));
    uint32_t size32 = 0;
    uint64_t size64 = 0;
    EXPECT_EQ(mox_file_get_size_u32(&file, &size32), 1);
    EXPECT_EQ(size32, 10u);
    EXPECT_EQ(mox_file_get_size_u64(&file, &size64), 1);
    EXPECT_EQ(size64, 10u);
}

TEST_F(FileTest, SetEofCutsAndExtendsAtThePosition) {
    ASSERT_TRUE(open_with("a.txt", "0123456789", kReadWriteLookable));
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 4), 1);
    EXPECT_EQ(mox_file_set_eof(&file), 1);
    EXPECT_EQ(read_text(folder.file("a.txt")), "0123");
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 6), 1);
    EXPECT_EQ(mox_file_set_eof(&file), 1);
    EXPECT_EQ(read_bytes(folder.file("a.txt")), (std::vector<uint8_t>{'0', '1', '2', '3', 0, 0}));
    mox_file_close(&file);
    EXPECT_EQ(mox_file_set_eof(&file), 0);
}

TEST_F(FileTest, SetPointerU32ClearsTheHighWord) {
    ASSERT_TRUE(open_with("a.txt", "0123456789", kReadWrite));
    ASSERT_EQ(mox_file_set_pointer_u64(&file, 0x100000005ull), 1);
    EXPECT_EQ(file.position, 0x100000005ull);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 3), 1);
    EXPECT_EQ(file.position, 3u);
    char byte = 0;
    ASSERT_EQ(mox_file_read(&file, &byte, 1), 1u);
    EXPECT_EQ(byte, '3');
}

// Intended: the 32-bit entry hands its position over as a signed distance, so from 2 GiB up it is
// a seek in front of the start, which fails and keeps `position`.
TEST_F(FileTest, SetPointerU32FromTwoGibibytesFails) {
    ASSERT_TRUE(open_with("a.txt", "0123456789", kReadWrite));
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 7), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_file_set_pointer_u32(&file, 0x80000000u), 0);
    EXPECT_EQ(file.position, 7u);
    EXPECT_EQ(mox_file_set_pointer_u32(&file, 0x7FFFFFFFu), 1);
    EXPECT_EQ(file.position, 0x7FFFFFFFu);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileTest, SetPointerOnClosedFileFails) {
    file.position = 9;
    EXPECT_EQ(mox_file_set_pointer_u32(&file, 1), 0);
    EXPECT_EQ(mox_file_set_pointer_u64(&file, 1), 0);
    EXPECT_EQ(file.position, 9u);
}

// Intended: a low word of all ones is the system's failure value, so the move reads as failed.
TEST_F(FileTest, SetPointerU64WithLowWordAllOnesReportsFalse) {
    ASSERT_TRUE(open_with("a.txt", "0123456789", kReadWrite));
    EXPECT_EQ(mox_file_set_pointer_u64(&file, 0x1FFFFFFFFull), 0);
    EXPECT_EQ(file.position, 0u);
}

TEST_F(FileTest, FilesBeyondFourGibibytesWorkThroughTheWideEntries) {
    ASSERT_TRUE(open_with("big.bin", "head", kReadWrite));
    const uint64_t far = 0x140000000ull; // 5 GiB
    ASSERT_EQ(mox_file_set_pointer_u64(&file, far), 1);
    EXPECT_EQ(file.position, far);
    ASSERT_EQ(mox_file_set_eof(&file), 1);
    uint64_t size64 = 0;
    uint32_t size32 = 0;
    EXPECT_EQ(mox_file_get_size_u64(&file, &size64), 1);
    EXPECT_EQ(size64, far);
    EXPECT_EQ(mox_file_get_size_u32(&file, &size32), 1);
    EXPECT_EQ(size32, 0x40000000u); // the low word only
    EXPECT_EQ(mox_file_write(&file, "tail", 4), 4u);
    EXPECT_EQ(file.position, far + 4);
    ASSERT_EQ(mox_file_set_pointer_u64(&file, far + 1), 1);
    char text[3] = {};
    EXPECT_EQ(mox_file_read(&file, text, 3), 3u);
    EXPECT_EQ(std::string(text, 3), "ail");
    EXPECT_EQ(file.position, far + 4);
    EXPECT_EQ(std::filesystem::file_size(folder.file("big.bin")), far + 4);
    ASSERT_EQ(mox_file_set_pointer_u64(&file, 0), 1);
    EXPECT_EQ(mox_file_read(&file, text, 3), 3u);
    EXPECT_EQ(std::string(text, 3), "hea");
}

TEST_F(FileTest, DestructClosesTheHandle) {
    ASSERT_TRUE(open_with("a.txt", "abc", MOX_FILE_READ));
    EXPECT_EQ(mox_file_destruct(&file), 1);
    EXPECT_EQ(file.handle, MOX_FILE_CLOSED);
    mox_file other;
    mox_file_construct(&other, nullptr);
    EXPECT_EQ(mox_file_open(&other, folder.library_path("a.txt").c_str(), kReadWrite), 1);
    mox_file_destruct(&other);
    mox_file_construct(&file, nullptr);
}

TEST_F(FileTest, ShareModesHoldAgainstAnotherProcess) {
    ASSERT_TRUE(open_with("a.txt", "abc", MOX_FILE_READ | MOX_FILE_SHARE_READ));
    std::string name = folder.library_path("a.txt");
    // The child reports by its exit status: 0 refused as a writer and let in as a reader.
    auto outcome = mox_test::run_in_child([&] {
        mox_file other;
        mox_file_construct(&other, nullptr);
        if (mox_file_open(&other, name.c_str(), MOX_FILE_WRITE | kShareBoth) != 0)
            std::_Exit(3);
        if (mox_file_open(&other, name.c_str(), MOX_FILE_READ | kShareBoth) != 1)
            std::_Exit(4);
        mox_file_destruct(&other);
    });
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    mox_file_close(&file);
    auto after = mox_test::run_in_child([&] {
        mox_file other;
        mox_file_construct(&other, nullptr);
        if (mox_file_open(&other, name.c_str(), MOX_FILE_WRITE | kShareBoth) != 1)
            std::_Exit(5);
        mox_file_destruct(&other);
    });
    EXPECT_TRUE(after.exited);
    EXPECT_EQ(after.status, 0) << after.output;
}
