// Numbers to text and back, and the quick looks at text, for both string families. Every table row is
// an exact result, irregular ones included.
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "strings/convert_families.h"
#include "support/error_listener.h"

using namespace convert_test;
using mox_test::ErrorListener;

template <class F> class Numbers : public Family<F> {};
TYPED_TEST_SUITE(Numbers, Families);

namespace {

template <class F> struct FormatRow {
    const char* what;
    std::function<mox_bool(typename F::Slot*)> call;
    std::string expected; // may hold zeros: the result has exactly these units
};

template <class Value> struct ReadRow {
    const char* text;
    uint32_t base;
    mox_bool result;
    Value value;
};

} // namespace

TYPED_TEST(Numbers, IntegersFormatByTheirTable) {
    using F = TypeParam;
    using std::string;
    const string z(1, '\0'); // the work position nobody wrote
    std::vector<FormatRow<F>> rows = {
        // The rows of the formatting table.
        {"i32 123", [](auto* s) { return F::from_i32(s, 123, 10, 0); }, "123"},
        {"i32 123 w6", [](auto* s) { return F::from_i32(s, 123, 10, 6); }, "000123"},
        {"i32 12345 w3 cuts", [](auto* s) { return F::from_i32(s, 12345, 10, 3); }, "345"},
        {"i32 0", [](auto* s) { return F::from_i32(s, 0, 10, 0); }, "0"},
        {"i32 0 hex", [](auto* s) { return F::from_i32(s, 0, 16, 0); }, "00000000"},
        {"i8 5 bin", [](auto* s) { return F::from_i8(s, 5, 2, 0); }, "00000101"},
        {"u32 255 hex", [](auto* s) { return F::from_u32(s, 255, 16, 0); }, "000000FF"},
        // Intended: the sign overwrites the lowest digit.
        {"i32 -123 w6", [](auto* s) { return F::from_i32(s, -123, 10, 6); }, "00012-"},
        {"i32 -123", [](auto* s) { return F::from_i32(s, -123, 10, 0); }, z + "12-"},
        // Intended: bases 2, 8 and 16 drop the sign.
        {"i32 -1 hex", [](auto* s) { return F::from_i32(s, -1, 16, 0); }, "00000001"},
        {"i32 -123 oct", [](auto* s) { return F::from_i32(s, -123, 8, 0); }, "173"},
        {"i32 min", [](auto* s) { return F::from_i32(s, INT32_MIN, 10, 0); }, z + "214748364-"},
        {"i32 max", [](auto* s) { return F::from_i32(s, INT32_MAX, 10, 0); }, "2147483647"},
        {"i32 min hex", [](auto* s) { return F::from_i32(s, INT32_MIN, 16, 0); }, "80000000"},
        {"i32 max bin", [](auto* s) { return F::from_i32(s, INT32_MAX, 2, 0); }, "0" + string(31, '1')},
        {"i32 -5 base 3", [](auto* s) { return F::from_i32(s, -5, 3, 0); }, z + "1-"},
        {"i32 wide width is 32", [](auto* s) { return F::from_i32(s, 1, 10, 40); }, string(31, '0') + "1"},
        {"i32 0 w3", [](auto* s) { return F::from_i32(s, 0, 10, 3); }, "000"},
        {"i32 0 oct", [](auto* s) { return F::from_i32(s, 0, 8, 0); }, "0"},
        {"u32 max", [](auto* s) { return F::from_u32(s, UINT32_MAX, 10, 0); }, "4294967295"},
        {"u32 max hex", [](auto* s) { return F::from_u32(s, UINT32_MAX, 16, 0); }, "FFFFFFFF"},
        {"u32 max bin", [](auto* s) { return F::from_u32(s, UINT32_MAX, 2, 0); }, string(32, '1')},
        {"u32 max oct", [](auto* s) { return F::from_u32(s, UINT32_MAX, 8, 0); }, "37777777777"},
        {"u32 0 bin", [](auto* s) { return F::from_u32(s, 0, 2, 0); }, string(32, '0')},
        {"u32 255 hex w1 cuts", [](auto* s) { return F::from_u32(s, 255, 16, 1); }, "F"},
        {"i16 min", [](auto* s) { return F::from_i16(s, INT16_MIN, 10, 0); }, z + "3276-"},
        {"i16 max", [](auto* s) { return F::from_i16(s, INT16_MAX, 10, 0); }, "32767"},
        {"i16 -1 hex", [](auto* s) { return F::from_i16(s, -1, 16, 0); }, "0001"},
        {"i16 min hex", [](auto* s) { return F::from_i16(s, INT16_MIN, 16, 0); }, "8000"},
        {"i16 0 hex", [](auto* s) { return F::from_i16(s, 0, 16, 0); }, "0000"},
        {"i16 0 bin", [](auto* s) { return F::from_i16(s, 0, 2, 0); }, string(16, '0')},
        {"u16 max", [](auto* s) { return F::from_u16(s, UINT16_MAX, 10, 0); }, "65535"},
        {"u16 max hex", [](auto* s) { return F::from_u16(s, UINT16_MAX, 16, 0); }, "FFFF"},
        {"u16 max bin", [](auto* s) { return F::from_u16(s, UINT16_MAX, 2, 0); }, string(16, '1')},
        // Our decision: digits above 15 go on with the letters.
        {"u16 max base 36", [](auto* s) { return F::from_u16(s, UINT16_MAX, 36, 0); }, "1EKF"},
        {"i8 min", [](auto* s) { return F::from_i8(s, INT8_MIN, 10, 0); }, z + "12-"},
        {"i8 min w4", [](auto* s) { return F::from_i8(s, INT8_MIN, 10, 4); }, "012-"},
        {"i8 max", [](auto* s) { return F::from_i8(s, INT8_MAX, 10, 0); }, "127"},
        {"i8 -1 hex", [](auto* s) { return F::from_i8(s, -1, 16, 0); }, "01"},
        {"i8 min bin", [](auto* s) { return F::from_i8(s, INT8_MIN, 2, 0); }, "10000000"},
        {"i8 -1 oct", [](auto* s) { return F::from_i8(s, -1, 8, 0); }, "1"},
        {"i8 5 bin w3", [](auto* s) { return F::from_i8(s, 5, 2, 3); }, "101"},
        {"i8 0 bin", [](auto* s) { return F::from_i8(s, 0, 2, 0); }, "00000000"},
        {"i8 max hex", [](auto* s) { return F::from_i8(s, INT8_MAX, 16, 0); }, "7F"},
        {"u8 max", [](auto* s) { return F::from_u8(s, UINT8_MAX, 10, 0); }, "255"},
        {"u8 max hex", [](auto* s) { return F::from_u8(s, UINT8_MAX, 16, 0); }, "FF"},
        {"u8 max bin", [](auto* s) { return F::from_u8(s, UINT8_MAX, 2, 0); }, "11111111"},
        {"u8 200 oct", [](auto* s) { return F::from_u8(s, 200, 8, 0); }, "310"},
        {"u8 0", [](auto* s) { return F::from_u8(s, 0, 10, 0); }, "0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        typename F::Slot slot = nullptr;
        ASSERT_EQ(row.call(&slot), 1);
        EXPECT_TRUE(this->holds_units(slot, this->T(row.expected)));
        F::destruct(&slot);
    }
}

TYPED_TEST(Numbers, IntegerFormattingRefusesANullSlotAndBasesBelowTwo) {
    using F = TypeParam;
    ErrorListener listener;
    EXPECT_EQ(F::from_i32(nullptr, 1, 10, 0), 0);
    EXPECT_EQ(F::from_u8(nullptr, 1, 16, 0), 0);
    ASSERT_EQ(F::duplicate(&this->out, this->T("keep").c_str()), 1);
    // Our decision: base 0 would divide by zero and base 1 never end.
    EXPECT_EQ(F::from_i32(&this->out, 5, 0, 0), 0);
    EXPECT_EQ(F::from_u16(&this->out, 5, 1, 0), 0);
    EXPECT_EQ(this->held(this->out), this->T("keep"));
    EXPECT_TRUE(listener.silent());
}

TYPED_TEST(Numbers, BooleansFormatAsWords) {
    using F = TypeParam;
    ASSERT_EQ(F::from_bool(&this->out, 1), 1);
    EXPECT_TRUE(this->holds_units(this->out, this->T("true")));
    ASSERT_EQ(F::from_bool(&this->out, 0), 1);
    EXPECT_TRUE(this->holds_units(this->out, this->T("false")));
    EXPECT_EQ(F::from_bool(&this->out, 2), 0);
    EXPECT_EQ(F::from_bool(&this->out, 255), 0);
    EXPECT_EQ(this->held(this->out), this->T("false"));
    EXPECT_EQ(F::from_bool(nullptr, 1), 0);
}

TYPED_TEST(Numbers, RealsFormatByCuttingDigits) {
    using F = TypeParam;
    const auto dot = static_cast<typename F::Char>('.');
    const auto comma = static_cast<typename F::Char>(',');
    std::vector<FormatRow<F>> rows = {
        {"1.5", [&](auto* s) { return F::from_r64(s, 1.5, dot, 1); }, "1.5"},
        {"1.5 three", [&](auto* s) { return F::from_r64(s, 1.5, dot, 3); }, "1.500"},
        {"zero", [&](auto* s) { return F::from_r64(s, 0.0, dot, 1); }, "0.0"},
        {"negative zero is not below zero", [&](auto* s) { return F::from_r64(s, -0.0, dot, 2); }, "0.00"},
        {"-1.5", [&](auto* s) { return F::from_r64(s, -1.5, dot, 2); }, "-1.50"},
        {"comma", [&](auto* s) { return F::from_r64(s, 12.5, comma, 1); }, "12,5"},
        {"100", [&](auto* s) { return F::from_r64(s, 100.0, dot, 2); }, "100.00"},
        {"1e16", [&](auto* s) { return F::from_r64(s, 1e16, dot, 1); }, "10000000000000000.0"},
        {"cut, not rounded", [&](auto* s) { return F::from_r64(s, 0.999, dot, 2); }, "0.99"},
        {"a third", [&](auto* s) { return F::from_r64(s, 1.0 / 3, dot, 5); }, "0.33333"},
        {"0.1 in 64 bits", [&](auto* s) { return F::from_r64(s, 0.1, dot, 10); }, "0.1000000000"},
        {"sixteen decimals", [&](auto* s) { return F::from_r64(s, 0.5, dot, 16); }, "0.5000000000000000"},
        {"9.75", [&](auto* s) { return F::from_r64(s, 9.75, dot, 2); }, "9.75"},
        {"r32 0.1", [&](auto* s) { return F::from_r32(s, 0.1f, dot, 3); }, "0.100"},
        // The 32-bit value is written with all of its binary digits.
        {"r32 0.1 ten", [&](auto* s) { return F::from_r32(s, 0.1f, dot, 10); }, "0.1000000014"},
        {"r32 -2.25", [&](auto* s) { return F::from_r32(s, -2.25f, dot, 2); }, "-2.25"},
        {"r32 1024", [&](auto* s) { return F::from_r32(s, 1024.0f, dot, 1); }, "1024.0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        typename F::Slot slot = nullptr;
        ASSERT_EQ(row.call(&slot), 1);
        EXPECT_TRUE(this->holds_units(slot, this->T(row.expected)));
        // The block has room for a sign it may not use: two terminators behind an unsigned result.
        if (row.expected[0] != '-') {
            EXPECT_EQ(slot[row.expected.size() + 1], 0);
        }
        F::destruct(&slot);
    }
}

TYPED_TEST(Numbers, RealFormattingRefusesBadDecimalsNullSlotsAndNonFiniteValues) {
    using F = TypeParam;
    ErrorListener listener;
    const auto dot = static_cast<typename F::Char>('.');
    ASSERT_EQ(F::duplicate(&this->out, this->T("keep").c_str()), 1);
    EXPECT_EQ(F::from_r64(&this->out, 1.5, dot, 0), 0);
    EXPECT_EQ(F::from_r64(&this->out, 1.5, dot, 17), 0);
    EXPECT_EQ(F::from_r32(&this->out, 1.5f, dot, 0), 0);
    // Our decision: infinities and NaN are not written.
    EXPECT_EQ(F::from_r64(&this->out, std::numeric_limits<double>::infinity(), dot, 2), 0);
    EXPECT_EQ(F::from_r64(&this->out, -std::numeric_limits<double>::infinity(), dot, 2), 0);
    EXPECT_EQ(F::from_r32(&this->out, std::numeric_limits<float>::quiet_NaN(), dot, 2), 0);
    EXPECT_EQ(this->held(this->out), this->T("keep"));
    EXPECT_EQ(F::from_r64(nullptr, 1.5, dot, 2), 0);
    EXPECT_EQ(F::from_r32(nullptr, 1.5f, dot, 2), 0);
    EXPECT_TRUE(listener.silent());
}

TYPED_TEST(Numbers, LargeRealsWriteEveryIntegerDigit) {
    using F = TypeParam;
    ASSERT_EQ(F::from_r64(&this->out, 5e300, static_cast<typename F::Char>('.'), 1), 1);
    EXPECT_EQ(F::length(this->out), 301u + 2u);
    EXPECT_EQ(this->out[301], '.');
    // Our decision: the decimals of the largest value, lost to an overflow of the arithmetic, are
    // written as zeros.
    ASSERT_EQ(F::from_r64(&this->out, std::numeric_limits<double>::max(), '.', 2), 1);
    EXPECT_EQ(F::length(this->out), 309u + 3u);
    EXPECT_EQ(this->out[309], '.');
    EXPECT_EQ(this->out[310], '0');
    EXPECT_EQ(this->out[311], '0');
}

namespace {

// Runs a table of reads through one entry and checks result and value of every row.
template <class F, class Value, class Entry>
void check_reads(Entry entry, const std::vector<ReadRow<Value>>& rows) {
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.text) + " in base " + std::to_string(row.base));
        auto text = Family<F>::T(row.text);
        Value value = static_cast<Value>(99);
        EXPECT_EQ(entry(text.c_str(), &value, row.base), row.result);
        EXPECT_EQ(value, row.value);
    }
}

} // namespace

