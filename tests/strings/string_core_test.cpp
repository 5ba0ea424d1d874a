// The narrow and the wide string families behave alike except where their units differ, so the
// shared behaviour runs as one typed suite over both.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstdarg>
#include <string>
#include <vector>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

struct Narrow {
    using Char = char;
    using Slot = mox_astring;
    using Array = mox_astring_array;
    static constexpr uint32_t array_class_id = 0x041090D4u;
    static constexpr auto construct = mox_astring_construct;
    static constexpr auto destruct = mox_astring_destruct;
    static constexpr auto set_length = mox_astring_set_length;
    static constexpr auto length = mox_astring_length;
    static constexpr auto duplicate = mox_astring_duplicate;
    static constexpr auto copy = mox_astring_copy;
    static constexpr auto cut = mox_astring_cut;
    static constexpr auto paste = mox_astring_paste;
    static constexpr auto concate_2 = mox_astring_concate_2;
    static constexpr auto concate_3 = mox_astring_concate_3;
    static constexpr auto concate_4 = mox_astring_concate_4;
    static constexpr auto concate_5 = mox_astring_concate_5;
    static constexpr auto concate_ext = mox_astring_concate_ext;
    static constexpr auto case_upper = mox_astring_case_upper;
    static constexpr auto case_lower = mox_astring_case_lower;
    static constexpr auto trim = mox_astring_trim;
    static constexpr auto trim_left = mox_astring_trim_left;
    static constexpr auto trim_right = mox_astring_trim_right;
    static constexpr auto compare = mox_astring_compare;
    static constexpr auto compare_case = mox_astring_compare_case;
    static constexpr auto find_begin = mox_astring_find_begin;
    static constexpr auto find_end = mox_astring_find_end;
    static constexpr auto inclusive = mox_astring_inclusive;
    static constexpr auto find_begin_char = mox_astring_find_begin_char;
    static constexpr auto find_end_char = mox_astring_find_end_char;
    static constexpr auto inclusive_char = mox_astring_inclusive_char;
    static constexpr auto array_construct = mox_astring_array_construct;
    static constexpr auto array_destruct = mox_astring_array_destruct;
    static constexpr auto array_new = mox_astring_array_new;
    static constexpr auto array_free = mox_astring_array_free;
    static constexpr auto array_set_length = mox_astring_array_set_length;
};

struct Wide {
    using Char = uint16_t;
    using Slot = mox_wstring;
    using Array = mox_wstring_array;
    static constexpr uint32_t array_class_id = 0x10F2E9D3u;
    static constexpr auto construct = mox_wstring_construct;
    static constexpr auto destruct = mox_wstring_destruct;
    static constexpr auto set_length = mox_wstring_set_length;
    static constexpr auto length = mox_wstring_length;
    static constexpr auto duplicate = mox_wstring_duplicate;
    static constexpr auto copy = mox_wstring_copy;
    static constexpr auto cut = mox_wstring_cut;
    static constexpr auto paste = mox_wstring_paste;
    static constexpr auto concate_2 = mox_wstring_concate_2;
    static constexpr auto concate_3 = mox_wstring_concate_3;
    static constexpr auto concate_4 = mox_wstring_concate_4;
    static constexpr auto concate_5 = mox_wstring_concate_5;
    static constexpr auto concate_ext = mox_wstring_concate_ext;
    static constexpr auto case_upper = mox_wstring_case_upper;
    static constexpr auto case_lower = mox_wstring_case_lower;
    static constexpr auto trim = mox_wstring_trim;
    static constexpr auto trim_left = mox_wstring_trim_left;
    static constexpr auto trim_right = mox_wstring_trim_right;
    static constexpr auto compare = mox_wstring_compare;
    static constexpr auto compare_case = mox_wstring_compare_case;
    static constexpr auto find_begin = mox_wstring_find_begin;
    static constexpr auto find_end = mox_wstring_find_end;
    static constexpr auto inclusive = mox_wstring_inclusive;
    static constexpr auto find_begin_char = mox_wstring_find_begin_char;
    static constexpr auto find_end_char = mox_wstring_find_end_char;
    static constexpr auto inclusive_char = mox_wstring_inclusive_char;
    static constexpr auto array_construct = mox_wstring_array_construct;
    static constexpr auto array_destruct = mox_wstring_array_destruct;
    static constexpr auto array_new = mox_wstring_array_new;
    static constexpr auto array_free = mox_wstring_array_free;
    static constexpr auto array_set_length = mox_wstring_array_set_length;
};

