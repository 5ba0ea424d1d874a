#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/temp_folder.h"

using mox_test::ErrorListener;
using mox_test::read_bytes;
using mox_test::read_text;
using mox_test::TempFolder;
using mox_test::write_bytes;
using mox_test::write_text;

namespace {

const std::vector<std::string> kParams{"core.params"};
// Shared for reading, so that the test may look at the disc while the file is open (Windows refuses
// that look to a file opened without sharing).
constexpr uint32_t kReadWrite = MOX_FILE_READ | MOX_FILE_WRITE | MOX_FILE_SHARE_READ;

struct MapTest : ::testing::Test {
    TempFolder folder;
    mox_file file{};
    mox_file_map map{};
    void SetUp() override {
        ASSERT_EQ(mox_file_construct(&file, nullptr), 1);
        ASSERT_EQ(mox_file_map_construct(&map, nullptr), 1);
    }
    void TearDown() override {
        mox_file_map_destruct(&map);
        mox_file_destruct(&file);
    }
    void open_with(const std::string& text, uint32_t mode) {
        write_text(folder.file("m.bin"), text);
        ASSERT_EQ(mox_file_open(&file, folder.library_path("m.bin").c_str(), mode), 1);
    }
    std::string disc() const { return read_text(folder.file("m.bin")); }
};

} // namespace

TEST_F(MapTest, ConstructZeroesEveryField) {
    mox_file_map other;
    std::memset(&other, 0x77, sizeof other);
    EXPECT_EQ(mox_file_map_construct(&other, &file), 1);
    EXPECT_EQ(other.header.class_id, 0x86BC36E4u);
    EXPECT_EQ(other.header.owner, &file);
    EXPECT_EQ(other.handle, 0u);
    EXPECT_EQ(other.mode, 0u);
    EXPECT_EQ(other.view, nullptr);
}

TEST_F(MapTest, NullArgumentsPostParams) {
    ErrorListener listener;
    EXPECT_EQ(mox_file_map_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_file_map_destruct(nullptr), 0);
    EXPECT_EQ(mox_file_map_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_file_map_free(nullptr), 0);
    EXPECT_EQ(mox_file_map_open(nullptr, &file, MOX_FILE_MAP_READ), 0);
    EXPECT_EQ(mox_file_map_open(&map, nullptr, MOX_FILE_MAP_READ), 0);
    EXPECT_EQ(mox_file_map_view_u32(nullptr, 0, 0), 0);
    EXPECT_EQ(mox_file_map_view_u64(nullptr, 0, 0), 0);
    EXPECT_EQ(mox_file_map_flush(nullptr, 0, 0), 0);
    EXPECT_EQ(mox_file_map_close(nullptr), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(10, "core.params"));
}

TEST_F(MapTest, NewAndFree) {
    mox_file_map* made = nullptr;
    ASSERT_EQ(mox_file_map_new(&made, &file), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_FILE_MAP_CLASS_ID);
    EXPECT_EQ(made->header.owner, &file);
    open_with("abcdef", MOX_FILE_READ);
    ASSERT_EQ(mox_file_map_open(made, &file, MOX_FILE_MAP_READ), 1);
    ASSERT_EQ(mox_file_map_view_u32(made, 0, 0), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_file_map_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_file_map_free(&made), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST_F(MapTest, CloseOnAFreshObjectIsTrue) {
    ErrorListener listener;
    EXPECT_EQ(mox_file_map_close(&map), 1);
    EXPECT_TRUE(listener.silent());
}

TEST_F(MapTest, ReadViewShowsTheFile) {
    open_with("hello, map", MOX_FILE_READ);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 1);
    EXPECT_NE(map.handle, 0u);
    EXPECT_EQ(map.mode, MOX_FILE_MAP_READ);
    EXPECT_EQ(map.view, nullptr);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 0), 1);
    ASSERT_NE(map.view, nullptr);
    EXPECT_EQ(std::string(static_cast<const char*>(map.view), 10), "hello, map");
    EXPECT_EQ(mox_file_map_close(&map), 1);
    EXPECT_EQ(map.view, nullptr);
    EXPECT_EQ(map.handle, 0u);
}

TEST_F(MapTest, WriteViewChangesTheFileAndFlushes) {
    open_with("abcdefgh", kReadWrite);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ | MOX_FILE_MAP_WRITE), 1);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 8), 1);
    std::memcpy(static_cast<char*>(map.view) + 2, "XY", 2);
    EXPECT_EQ(mox_file_map_flush(&map, 2, 2), 1);
    EXPECT_EQ(disc(), "abXYefgh");
    // Size 0 flushes to the end of the view.
    static_cast<char*>(map.view)[7] = 'Z';
    EXPECT_EQ(mox_file_map_flush(&map, 0, 0), 1);
    EXPECT_EQ(disc(), "abXYefgZ");
}

// Intended: only the low word of the offset counts in a flush.
TEST_F(MapTest, FlushIgnoresTheHighWordOfTheOffset) {
    open_with("abcdefgh", kReadWrite);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_WRITE), 1);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 0), 1);
    EXPECT_EQ(mox_file_map_flush(&map, 0x700000004ull, 1), 1);
#if defined(_WIN32)
    // Windows maps whole pages and flushes whatever lies in the mapped page.
    EXPECT_EQ(mox_file_map_flush(&map, 0, 9), 1);
    EXPECT_EQ(mox_file_map_flush(&map, 8, 1), 1);