TYPED_TEST(Numbers, ThirtyTwoBitIntegersReadByTheirTable) {
    using F = TypeParam;
    check_reads<F, int32_t>(F::to_i32, {
                                           {"123", 10, 1, 123},
                                           {"1 2 3", 10, 1, 123},
                                           {"12x", 10, 0, 0},
                                           {"", 10, 1, 0},
                                           {"   ", 10, 1, 0},
                                           // Stops after ten characters, ignoring the rest.
                                           {"12345678901234", 10, 1, 1234567890},
                                           {"2147483647", 10, 1, INT32_MAX},
                                           {"2147483648", 10, 1, INT32_MIN},
                                           {"9999999999", 10, 1, 1410065407},
                                           // Intended: either sign negates and hides the next character.
                                           {"-123", 10, 1, -23},
                                           {"+123", 10, 1, -23},
                                           {"-5", 10, 1, 0},
                                           {" -12", 10, 1, -2},
                                           {"1-2", 10, 0, 0},
                                           // Our decision: a sign at the end does not step over it.
                                           {"-", 10, 1, 0},
                                           {"FF", 16, 1, 255},
                                           {"FF", 10, 0, 0},
                                           {"ffffffff", 16, 1, -1},
                                           {"7FFFFFFF", 16, 1, INT32_MAX},
                                           {"123456789", 16, 1, 0x12345678},
                                           {"-1", 16, 0, 0},
                                           {"37777777777", 8, 1, -1},
                                           {"8", 8, 0, 0},
                                           {"11111111111111111111111111111111", 2, 1, -1},
                                           {"102", 2, 0, 0},
                                           // Intended: other bases refuse nothing and know no sign.
                                           {"12", 3, 1, 5},
                                           {"-1", 3, 1, -8},
                                           {"z", 36, 1, 74},
                                           {"12", 0, 1, 2},
                                       });
    check_reads<F, uint32_t>(F::to_u32, {
                                            {"4294967295", 10, 1, UINT32_MAX},
                                            {"4294967296", 10, 1, 0},
                                            {"42949672951", 10, 1, UINT32_MAX},
                                            {"-1", 10, 0, 0},
                                            {"+1", 10, 0, 0},
                                            {"FFFFFFFF", 16, 1, UINT32_MAX},
                                            {"0", 10, 1, 0},
                                            {"", 16, 1, 0},
                                        });
}

