#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/disc_file.h"

using mox_test::ErrorListener;

namespace {

using Bytes = std::vector<uint8_t>;

struct VarTest : ::testing::Test {
    mox_var var{};
    mox_test::DiscFile disc{"v.bin"};
    mox_file& file = disc.file;
    void SetUp() override { ASSERT_EQ(mox_var_construct(&var, nullptr), 1); }
    void TearDown() override { mox_var_destruct(&var); }
    // Opens "v.bin" holding `bytes` for reading and writing, at position 0.
    void open_file(const Bytes& bytes) { ASSERT_TRUE(disc.open_with(bytes)); }
    Bytes file_bytes() { return disc.on_disc(); }
    static std::string block_bytes(const mox_var& v, size_t size) {
        return std::string(static_cast<const char*>(v.value), size);
    }
};

// The little-endian bytes of the pointer word, as many as `size`.
Bytes word_bytes(const void* pointer, size_t size) {
    auto word = reinterpret_cast<uintptr_t>(pointer);
    Bytes out;
    for (size_t i = 0; i < size; ++i)
        out.push_back(i < sizeof word ? static_cast<uint8_t>(word >> (8 * i)) : 0);
    return out;
}

Bytes concat(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The text whose address a load of tag 12 leaves in the first word of the block.
mox_astring loaded_text(const mox_var& v) {
    mox_astring text;
    std::memcpy(&text, v.value, sizeof text);
    return text;
}

} // namespace

TEST_F(VarTest, ConstructFillsTheHeaderAndEmptiesTheValue) {
    mox_var other;
    std::memset(&other, 0x5A, sizeof other);
    int owner = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_var_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.class_id, 0x30D6209Eu);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.flags, 0u);
    EXPECT_EQ(other.header.user, 0u);
    EXPECT_EQ(other.type, 0u);
    EXPECT_EQ(other.value, nullptr);
    EXPECT_EQ(mox_var_construct(nullptr, &owner), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(VarTest, NewAndFreeWorkOnASlot) {
    ErrorListener listener;
    mox_var* made = nullptr;
    int owner = 0;
    ASSERT_EQ(mox_var_new(&made, &owner), 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->header.class_id, MOX_VAR_CLASS_ID);
    EXPECT_EQ(made->header.owner, &owner);
    ASSERT_EQ(mox_var_set_type(made, 12), 1);
    ASSERT_EQ(mox_var_set(made, "held"), 1);
    EXPECT_EQ(mox_var_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    // A null slot content is a failed release; a null slot is refused.
    EXPECT_EQ(mox_var_free(&made), 0);
    EXPECT_EQ(mox_var_free(nullptr), 0);
    EXPECT_EQ(mox_var_new(nullptr, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(VarTest, DestructReleasesTheBlock) {
    ASSERT_EQ(mox_var_set_type(&var, 10), 1);
    ASSERT_NE(var.value, nullptr);
    ErrorListener listener;
    EXPECT_EQ(mox_var_destruct(&var), 1);
    EXPECT_EQ(var.value, nullptr);
    EXPECT_EQ(mox_var_destruct(nullptr), 0);
    // A variant with no block ends as well.
    EXPECT_EQ(mox_var_destruct(&var), 1);
    EXPECT_TRUE(listener.silent());
}

TEST_F(VarTest, SizeofGivesTheSizeOfEachTag) {
    const uint32_t expected[13] = {0, 4, 1, 1, 2, 4, 1, 2, 4, 4, 8, 8, 4};
    uint32_t size = 99;
    EXPECT_EQ(mox_var_sizeof(&var, &size), 1);
    EXPECT_EQ(size, 0u);
    for (uint32_t tag = 1; tag <= 12; ++tag) {
        ASSERT_EQ(mox_var_set_type(&var, tag), 1) << tag;
        size = 99;
        EXPECT_EQ(mox_var_sizeof(&var, &size), 1) << tag;
        EXPECT_EQ(size, expected[tag]) << tag;
    }
    ErrorListener listener;
    EXPECT_EQ(mox_var_sizeof(nullptr, &size), 0);
    EXPECT_EQ(mox_var_sizeof(&var, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

// Intended: the unknown tag is kept although the answer is false.
TEST_F(VarTest, AnUnknownTagIsStoredAndRefused) {
    ErrorListener listener;
    EXPECT_EQ(mox_var_set_type(&var, 13), 0);
    EXPECT_EQ(var.type, 13u);
    uint32_t size = 77;
    EXPECT_EQ(mox_var_sizeof(&var, &size), 0);
    EXPECT_EQ(size, 77u);
    uint32_t data = 1;
    EXPECT_EQ(mox_var_set(&var, &data), 0);
    EXPECT_EQ(mox_var_get(&var, &data), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(VarTest, SetTypeToZeroOnAFreshVariantIsTrue) {
    EXPECT_EQ(mox_var_set_type(&var, 0), 1);
    EXPECT_EQ(var.type, 0u);
    EXPECT_EQ(var.value, nullptr);
    EXPECT_EQ(mox_var_set_type(nullptr, 0), 0);
}

TEST_F(VarTest, AnEqualTagChangesNothing) {
    ASSERT_EQ(mox_var_set_type(&var, 5), 1);
    const uint32_t data = 0x11223344;
    ASSERT_EQ(mox_var_set(&var, &data), 1);
    void* block = var.value;
    EXPECT_EQ(mox_var_set_type(&var, 5), 1);
    EXPECT_EQ(var.value, block);
    EXPECT_EQ(block_bytes(var, 4), std::string("\x44\x33\x22\x11", 4));
}

TEST_F(VarTest, AChangeKeepsTheOldBytesUpToTheSmallerSize) {
    ASSERT_EQ(mox_var_set_type(&var, 10), 1);
    const uint8_t eight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(mox_var_set(&var, eight), 1);
    EXPECT_EQ(mox_var_set_type(&var, 4), 1);
    EXPECT_EQ(block_bytes(var, 2), std::string("\x01\x02", 2));
    EXPECT_EQ(mox_var_set_type(&var, 11), 1);
    EXPECT_EQ(block_bytes(var, 8), std::string("\x01\x02\0\0\0\0\0\0", 8));
}

TEST_F(VarTest, AChangeToZeroReleasesTheBlock) {
    ASSERT_EQ(mox_var_set_type(&var, 9), 1);
    EXPECT_EQ(mox_var_set_type(&var, 0), 1);
    EXPECT_EQ(var.type, 0u);
    EXPECT_EQ(var.value, nullptr);
}

// Intended: from an unknown tag with no block, and from tag 12 whose block goes first, the change to
// tag 0 finds nothing to release and answers false.
TEST_F(VarTest, AChangeToZeroWithNoBlockIsFalse) {
    ASSERT_EQ(mox_var_set_type(&var, 13), 0);
    EXPECT_EQ(mox_var_set_type(&var, 0), 0);
    EXPECT_EQ(var.type, 0u);
    ASSERT_EQ(mox_var_set_type(&var, 12), 1);
    ASSERT_EQ(mox_var_set(&var, "gone"), 1);
    EXPECT_EQ(mox_var_set_type(&var, 0), 0);
    EXPECT_EQ(var.type, 0u);
    EXPECT_EQ(var.value, nullptr);
}

TEST_F(VarTest, FromStringToFourBytesLeavesAZeroedBlock) {
    ASSERT_EQ(mox_var_set_type(&var, 12), 1);
    ASSERT_EQ(mox_var_set(&var, "a longer text"), 1);
    EXPECT_EQ(mox_var_set_type(&var, 5), 1);
    ASSERT_NE(var.value, nullptr);
    EXPECT_EQ(block_bytes(var, 4), std::string(4, '\0'));
    uint32_t out = 0xFFFFFFFF;
    EXPECT_EQ(mox_var_get(&var, &out), 1);
    EXPECT_EQ(out, 0u);
}

TEST_F(VarTest, TheNewStringBlockIsEmpty) {
    ASSERT_EQ(mox_var_set_type(&var, 5), 1);
    const uint32_t data = 0x41414141;
    ASSERT_EQ(mox_var_set(&var, &data), 1);
    EXPECT_EQ(mox_var_set_type(&var, 12), 1);
    mox_astring text = nullptr;
    EXPECT_EQ(mox_var_get(&var, &text), 1);
    EXPECT_STREQ(text, "");
    mox_astring_destruct(&text);
}

TEST_F(VarTest, FourBytesComeBackAsSet) {
    ASSERT_EQ(mox_var_set_type(&var, 9), 1);
    const uint8_t in[4] = {0xDE, 0xAD, 0xBE, 0xEF};
    ErrorListener listener;
    EXPECT_EQ(mox_var_set(&var, in), 1);
    uint8_t out[4] = {};
    EXPECT_EQ(mox_var_get(&var, out), 1);
    EXPECT_EQ(std::memcmp(in, out, 4), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(VarTest, SetAndGetCopyExactlyTheTagsSize) {
    ASSERT_EQ(mox_var_set_type(&var, 4), 1);
    const uint8_t in[4] = {0x10, 0x20, 0x30, 0x40};
    ASSERT_EQ(mox_var_set(&var, in), 1);
    uint8_t out[4] = {0xEE, 0xEE, 0xEE, 0xEE};
    EXPECT_EQ(mox_var_get(&var, out), 1);
    EXPECT_EQ(Bytes(out, out + 4), (Bytes{0x10, 0x20, 0xEE, 0xEE}));
    ASSERT_EQ(mox_var_set_type(&var, 11), 1);
    const uint8_t eight[8] = {9, 8, 7, 6, 5, 4, 3, 2};
    ASSERT_EQ(mox_var_set(&var, eight), 1);
    uint8_t got[9];
    std::memset(got, 0xEE, sizeof got);
    EXPECT_EQ(mox_var_get(&var, got), 1);
    EXPECT_EQ(Bytes(got, got + 9), (Bytes{9, 8, 7, 6, 5, 4, 3, 2, 0xEE}));
}

TEST_F(VarTest, AStringComesBackAsACopy) {
    ASSERT_EQ(mox_var_set_type(&var, 12), 1);
    EXPECT_EQ(mox_var_set(&var, "abc"), 1);
    EXPECT_STREQ(static_cast<const char*>(var.value), "abc");
    mox_astring text = nullptr;
    EXPECT_EQ(mox_var_get(&var, &text), 1);
    EXPECT_STREQ(text, "abc");
    EXPECT_NE(static_cast<void*>(text), var.value);
    mox_astring_destruct(&text);
}

TEST_F(VarTest, TagZeroSetsAndGetsNothing) {
    uint32_t data = 0x12345678;
    ErrorListener listener;
    EXPECT_EQ(mox_var_set(&var, &data), 1);
    EXPECT_EQ(mox_var_get(&var, &data), 1);
    EXPECT_EQ(data, 0x12345678u);
    EXPECT_EQ(var.value, nullptr);
    EXPECT_TRUE(listener.silent());
}

TEST_F(VarTest, SetAndGetRefuseNullsSilently) {
    ASSERT_EQ(mox_var_set_type(&var, 5), 1);
    uint32_t data = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_var_set(nullptr, &data), 0);
    EXPECT_EQ(mox_var_set(&var, nullptr), 0);
    EXPECT_EQ(mox_var_get(nullptr, &data), 0);
    EXPECT_EQ(mox_var_get(&var, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

// Intended: tag 0 answers false after its four bytes.
TEST_F(VarTest, SaveOfTagZeroWritesFourZeroBytesAndIsFalse) {
    open_file({});
    ErrorListener listener;
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 0);
    EXPECT_EQ(file.position, 4u);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(file_bytes(), (Bytes{0, 0, 0, 0}));
}

// Intended: the pointer word goes to the file, not the value.
TEST_F(VarTest, SaveWritesThePointerWordOfAFourByteTag) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 5), 1);
    const uint32_t data = 0xCAFEBABE;
    ASSERT_EQ(mox_var_set(&var, &data), 1);
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 1);
    EXPECT_EQ(file.position, 8u);
    EXPECT_EQ(file_bytes(), concat({5, 0, 0, 0}, word_bytes(var.value, 4)));
}

TEST_F(VarTest, SaveWritesEightBytesFromTheFieldForAnEightByteTag) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 10), 1);
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 1);
    EXPECT_EQ(file_bytes(), concat({10, 0, 0, 0}, word_bytes(var.value, 8)));
}

TEST_F(VarTest, SaveWritesOneByteOfTheFieldForAOneByteTag) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 6), 1);
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 1);
    EXPECT_EQ(file_bytes(), concat({6, 0, 0, 0}, word_bytes(var.value, 1)));
}

TEST_F(VarTest, SaveWritesTheTextOfAString) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 12), 1);
    ASSERT_EQ(mox_var_set(&var, "abc"), 1);
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 1);
    EXPECT_EQ(file_bytes(), (Bytes{12, 0, 0, 0, 3, 0, 0, 0, 'a', 'b', 'c'}));
}