template <class F> class Strings : public ::testing::Test {
protected:
    using Char = typename F::Char;
    using Text = std::basic_string<Char>;

    void TearDown() override {
        for (auto* slot : {&out, &other})
            if (*slot != nullptr)
                F::destruct(slot);
    }

    // A text in the family's units, from ASCII (or raw bytes) given as a narrow literal.
    static Text T(const char* ascii) {
        Text text;
        for (const char* c = ascii; *c != 0; ++c)
            text.push_back(static_cast<Char>(static_cast<unsigned char>(*c)));
        return text;
    }
    // What a slot holds, up to its terminator.
    static Text held(const Char* slot) { return slot == nullptr ? Text() : Text(slot); }

    typename F::Slot out = nullptr;
    typename F::Slot other = nullptr;
};

using Families = ::testing::Types<Narrow, Wide>;
TYPED_TEST_SUITE(Strings, Families);

} // namespace

TYPED_TEST(Strings, ConstructClearsTheSlotAndDestructReleasesTheBlock) {
    using F = TypeParam;
    typename F::Slot slot = reinterpret_cast<typename F::Slot>(this);
    EXPECT_EQ(F::construct(&slot), 1);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(F::destruct(&slot), 0); // no block to release
    ASSERT_EQ(F::duplicate(&slot, this->T("ab").c_str()), 1);
    EXPECT_EQ(F::destruct(&slot), 1);
    EXPECT_EQ(slot, nullptr);
}

TYPED_TEST(Strings, NullArgumentsAreFalseAndSilent) {
    using F = TypeParam;
    ErrorListener listener;
    auto text = this->T("abc");
    const typename F::Char* t = text.c_str();
    uint32_t value = 9;
    EXPECT_EQ(F::construct(nullptr), 0);
    EXPECT_EQ(F::destruct(nullptr), 0);
    EXPECT_EQ(F::set_length(nullptr, 3), 0);
    EXPECT_EQ(F::duplicate(nullptr, t), 0);
    EXPECT_EQ(F::copy(nullptr, t, 0, 1), 0);
    EXPECT_EQ(F::cut(nullptr, t, 0, 1), 0);
    EXPECT_EQ(F::paste(nullptr, t, t, 0), 0);
    EXPECT_EQ(F::concate_2(nullptr, t, t), 0);
    EXPECT_EQ(F::concate_3(nullptr, t, t, t), 0);
    EXPECT_EQ(F::concate_4(nullptr, t, t, t, t), 0);
    EXPECT_EQ(F::concate_5(nullptr, t, t, t, t, t), 0);
    EXPECT_EQ(F::concate_ext(nullptr, t, nullptr), 0);
    EXPECT_EQ(F::case_upper(nullptr, t), 0);
    EXPECT_EQ(F::case_lower(nullptr, t), 0);
    EXPECT_EQ(F::trim(nullptr, t), 0);
    EXPECT_EQ(F::trim_left(nullptr, t), 0);
    EXPECT_EQ(F::trim_right(nullptr, t), 0);
    EXPECT_EQ(F::compare(nullptr, t), 0);
    EXPECT_EQ(F::compare(t, nullptr), 0);
    EXPECT_EQ(F::compare_case(nullptr, t), 0);
    EXPECT_EQ(F::find_begin(nullptr, t, &value), 0);
    EXPECT_EQ(F::find_end(t, nullptr, &value), 0);
    EXPECT_EQ(F::inclusive(t, t, nullptr), 0);
    EXPECT_EQ(F::find_begin_char(nullptr, 'a', &value), 0);
    EXPECT_EQ(F::find_end_char(t, 'a', nullptr), 0);
    EXPECT_EQ(F::inclusive_char(nullptr, 'a', &value), 0);
    EXPECT_EQ(value, 9u);
    EXPECT_EQ(F::array_construct(nullptr, nullptr), 0);
    EXPECT_EQ(F::array_destruct(nullptr), 0);
    EXPECT_EQ(F::array_new(nullptr, nullptr), 0);
    EXPECT_EQ(F::array_free(nullptr), 0);
    EXPECT_EQ(F::array_set_length(nullptr, 2), 0);
    EXPECT_TRUE(listener.silent());
}