TYPED_TEST(Numbers, SixteenBitIntegersReadByTheirTable) {
    using F = TypeParam;
    check_reads<F, int16_t>(F::to_i16, {
                                           {"32767", 10, 1, INT16_MAX},
                                           {"32768", 10, 1, INT16_MIN},
                                           {"123456", 10, 1, 12345},
                                           {"-32768", 10, 1, -2768},
                                           {"FFFF", 16, 1, -1},
                                           {"7fff", 16, 1, INT16_MAX},
                                           {"1111111111111111", 2, 1, -1},
                                           {"77777", 8, 1, INT16_MAX},
                                           {"177777", 8, 1, 8191},
                                           {"", 10, 1, 0},
                                           {"1.5", 10, 0, 0},
                                       });
    check_reads<F, uint16_t>(F::to_u16, {
                                            {"65535", 10, 1, UINT16_MAX},
                                            {"65536", 10, 1, 0},
                                            {"99999", 10, 1, 34463},
                                            {"FFFF0", 16, 1, UINT16_MAX},
                                            {"-1", 10, 0, 0},
                                        });
}

TYPED_TEST(Numbers, EightBitIntegersReadByTheirTable) {
    using F = TypeParam;
    check_reads<F, int8_t>(F::to_i8, {
                                         {"127", 10, 1, INT8_MAX},
                                         {"128", 10, 1, INT8_MIN},
                                         {"300", 10, 1, 44},
                                         {"1234", 10, 1, 123},
                                         {"-1234", 10, 1, -23},
                                         {"7F", 16, 1, INT8_MAX},
                                         {"80", 16, 1, INT8_MIN},
                                         {"fff", 16, 1, -1},
                                         {"11111111", 2, 1, -1},
                                         {"111111111", 2, 1, -1},
                                         {"2", 2, 0, 0},
                                         {"777", 8, 1, -1},
                                         {"177", 8, 1, INT8_MAX},
                                         {"", 10, 1, 0},
                                     });
    check_reads<F, uint8_t>(F::to_u8, {
                                          {"255", 10, 1, UINT8_MAX},
                                          {"256", 10, 1, 0},
                                          {"1234", 10, 1, 123},
                                          {"-1", 10, 0, 0},
                                          {"377", 8, 1, UINT8_MAX},
                                          {"1234", 8, 1, 83},
                                          {"FF", 16, 1, UINT8_MAX},
                                      });
}

