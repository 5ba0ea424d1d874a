#include <mox/time.h>

#include "support/error_listener.h"

#include <gtest/gtest.h>

#include "time/civil_days.h"

#include <cstdint>

namespace {

using time_test::days_from_civil;

constexpr int64_t kJulianDayOfUnixEpoch = 2440588; // 1 January 1970, at noon

TEST(JulianTime, CodeDateOfKnownDays) {
    mox_test::ErrorListener listener;
    EXPECT_EQ(mox_jtime_code_date(2000, 1, 1), 2451545.0); // J2000.0
    EXPECT_EQ(mox_jtime_code_date(1970, 1, 1), 2440588.0);
    EXPECT_EQ(mox_jtime_code_date(1900, 1, 1), 2415021.0);
    EXPECT_EQ(mox_jtime_code_date(1858, 11, 17), 2400001.0); // the day the modified dates count from
    // No gap at the calendar reform: the days before it are Gregorian too.
    EXPECT_EQ(mox_jtime_code_date(1582, 10, 15), 2299161.0);
    EXPECT_EQ(mox_jtime_code_date(1582, 10, 10), 2299156.0);
    EXPECT_EQ(mox_jtime_code_date(1582, 10, 4), 2299150.0);
    EXPECT_TRUE(listener.silent());
}

TEST(JulianTime, CodeDateAgreesWithTheCivilCount) {
    for (int64_t y = 1; y <= 9999; y += 3)
        for (unsigned m = 1; m <= 12; ++m) {
            const unsigned d = 1 + static_cast<unsigned>((y + m) % 28);
            ASSERT_EQ(mox_jtime_code_date(static_cast<uint32_t>(y), m, d),
                      static_cast<double>(days_from_civil(y, m, d) + kJulianDayOfUnixEpoch))
                << y << "-" << m << "-" << d;
        }
}

TEST(JulianTime, CodeDateWrapsIn32Bits) {
    // The first Julian Day, 24 November 4714 BC in the proleptic Gregorian calendar (year -4713),
    // comes out of the unsigned words as 0; the day before it reads as 2^32 - 1, intended.
    EXPECT_EQ(mox_jtime_code_date(static_cast<uint32_t>(-4713), 11, 24), 0.0);
    EXPECT_EQ(mox_jtime_code_date(static_cast<uint32_t>(-4713), 11, 23), 4294967295.0);
}

TEST(JulianTime, CodeTime) {
    mox_test::ErrorListener listener;
    EXPECT_EQ(mox_jtime_code_time(0, 0, 0), -0.5);
    EXPECT_EQ(mox_jtime_code_time(12, 0, 0), 0.0);
    EXPECT_EQ(mox_jtime_code_time(18, 0, 0), 0.25);
    EXPECT_EQ(mox_jtime_code_time(12, 30, 0), 30.0 / 1440.0);
    EXPECT_EQ(mox_jtime_code_time(6, 15, 45), (6.0 - 12.0) / 24.0 + 15.0 / 1440.0 + 45.0 / 86400.0);
    // Fields are not checked.
    EXPECT_EQ(mox_jtime_code_time(48, 0, 0), 1.5);
    // Intended: a negative field becomes a float as an unsigned word.
    EXPECT_EQ(mox_jtime_code_time(-1, 0, 0), (4294967295.0 - 12.0) / 24.0);
    EXPECT_EQ(mox_jtime_code_time(12, -1, 0), 4294967295.0 / 1440.0);
    EXPECT_EQ(mox_jtime_code_time(12, 0, -1), 4294967295.0 / 86400.0);
    EXPECT_TRUE(listener.silent());
}

TEST(JulianTime, CodeTakesTheDayBeforeTheMonth) {
    EXPECT_EQ(mox_jtime_code(2000, 1, 1, 12, 0, 0), 2451545.0);
    EXPECT_EQ(mox_jtime_code(2000, 1, 1, 0, 0, 0), 2451544.5);
    // Intended: year, day, month; so (2000, 2, 1) is 2 January, not 1 February.
    EXPECT_EQ(mox_jtime_code(2000, 2, 1, 12, 0, 0), 2451546.0);
    EXPECT_EQ(mox_jtime_code(2000, 1, 2, 12, 0, 0), mox_jtime_code_date(2000, 2, 1));
    EXPECT_EQ(mox_jtime_code(2000, 1, 1, 18, 0, 0), 2451545.25);
}

TEST(JulianTime, DecodeKnownInstants) {
    mox_test::ErrorListener listener;
    uint32_t y = 0, m = 0, d = 0, h = 99, n = 99, s = 99;
    mox_jtime_decode_date(2451544.5, &y, &m, &d);
    EXPECT_EQ(y, 2000u);
    EXPECT_EQ(m, 1u);
    EXPECT_EQ(d, 1u);
    mox_jtime_decode_time(2451544.5, &h, &n, &s);
    EXPECT_EQ(h, 0u);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(s, 0u);
    mox_jtime_decode(2451545.0, &y, &m, &d, &h, &n, &s);
    EXPECT_EQ(y, 2000u);
    EXPECT_EQ(m, 1u);
    EXPECT_EQ(d, 1u);
    EXPECT_EQ(h, 12u);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(s, 0u);
    // 2000-02-29 18:30:15: the time of day is 6:30:15 after noon.
    mox_jtime_decode(2451604.0 + (6.0 * 3600.0 + 30.0 * 60.0 + 15.5) / 86400.0, &y, &m, &d, &h, &n, &s);
    EXPECT_EQ(y, 2000u);
    EXPECT_EQ(m, 2u);
    EXPECT_EQ(d, 29u);
    EXPECT_EQ(h, 18u);
    EXPECT_EQ(n, 30u);
    EXPECT_EQ(s, 15u);
    mox_jtime_decode_date(2299156.0, &y, &m, &d);
    EXPECT_EQ(y, 1582u);
    EXPECT_EQ(m, 10u);
    EXPECT_EQ(d, 10u);
    EXPECT_TRUE(listener.silent());
}

TEST(JulianTime, DecodeOfTheFirstJulianDayKeepsTheLow32BitsOfTheYear) {
    // Our decision: a negative field is stored as the low 32 bits of its integer, which is also how
    // mox_jtime_code_date reads a year before 1.
    uint32_t y = 0, m = 0, d = 0;
    mox_jtime_decode_date(0.0, &y, &m, &d);
    EXPECT_EQ(y, static_cast<uint32_t>(-4713));
    EXPECT_EQ(m, 11u);
    EXPECT_EQ(d, 24u);
}

TEST(JulianTime, DecodeTimeTruncatesSeconds) {
    uint32_t h = 0, n = 0, s = 0;
    // 1.5 s after noon, exact enough that truncation, not rounding, decides.
    mox_jtime_decode_time(2451545.0 + 1.5 / 86400.0, &h, &n, &s);
    EXPECT_EQ(h, 12u);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(s, 1u);
    mox_jtime_decode_time(2451545.0 - 0.4 / 86400.0, &h, &n, &s);
    EXPECT_EQ(h, 11u);
    EXPECT_EQ(n, 59u);
    EXPECT_EQ(s, 59u);
}

TEST(JulianTime, DecodeRoundTrip) {
    for (int64_t y = 1; y <= 9999; y += 3)
        for (unsigned m = 1; m <= 12; m += 2) {
            const unsigned d = 1 + static_cast<unsigned>((y * 7 + m) % 28);
            uint32_t yy = 0, mm = 0, dd = 0, h = 0, n = 0, s = 0;
            // 18:45 is 0.28125 of a day after noon, exact in binary, so truncation can't bite.
            const double jd = mox_jtime_code(static_cast<uint32_t>(y), d, m, 18, 45, 0);
            mox_jtime_decode(jd, &yy, &mm, &dd, &h, &n, &s);
            ASSERT_EQ(yy, y);
            ASSERT_EQ(mm, m);
            ASSERT_EQ(dd, d);
            ASSERT_EQ(h, 18u);
            ASSERT_EQ(n, 45u);
            ASSERT_EQ(s, 0u);
        }
}

TEST(JulianTime, NullPointersAreSkipped) {
    mox_test::ErrorListener listener;
    uint32_t y = 0, d = 0, n = 0;
    mox_jtime_decode(2451545.25, &y, nullptr, &d, nullptr, &n, nullptr);
    EXPECT_EQ(y, 2000u);
    EXPECT_EQ(d, 1u);
    EXPECT_EQ(n, 0u);
    uint32_t m = 0, h = 0;
    mox_jtime_decode_date(2451545.25, nullptr, &m, nullptr);
    mox_jtime_decode_time(2451545.25, &h, nullptr, nullptr);
    EXPECT_EQ(m, 1u);
    EXPECT_EQ(h, 18u);
    mox_jtime_decode(2451545.25, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(listener.silent());
}

} // namespace