TEST_F(VarTest, SaveOfAFreshStringWritesACountOfZero) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 12), 1);
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 1);
    EXPECT_EQ(file_bytes(), (Bytes{12, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(VarTest, SaveRefusesAnUnknownTagAndNullsWritingNothing) {
    open_file({});
    mox_var_set_type(&var, 13);
    ErrorListener listener;
    EXPECT_EQ(mox_var_save_to_file(&var, &file), 0);
    EXPECT_EQ(mox_var_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_var_save_to_file(&var, nullptr), 0);
    EXPECT_EQ(mox_var_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_var_load_from_file(&var, nullptr), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(file_bytes(), Bytes{});
}

// Intended: a round trip restores the tag and not the value.
TEST_F(VarTest, ARoundTripRestoresTheTagAndNotTheValue) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 9), 1);
    const uint32_t data = 0x01020304;
    ASSERT_EQ(mox_var_set(&var, &data), 1);
    ASSERT_EQ(mox_var_save_to_file(&var, &file), 1);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_var loaded;
    mox_var_construct(&loaded, nullptr);
    EXPECT_EQ(mox_var_load_from_file(&loaded, &file), 1);
    EXPECT_EQ(file.position, 8u);
    EXPECT_EQ(loaded.type, 9u);
    uint32_t out = 0xFFFFFFFF;
    EXPECT_EQ(mox_var_get(&loaded, &out), 1);
    EXPECT_EQ(out, 0u);
    mox_var_destruct(&loaded);
}

TEST_F(VarTest, LoadingBackIntoTheSavedRecordLeavesItsValue) {
    open_file({});
    ASSERT_EQ(mox_var_set_type(&var, 11), 1);
    const uint8_t eight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(mox_var_set(&var, eight), 1);
    void* block = var.value;
    ASSERT_EQ(mox_var_save_to_file(&var, &file), 1);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 1);
    EXPECT_EQ(file.position, 12u);
    EXPECT_EQ(var.value, block);
    uint8_t out[8] = {};
    EXPECT_EQ(mox_var_get(&var, out), 1);
    EXPECT_EQ(Bytes(out, out + 8), Bytes(eight, eight + 8));
}