TYPED_TEST(Numbers, IntegerReadingRefusesNullArguments) {
    using F = TypeParam;
    ErrorListener listener;
    auto text = this->T("12");
    EXPECT_EQ(F::to_i32(text.c_str(), nullptr, 10), 0);
    EXPECT_EQ(F::to_u8(text.c_str(), nullptr, 10), 0);
    int32_t value = 7;
    // Our decision: a null text is false, after the value is cleared.
    EXPECT_EQ(F::to_i32(nullptr, &value, 10), 0);
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(listener.silent());
}

TYPED_TEST(Numbers, RealsReadWithTheirSeparatorAndDecimals) {
    using F = TypeParam;
    struct Row {
        const char* text;
        char separator;
        uint32_t decimals;
        mox_bool result;
        double value;
    };
    const Row rows[] = {
        {"1.5", '.', 3, 1, 1.5},
        {"-1.5", '.', 3, 1, -1.5},
        {"1.2345", '.', 2, 1, 123.0 / 10 / 10},
        {"", '.', 2, 1, 0.0},
        {"12", '.', 2, 1, 12.0},
        {"1,5", ',', 2, 1, 1.5},
        {"1.5", ',', 2, 0, 0.0},
        {"-+1", '.', 2, 1, -1.0},
        // Our reading: a "+" alone is passed as well.
        {"+1", '.', 2, 1, 1.0},
        {"+-1", '.', 2, 0, 0.0},
        {"  - 1 2 . 5 ", '.', 2, 1, -12.5},
        {"1.2.3", '.', 5, 0, 0.0},
        // Behind the last decimal the next non-blank ends the reading, whatever it is.
        {"1.2.3", '.', 1, 1, 1.2},
        {"1.5", '.', 0, 1, 1.0},
        {"1x", '.', 2, 0, 0.0},
        {".5", '.', 2, 1, 0.5},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        auto text = this->T(row.text);
        double value = 99;
        EXPECT_EQ(F::to_r64(text.c_str(), &value, static_cast<typename F::Char>(row.separator), row.decimals),
                  row.result);
        EXPECT_EQ(value, row.value);
    }
    double value = 99;
    auto minus = this->T("-0");
    ASSERT_EQ(F::to_r64(minus.c_str(), &value, '.', 2), 1);
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(std::signbit(value));
}

