// Tokens, replacing and the file image of strings, for both string families.
#include <cstring>
#include <string>
#include <vector>

#include "strings/convert_families.h"
#include "support/error_listener.h"
#include "support/temp_folder.h"

using namespace convert_test;
using mox_test::ErrorListener;
using mox_test::TempFolder;

template <class F> class Parsing : public Family<F> {
protected:
    void TearDown() override {
        if (array != nullptr)
            F::array_free(&array);
        Family<F>::TearDown();
    }

    // Splits `text` and checks the tokens; each token is the units up to its terminator.
    void expect_tokens(const char* text, const char* separator, const std::vector<std::string>& expected) {
        SCOPED_TRACE(std::string("\"") + text + "\" by \"" + separator + "\"");
        auto t = this->T(text);
        auto s = this->T(separator);
        uint32_t count = 99;
        ASSERT_EQ(F::parse_inc(t.c_str(), s.c_str(), &count), 1);
        EXPECT_EQ(count, expected.size());
        if (array == nullptr) {
            ASSERT_EQ(F::array_new(&array, nullptr), 1);
        }
        ASSERT_EQ(F::parse(array, t.c_str(), s.c_str()), expected.empty() ? 0 : 1);
        if (expected.empty())
            return;
        ASSERT_EQ(array->length, expected.size());
        for (size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(this->held(array->items[i]), this->T(expected[i])) << "token " << i;
    }

    typename F::Array* array = nullptr;
};
TYPED_TEST_SUITE(Parsing, Families);

TYPED_TEST(Parsing, OneCharacterSeparatorsGiveTheRunsBetweenThem) {
    this->expect_tokens("a,,b,", ",", {"a", "b"});
    this->expect_tokens(",a", ",", {"a"});
    this->expect_tokens("abc", ",", {"abc"});
    this->expect_tokens("one two  three", " ", {"one", "two", "three"});
    this->expect_tokens("abc", "", {"abc"});
}

TYPED_TEST(Parsing, TextsWithoutTokensCountZeroAndLeaveTheArray) {
    using F = TypeParam;
    this->expect_tokens("x;y", ";", {"x", "y"});
    uint32_t count = 99;
    auto empty = this->T("");
    auto comma = this->T(",");
    ASSERT_EQ(F::parse_inc(empty.c_str(), comma.c_str(), &count), 1);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(F::parse(this->array, empty.c_str(), comma.c_str()), 0);
    auto commas = this->T(",,,");
    EXPECT_EQ(F::parse(this->array, commas.c_str(), comma.c_str()), 0);
    ASSERT_EQ(this->array->length, 2u);
    EXPECT_EQ(this->held(this->array->items[1]), this->T("y"));
}

TYPED_TEST(Parsing, AParseReplacesWhatTheArrayHeld) {
    this->expect_tokens("first,second,third", ",", {"first", "second", "third"});
    this->expect_tokens("x", ",", {"x"});
}

// Intended: the pass steps on by one position after a hit, so the rest of a long separator is
// counted into the next token while that token starts behind the whole separator.
TYPED_TEST(Parsing, LongSeparatorsCountTheirTailIntoTheNextToken) {
    this->expect_tokens("a, b, c", ", ", {"a", "b,", "c"});
    // The last token's block is one unit longer than its text; both trailing units are terminators.
    EXPECT_EQ(this->array->items[2][1], 0);
    EXPECT_EQ(this->array->items[2][2], 0);
    // A part of the separator that doesn't match still moves the start: the second token reads from
    // behind the match and runs out of text, so its block holds ",;" and zeros; the third is empty.
    this->expect_tokens("abcdefgh,,;", ",;", {",;", ""});
    for (uint32_t i = 2; i <= 8; ++i)
        EXPECT_EQ(this->array->items[0][i], 0) << i;
}

TYPED_TEST(Parsing, NullArgumentsAreFalseAndSilent) {
    using F = TypeParam;
    ErrorListener listener;
    auto t = this->T("a,b");
    auto s = this->T(",");
    uint32_t count = 99;
    EXPECT_EQ(F::parse_inc(t.c_str(), s.c_str(), nullptr), 0);
    // Our decision: a null text or separator is false.
    EXPECT_EQ(F::parse_inc(nullptr, s.c_str(), &count), 0);
    EXPECT_EQ(F::parse_inc(t.c_str(), nullptr, &count), 0);
    EXPECT_EQ(count, 99u);
    EXPECT_EQ(F::parse(nullptr, t.c_str(), s.c_str()), 0);
    ASSERT_EQ(F::array_new(&this->array, nullptr), 1);
    EXPECT_EQ(F::parse(this->array, nullptr, s.c_str()), 0);
    EXPECT_EQ(this->array->length, 0u);
    EXPECT_TRUE(listener.silent());
}

template <class F> class Replacing : public Family<F> {};
TYPED_TEST_SUITE(Replacing, Families);

TYPED_TEST(Replacing, EveryOccurrenceIsReplaced) {
    using F = TypeParam;
    struct Row {
        const char* text;
        const char* from;
        const char* to;
        std::string expected; // exactly these units, then a terminator
    };
    const Row rows[] = {
        {"abcabc", "b", "XX", "aXXcaXXc"},
        {"abcabc", "bc", "", "aa"},
        {"abc", "abc", "", ""},
        {"abc", "z", "Q", "abc"},
        {"abc", "", "Q", "abc"},
        {"", "a", "b", ""},
        {"aXa", "a", "long", "longXlong"},
        // Intended: overlapping occurrences are all counted, so the computed length is off. Our
        // decision keeps the walk inside it and zeroes what it leaves.
        {"aaa", "aa", "b", "b"},
        {"aaa", "aa", "bbb", std::string("bbba") + '\0'},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.text) + " " + row.from + " > " + row.to);
        auto text = this->T(row.text);
        auto from = this->T(row.from);
        auto to = this->T(row.to);
        typename F::Slot slot = nullptr;
        ASSERT_EQ(F::replace(&slot, text.c_str(), from.c_str(), to.c_str()), 1);
        EXPECT_TRUE(this->holds_units(slot, this->T(row.expected)));
        F::destruct(&slot);
    }
}

