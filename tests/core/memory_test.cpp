#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/child.h"
#include "support/error_listener.h"

using mox_test::ErrorListener;
using mox_test::run_in_child;

namespace {

const std::vector<std::string> kParams{"core.params"};

void** slot_of(uint8_t** pointer) { return reinterpret_cast<void**>(pointer); }

} // namespace

TEST(Memory, NewGivesAZeroFilledBlock) {
    uint8_t* block = reinterpret_cast<uint8_t*>(0x1);
    ASSERT_EQ(mox_memory_new(slot_of(&block), 4096), 1);
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 4096; ++i)
        ASSERT_EQ(block[i], 0) << i;
    EXPECT_EQ(mox_memory_free(slot_of(&block)), 1);
    EXPECT_EQ(block, nullptr);
}

TEST(Memory, NewOfZeroBytesGivesABlock) {
    uint8_t* block = nullptr;
    EXPECT_EQ(mox_memory_new(slot_of(&block), 0), 1);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(mox_memory_free(slot_of(&block)), 1);
}

TEST(Memory, NewIntoANullSlotPosts) {
    ErrorListener listener;
    EXPECT_EQ(mox_memory_new(nullptr, 4), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST(Memory, AFailedNewIsSilentAndStoresNull) {
    if (const char* reason = mox_test::why_allocations_cannot_be_made_to_fail())
        GTEST_SKIP() << reason;
    auto outcome = run_in_child([] {
        mox_test::limit_address_space();
        ErrorListener listener;
        uint8_t* block = reinterpret_cast<uint8_t*>(0x1);
        mox_bool result = mox_memory_new(slot_of(&block), 0xFFFFFFF0u);
        std::printf("result=%d null=%d silent=%d\n", result, block == nullptr, listener.silent());
    });
    EXPECT_NE(outcome.output.find("result=0 null=1 silent=1"), std::string::npos) << outcome.output;
}

TEST(Memory, FreeOfAnEmptySlotIsFalseAndSilent) {
    ErrorListener listener;
    uint8_t* block = nullptr;
    EXPECT_EQ(mox_memory_free(slot_of(&block)), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Memory, FreeOfANullSlotPosts) {
    ErrorListener listener;
    EXPECT_EQ(mox_memory_free(nullptr), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST(Memory, ResizeGrowsKeepingTheOldBytesAndZeroingTheNew) {
    uint8_t* block = nullptr;
    ASSERT_EQ(mox_memory_new(slot_of(&block), 8), 1);
    std::memset(block, 0xAB, 8);
    ASSERT_EQ(mox_memory_resize(slot_of(&block), 100000), 1);
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(block[i], 0xAB) << i;
    for (int i = 8; i < 100000; ++i)
        ASSERT_EQ(block[i], 0) << i;
    mox_memory_free(slot_of(&block));
}

TEST(Memory, ResizeShrinksThenGrowsWithZeroes) {
    uint8_t* block = nullptr;
    ASSERT_EQ(mox_memory_new(slot_of(&block), 16), 1);
    std::memset(block, 0xCD, 16);
    ASSERT_EQ(mox_memory_resize(slot_of(&block), 4), 1);
    ASSERT_EQ(mox_memory_resize(slot_of(&block), 16), 1);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(block[i], 0xCD) << i;
    for (int i = 4; i < 16; ++i)
        EXPECT_EQ(block[i], 0) << "bytes cut off and grown again come back zeroed: " << i;
    mox_memory_free(slot_of(&block));
}

TEST(Memory, ResizeToZeroFreesTheBlock) {
    uint8_t* block = nullptr;
    ASSERT_EQ(mox_memory_new(slot_of(&block), 16), 1);
    EXPECT_EQ(mox_memory_resize(slot_of(&block), 0), 1);
    EXPECT_EQ(block, nullptr);
    ErrorListener listener;
    EXPECT_EQ(mox_memory_resize(slot_of(&block), 0), 0) << "freeing an empty slot";
    EXPECT_TRUE(listener.silent());
}

TEST(Memory, ResizeOfAnEmptySlotAllocates) {
    uint8_t* block = nullptr;
    ASSERT_EQ(mox_memory_resize(slot_of(&block), 32), 1);
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(block[i], 0);
    mox_memory_free(slot_of(&block));
}

TEST(Memory, ResizeOfANullSlotPosts) {
    ErrorListener listener;
    EXPECT_EQ(mox_memory_resize(nullptr, 8), 0);
    EXPECT_EQ(listener.hints(), kParams);
}

TEST(Memory, AFailedResizeLosesTheBlockAndIsStillTrue) {
    if (const char* reason = mox_test::why_allocations_cannot_be_made_to_fail())
        GTEST_SKIP() << reason;
    auto outcome = run_in_child([] {
        uint8_t* block = nullptr;
        mox_memory_new(slot_of(&block), 16);
        mox_test::limit_address_space();
        ErrorListener listener;
        mox_bool result = mox_memory_resize(slot_of(&block), 0xFFFFFFF0u);
        std::printf("result=%d null=%d silent=%d\n", result, block == nullptr, listener.silent());
    });
    EXPECT_NE(outcome.output.find("result=1 null=1 silent=1"), std::string::npos) << outcome.output;
}

TEST(Memory, FillU8UsesTheLowByte) {
    uint8_t bytes[8] = {1, 1, 1, 1, 1, 1, 1, 1};
    EXPECT_EQ(mox_memory_fill_u8(bytes + 1, 0x1234, 5), 1);
    const uint8_t expected[8] = {1, 0x34, 0x34, 0x34, 0x34, 0x34, 1, 1};
    EXPECT_EQ(std::memcmp(bytes, expected, 8), 0);
    EXPECT_EQ(mox_memory_fill_u8(bytes, 0, 0), 1);
    EXPECT_EQ(bytes[0], 1);
}

TEST(Memory, FillU16WritesPairsThenTheOddOne) {
    uint16_t units[8] = {};
    EXPECT_EQ(mox_memory_fill_u16(units, 0xBEEF, 5), 1);
    const uint16_t expected[8] = {0xBEEF, 0xBEEF, 0xBEEF, 0xBEEF, 0xBEEF, 0, 0, 0};
    EXPECT_EQ(std::memcmp(units, expected, sizeof units), 0);
    uint16_t odd_start[5] = {};
    EXPECT_EQ(mox_memory_fill_u16(odd_start + 1, 0x0102, 3), 1) << "an address that is not word aligned";
    const uint16_t expected_odd[5] = {0, 0x0102, 0x0102, 0x0102, 0};
    EXPECT_EQ(std::memcmp(odd_start, expected_odd, sizeof odd_start), 0);
    EXPECT_EQ(mox_memory_fill_u16(units, 1, 0), 1);
    EXPECT_EQ(units[0], 0xBEEF);
}

TEST(Memory, FillU32FillsWords) {
    uint32_t words[4] = {};
    EXPECT_EQ(mox_memory_fill_u32(words, 0xA1B2C3D4, 3), 1);
    EXPECT_EQ(words[0], 0xA1B2C3D4u);
    EXPECT_EQ(words[2], 0xA1B2C3D4u);
    EXPECT_EQ(words[3], 0u);
    EXPECT_EQ(mox_memory_fill_u32(words, 0, 0), 1);
}

TEST(Memory, FillsOfNullPost) {
    ErrorListener listener;
    EXPECT_EQ(mox_memory_fill_u8(nullptr, 1, 1), 0);
    EXPECT_EQ(mox_memory_fill_u16(nullptr, 1, 1), 0);
    EXPECT_EQ(mox_memory_fill_u32(nullptr, 1, 1), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.params", "core.params", "core.params"}));
}

TEST(Memory, CopyCopiesAndIsFalse) {
    const char source[] = "abcdefg";
    char target[8] = {};
    ErrorListener listener;
    EXPECT_EQ(mox_memory_copy(target, source, 4), 0) << "false on the success path";
    EXPECT_EQ(std::memcmp(target, "abcd\0\0\0\0", 8), 0);
    EXPECT_EQ(mox_memory_copy(target, source, 7), 0) << "words and a three-byte tail";
    EXPECT_STREQ(target, "abcdefg");
    EXPECT_TRUE(listener.silent()) << "only a null argument posts";
}

TEST(Memory, CopyOfNullIsToldApartByItsHint) {
    ErrorListener listener;
    char byte = 0;
    EXPECT_EQ(mox_memory_copy(nullptr, &byte, 1), 0);
    EXPECT_EQ(mox_memory_copy(&byte, nullptr, 1), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.params", "core.params"}));
}

TEST(Memory, CopyGoesForwardInWordsOverAnOverlap) {
    // Forward by 32-bit words: each word is read after the word before it was written, which gives
    // neither what a byte loop nor what a move would give.
    uint8_t bytes[12] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0};
    mox_memory_copy(bytes + 2, bytes, 8);
    const uint8_t expected[12] = {1, 2, 1, 2, 3, 4, 3, 4, 7, 8, 0, 0};
    EXPECT_EQ(std::memcmp(bytes, expected, 12), 0);
}

TEST(Memory, CopyExtRepeatsTheBlockWithNoTerminator) {
    char target[8];
    std::memset(target, '#', sizeof target);
    EXPECT_EQ(mox_memory_copy_ext(target, "ab", 2, 3), 1);
    EXPECT_EQ(std::memcmp(target, "ababab##", 8), 0);
    EXPECT_EQ(mox_memory_copy_ext(target, "zz", 2, 0), 1) << "no repeat writes nothing";
    EXPECT_EQ(std::memcmp(target, "ababab##", 8), 0);
}

TEST(Memory, CopyExtOfNullPosts) {
    ErrorListener listener;
    char byte = 0;
    EXPECT_EQ(mox_memory_copy_ext(nullptr, &byte, 1, 1), 0);
    EXPECT_EQ(mox_memory_copy_ext(&byte, nullptr, 1, 1), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.params", "core.params"}));
}

TEST(Memory, MoveKeepsAnOverlappingBlockIntactUpwards) {
    uint8_t bytes[6] = {1, 2, 3, 4, 5, 0};
    EXPECT_EQ(mox_memory_move(bytes + 1, bytes, 5), 1);
    const uint8_t expected[6] = {1, 1, 2, 3, 4, 5};
    EXPECT_EQ(std::memcmp(bytes, expected, 6), 0);
}

TEST(Memory, MoveKeepsAnOverlappingBlockIntactDownwards) {
    uint8_t bytes[6] = {0, 1, 2, 3, 4, 5};
    EXPECT_EQ(mox_memory_move(bytes, bytes + 1, 5), 1);
    const uint8_t expected[6] = {1, 2, 3, 4, 5, 5};
    EXPECT_EQ(std::memcmp(bytes, expected, 6), 0);
}

TEST(Memory, MoveOfNothingIsTrueAndNullPosts) {
    uint8_t byte = 7;
    EXPECT_EQ(mox_memory_move(&byte, &byte, 0), 1);
    ErrorListener listener;
    EXPECT_EQ(mox_memory_move(nullptr, &byte, 0), 0);
    EXPECT_EQ(mox_memory_move(&byte, nullptr, 1), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.params", "core.params"}));
}

TEST(Memory, CompareTellsEqualityOnly) {
    EXPECT_EQ(mox_memory_compare("abcd", "abcd", 4), 1);
    EXPECT_EQ(mox_memory_compare("abcd", "abce", 4), 0);
    EXPECT_EQ(mox_memory_compare("abce", "abcd", 4), 0) << "no order: false both ways";
    EXPECT_EQ(mox_memory_compare("abcd", "abce", 3), 1);
    EXPECT_EQ(mox_memory_compare("a", "b", 0), 1);
}

TEST(Memory, CompareOfNullIsFalseEvenForNoBytes) {
    ErrorListener listener;
    EXPECT_EQ(mox_memory_compare(nullptr, "a", 0), 0);
    EXPECT_EQ(mox_memory_compare("a", nullptr, 0), 0);
    EXPECT_EQ(listener.hints(), (std::vector<std::string>{"core.params", "core.params"}));
}