TYPED_TEST(Numbers, ThirtyTwoBitRealsRoundAtEveryDigit) {
    using F = TypeParam;
    float value = 0;
    auto text = this->T("167772173");
    ASSERT_EQ(F::to_r32(text.c_str(), &value, '.', 2), 1);
    // Rounded at once the value would be 167772176; rounded at every digit it loses the last 13.
    EXPECT_EQ(value, 167772160.0f);
    auto tenth = this->T("0.1");
    ASSERT_EQ(F::to_r32(tenth.c_str(), &value, '.', 2), 1);
    EXPECT_EQ(value, 0.1f);
    auto bad = this->T("1.x");
    EXPECT_EQ(F::to_r32(bad.c_str(), &value, '.', 2), 0);
    EXPECT_EQ(value, 0.0f);
    auto overlong = this->T("1.23456");
    ASSERT_EQ(F::to_r32(overlong.c_str(), &value, '.', 2), 1);
    EXPECT_EQ(value, static_cast<float>(static_cast<double>(static_cast<float>(123.0 / 10)) / 10));
    auto empty = this->T("");
    value = 5;
    ASSERT_EQ(F::to_r32(empty.c_str(), &value, '.', 2), 1);
    EXPECT_EQ(value, 0.0f);
    auto minus = this->T("-0");
    ASSERT_EQ(F::to_r32(minus.c_str(), &value, '.', 2), 1);
    EXPECT_TRUE(std::signbit(value));
    value = 5;
    EXPECT_EQ(F::to_r32(nullptr, &value, '.', 2), 0);
    EXPECT_EQ(value, 0.0f);
}

