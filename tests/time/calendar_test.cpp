#include <mox/strings.h>
#include <mox/time.h>

#include "support/child.h"
#include "support/error_listener.h"

#include <gtest/gtest.h>

#include "time/civil_days.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>
#include <thread>

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

using time_test::days_from_civil;

// The library's day number for a date, from the test's own reckoning: day 0 is 30 December 1899,
// and days before it wrap as 32-bit unsigned numbers.
double expected_day(int64_t y, unsigned m, unsigned d) {
    return static_cast<double>(static_cast<uint32_t>(days_from_civil(y, m, d) + 25569));
}

struct Decoded {
    uint32_t doy = 99, dow = 99, year = 99, month = 99, day = 99, hour = 99, minute = 99, second = 99,
             ms = 99;
};

Decoded decode(mox_time t) {
    Decoded d;
    mox_time_decode(t, &d.doy, &d.dow, &d.year, &d.month, &d.day, &d.hour, &d.minute, &d.second, &d.ms);
    return d;
}

std::string format(mox_time t, const char* templ) {
    mox_astring out = nullptr;
    EXPECT_TRUE(mox_time_to_string(t, &out, templ));
    std::string text = out ? out : "<null>";
    mox_astring_destruct(&out);
    return text;
}

std::tm local_now(timespec* at = nullptr) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (at)
        *at = now;
    std::tm local{};
#if defined(_WIN32)
    localtime_s(&local, &now.tv_sec);
#else
    localtime_r(&now.tv_sec, &local);
#endif
    return local;
}

TEST(Calendar, LeapYears) {
    mox_test::ErrorListener listener;
    EXPECT_TRUE(mox_is_leap_year(2000));
    EXPECT_TRUE(mox_is_leap_year(2024));
    EXPECT_TRUE(mox_is_leap_year(1600));
    EXPECT_FALSE(mox_is_leap_year(1900));
    EXPECT_FALSE(mox_is_leap_year(2023));
    EXPECT_FALSE(mox_is_leap_year(2100));
    EXPECT_TRUE(mox_is_leap_year(0));
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, DayOfMonth) {
    mox_test::ErrorListener listener;
    const int32_t lengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (uint32_t m = 1; m <= 12; ++m) {
        EXPECT_EQ(mox_day_of_month(2023, m), lengths[m - 1]) << m;
        EXPECT_EQ(mox_day_of_month(2024, m), m == 2 ? 29 : lengths[m - 1]) << m;
    }
    EXPECT_EQ(mox_day_of_month(1900, 2), 28);
    EXPECT_EQ(mox_day_of_month(1, 1), 31);
    EXPECT_EQ(mox_day_of_month(9999, 12), 31);
    EXPECT_EQ(mox_day_of_month(0, 1), 0);
    EXPECT_EQ(mox_day_of_month(10000, 1), 0);
    EXPECT_EQ(mox_day_of_month(-1, 1), 0);
    EXPECT_EQ(mox_day_of_month(2024, 0), 0);
    EXPECT_EQ(mox_day_of_month(2024, 13), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, NormalizeShortYearPivotsOnTheSystemYear) {
    mox_test::ErrorListener listener;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const uint32_t year = static_cast<uint32_t>(local_now().tm_year + 1900);
        const uint32_t century = year / 100 * 100;
        const uint32_t got49 = mox_normalize_short_year(49);
        const uint32_t got50 = mox_normalize_short_year(50);
        const uint32_t got0 = mox_normalize_short_year(0);
        const uint32_t got99 = mox_normalize_short_year(99);
        if (static_cast<uint32_t>(local_now().tm_year + 1900) != year)
            continue; // the year turned while we looked
        const bool early = year % 100 < 50;
        EXPECT_EQ(got49, century + 49);
        EXPECT_EQ(got50, early ? century - 50 : century + 50);
        EXPECT_EQ(got0, century);
        EXPECT_EQ(got99, early ? century - 1 : century + 99);
        break;
    }
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, CodeKnownDays) {
    mox_test::ErrorListener listener;
    EXPECT_EQ(mox_time_code(1899, 12, 30, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(1900, 1, 1, 0, 0, 0, 0), 2.0);
    EXPECT_EQ(mox_time_code(1970, 1, 1, 0, 0, 0, 0), 25569.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 0, 0, 0, 0), 36526.0);
    EXPECT_EQ(mox_time_code(9999, 12, 31, 0, 0, 0, 0), 2958465.0);
    const unsigned probes[][3] = {{1899, 12, 29}, {1, 1, 1},      {1582, 10, 10}, {1600, 2, 29},
                                  {2024, 2, 29},  {2026, 11, 22}, {2100, 3, 1},   {9999, 12, 31}};
    for (const auto& p : probes)
        EXPECT_EQ(mox_time_code_date(p[0], p[1], p[2]), expected_day(p[0], p[1], p[2]))
            << p[0] << "-" << p[1] << "-" << p[2];
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, DaysBeforeDayZeroWrapIn32Bits) {
    // Intended: 1 January 0001 reads as about 4.29e9.
    EXPECT_EQ(mox_time_code(1, 1, 1, 0, 0, 0, 0), 4294967296.0 - 693593.0);
    EXPECT_EQ(mox_time_code_date(1899, 12, 29), 4294967295.0);
}