TEST_F(VarTest, LoadOfAByteTagReadsExactlyItsSize) {
    open_file({2, 0, 0, 0, 0x7F, 0xAA, 0xBB});
    ErrorListener listener;
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 1);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(var.type, 2u);
    EXPECT_EQ(file.position, 5u);
    ASSERT_NE(var.value, nullptr);
    uint8_t out = 0xEE;
    EXPECT_EQ(mox_var_get(&var, &out), 1);
    EXPECT_EQ(out, 0u);
}

// Intended: the text's address lands in the first word of the block, and `value` keeps the block.
TEST_F(VarTest, LoadOfAStringPutsTheTextsAddressInTheBlock) {
    open_file({12, 0, 0, 0, 3, 0, 0, 0, 'h', 'e', 'y', 0x99});
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 1);
    EXPECT_EQ(var.type, 12u);
    EXPECT_EQ(file.position, 11u);
    ASSERT_NE(var.value, nullptr);
    mox_astring text = loaded_text(var);
    EXPECT_STREQ(text, "hey");
    mox_astring_destruct(&text);
}

TEST_F(VarTest, LoadOfTagZeroIsFalseAfterReleasingTheBlock) {
    ASSERT_EQ(mox_var_set_type(&var, 5), 1);
    open_file({0, 0, 0, 0, 1, 2, 3, 4});
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 0);
    EXPECT_EQ(var.type, 0u);
    EXPECT_EQ(var.value, nullptr);
    EXPECT_EQ(file.position, 4u);
}