TYPED_TEST(Replacing, NullArgumentsFollowTheDuplicateRule) {
    using F = TypeParam;
    ErrorListener listener;
    auto text = this->T("abc");
    auto b = this->T("b");
    EXPECT_EQ(F::replace(nullptr, text.c_str(), b.c_str(), b.c_str()), 0);
    // Our decision: a null `to` is refused when there is something to replace.
    EXPECT_EQ(F::replace(&this->out, text.c_str(), b.c_str(), nullptr), 0);
    EXPECT_EQ(this->out, nullptr);
    auto z = this->T("z");
    ASSERT_EQ(F::replace(&this->out, text.c_str(), z.c_str(), nullptr), 1);
    EXPECT_EQ(this->held(this->out), this->T("abc"));
    ASSERT_EQ(F::replace(&this->out, text.c_str(), nullptr, b.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("abc"));
    EXPECT_TRUE(listener.silent());
}

TYPED_TEST(Replacing, PairsApplyInTurn) {
    using F = TypeParam;
    using Text = typename Family<F>::Text;
    struct Row {
        const char* what;
        const char* text;
        uint32_t count;
        std::vector<std::pair<const char*, const char*>> pairs;
        const char* expected;
    };
    const Row rows[] = {
        // Intended: one pair is applied twice.
        {"one pair", "a", 1, {{"a", "aa"}}, "aaaa"},
        // Intended: a count of 0 still applies the first pair, once.
        {"no pairs", "abc", 0, {{"b", "X"}}, "aXc"},
        {"two pairs", "ab", 2, {{"a", "b"}, {"b", "c"}}, "cc"},
        {"three pairs", "a", 3, {{"a", "b"}, {"b", "c"}, {"c", "d"}}, "d"},
        {"four pairs", "a", 4, {{"a", "b"}, {"b", "c"}, {"c", "d"}, {"d", "e"}}, "e"},
        {"five pairs", "xy", 5, {{"x", "xx"}, {"y", "z"}, {"xx", "w"}, {"w", "v"}, {"z", "u"}}, "vu"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        std::vector<Text> froms, tos;
        for (auto& pair : row.pairs) {
            froms.push_back(this->T(pair.first));
            tos.push_back(this->T(pair.second));
        }
        std::vector<const typename F::Char*> from, to;
        for (size_t i = 0; i < froms.size(); ++i) {
            from.push_back(froms[i].c_str());
            to.push_back(tos[i].c_str());
        }
        auto text = this->T(row.text);
        typename F::Slot slot = nullptr;
        ASSERT_EQ(F::replace_ext(&slot, text.c_str(), row.count, from.data(), to.data()), 1);
        EXPECT_TRUE(this->holds_units(slot, this->T(row.expected)));
        F::destruct(&slot);
    }
}

TYPED_TEST(Replacing, PairListsWithNullsAreRefused) {
    using F = TypeParam;
    ErrorListener listener;
    auto a = this->T("a");
    auto b = this->T("b");
    const typename F::Char* from[] = {a.c_str(), nullptr};
    const typename F::Char* to[] = {b.c_str(), b.c_str()};
    EXPECT_EQ(F::replace_ext(nullptr, a.c_str(), 1, from, to), 0);
    EXPECT_EQ(F::replace_ext(&this->out, a.c_str(), 2, from, to), 0);
    EXPECT_EQ(this->out, nullptr);
    EXPECT_EQ(F::replace_ext(&this->out, a.c_str(), 1, nullptr, to), 0);
    // Entries behind the count are not looked at.
    ASSERT_EQ(F::replace_ext(&this->out, a.c_str(), 1, from, to), 1);
    EXPECT_EQ(this->held(this->out), this->T("b"));
    EXPECT_TRUE(listener.silent());
}

template <class F> class StringFiles : public Family<F> {
protected:
    // Opens a new empty file of the test folder for reading and writing.
    void open(const char* name, const std::vector<uint8_t>& bytes = {}) {
        path = folder.file(name);
        mox_test::write_bytes(path, bytes);
        ASSERT_EQ(mox_file_new(&file, nullptr), 1);
        ASSERT_EQ(mox_file_open(file, folder.library_path(name).c_str(), MOX_FILE_READ | MOX_FILE_WRITE), 1);
    }
    void TearDown() override {
        if (file != nullptr)
            mox_file_free(&file);
        Family<F>::TearDown();
    }
    // The file image of a text: the count, then each unit little-endian.
    static std::vector<uint8_t> image(const typename Family<F>::Text& text) {
        uint32_t count = static_cast<uint32_t>(text.size());
        std::vector<uint8_t> bytes = {static_cast<uint8_t>(count), static_cast<uint8_t>(count >> 8),
                                      static_cast<uint8_t>(count >> 16), static_cast<uint8_t>(count >> 24)};
        for (auto unit : text)
            for (size_t b = 0; b < sizeof(unit); ++b)
                bytes.push_back(static_cast<uint8_t>(static_cast<uint32_t>(unit) >> (8 * b)));
        return bytes;
    }

    TempFolder folder;
    std::string path;
    mox_file* file = nullptr;
};
TYPED_TEST_SUITE(StringFiles, Families);

TYPED_TEST(StringFiles, SavingWritesTheCountAndTheUnits) {
    using F = TypeParam;
    this->open("s.bin");
    auto text = this->T("abc");
    ASSERT_EQ(F::save_to_file(text.c_str(), this->file), 1);
    ASSERT_EQ(F::save_to_file(nullptr, this->file), 1);
    auto empty = this->T("");
    ASSERT_EQ(F::save_to_file(empty.c_str(), this->file), 1);
    mox_file_close(this->file);
    std::vector<uint8_t> expected = this->image(text);
    expected.insert(expected.end(), 8, 0);
    EXPECT_EQ(mox_test::read_bytes(this->path), expected);
}

TYPED_TEST(StringFiles, LongTextsGoOutWhole) {
    using F = TypeParam;
    this->open("long.bin");
    typename Family<F>::Text text;
    for (int i = 0; i < 1500; ++i)
        text.push_back(static_cast<typename F::Char>('a' + i % 26));
    ASSERT_EQ(F::save_to_file(text.c_str(), this->file), 1);
    mox_file_close(this->file);
    EXPECT_EQ(mox_test::read_bytes(this->path), this->image(text));
}

TYPED_TEST(StringFiles, LoadingReadsWhatSavingWrote) {
    using F = TypeParam;
    auto first = this->T("first");
    auto second = this->T("");
    auto third = this->T("x y");
    std::vector<uint8_t> bytes = this->image(first);
    for (auto* text : {&second, &third}) {
        auto more = this->image(*text);
        bytes.insert(bytes.end(), more.begin(), more.end());
    }
    this->open("l.bin", bytes);
    ASSERT_EQ(F::load_from_file(&this->out, this->file), 1);
    EXPECT_TRUE(this->holds_units(this->out, first));
    ASSERT_EQ(F::load_from_file(&this->out, this->file), 1);
    EXPECT_TRUE(this->holds_units(this->out, second));
    ASSERT_EQ(F::load_from_file(&this->out, this->file), 1);
    EXPECT_TRUE(this->holds_units(this->out, third));
    // At the end of the file nothing arrives: the count reads as 0.
    ASSERT_EQ(F::load_from_file(&this->out, this->file), 1);
    EXPECT_TRUE(this->holds_units(this->out, this->T("")));
}

TYPED_TEST(StringFiles, AShortBodyLeavesZerosAndStillAnswersTrue) {
    using F = TypeParam;
    auto text = this->T("abcdef");
    std::vector<uint8_t> bytes = this->image(text);
    bytes.resize(4 + 2 * sizeof(typename F::Char)); // the count says 6, two units are there
    this->open("short.bin", bytes);
    ASSERT_EQ(F::duplicate(&this->out, this->T("zzzzzzzz").c_str()), 1);
    ASSERT_EQ(F::load_from_file(&this->out, this->file), 1);
    EXPECT_TRUE(this->holds_units(this->out, this->T(std::string("ab") + std::string(4, '\0'))));
}

// Intended: loading answers true whatever it finds.
TYPED_TEST(StringFiles, ACountTooLargeForABlockLeavesTheSlotAndIsStillTrue) {
    using F = TypeParam;
    this->open("huge.bin", {0xFF, 0xFF, 0xFF, 0xFF});
    ASSERT_EQ(F::duplicate(&this->out, this->T("keep").c_str()), 1);
    EXPECT_EQ(F::load_from_file(&this->out, this->file), 1);
    EXPECT_EQ(this->held(this->out), this->T("keep"));
}

TYPED_TEST(StringFiles, NullArgumentsAreFalseAndSilent) {
    using F = TypeParam;
    ErrorListener listener;
    this->open("n.bin");
    auto text = this->T("abc");
    EXPECT_EQ(F::save_to_file(text.c_str(), nullptr), 0);
    EXPECT_EQ(F::load_from_file(nullptr, this->file), 0);
    EXPECT_EQ(F::load_from_file(&this->out, nullptr), 0);
    EXPECT_TRUE(listener.silent());
    mox_file_close(this->file);
    EXPECT_TRUE(mox_test::read_bytes(this->path).empty());
}

TEST(WideStringFiles, UnitsAreWrittenLowByteFirst) {
    TempFolder folder;
    mox_test::write_bytes(folder.file("w.bin"), {});
    mox_file* file = nullptr;
    ASSERT_EQ(mox_file_new(&file, nullptr), 1);
    ASSERT_EQ(mox_file_open(file, folder.library_path("w.bin").c_str(), MOX_FILE_READ | MOX_FILE_WRITE), 1);
    const uint16_t text[] = {0x0041, 0x20AC, 0};
    ASSERT_EQ(mox_wstring_save_to_file(text, file), 1);
    mox_file_free(&file);
    EXPECT_EQ(mox_test::read_bytes(folder.file("w.bin")),
              (std::vector<uint8_t>{0x02, 0x00, 0x00, 0x00, 0x41, 0x00, 0xAC, 0x20}));
}

// Intended: saving answers true even when nothing could be written.
TYPED_TEST(StringFiles, SavingIsTrueEvenWhenTheFileRefusesTheBytes) {
    using F = TypeParam;
    this->path = this->folder.file("r.bin");
    mox_test::write_bytes(this->path, {});
    ASSERT_EQ(mox_file_new(&this->file, nullptr), 1);
    ASSERT_EQ(mox_file_open(this->file, this->folder.library_path("r.bin").c_str(), MOX_FILE_READ), 1);
    auto text = this->T("abc");
    EXPECT_EQ(F::save_to_file(text.c_str(), this->file), 1);
    mox_file_close(this->file);
    EXPECT_TRUE(mox_test::read_bytes(this->path).empty());
}
