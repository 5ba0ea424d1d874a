#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/disc_file.h"

using mox_test::ErrorListener;

namespace {

const uint8_t* check_text() { return reinterpret_cast<const uint8_t*>("123456789"); }

struct CrcTest : ::testing::Test {
    mox_crc crc{};
    void SetUp() override { ASSERT_EQ(mox_crc_construct(&crc, nullptr), 1); }
    void TearDown() override { mox_crc_destruct(&crc); }

    uint32_t check_value(int32_t preset) {
        EXPECT_EQ(mox_crc_preset(&crc, preset), 1);
        EXPECT_EQ(mox_crc_make(&crc), 1);
        return static_cast<uint32_t>(mox_crc_calc(&crc, check_text(), 9));
    }
    uint32_t check_value(uint32_t width, uint32_t polynomial, uint32_t init, uint8_t reflect,
                         uint32_t final_xor) {
        crc.width = width;
        crc.polynomial = polynomial;
        crc.init = init;
        crc.reflect = reflect;
        crc.final_xor = final_xor;
        EXPECT_EQ(mox_crc_make(&crc), 1);
        return static_cast<uint32_t>(mox_crc_calc(&crc, check_text(), 9));
    }
    void expect_fields(uint32_t width, uint32_t polynomial, uint32_t init, uint8_t reflect,
                       uint32_t final_xor) {
        EXPECT_EQ(crc.width, width);
        EXPECT_EQ(crc.polynomial, polynomial);
        EXPECT_EQ(crc.init, init);
        EXPECT_EQ(crc.reflect, reflect);
        EXPECT_EQ(crc.final_xor, final_xor);
    }
};

struct CrcFileTest : CrcTest {
    mox_test::DiscFile data_file{"crc.bin"};
    mox_file& file = data_file.file;
    void open_with(const std::vector<uint8_t>& bytes) { ASSERT_TRUE(data_file.open_with(bytes)); }
    std::vector<uint8_t> disc() const { return data_file.on_disc(); }
};

} // namespace

TEST_F(CrcTest, ConstructSetsTheDefaults) {
    mox_crc other;
    std::memset(&other, 0x5A, sizeof other);
    int owner = 0;
    EXPECT_EQ(mox_crc_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.class_id, 0x21642065u);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.flags, 0u);
    EXPECT_EQ(other.header.user, 0u);
    EXPECT_EQ(other.width, 0u);
    EXPECT_EQ(other.polynomial, 0u);
    EXPECT_EQ(other.init, 0u);
    EXPECT_EQ(other.reflect, 1);
    EXPECT_EQ(other.final_xor, 0u);
    EXPECT_EQ(other.table, nullptr);
    EXPECT_EQ(mox_crc_destruct(&other), 1);
}