TYPED_TEST(Numbers, RealReadingRefusesNullArguments) {
    using F = TypeParam;
    ErrorListener listener;
    auto text = this->T("1.5");
    EXPECT_EQ(F::to_r64(text.c_str(), nullptr, '.', 2), 0);
    EXPECT_EQ(F::to_r32(text.c_str(), nullptr, '.', 2), 0);
    double value = 3;
    EXPECT_EQ(F::to_r64(nullptr, &value, '.', 2), 0);
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(listener.silent());
}

TYPED_TEST(Numbers, BooleansReadInAnyCaseAndLeaveTheValueOtherwise) {
    using F = TypeParam;
    struct Row {
        const char* text;
        mox_bool result;
        uint8_t value;
    };
    const Row rows[] = {
        {"true", 1, 1}, {"TRUE", 1, 1}, {"True", 1, 1},  {"false", 1, 0}, {"FaLsE", 1, 0},
        {"yes", 0, 7},  {"", 0, 7},     {" true", 0, 7}, {"truex", 0, 7}, {"1", 0, 7},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        auto text = this->T(row.text);
        uint8_t value = 7;
        EXPECT_EQ(F::to_bool(text.c_str(), &value), row.result);
        EXPECT_EQ(value, row.value);
    }
    auto text = this->T("true");
    EXPECT_EQ(F::to_bool(text.c_str(), nullptr), 0);
    uint8_t value = 7;
    EXPECT_EQ(F::to_bool(nullptr, &value), 0);
    EXPECT_EQ(value, 7);
}