#else
    // Out of the view: false.
    EXPECT_EQ(mox_file_map_flush(&map, 0, 9), 0);
    EXPECT_EQ(mox_file_map_flush(&map, 8, 1), 0);
#endif
}

TEST_F(MapTest, FlushWithoutAViewIsFalse) {
    ErrorListener listener;
    EXPECT_EQ(mox_file_map_flush(&map, 0, 4), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(MapTest, AReadOnlyFileCannotBeMappedForWriting) {
    open_with("abcdefgh", MOX_FILE_READ);
    ErrorListener listener;
    EXPECT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_WRITE), 0);
    EXPECT_EQ(map.handle, 0u);
    EXPECT_EQ(map.mode, 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(MapTest, AClosedOrEmptyFileCannotBeMapped) {
    EXPECT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 0);
    open_with("", kReadWrite);
    EXPECT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 0);
}

TEST_F(MapTest, ModeWithoutReadOrWriteGivesNoProtectionAndFails) {
    open_with("abc", kReadWrite);
    EXPECT_EQ(mox_file_map_open(&map, &file, 0), 0);
}

// This library's files never ask for execute access, so an executable mapping is refused.
TEST_F(MapTest, ExecuteMappingsAreRefused) {
    open_with("abc", kReadWrite);
    EXPECT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_EXECUTE | MOX_FILE_MAP_READ), 0);
    EXPECT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_EXECUTE | MOX_FILE_MAP_WRITE), 0);
    EXPECT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_EXECUTE), 0);
}

TEST_F(MapTest, TheMappingOutlivesTheFile) {
    open_with("persist", MOX_FILE_READ);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 1);
    mox_file_close(&file);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 7), 1);
    EXPECT_EQ(std::string(static_cast<const char*>(map.view), 7), "persist");
}

TEST_F(MapTest, ViewAtAnOffsetOfSixtyFourKibibytes) {
    std::vector<uint8_t> bytes(0x20000);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + (i >> 16));
    write_bytes(folder.file("m.bin"), bytes);
    ASSERT_EQ(mox_file_open(&file, folder.library_path("m.bin").c_str(), kReadWrite), 1);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ | MOX_FILE_MAP_WRITE), 1);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0x10000, 16), 1);
    EXPECT_EQ(std::memcmp(map.view, bytes.data() + 0x10000, 16), 0);
    ASSERT_EQ(mox_file_map_view_u64(&map, 0x10000, 0), 1);
    EXPECT_EQ(std::memcmp(map.view, bytes.data() + 0x10000, 0x10000), 0);
    static_cast<uint8_t*>(map.view)[3] = 0xEE;
    ASSERT_EQ(mox_file_map_flush(&map, 3, 1), 1);
    EXPECT_EQ(read_bytes(folder.file("m.bin"))[0x10003], 0xEE);
}

// Intended: a view that can't be had closes the mapping but leaves its stale handle in the record.
TEST_F(MapTest, AFailedViewClosesTheMappingAndKeepsTheStaleHandle) {
    open_with("abcdefgh", MOX_FILE_READ);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 1);
    uintptr_t handle = map.handle;
    ErrorListener listener;
    // Past the end of the mapping.
    EXPECT_EQ(mox_file_map_view_u32(&map, 0, 9), 0);
    EXPECT_EQ(map.view, nullptr);
    EXPECT_EQ(map.handle, handle);
    // The mapping is gone: a view that would fit fails too.
    EXPECT_EQ(mox_file_map_view_u32(&map, 0, 4), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(mox_file_map_close(&map), 1);
    EXPECT_EQ(map.handle, 0u);
}

TEST_F(MapTest, ViewsOffTheGranularityOrBeyondTheFileFail) {
    open_with(std::string(0x11000, 'q'), MOX_FILE_READ);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 1);
    EXPECT_EQ(mox_file_map_view_u32(&map, 0x1000, 4), 0);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 1);
    EXPECT_EQ(mox_file_map_view_u64(&map, 0x100000000ull, 4), 0);
}

TEST_F(MapTest, ANewViewReplacesTheOldAndOpenReplacesTheMapping) {
    open_with("abcdefgh", kReadWrite);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_READ), 1);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 4), 1);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 8), 1);
    EXPECT_EQ(std::string(static_cast<const char*>(map.view), 8), "abcdefgh");
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_WRITE), 1);
    EXPECT_EQ(map.view, nullptr);
    EXPECT_EQ(map.mode, MOX_FILE_MAP_WRITE);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 0), 1);
    static_cast<char*>(map.view)[0] = 'A';
    ASSERT_EQ(mox_file_map_flush(&map, 0, 1), 1);
    EXPECT_EQ(disc(), "Abcdefgh");
}

TEST_F(MapTest, DestructUnmapsAndClosesTheMapping) {
    open_with("abcdefgh", kReadWrite);
    ASSERT_EQ(mox_file_map_open(&map, &file, MOX_FILE_MAP_WRITE), 1);
    ASSERT_EQ(mox_file_map_view_u32(&map, 0, 0), 1);
    static_cast<char*>(map.view)[1] = 'B';
    EXPECT_EQ(mox_file_map_destruct(&map), 1);
    EXPECT_EQ(map.view, nullptr);
    EXPECT_EQ(map.handle, 0u);
    // The shared pages reach the file once they are unmapped.
    EXPECT_EQ(disc(), "aBcdefgh");
}