TEST(Crc, NullRecordsFailSilently) {
    ErrorListener listener;
    mox_crc* none = nullptr;
    mox_file file{};
    EXPECT_EQ(mox_crc_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_crc_destruct(nullptr), 0);
    EXPECT_EQ(mox_crc_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_crc_free(nullptr), 0);
    EXPECT_EQ(mox_crc_free(&none), 0);
    EXPECT_EQ(mox_crc_preset(nullptr, 300), 0);
    EXPECT_EQ(mox_crc_make(nullptr), 0);
    EXPECT_EQ(mox_crc_calc(nullptr, check_text(), 9), 0);
    EXPECT_EQ(mox_crc_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_crc_load_from_stream(nullptr, &file), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Crc, NewAndFreeGoThroughTheSlot) {
    mox_crc* crc = nullptr;
    int owner = 0;
    ASSERT_EQ(mox_crc_new(&crc, &owner), 1);
    ASSERT_NE(crc, nullptr);
    EXPECT_EQ(crc->header.class_id, 0x21642065u);
    EXPECT_EQ(crc->header.owner, &owner);
    EXPECT_EQ(crc->reflect, 1);
    ASSERT_EQ(mox_crc_preset(crc, 300), 1);
    ASSERT_EQ(mox_crc_make(crc), 1);
    EXPECT_EQ(mox_crc_free(&crc), 1);
    EXPECT_EQ(crc, nullptr);
}

TEST_F(CrcTest, PresetsSetTheFiveFields) {
    ASSERT_EQ(mox_crc_preset(&crc, 100), 1);
    expect_fields(8, 0x31, 0xFF, 0, 0);
    ASSERT_EQ(mox_crc_preset(&crc, 200), 1);
    expect_fields(16, 0xA001, 0xFFFF, 0, 0);
    ASSERT_EQ(mox_crc_preset(&crc, 201), 1);
    expect_fields(16, 0x1021, 0xFFFF, 0, 0);
    ASSERT_EQ(mox_crc_preset(&crc, 202), 1);
    expect_fields(16, 0x8005, 0xFFFF, 1, 0);
    ASSERT_EQ(mox_crc_preset(&crc, 300), 1);
    expect_fields(32, 0x04C11DB7, 0xFFFFFFFF, 1, 0xFFFFFFFF);
}

TEST_F(CrcTest, PresetLeavesTheTableAlone) {
    ASSERT_EQ(mox_crc_preset(&crc, 201), 1);
    ASSERT_EQ(mox_crc_make(&crc), 1);
    void* table = crc.table;
    ASSERT_EQ(mox_crc_preset(&crc, 300), 1);
    EXPECT_EQ(crc.table, table);
    EXPECT_EQ(static_cast<const uint16_t*>(crc.table)[1], 0x1021);
}

TEST_F(CrcTest, AnUnknownPresetChangesNothing) {
    ErrorListener listener;
    crc.width = 1;
    crc.polynomial = 2;
    crc.init = 3;
    crc.reflect = 4;
    crc.final_xor = 5;
    for (int32_t number : {199, 0, -300, 101, 203, 301})
        EXPECT_EQ(mox_crc_preset(&crc, number), 0) << number;
    expect_fields(1, 2, 3, 4, 5);
    EXPECT_TRUE(listener.silent());
}

TEST_F(CrcTest, ThirtyTwoBitPresetIsTheCommonCrc32) { EXPECT_EQ(check_value(300), 0xCBF43926u); }
TEST_F(CrcTest, Preset202IsModbus) { EXPECT_EQ(check_value(202), 0x4B37u); }
TEST_F(CrcTest, Preset201IsCcittFalse) { EXPECT_EQ(check_value(201), 0x29B1u); }
TEST_F(CrcTest, EightBitPresetHasItsCheckValue) { EXPECT_EQ(check_value(100), 0xF7u); }

// Intended: the reversed polynomial run the direct way; not the sum of the reflected 0xA001 algorithm.
TEST_F(CrcTest, Preset200FollowsItsOwnDefinition) {
    EXPECT_EQ(check_value(200), 0xCF32u);
    // The table entry for 1 is the polynomial itself, as the direct form makes it.
    EXPECT_EQ(static_cast<const uint16_t*>(crc.table)[1], 0xA001);
    EXPECT_NE(check_value(16, 0xA001, 0xFFFF, 1, 0), 0xCF32u);
}

TEST_F(CrcTest, EveryLoopMatchesANamedAlgorithm) {
    EXPECT_EQ(check_value(32, 0x04C11DB7, 0xFFFFFFFF, 0, 0xFFFFFFFF), 0xFC891918u); // direct 32 bits
    EXPECT_EQ(check_value(32, 0x04C11DB7, 0xFFFFFFFF, 0, 0), 0x0376E6E7u);
    EXPECT_EQ(check_value(16, 0x1021, 0, 0, 0), 0x31C3u); // direct 16 bits
    EXPECT_EQ(check_value(16, 0x1021, 0, 1, 0), 0x2189u); // reflected 16 bits
    EXPECT_EQ(check_value(16, 0x8005, 0, 1, 0), 0xBB3Du); // reflected 16 bits, start 0
    EXPECT_EQ(check_value(8, 0x07, 0, 0, 0), 0xF4u);      // direct 8 bits
    EXPECT_EQ(check_value(8, 0x07, 0xFF, 1, 0), 0xD0u);   // reflected 8 bits
}

TEST_F(CrcTest, TablesHoldTheExpectedEntries) {
    check_value(300);
    auto* wide = static_cast<const uint32_t*>(crc.table);
    EXPECT_EQ(wide[0], 0u);
    EXPECT_EQ(wide[1], 0x77073096u);
    EXPECT_EQ(wide[128], 0xEDB88320u);
    EXPECT_EQ(wide[255], 0x2D02EF8Du);
    check_value(201);
    auto* half = static_cast<const uint16_t*>(crc.table);
    EXPECT_EQ(half[1], 0x1021);
    EXPECT_EQ(half[255], 0x1EF0);
    check_value(100);
    auto* bytes = static_cast<const uint8_t*>(crc.table);
    EXPECT_EQ(bytes[1], 0x31);
    EXPECT_EQ(bytes[255], 0xAC);
}

TEST_F(CrcTest, CalcWithoutATableGivesInit) {
    ASSERT_EQ(mox_crc_preset(&crc, 300), 1);
    EXPECT_EQ(mox_crc_calc(&crc, check_text(), 9), -1);
    ASSERT_EQ(mox_crc_preset(&crc, 201), 1);
    EXPECT_EQ(mox_crc_calc(&crc, check_text(), 9), 0xFFFF);
}

// Intended: an empty input gives 0, where a missing table would give `init`.
TEST_F(CrcTest, EmptyOrMissingInputGivesZero) {
    ASSERT_EQ(mox_crc_preset(&crc, 300), 1);
    EXPECT_EQ(mox_crc_calc(&crc, check_text(), 0), 0);
    EXPECT_EQ(mox_crc_calc(&crc, nullptr, 9), 0);
    ASSERT_EQ(mox_crc_make(&crc), 1);
    EXPECT_EQ(mox_crc_calc(&crc, check_text(), 0), 0);
    EXPECT_EQ(mox_crc_calc(&crc, check_text(), -5), 0);
    EXPECT_EQ(mox_crc_calc(&crc, nullptr, 9), 0);
}

TEST_F(CrcTest, EachCallStartsFromInit) {
    check_value(300);
    const auto* text = check_text();
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, text, 9)), 0xCBF43926u);
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, text, 9)), 0xCBF43926u);
    mox_crc_calc(&crc, text, 4);
    EXPECT_NE(static_cast<uint32_t>(mox_crc_calc(&crc, text + 4, 5)), 0xCBF43926u);
    // "a" alone, known for this algorithm.
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, reinterpret_cast<const uint8_t*>("a"), 1)),
              0xE8B7BE43u);
}

