// Julian Dates over the proleptic Gregorian calendar, with the day starting at noon.
#include <mox/time.h>

#include "time/truncate.h"

#include <cmath>

namespace mox {

namespace {

void store(uint32_t* slot, double value) {
    if (slot != nullptr)
        *slot = truncate_low_32(value);
}

} // namespace

} // namespace mox

using namespace mox;

extern "C" {

MOX_API double mox_jtime_code_date(uint32_t year, uint32_t month, uint32_t day) {
    // All in 32-bit unsigned integers; a negative result reads as 2^32 more, as the conversion of
    // the unsigned word gives.
    const uint32_t a = (14 - month) / 12;
    const uint32_t y = year - a + 4800;
    const uint32_t m = month + 12 * a - 3;
    return static_cast<double>(day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045);
}

MOX_API double mox_jtime_code_time(int32_t hour, int32_t minute, int32_t second) {
    // Intended: the fields become floats as unsigned words, so a negative one counts 2^32 more;
    // the 12 is taken off the float, so hour 0 gives -0.5.
    const double h = static_cast<uint32_t>(hour);
    const double n = static_cast<uint32_t>(minute);
    const double s = static_cast<uint32_t>(second);
    return (h - 12.0) / 24.0 + n / 1440.0 + s / 86400.0;
}

MOX_API double mox_jtime_code(uint32_t year, uint32_t day, uint32_t month, int32_t hour, int32_t minute,
                              int32_t second) {
    // Intended: the day comes before the month in this entry only.
    return mox_jtime_code_date(year, month, day) + mox_jtime_code_time(hour, minute, second);
}

MOX_API void mox_jtime_decode_date(double date, uint32_t* year, uint32_t* month, uint32_t* day) {
    const double z = std::floor(date + 0.5);
    double j = (z - 1721119.0) * 4.0;
    const double c = std::floor((j - 1.0) / 146097.0);
    double d = std::floor((j - (c * 146097.0 + 1.0)) * 0.25);
    j = d * 4.0 + 3.0;
    const double e = std::floor(j / 1461.0);
    d = std::floor(((j - e * 1461.0) + 4.0) * 0.25);
    j = d * 5.0;
    const double m = std::floor((j - 3.0) / 153.0);
    const double day_of_month = std::floor(((j - (m * 153.0 + 3.0)) + 5.0) / 5.0);
    double y = c * 100.0 + e;
    double month_of_year;
    if (m < 10.0) {
        month_of_year = m + 3.0;
    } else {
        month_of_year = m - 9.0;
        y += 1.0;
    }
    store(year, y);
    store(month, month_of_year);
    store(day, day_of_month);
}

MOX_API void mox_jtime_decode_time(double date, uint32_t* hour, uint32_t* minute, uint32_t* second) {
    const double x = date + 0.5;
    const double part = x - std::floor(x);
    const uint32_t s = truncate_low_32(part * 86400.0);
    if (hour != nullptr)
        *hour = s / 3600;
    if (minute != nullptr)
        *minute = (s / 60) % 60;
    if (second != nullptr)
        *second = s % 60;
}

MOX_API void mox_jtime_decode(double date, uint32_t* year, uint32_t* month, uint32_t* day, uint32_t* hour,
                              uint32_t* minute, uint32_t* second) {
    mox_jtime_decode_date(date, year, month, day);
    mox_jtime_decode_time(date, hour, minute, second);
}

} // extern "C"
