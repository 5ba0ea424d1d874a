#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

uint32_t hash_of(const std::string& text) {
    return mox_super_fast_hash(reinterpret_cast<const uint8_t*>(text.data()),
                               static_cast<uint32_t>(text.size()));
}

// For a buffer of `size` bytes, which offsets change the hash when they change.
std::vector<uint32_t> offsets_that_matter(uint32_t size) {
    std::vector<uint8_t> data(size);
    for (uint32_t i = 0; i < size; ++i)
        data[i] = static_cast<uint8_t>(0x40 + i);
    const uint32_t base = mox_super_fast_hash(data.data(), size);
    std::vector<uint32_t> found;
    for (uint32_t i = 0; i < size; ++i) {
        auto changed = data;
        changed[i] ^= 0x5A;
        if (mox_super_fast_hash(changed.data(), size) != base)
            found.push_back(i);
    }
    return found;
}

} // namespace

TEST(SuperFastHash, ExactValuesOnFixedInputs) {
    EXPECT_EQ(hash_of("a"), 0x115EA782u);
    EXPECT_EQ(hash_of("ab"), 0xD726795Cu);
    EXPECT_EQ(hash_of("abc"), 0xEA89A2B8u);
    EXPECT_EQ(hash_of("abcd"), 0x57C7593Bu);
    EXPECT_EQ(hash_of("abcde"), 0x2CF8BA1Cu);
    EXPECT_EQ(hash_of("hello world"), 0x67F7713Cu);
    EXPECT_EQ(hash_of("The quick brown fox jumps over the lazy dog"), 0xAFC99E5Fu);
    uint8_t all[256];
    for (int i = 0; i < 256; ++i)
        all[i] = static_cast<uint8_t>(i);
    EXPECT_EQ(mox_super_fast_hash(all, 256), 0xAA40E90Cu);
}

// Every step leaves 0 as it is when the size is 0.
TEST(SuperFastHash, AnEmptyBlockHashesToZero) {
    uint8_t data[4] = {1, 2, 3, 4};
    EXPECT_EQ(mox_super_fast_hash(data, 0), 0u);
}

TEST(SuperFastHash, NullDataHashesToZero) {
    EXPECT_EQ(mox_super_fast_hash(nullptr, 0), 0u);
    EXPECT_EQ(mox_super_fast_hash(nullptr, 16), 0u);
}

// Intended: the rounds read one byte every two, from the first half only.
TEST(SuperFastHash, EightBytesDependOnOffsetsZeroAndTwo) {
    EXPECT_EQ(offsets_that_matter(8), (std::vector<uint32_t>{0, 2}));
}

TEST(SuperFastHash, FiveBytesDependOnOffsetsZeroAndTwo) {
    EXPECT_EQ(offsets_that_matter(5), (std::vector<uint32_t>{0, 2}));
}

// Intended: with three bytes, the one at offset 1 is never read.
TEST(SuperFastHash, ThreeBytesDependOnOffsetsZeroAndTwo) {
    EXPECT_EQ(offsets_that_matter(3), (std::vector<uint32_t>{0, 2}));
}

TEST(SuperFastHash, LongerBlocksDependOnTheEvenOffsetsOfTheFirstHalfAndTheTailByte) {
    EXPECT_EQ(offsets_that_matter(2), (std::vector<uint32_t>{0}));
    EXPECT_EQ(offsets_that_matter(16), (std::vector<uint32_t>{0, 2, 4, 6}));
    EXPECT_EQ(offsets_that_matter(14), (std::vector<uint32_t>{0, 2, 4, 6}));
    EXPECT_EQ(offsets_that_matter(15), (std::vector<uint32_t>{0, 2, 4, 6, 8}));
}

TEST(SuperFastHash, TheSizeItselfIsPartOfTheHash) {
    uint8_t data[8] = {7, 0, 9, 0, 0, 0, 0, 0};
    EXPECT_NE(mox_super_fast_hash(data, 8), mox_super_fast_hash(data, 7));
}

TEST(SuperFastHash, StringHashIsTheBlockHashWithoutTheTerminator) {
    EXPECT_EQ(mox_super_fast_hash_string("hello world"), 0x67F7713Cu);
    EXPECT_EQ(mox_super_fast_hash_string("abc"), hash_of("abc"));
    EXPECT_EQ(mox_super_fast_hash_string(""), 0u);
    EXPECT_EQ(mox_super_fast_hash_string(nullptr), 0u);
}