TEST_F(CrcTest, MakeRefusesOtherWidthsAndKeepsTheOldTable) {
    EXPECT_EQ(mox_crc_make(&crc), 0); // width 0 after construct
    EXPECT_EQ(crc.table, nullptr);
    check_value(300);
    void* table = crc.table;
    crc.width = 24;
    EXPECT_EQ(mox_crc_make(&crc), 0);
    EXPECT_EQ(crc.table, table);
    // With a width the loops don't know, the sum is `init`, even with a table.
    EXPECT_EQ(mox_crc_calc(&crc, check_text(), 9), -1);
    crc.width = 32;
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, check_text(), 9)), 0xCBF43926u);
}

TEST_F(CrcTest, ParameterChangesTakeEffectAtTheNextMake) {
    check_value(300);
    crc.reflect = 0;
    crc.final_xor = 0;
    // The reflected table is still there; the direct loop now runs over it.
    uint32_t stale = static_cast<uint32_t>(mox_crc_calc(&crc, check_text(), 9));
    EXPECT_NE(stale, 0x0376E6E7u);
    ASSERT_EQ(mox_crc_make(&crc), 1);
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, check_text(), 9)), 0x0376E6E7u);
}

// The table block always has room for 256 words, zero beyond the entries it was built with, so a width
// changed after make reads those bytes as wider entries and never past the block.
TEST_F(CrcTest, AWidthChangeAfterMakeReadsTheBlockAsWiderEntries) {
    check_value(100);
    uint32_t words[256] = {};
    std::memcpy(words, crc.table, 256);
    crc.width = 32;
    crc.reflect = 1;
    crc.init = 0x12345678;
    crc.final_xor = 0;
    std::vector<uint8_t> data(4096);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<uint8_t>(i * 31 + 7);
    uint32_t expected = crc.init;
    for (uint8_t byte : data)
        expected = (expected >> 8) ^ words[(expected ^ byte) & 0xFF];
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, data.data(), static_cast<int32_t>(data.size()))),
              expected);
}

// Intended: `final_xor` is combined in 32 bits whatever the width.
TEST_F(CrcTest, FinalMaskIsAppliedInThirtyTwoBits) {
    check_value(201);
    crc.final_xor = 0xFFFFFFFF;
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&crc, check_text(), 9)), 0xFFFFD64Eu);
}