TYPED_TEST(Numbers, RecognitionLooksAtEveryNonBlankCharacter) {
    using F = TypeParam;
    struct Row {
        const char* what;
        mox_bool (*look)(const typename F::Char*);
        const char* text;
        mox_bool result;
    };
    const Row rows[] = {
        {"bin", F::is_bin, "0101", 1}, {"bin", F::is_bin, " 1 0 ", 1},      {"bin", F::is_bin, "", 0},
        {"bin", F::is_bin, "   ", 0},  {"bin", F::is_bin, "012", 0},        {"oct", F::is_oct, "01234567", 1},
        {"oct", F::is_oct, "8", 0},    {"oct", F::is_oct, "", 0},           {"dec", F::is_dec, "x12", 1},
        {"dec", F::is_dec, "-12", 1},  {"dec", F::is_dec, "0123456789", 1}, {"dec", F::is_dec, "1x", 0},
        {"dec", F::is_dec, "-", 1},    {"dec", F::is_dec, " 1 2", 1},       {"dec", F::is_dec, "", 0},
        {"dec", F::is_dec, "--1", 0},  {"hex", F::is_hex, "09afAF", 1},     {"hex", F::is_hex, "g", 0},
        {"hex", F::is_hex, "0x1F", 0}, {"hex", F::is_hex, " ", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.what) + " \"" + row.text + "\"");
        auto text = this->T(row.text);
        EXPECT_EQ(row.look(text.c_str()), row.result);
    }
    EXPECT_EQ(F::is_bin(nullptr), 0);
    EXPECT_EQ(F::is_oct(nullptr), 0);
    EXPECT_EQ(F::is_dec(nullptr), 0);
    EXPECT_EQ(F::is_hex(nullptr), 0);
}

TYPED_TEST(Numbers, RealRecognitionAllowsTheSeparatorOnce) {
    using F = TypeParam;
    struct Row {
        const char* text;
        char separator;
        mox_bool result;
    };
    const Row rows[] = {
        {"-1.5", '.', 1}, {"1.5.2", '.', 0}, {"x1.5", '.', 1}, {".5", '.', 1},  {"..5", '.', 1},
        {"1..5", '.', 0}, {"", '.', 0},      {"1,5", ',', 1},  {"1.5", ',', 0}, {" 1 . 5 ", '.', 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        auto text = this->T(row.text);
        EXPECT_EQ(F::is_real(text.c_str(), static_cast<typename F::Char>(row.separator)), row.result);
    }
    EXPECT_EQ(F::is_real(nullptr, '.'), 0);
}

// The narrow family reads its units as signed bytes, so every byte from 0x80 up is a blank there.
TEST(NarrowNumbers, BytesFromHexEightyUpAreBlanks) {
    int32_t value = 0;
    EXPECT_EQ(mox_astring_to_i32("1\xA0"
                                 "2",
                                 &value, 10),
              1);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(mox_astring_is_bin("1\xC3\xA9"), 1);
}

TEST(WideNumbers, OnlyUnitsUpToThirtyTwoAreBlanks) {
    const uint16_t text[] = {'1', 0xA0, '2', 0};
    int32_t value = 5;
    EXPECT_EQ(mox_wstring_to_i32(text, &value, 10), 0);
    EXPECT_EQ(value, 0);
    const uint16_t spaced[] = {'1', 32, '2', 0};
    EXPECT_EQ(mox_wstring_to_i32(spaced, &value, 10), 1);
    EXPECT_EQ(value, 12);
    const uint16_t accented[] = {'1', 0xE9, 0};
    EXPECT_EQ(mox_wstring_is_bin(accented), 0);
    // A unit whose low byte is a digit is no digit.
    const uint16_t high[] = {0x0131, 0};
    uint8_t small = 5;
    EXPECT_EQ(mox_wstring_to_u8(high, &small, 10), 0);
    EXPECT_EQ(small, 0);
}

TEST(WideNumbers, SeparatorsAreSixteenBitsWide) {
    const uint16_t text[] = {'1', 0x2396, '5', 0};
    double value = 0;
    EXPECT_EQ(mox_wstring_to_r64(text, &value, 0x2396, 2), 1);
    EXPECT_EQ(value, 1.5);
    mox_wstring out = nullptr;
    ASSERT_EQ(mox_wstring_from_r64(&out, 1.5, 0x2396, 1), 1);
    EXPECT_EQ(out[1], 0x2396);
    EXPECT_EQ(mox_wstring_is_real(text, 0x2396), 1);
    mox_wstring_destruct(&out);
}