TEST_F(VarTest, LoadOfAnUnknownTagIsFalseAndKeepsTheTag) {
    open_file({200, 0, 0, 0, 1, 2, 3, 4});
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 0);
    EXPECT_EQ(var.type, 200u);
    EXPECT_EQ(file.position, 4u);
}

// A file that ends inside the tag changes nothing.
TEST_F(VarTest, LoadFromAFileCutInsideTheTagIsFalse) {
    ASSERT_EQ(mox_var_set_type(&var, 7), 1);
    void* block = var.value;
    open_file({12, 0});
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 0);
    EXPECT_EQ(var.type, 7u);
    EXPECT_EQ(var.value, block);
}

TEST_F(VarTest, LoadFromAFileCutInsideTheValueKeepsTheTag) {
    open_file({10, 0, 0, 0, 1, 2, 3});
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 1);
    EXPECT_EQ(var.type, 10u);
    EXPECT_EQ(file.position, 7u);
    uint8_t out[8];
    std::memset(out, 0xEE, sizeof out);
    EXPECT_EQ(mox_var_get(&var, out), 1);
    EXPECT_EQ(Bytes(out, out + 8), Bytes(8, 0));
}

TEST_F(VarTest, LoadOfAStringWithALyingCountLeavesANullAddress) {
    open_file({12, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 'x'});
    EXPECT_EQ(mox_var_load_from_file(&var, &file), 1);
    EXPECT_EQ(var.type, 12u);
    ASSERT_NE(var.value, nullptr);
    EXPECT_EQ(loaded_text(var), nullptr);
}