TEST(Calendar, CodeTruncatesTheTimeOfDay) {
    // Intended: the time of day is divided away in integers.
    EXPECT_EQ(mox_time_code(2000, 1, 1, 12, 0, 0, 0), 36526.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 23, 59, 59, 999), 36526.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 24, 0, 0, 0), 36527.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 24, 60, 60, 1000), 36527.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 0, 60, 0, 0), 36526.0);
}

TEST(Calendar, CodeRefusesBadFieldsWithZero) {
    mox_test::ErrorListener listener;
    EXPECT_EQ(mox_time_code(1899, 13, 1, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(0, 1, 1, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(10000, 1, 1, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 0, 1, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, -1, 1, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 1, 0, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 1, 32, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2023, 2, 29, 0, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 25, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 0, 61, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 0, 0, 61, 0), 0.0);
    EXPECT_EQ(mox_time_code(2000, 1, 1, 0, 0, 0, 1001), 0.0);
    EXPECT_EQ(mox_time_code(0xFFFFFFFFu, 1, 1, 0, 0, 0, 0), 0.0);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, CodeDate) {
    mox_test::ErrorListener listener;
    EXPECT_EQ(mox_time_code_date(2000, 1, 1), 36526.0);
    EXPECT_EQ(mox_time_code_date(2024, 2, 29), 45351.0);
    EXPECT_EQ(mox_time_code_date(2023, 2, 29), 0.0);
    EXPECT_EQ(mox_time_code_date(-2000, 1, 1), 0.0);
    EXPECT_EQ(mox_time_code_date(0, 1, 1), 0.0);
    EXPECT_EQ(mox_time_code_date(2000, 13, 1), 0.0);
    EXPECT_EQ(mox_time_code_date(2000, 1, 0), 0.0);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, CodeTime) {
    mox_test::ErrorListener listener;
    // Intended: every time of day under 24 hours is 0.0, and 24:00 is a whole day.
    EXPECT_EQ(mox_time_code_time(12, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code_time(23, 59, 59, 999), 0.0);
    EXPECT_EQ(mox_time_code_time(23, 59, 60, 0), 1.0);
    EXPECT_EQ(mox_time_code_time(24, 0, 0, 0), 1.0);
    EXPECT_EQ(mox_time_code_time(24, 60, 60, 1000), 1.0);
    EXPECT_EQ(mox_time_code_time(25, 0, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code_time(24, 61, 0, 0), 0.0);
    EXPECT_EQ(mox_time_code_time(24, 0, 61, 0), 0.0);
    EXPECT_EQ(mox_time_code_time(24, 0, 0, 1001), 0.0);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, DecodeKnownDays) {
    mox_test::ErrorListener listener;
    Decoded d = decode(1.5);
    EXPECT_EQ(d.year, 1899u);
    EXPECT_EQ(d.month, 12u);
    EXPECT_EQ(d.day, 31u);
    EXPECT_EQ(d.hour, 12u);
    EXPECT_EQ(d.minute, 0u);
    EXPECT_EQ(d.second, 0u);
    EXPECT_EQ(d.ms, 0u);
    EXPECT_EQ(d.dow, 1u); // Sunday
    EXPECT_EQ(d.doy, 364u);

    d = decode(0.0);
    EXPECT_EQ(d.year, 1899u);
    EXPECT_EQ(d.month, 12u);
    EXPECT_EQ(d.day, 30u);
    EXPECT_EQ(d.dow, 7u); // Saturday

    d = decode(2.0);
    EXPECT_EQ(d.year, 1900u);
    EXPECT_EQ(d.month, 1u);
    EXPECT_EQ(d.day, 1u);
    EXPECT_EQ(d.dow, 2u); // Monday
    EXPECT_EQ(d.doy, 0u);

    d = decode(25569.0);
    EXPECT_EQ(d.year, 1970u);
    EXPECT_EQ(d.dow, 5u); // Thursday

    d = decode(36526.0);
    EXPECT_EQ(d.year, 2000u);
    EXPECT_EQ(d.month, 1u);
    EXPECT_EQ(d.day, 1u);
    EXPECT_EQ(d.dow, 7u); // Saturday

    d = decode(mox_time_code_date(2024, 12, 31));
    EXPECT_EQ(d.doy, 365u);
    EXPECT_EQ(d.month, 12u);
    EXPECT_EQ(d.day, 31u);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, DecodeRoundTripsEveryFourHundredthDay) {
    for (int64_t y = 1; y <= 9999; y += 7) {
        for (unsigned m = 1; m <= 12; m += 5) {
            const unsigned day = m == 2 ? 28 : 1 + static_cast<unsigned>(y % 28);
            const mox_time t =
                mox_time_code(static_cast<uint32_t>(y), static_cast<int32_t>(m), day, 0, 0, 0, 0);
            ASSERT_EQ(t, expected_day(y, m, day));
            const Decoded d = decode(t);
            ASSERT_EQ(d.year, y);
            ASSERT_EQ(d.month, m);
            ASSERT_EQ(d.day, day);
            // 1 January 1970 was a Thursday, week day 5.
            const int64_t from_epoch = days_from_civil(y, m, day);
            ASSERT_EQ(d.dow, static_cast<uint32_t>(((from_epoch + 4) % 7 + 7) % 7 + 1));
            ASSERT_EQ(d.doy, static_cast<uint32_t>(from_epoch - days_from_civil(y, 1, 1)));
        }
    }
}

TEST(Calendar, DecodeFirstDayOfYearOne) {
    // The value reads as about 4.29e9, yet decodes to 1 January 0001, a Monday.
    const Decoded d = decode(mox_time_code(1, 1, 1, 0, 0, 0, 0));
    EXPECT_EQ(d.year, 1u);
    EXPECT_EQ(d.month, 1u);
    EXPECT_EQ(d.day, 1u);
    EXPECT_EQ(d.dow, 2u);
    EXPECT_EQ(d.doy, 0u);
}

TEST(Calendar, DecodeNegativeWholeDay) {
    // -1 keeps its low 32 bits, 0xFFFFFFFF, which is 29 December 1899.
    const Decoded d = decode(-1.0);
    EXPECT_EQ(d.year, 1899u);
    EXPECT_EQ(d.month, 12u);
    EXPECT_EQ(d.day, 29u);
    EXPECT_EQ(d.hour, 0u);
    EXPECT_EQ(d.ms, 0u);
}

TEST(Calendar, DecodeTimeTruncates) {
    Decoded d = decode(0.999999999);
    EXPECT_EQ(d.hour, 23u);
    EXPECT_EQ(d.minute, 59u);
    EXPECT_EQ(d.second, 59u);
    EXPECT_EQ(d.ms, 999u);
    // 13:45:30.250 is 49530250 ms of the day; half a ms more keeps truncation off the edge.
    d = decode(36526.0 + 49530250.5 / 86400000.0);
    EXPECT_EQ(d.hour, 13u);
    EXPECT_EQ(d.minute, 45u);
    EXPECT_EQ(d.second, 30u);
    EXPECT_EQ(d.ms, 250u);
    d = decode(36526.75);
    EXPECT_EQ(d.hour, 18u);
    EXPECT_EQ(d.minute, 0u);
    EXPECT_EQ(d.ms, 0u);
}

TEST(Calendar, DecodeBeyondYear9999StopsAtMonthOne) {
    // Our decision: a year with no month lengths decodes to month 1, with the day of the year + 1.
    const Decoded d = decode(2958465.0 + 1.0 + 40.0);
    EXPECT_EQ(d.year, 10000u);
    EXPECT_EQ(d.month, 1u);
    EXPECT_EQ(d.day, 41u);
    EXPECT_EQ(d.doy, 40u);
    const Decoded beyond = decode(3000000.0);
    EXPECT_EQ(beyond.month, 1u);
    EXPECT_EQ(beyond.day, beyond.doy + 1);
}

TEST(Calendar, DecodeSkipsNullPointers) {
    mox_test::ErrorListener listener;
    mox_time_decode(36526.5, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    uint32_t month = 0, hour = 0;
    mox_time_decode(36526.5, nullptr, nullptr, nullptr, &month, nullptr, &hour, nullptr, nullptr, nullptr);
    EXPECT_EQ(month, 1u);
    EXPECT_EQ(hour, 12u);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, DecodeDateAndTime) {
    uint32_t y = 0, m = 0, d = 0, h = 0, n = 0, s = 0, i = 0;
    mox_time_decode_date(45351.25, &y, &m, &d);
    EXPECT_EQ(y, 2024u);
    EXPECT_EQ(m, 2u);
    EXPECT_EQ(d, 29u);
    mox_time_decode_time(45351.25, &h, &n, &s, &i);
    EXPECT_EQ(h, 6u);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(s, 0u);
    EXPECT_EQ(i, 0u);
    m = 77;
    mox_time_decode_date(45351.25, &y, nullptr, &d);
    EXPECT_EQ(m, 77u);
    mox_time_decode_date(45351.25, nullptr, nullptr, nullptr);
    mox_time_decode_time(45351.25, nullptr, nullptr, nullptr, nullptr);
}

TEST(Calendar, ModifyAddsWholeDaysOnly) {
    mox_test::ErrorListener listener;
    const mox_time t = 36526.25;
    EXPECT_EQ(mox_time_modify(t, 0, 5), 36531.25);
    // Intended: units below a day keep only the whole days of the amount.
    EXPECT_EQ(mox_time_modify(t, 1, 23), t);
    EXPECT_EQ(mox_time_modify(t, 1, 24), t + 1.0);
    EXPECT_EQ(mox_time_modify(t, 1, 71), t + 2.0);
    EXPECT_EQ(mox_time_modify(t, 2, 1439), t);
    EXPECT_EQ(mox_time_modify(t, 2, 1440), t + 1.0);
    EXPECT_EQ(mox_time_modify(t, 3, 86399), t);
    EXPECT_EQ(mox_time_modify(t, 3, 86400 * 3), t + 3.0);
    EXPECT_EQ(mox_time_modify(t, 4, 86399999), t);
    EXPECT_EQ(mox_time_modify(t, 4, 86400000), t + 1.0);
    EXPECT_EQ(mox_time_modify(t, 5, 1000), t);
    EXPECT_EQ(mox_time_modify(t, 0xFFFFFFFFu, 1000), t);
    // Intended: there is no way back; the amount is unsigned.
    EXPECT_EQ(mox_time_modify(t, 0, 0xFFFFFFFFu), t + 4294967295.0);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, TruncDateAndTime) {
    EXPECT_EQ(mox_time_trunc_date(36526.5), 43200000.0);
    EXPECT_EQ(mox_time_trunc_date(36526.25), 21600000.0);
    EXPECT_EQ(mox_time_trunc_date(36526.0), 0.0);
    // Our decision: the fraction of a negative value keeps its sign.
    EXPECT_EQ(mox_time_trunc_date(-0.5), -43200000.0);
    EXPECT_EQ(mox_time_trunc_time(36526.75), 36526.0);
    EXPECT_EQ(mox_time_trunc_time(36526.0), 36526.0);
    EXPECT_EQ(mox_time_trunc_time(-1.5), -1.0);
}

TEST(Calendar, ToUnixTime) {
    mox_test::ErrorListener listener;
    EXPECT_EQ(mox_time_to_unixtime(25569.0), 0);
    EXPECT_EQ(mox_time_to_unixtime(25569.5), 43200);
    EXPECT_EQ(mox_time_to_unixtime(36526.0), 946684800);
    EXPECT_EQ(mox_time_to_unixtime(25568.5), -43200);
    // 2^-16 days is 1.318359375 s and 3 * 2^-17 days is 1.9775390625 s, both exact.
    EXPECT_EQ(mox_time_to_unixtime(25569.0 + 1.0 / 65536.0), 1);
    EXPECT_EQ(mox_time_to_unixtime(25569.0 + 3.0 / 131072.0), 2);
    // Intended: negative values truncate instead of rounding.
    EXPECT_EQ(mox_time_to_unixtime(25569.0 - 3.0 / 131072.0), -1);
    EXPECT_EQ(mox_time_to_unixtime(25569.0 - 1.0 / 65536.0), -1);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, FromUnixTime) {
    EXPECT_EQ(mox_time_from_unixtime(0), 25569.0);
    EXPECT_EQ(mox_time_from_unixtime(86399), 25569.0);
    EXPECT_EQ(mox_time_from_unixtime(86400), 25570.0);
    EXPECT_EQ(mox_time_from_unixtime(946684800), 36526.0);
    EXPECT_EQ(mox_time_from_unixtime(946684800 + 86399), 36526.0);
    EXPECT_EQ(mox_time_from_unixtime(UINT64_MAX), static_cast<double>(UINT64_MAX / 86400 + 25569));
}

TEST(Calendar, UnixRoundTrip) {
    for (uint64_t day = 0; day < 40000; day += 97) {
        const uint64_t seconds = day * 86400;
        EXPECT_EQ(mox_time_to_unixtime(mox_time_from_unixtime(seconds)), static_cast<int64_t>(seconds));
    }
}

TEST(Calendar, ToStringEveryPlaceholder) {
    mox_test::ErrorListener listener;
    // 2026-03-07 13:05:09.042, a Saturday, day 65 of the year.
    const mox_time t =
        mox_time_code_date(2026, 3, 7) + 47109042.5 / 86400000.0; // half a ms past, as truncation needs
    uint32_t ms = 0;
    mox_time_decode_time(t, nullptr, nullptr, nullptr, &ms);
    ASSERT_EQ(ms, 42u);
    EXPECT_EQ(format(t, "$y"), "2026");
    EXPECT_EQ(format(t, "$ys"), "26");
    EXPECT_EQ(format(t, "$m"), "03");
    EXPECT_EQ(format(t, "$d"), "07");
    EXPECT_EQ(format(t, "$dy"), "065");
    EXPECT_EQ(format(t, "$w"), "007");
    EXPECT_EQ(format(t, "$h"), "13");
    EXPECT_EQ(format(t, "$hs"), "01");
    EXPECT_EQ(format(t, "$n"), "05");
    EXPECT_EQ(format(t, "$s"), "09");
    EXPECT_EQ(format(t, "$i"), "042");
    EXPECT_EQ(format(t, "$p"), "PM");
    EXPECT_EQ(format(t, "$y-$m-$d $h:$n:$s.$i"), "2026-03-07 13:05:09.042");
    EXPECT_EQ(format(t, "$h:$n:$s.00"), "13:05:09.00");
    EXPECT_EQ(format(t, "[$d.$m.$ys]"), "[07.03.26]");
    EXPECT_EQ(format(t, ""), "");
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, ToStringIrregularities) {
    EXPECT_EQ(format(36526.5, "$p"), "AM"); // intended: noon is AM
    EXPECT_EQ(format(36526.5, "$hs"), "00");
    EXPECT_EQ(format(36526.0, "$p"), "AM");
    EXPECT_EQ(format(36526.5625, "$p"), "PM"); // 13:30
    EXPECT_EQ(format(36526.0, "$ys"), "00");
    EXPECT_EQ(format(36526.0, "$$ $x $"), "$ x ");
    EXPECT_EQ(format(36526.0, "$Y$M"), "YM"); // the letters are lower case only
    EXPECT_EQ(format(1.0, "$y"), "1899");
    // A year of five digits is cut to four from the left.
    EXPECT_EQ(format(2958466.0, "$y"), "0000");
}

TEST(Calendar, ToStringLeavesTheBufferAtTemplatePlus64) {
    mox_astring out = nullptr;
    ASSERT_TRUE(mox_astring_duplicate(&out, "an older and longer text than the result"));
    const char* templ = "$y";
    ASSERT_TRUE(mox_time_to_string(36526.0, &out, templ));
    EXPECT_STREQ(out, "2000");
    // The block holds the template's length plus 64 characters and a terminator; reading its last
    // byte is in bounds, which the address sanitizer build checks.
    EXPECT_EQ(out[std::strlen(templ) + 64], 0);
    mox_astring_destruct(&out);
}

TEST(Calendar, ToStringStopsAtTheEndOfItsRoom) {
    // Forty "$y" make 80 characters of template and 160 of output, but the room is 80 + 64; our
    // decision is that the rest is dropped.
    std::string templ;
    for (int i = 0; i < 40; ++i)
        templ += "$y";
    std::string expected;
    for (int i = 0; i < 36; ++i)
        expected += "2000";
    EXPECT_EQ(format(36526.0, templ.c_str()), expected);
}

TEST(Calendar, ToStringRefusals) {
    mox_test::ErrorListener listener;
    EXPECT_FALSE(mox_time_to_string(36526.0, nullptr, "$y"));
    mox_astring out = nullptr;
    // Our decision: a null template is refused too.
    EXPECT_FALSE(mox_time_to_string(36526.0, &out, nullptr));
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, FromStringIsAlwaysZero) {
    mox_test::ErrorListener listener;
    // Intended: every field reads as empty, so nothing is ever parsed.
    EXPECT_EQ(mox_time_from_string("2000-01-01", "$y-$m-$d"), 0.0);
    EXPECT_EQ(mox_time_from_string("12:30:45.123", "$h:$n:$s.$i"), 0.0);
    EXPECT_EQ(mox_time_from_string("01:30 PM", "$hs:$n $p"), 0.0);
    EXPECT_EQ(mox_time_from_string("PM", "$p"), 0.0);
    EXPECT_EQ(mox_time_from_string("26", "$ys"), 0.0);
    EXPECT_EQ(mox_time_from_string("123", "$dy"), 0.0);
    EXPECT_EQ(mox_time_from_string("2000123", "$y$dy"), 0.0);
    EXPECT_EQ(mox_time_from_string("007", "$w"), 0.0);
    EXPECT_EQ(mox_time_from_string("2000-01-01 12:00", "$y-$m-$d $h:$n"), 0.0);
    EXPECT_EQ(mox_time_from_string("$x", "$$$x"), 0.0);
    EXPECT_EQ(mox_time_from_string("", ""), 0.0);
    EXPECT_EQ(mox_time_from_string("20", "$y$m$d"), 0.0); // a text shorter than the template
    EXPECT_EQ(mox_time_from_string("2000", "$"), 0.0);
    EXPECT_EQ(mox_time_from_string(nullptr, "$y"), 0.0);
    EXPECT_EQ(mox_time_from_string("2000", nullptr), 0.0);
    EXPECT_TRUE(listener.silent());
}

TEST(Calendar, FromStringOfToStringGivesNothingBack) {
    const mox_time t = 45351.0;
    const std::string text = format(t, "$y-$m-$d");
    ASSERT_EQ(text, "2024-02-29");
    EXPECT_EQ(mox_time_from_string(text.c_str(), "$y-$m-$d"), 0.0);
}

TEST(Clock, SystemDayIsTodayOnTheLocalClock) {
    mox_test::ErrorListener listener;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::tm before = local_now();
        const mox_time today = mox_time_get_system();
        const std::tm after = local_now();
        if (before.tm_mday != after.tm_mday)
            continue; // midnight passed while we looked
        EXPECT_EQ(today, expected_day(before.tm_year + 1900, static_cast<unsigned>(before.tm_mon + 1),
                                      static_cast<unsigned>(before.tm_mday)));
        break;
    }
    EXPECT_TRUE(listener.silent());
}

TEST(Clock, SystemFieldsFollowTheLocalClock) {
    mox_test::ErrorListener listener;
    for (int attempt = 0; attempt < 5; ++attempt) {
        timespec t0{}, t1{};
        const std::tm before = local_now(&t0);
        const uint32_t year = mox_get_system_year(), month = mox_get_system_month(),
                       day = mox_get_system_day();
        const uint32_t hour = mox_get_system_hour(), minute = mox_get_system_minute();
        const uint32_t second = mox_get_system_second(), ms = mox_get_system_milisecond();
        const std::tm after = local_now(&t1);
        if (t0.tv_sec != t1.tv_sec)
            continue; // the second turned while we looked
        EXPECT_EQ(year, static_cast<uint32_t>(before.tm_year + 1900));
        EXPECT_EQ(month, static_cast<uint32_t>(before.tm_mon + 1));
        EXPECT_EQ(day, static_cast<uint32_t>(before.tm_mday));
        EXPECT_EQ(hour, static_cast<uint32_t>(before.tm_hour));
        EXPECT_EQ(minute, static_cast<uint32_t>(before.tm_min));
        EXPECT_EQ(second, static_cast<uint32_t>(after.tm_sec));
        EXPECT_GE(ms, static_cast<uint32_t>(t0.tv_nsec / 1000000));
        EXPECT_LE(ms, static_cast<uint32_t>(t1.tv_nsec / 1000000));
        break;
    }
    EXPECT_TRUE(listener.silent());
}

TEST(Clock, LocalClockFollowsTheTimeZone) {
#if defined(_WIN32)
    GTEST_SKIP()
        << "Windows takes the time zone from the system's settings, not from the process's environment";
#else
    // In a child, so that the zone of this process stays as it was.
    const auto outcome = mox_test::run_in_child([] {
        for (int attempt = 0; attempt < 5; ++attempt) {
            setenv("TZ", "XYZ-14", 1); // fourteen hours east of UTC, no summer time
            timespec t0{}, t1{};
            clock_gettime(CLOCK_REALTIME, &t0);
            const uint32_t hour = mox_get_system_hour();
            clock_gettime(CLOCK_REALTIME, &t1);
            if (t0.tv_sec / 3600 != t1.tv_sec / 3600)
                continue;
            const uint32_t expected = static_cast<uint32_t>((t0.tv_sec / 3600 + 14) % 24);
            _exit(hour == expected ? 0 : 1);
        }
        _exit(2);
    });
    ASSERT_TRUE(outcome.exited) << outcome.output;
    EXPECT_EQ(outcome.status, 0) << outcome.output;
#endif
}

// True when the process has no effective capabilities, read from the kernel's own account.
bool has_no_capabilities() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("CapEff:", 0) == 0)
            return std::strtoull(line.c_str() + 7, nullptr, 16) == 0;
    return false;
}

TEST(Clock, SettingTheClockWithoutTheRightIsFalse) {
#if defined(_WIN32)
    GTEST_SKIP() << "Windows grants the right to set the clock through a privilege of the process; a test "
                    "that failed to give it up would change the machine's clock, so this one runs on POSIX "
                    "systems only";
#else
    // The child gives up root, and with it CAP_SYS_TIME, before it asks; it refuses to ask at all
    // if the drop didn't take, so the machine's clock is never changed.
    const auto outcome = mox_test::run_in_child([] {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            _exit(3);
        if (geteuid() == 0 || !has_no_capabilities())
            _exit(3);
        mox_test::ErrorListener listener;
        const mox_time today = mox_time_get_system();
        if (today == 0.0)
            _exit(4);
        const mox_bool set = mox_time_set_system(today + 0.5);
        _exit(set == 0 && listener.silent() ? 0 : 1);
    });
    ASSERT_TRUE(outcome.exited) << outcome.output;
    EXPECT_EQ(outcome.status, 0) << outcome.output;
#endif
}

TEST(Clock, TickCountIsTheBootClockInMilliseconds) {
    mox_test::ErrorListener listener;
    auto boot_ms = [] {
#if defined(_WIN32)
        return static_cast<uint32_t>(GetTickCount64());
#else
        timespec t{};
        clock_gettime(CLOCK_BOOTTIME, &t);
        return static_cast<uint32_t>(static_cast<uint64_t>(t.tv_sec) * 1000 +
                                     static_cast<uint64_t>(t.tv_nsec) / 1000000);
#endif
    };
    const uint32_t before = boot_ms();
    const uint32_t tick = mox_get_tick();
    const uint32_t after = boot_ms();
    EXPECT_LE(static_cast<uint32_t>(tick - before), static_cast<uint32_t>(after - before));
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const uint32_t later = mox_get_tick();
    EXPECT_GE(static_cast<uint32_t>(later - tick), 30u);
    EXPECT_TRUE(listener.silent());
}

} // namespace