TEST_F(CrcTest, DestructFreesTheTable) {
    check_value(300);
    EXPECT_EQ(mox_crc_destruct(&crc), 1);
    EXPECT_EQ(crc.table, nullptr);
}

TEST_F(CrcFileTest, SaveWritesSeventeenLittleEndianBytes) {
    open_with({});
    crc.width = 0x04030201;
    crc.polynomial = 0x08070605;
    crc.init = 0x0C0B0A09;
    crc.reflect = 0x0D;
    crc.final_xor = 0x11100F0E;
    EXPECT_EQ(mox_crc_save_to_file(&crc, &file), 1);
    EXPECT_EQ(file.position, 17u);
    EXPECT_EQ(mox_crc_preset(&crc, 300), 1);
    EXPECT_EQ(mox_crc_save_to_file(&crc, &file), 1);
    mox_file_close(&file);
    std::vector<uint8_t> expected = {1,    2,    3,    4,    5,    6,  7,    8,    9,    10,   11,   12,
                                     13,   14,   15,   16,   17,   32, 0,    0,    0,    0xB7, 0x1D, 0xC1,
                                     0x04, 0xFF, 0xFF, 0xFF, 0xFF, 1,  0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(disc(), expected);
}

TEST_F(CrcFileTest, LoadReadsTheFieldsAndLeavesTheTable) {
    open_with({16, 0, 0, 0, 0x21, 0x10, 0, 0, 0xFF, 0xFF, 0, 0, 0, 0x78, 0x56, 0x34, 0x12, 0xEE});
    check_value(300);
    void* table = crc.table;
    EXPECT_EQ(mox_crc_load_from_stream(&crc, &file), 1);
    expect_fields(16, 0x1021, 0xFFFF, 0, 0x12345678);
    EXPECT_EQ(file.position, 17u);
    EXPECT_EQ(crc.table, table);
    EXPECT_EQ(static_cast<const uint32_t*>(crc.table)[1], 0x77073096u);
}

TEST_F(CrcFileTest, SaveThenLoadReproducesTheFields) {
    open_with({});
    ASSERT_EQ(mox_crc_preset(&crc, 202), 1);
    ASSERT_EQ(mox_crc_save_to_file(&crc, &file), 1);
    ASSERT_EQ(mox_crc_preset(&crc, 300), 1);
    ASSERT_EQ(mox_crc_save_to_file(&crc, &file), 1);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_crc other{};
    ASSERT_EQ(mox_crc_construct(&other, nullptr), 1);
    EXPECT_EQ(mox_crc_load_from_stream(&other, &file), 1);
    EXPECT_EQ(other.width, 16u);
    EXPECT_EQ(other.polynomial, 0x8005u);
    EXPECT_EQ(other.init, 0xFFFFu);
    EXPECT_EQ(other.reflect, 1);
    EXPECT_EQ(other.final_xor, 0u);
    EXPECT_EQ(other.table, nullptr);
    ASSERT_EQ(mox_crc_make(&other), 1);
    EXPECT_EQ(mox_crc_calc(&other, check_text(), 9), 0x4B37);
    EXPECT_EQ(mox_crc_load_from_stream(&other, &file), 1);
    ASSERT_EQ(mox_crc_make(&other), 1);
    EXPECT_EQ(static_cast<uint32_t>(mox_crc_calc(&other, check_text(), 9)), 0xCBF43926u);
    mox_crc_destruct(&other);
}

// A file that ends early still gives true; the fields it doesn't reach keep their values.
TEST_F(CrcFileTest, ALoadThatRunsOutKeepsTheRest) {
    open_with({8, 0, 0, 0, 0x07, 0, 0});
    ASSERT_EQ(mox_crc_preset(&crc, 300), 1);
    EXPECT_EQ(mox_crc_load_from_stream(&crc, &file), 1);
    expect_fields(8, 0x04C11DB7, 0xFFFFFFFF, 1, 0xFFFFFFFF);
}

TEST_F(CrcFileTest, NullFileFailsSilently) {
    ErrorListener listener;
    EXPECT_EQ(mox_crc_save_to_file(&crc, nullptr), 0);
    EXPECT_EQ(mox_crc_load_from_stream(&crc, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}