TYPED_TEST(Strings, LengthCountsUnitsAndNullIsEmpty) {
    using F = TypeParam;
    EXPECT_EQ(F::length(nullptr), 0u);
    EXPECT_EQ(F::length(this->T("").c_str()), 0u);
    EXPECT_EQ(F::length(this->T("hello").c_str()), 5u);
}

TYPED_TEST(Strings, SetLengthKeepsCharactersAndZeroesTheRest) {
    using F = TypeParam;
    ASSERT_EQ(F::duplicate(&this->out, this->T("abcdef").c_str()), 1);
    EXPECT_EQ(F::set_length(&this->out, 3), 1);
    EXPECT_EQ(this->held(this->out), this->T("abc"));
    EXPECT_EQ(F::set_length(&this->out, 5), 1);
    EXPECT_EQ(this->out[3], 0);
    EXPECT_EQ(this->out[4], 0);
    EXPECT_EQ(this->out[5], 0);
    EXPECT_EQ(F::length(this->out), 3u);
    EXPECT_EQ(F::set_length(&this->other, 0), 1);
    ASSERT_NE(this->other, nullptr);
    EXPECT_EQ(this->other[0], 0);
}

TYPED_TEST(Strings, DuplicateCopiesAndLeavesItsOwnBlockAlone) {
    using F = TypeParam;
    ASSERT_EQ(F::duplicate(&this->out, this->T("text").c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("text"));
    auto* block = this->out;
    EXPECT_EQ(F::duplicate(&this->out, this->out), 1);
    EXPECT_EQ(this->out, block);
    EXPECT_EQ(this->held(this->out), this->T("text"));
    // A null source gives an empty string, not a null slot.
    EXPECT_EQ(F::duplicate(&this->out, nullptr), 1);
    ASSERT_NE(this->out, nullptr);
    EXPECT_EQ(this->out[0], 0);
    // Intended: an empty slot already "holds" a null source, so nothing is done and it stays null.
    EXPECT_EQ(F::duplicate(&this->other, nullptr), 1);
    EXPECT_EQ(this->other, nullptr);
}

TYPED_TEST(Strings, CopyTakesARangeOrChangesNothing) {
    using F = TypeParam;
    auto abc = this->T("abc");
    ASSERT_EQ(F::duplicate(&this->out, this->T("old").c_str()), 1);
    auto* block = this->out;
    EXPECT_EQ(F::copy(&this->out, abc.c_str(), 1, 3), 0);
    EXPECT_EQ(this->out, block);
    EXPECT_EQ(this->held(this->out), this->T("old"));
    EXPECT_EQ(F::copy(&this->out, abc.c_str(), 0xFFFFFFFFu, 2), 0);
    EXPECT_EQ(F::copy(&this->out, abc.c_str(), 1, 2), 1);
    EXPECT_EQ(this->held(this->out), this->T("bc"));
    EXPECT_EQ(F::copy(&this->out, abc.c_str(), 3, 0), 1);
    EXPECT_EQ(this->held(this->out), this->T(""));
}

TYPED_TEST(Strings, CutRemovesARange) {
    using F = TypeParam;
    auto abcd = this->T("abcd");
    EXPECT_EQ(F::cut(&this->out, abcd.c_str(), 1, 2), 1);
    EXPECT_EQ(this->held(this->out), this->T("ad"));
    EXPECT_EQ(F::cut(&this->out, abcd.c_str(), 0, 4), 1);
    EXPECT_EQ(this->held(this->out), this->T(""));
    ASSERT_EQ(F::duplicate(&this->out, this->T("keep").c_str()), 1);
    EXPECT_EQ(F::cut(&this->out, abcd.c_str(), 3, 2), 0);
    EXPECT_EQ(this->held(this->out), this->T("keep"));
}

TYPED_TEST(Strings, PasteInsertsBeforeThePosition) {
    using F = TypeParam;
    auto abc = this->T("abc");
    auto x = this->T("X");
    EXPECT_EQ(F::paste(&this->out, abc.c_str(), x.c_str(), 3), 1);
    EXPECT_EQ(this->held(this->out), this->T("abcX"));
    EXPECT_EQ(F::paste(&this->out, abc.c_str(), x.c_str(), 0), 1);
    EXPECT_EQ(this->held(this->out), this->T("Xabc"));
    EXPECT_EQ(F::paste(&this->out, abc.c_str(), x.c_str(), 1), 1);
    EXPECT_EQ(this->held(this->out), this->T("aXbc"));
}

// Intended: past the end the insert is dropped, but the block keeps the room for it, holding what
// the slot held there before (zero in a fresh slot).
TYPED_TEST(Strings, PastePastTheEndKeepsTheRoomOfTheInsert) {
    using F = TypeParam;
    auto abc = this->T("abc");
    auto yz = this->T("YZ");
    EXPECT_EQ(F::paste(&this->other, abc.c_str(), yz.c_str(), 7), 1);
    EXPECT_EQ(this->held(this->other), this->T("abc"));
    EXPECT_EQ(this->other[3], 0);
    EXPECT_EQ(this->other[4], 0);
    EXPECT_EQ(this->other[5], 0);

    ASSERT_EQ(F::duplicate(&this->out, this->T("qqqqqqqq").c_str()), 1);
    EXPECT_EQ(F::paste(&this->out, abc.c_str(), yz.c_str(), 4), 1);
    EXPECT_EQ(this->held(this->out), this->T("abcqq"));
}

TYPED_TEST(Strings, ConcateJoinsItsSources) {
    using F = TypeParam;
    auto a = this->T("a"), b = this->T("bc"), c = this->T(""), d = this->T("def"), e = this->T("g");
    EXPECT_EQ(F::concate_2(&this->out, a.c_str(), b.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("abc"));
    EXPECT_EQ(F::concate_3(&this->out, a.c_str(), b.c_str(), c.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("abc"));
    EXPECT_EQ(F::concate_4(&this->out, a.c_str(), b.c_str(), c.c_str(), d.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("abcdef"));
    EXPECT_EQ(F::concate_5(&this->out, a.c_str(), b.c_str(), c.c_str(), d.c_str(), e.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("abcdefg"));
    EXPECT_EQ(F::concate_ext(&this->out, e.c_str(), d.c_str(), a.c_str(), b.c_str(), e.c_str(), a.c_str(),
                             static_cast<const typename F::Char*>(nullptr)),
              1);
    EXPECT_EQ(this->held(this->out), this->T("gdefabcga"));
    EXPECT_EQ(F::concate_ext(&this->out, static_cast<const typename F::Char*>(nullptr)), 1);
    ASSERT_NE(this->out, nullptr);
    EXPECT_EQ(this->held(this->out), this->T(""));
}

TYPED_TEST(Strings, CaseChangesOnlyTheLettersAToZ) {
    using F = TypeParam;
    auto text = this->T("aZ09@[`{\xE9");
    EXPECT_EQ(F::case_upper(&this->out, text.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("AZ09@[`{\xE9"));
    EXPECT_EQ(F::case_lower(&this->out, text.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("az09@[`{\xE9"));
}

TYPED_TEST(Strings, TrimTakesBlanksAwayAtTheEnds) {
    using F = TypeParam;
    auto text = this->T(" \t\x01x y\r\n ");
    EXPECT_EQ(F::trim(&this->out, text.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("x y"));
    EXPECT_EQ(F::trim_left(&this->out, text.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("x y\r\n "));
    EXPECT_EQ(F::trim_right(&this->out, text.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T(" \t\x01x y"));
    EXPECT_EQ(F::trim(&this->out, nullptr), 1);
    EXPECT_EQ(this->held(this->out), this->T(""));
}

// Intended: trimming the right of a text of blanks only gives it back whole.
TYPED_TEST(Strings, ATextOfBlanksOnlyTrimsAsymmetrically) {
    using F = TypeParam;
    auto blanks = this->T("   ");
    EXPECT_EQ(F::trim_right(&this->out, blanks.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T("   "));
    EXPECT_EQ(F::trim(&this->out, blanks.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T(""));
    EXPECT_EQ(F::trim_left(&this->out, blanks.c_str()), 1);
    EXPECT_EQ(this->held(this->out), this->T(""));
}

TYPED_TEST(Strings, CompareIsEqualityWithAndWithoutCase) {
    using F = TypeParam;
    auto a = this->T("Abc"), b = this->T("aBC"), empty = this->T(""), longer = this->T("abcd");
    EXPECT_EQ(F::compare(a.c_str(), b.c_str()), 1);
    EXPECT_EQ(F::compare_case(a.c_str(), b.c_str()), 0);
    EXPECT_EQ(F::compare_case(a.c_str(), a.c_str()), 1);
    EXPECT_EQ(F::compare(a.c_str(), longer.c_str()), 0);
    EXPECT_EQ(F::compare(longer.c_str(), a.c_str()), 0);
    EXPECT_EQ(F::compare(empty.c_str(), this->T("").c_str()), 1);
    EXPECT_EQ(F::compare_case(empty.c_str(), this->T("").c_str()), 1);
    // Only a to z fold: '@' and '`' are 32 apart as well, but differ.
    EXPECT_EQ(F::compare(this->T("@").c_str(), this->T("`").c_str()), 0);
}

TYPED_TEST(Strings, FindBeginGivesTheFirstOccurrence) {
    using F = TypeParam;
    auto text = this->T("xabcab"), ab = this->T("ab");
    uint32_t position = 77;
    EXPECT_EQ(F::find_begin(text.c_str(), ab.c_str(), &position), 1);
    EXPECT_EQ(position, 1u);
    EXPECT_EQ(F::find_begin(text.c_str(), this->T("xa").c_str(), &position), 1);
    EXPECT_EQ(position, 0u);
    position = 77;
    // The text ends inside the only candidate: no match.
    EXPECT_EQ(F::find_begin(text.c_str(), this->T("abc_").c_str(), &position), 0);
    EXPECT_EQ(position, 0u);
    EXPECT_EQ(F::find_begin(text.c_str(), this->T("bx").c_str(), &position), 0);
    position = 77;
    EXPECT_EQ(F::find_begin(this->T("").c_str(), ab.c_str(), &position), 0);
    EXPECT_EQ(position, 0u);
    position = 77;
    EXPECT_EQ(F::find_begin(text.c_str(), this->T("").c_str(), &position), 0);
    EXPECT_EQ(position, 0u);
}

// Intended: the backward search is blind to position 0.
TYPED_TEST(Strings, FindEndGivesTheLastOccurrenceButNeverPositionZero) {
    using F = TypeParam;
    auto a = this->T("a");
    uint32_t position = 77;
    EXPECT_EQ(F::find_end(this->T("abc").c_str(), a.c_str(), &position), 0);
    EXPECT_EQ(position, 0u);
    EXPECT_EQ(F::find_end(this->T("aba").c_str(), a.c_str(), &position), 1);
    EXPECT_EQ(position, 2u);
    EXPECT_EQ(F::find_end(this->T("abcabcab").c_str(), this->T("abc").c_str(), &position), 1);
    EXPECT_EQ(position, 3u);
    position = 77;
    EXPECT_EQ(F::find_end(this->T("").c_str(), a.c_str(), &position), 0);
    EXPECT_EQ(position, 0u);
}

TYPED_TEST(Strings, InclusiveCountsOverlappingOccurrences) {
    using F = TypeParam;
    uint32_t count = 77;
    EXPECT_EQ(F::inclusive(this->T("aaa").c_str(), this->T("aa").c_str(), &count), 1);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(F::inclusive(this->T("abab").c_str(), this->T("ab").c_str(), &count), 1);
    EXPECT_EQ(count, 2u);
    count = 77;
    EXPECT_EQ(F::inclusive(this->T("abab").c_str(), this->T("ba_").c_str(), &count), 0);
    EXPECT_EQ(count, 0u);
    count = 77;
    EXPECT_EQ(F::inclusive(this->T("abab").c_str(), this->T("").c_str(), &count), 0);
    EXPECT_EQ(count, 0u);
}

TYPED_TEST(Strings, CharacterSearchesFollowThePatternSearches) {
    using F = TypeParam;
    auto text = this->T("banana");
    uint32_t value = 77;
    EXPECT_EQ(F::find_begin_char(text.c_str(), 'n', &value), 1);
    EXPECT_EQ(value, 2u);
    EXPECT_EQ(F::find_end_char(text.c_str(), 'n', &value), 1);
    EXPECT_EQ(value, 4u);
    EXPECT_EQ(F::inclusive_char(text.c_str(), 'a', &value), 1);
    EXPECT_EQ(value, 3u);
    value = 77;
    EXPECT_EQ(F::find_end_char(text.c_str(), 'b', &value), 0);
    EXPECT_EQ(value, 0u);
    value = 77;
    EXPECT_EQ(F::find_begin_char(text.c_str(), 'z', &value), 0);
    EXPECT_EQ(value, 0u);
    value = 77;
    EXPECT_EQ(F::inclusive_char(text.c_str(), 'z', &value), 0);
    EXPECT_EQ(value, 0u);
    value = 77;
    EXPECT_EQ(F::inclusive_char(this->T("").c_str(), 'a', &value), 0);
    EXPECT_EQ(value, 0u);
}

TYPED_TEST(Strings, ArrayLifetime) {
    using F = TypeParam;
    typename F::Array* array = nullptr;
    int owner = 0;
    ASSERT_EQ(F::array_new(&array, &owner), 1);
    EXPECT_EQ(array->header.owner, &owner);
    EXPECT_EQ(array->header.class_id, F::array_class_id);
    EXPECT_EQ(array->length, 0u);
    EXPECT_EQ(array->items, nullptr);
    ASSERT_EQ(F::array_set_length(array, 3), 1);
    EXPECT_EQ(array->length, 3u);
    for (uint32_t i = 0; i < 3; ++i)
        EXPECT_EQ(array->items[i], nullptr);
    ASSERT_EQ(F::duplicate(&array->items[2], this->T("two").c_str()), 1);
    EXPECT_EQ(F::array_free(&array), 1);
    EXPECT_EQ(array, nullptr);
    EXPECT_EQ(F::array_free(&array), 0);
}

TYPED_TEST(Strings, ArraySetLengthGrowsShrinksAndRefusesZero) {
    using F = TypeParam;
    typename F::Array array;
    ASSERT_EQ(F::array_construct(&array, nullptr), 1);
    EXPECT_EQ(array.header.class_id, F::array_class_id);
    ASSERT_EQ(F::array_set_length(&array, 2), 1);
    F::duplicate(&array.items[0], this->T("zero").c_str());
    F::duplicate(&array.items[1], this->T("one").c_str());
    // Intended: 0 is refused and the items stay.
    EXPECT_EQ(F::array_set_length(&array, 0), 0);
    EXPECT_EQ(array.length, 2u);
    EXPECT_EQ(this->held(array.items[1]), this->T("one"));
    ASSERT_EQ(F::array_set_length(&array, 4), 1);
    EXPECT_EQ(this->held(array.items[0]), this->T("zero"));
    EXPECT_EQ(this->held(array.items[1]), this->T("one"));
    EXPECT_EQ(array.items[2], nullptr);
    EXPECT_EQ(array.items[3], nullptr);
    ASSERT_EQ(F::array_set_length(&array, 1), 1);
    EXPECT_EQ(array.length, 1u);
    EXPECT_EQ(this->held(array.items[0]), this->T("zero"));
    EXPECT_EQ(F::array_destruct(&array), 1);
    EXPECT_EQ(array.length, 0u);
    EXPECT_EQ(array.items, nullptr);
}

// ---- Where the two families differ ----

TEST(NarrowStrings, SizeAndLengthAreTheSameCount) {
    EXPECT_EQ(mox_astring_size("abc"), 3u);
    EXPECT_EQ(mox_astring_length("abc"), 3u);
    EXPECT_EQ(mox_astring_size(nullptr), 0u);
}

// Intended: read as signed bytes, all bytes from 0x80 up are blanks, accented letters included.
TEST(NarrowStrings, BytesFromHexEightyUpAreBlanks) {
    mox_astring out = nullptr;
    EXPECT_EQ(mox_astring_trim(&out, "\xE9t\xE9\x80"), 1);
    EXPECT_STREQ(out, "t");
    EXPECT_EQ(mox_astring_trim_left(&out, "\xFF\x7F"), 1);
    EXPECT_STREQ(out, "\x7F");
    mox_astring_destruct(&out);
}

TEST(NarrowStrings, SwapIsAStubThatChangesNothing) {
    char text[] = "ab";
    EXPECT_EQ(mox_astring_swap(text), 1);
    EXPECT_STREQ(text, "ab");
    EXPECT_EQ(mox_astring_swap(nullptr), 0);
}

TEST(NarrowStrings, TheAuthorIsADuplicatedString) {
    mox_astring author = nullptr;
    ASSERT_EQ(mox_author(&author), 1);
    ASSERT_NE(author, nullptr);
    std::string first(author);
    EXPECT_EQ(mox_astring_length(author), first.size());
    EXPECT_GT(first.size(), 0u);
    ASSERT_EQ(mox_astring_duplicate(&author, "a much longer text than any author name here"), 1);
    EXPECT_EQ(mox_author(&author), 1);
    EXPECT_EQ(std::string(author), first);
    EXPECT_EQ(mox_author(nullptr), 0);
    mox_astring_destruct(&author);
}

TEST(WideStrings, SizeCountsBytesAndLengthUnits) {
    const uint16_t text[] = {0x41, 0x263A, 0x42, 0};
    EXPECT_EQ(mox_wstring_size(text), 6u);
    EXPECT_EQ(mox_wstring_length(text), 3u);
    EXPECT_EQ(mox_wstring_size(nullptr), 0u);
    EXPECT_EQ(mox_wstring_length(nullptr), 0u);
}

TEST(WideStrings, UnitsAboveThirtyTwoAreNeverBlanks) {
    const uint16_t text[] = {0x20, 0x00E9, 0x41, 0xFFFF, 0x09, 0};
    mox_wstring out = nullptr;
    EXPECT_EQ(mox_wstring_trim(&out, text), 1);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(std::u16string(reinterpret_cast<char16_t*>(out)), std::u16string(u"\u00E9A\uFFFF"));
    mox_wstring_destruct(&out);
}

TEST(WideStrings, SwapExchangesTheBytesOfEveryUnitInPlace) {
    uint16_t text[] = {0x1234, 0xAB00, 0x00CD, 0};
    EXPECT_EQ(mox_wstring_swap(text), 1);
    EXPECT_EQ(text[0], 0x3412);
    EXPECT_EQ(text[1], 0x00AB);
    EXPECT_EQ(text[2], 0xCD00);
    EXPECT_EQ(text[3], 0);
    uint16_t empty[] = {0, 0x1234};
    EXPECT_EQ(mox_wstring_swap(empty), 1);
    EXPECT_EQ(empty[1], 0x1234);
    ErrorListener listener;
    EXPECT_EQ(mox_wstring_swap(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(WideStrings, ConstructAndDestructShareTheNarrowBodies) {
    mox_wstring slot = reinterpret_cast<mox_wstring>(&slot);
    EXPECT_EQ(mox_wstring_construct(&slot), 1);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(mox_wstring_set_length(&slot, 2), 1);
    EXPECT_EQ(mox_wstring_destruct(&slot), 1);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(mox_wstring_destruct(&slot), 0);
}

TEST(Support, WideStringsAreReportedMissingWhileTheyWork) {
    mox_wstring slot = nullptr;
    EXPECT_EQ(mox_support_widestring(), 0);
    EXPECT_EQ(mox_wstring_construct(&slot), 1);
}
