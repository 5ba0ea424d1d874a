// The calendar value: whole days from 30 December 1899 in a 64-bit float, coded and decoded in 32-bit
// unsigned integers, with text templates and the system clock.
#include <mox/strings.h>
#include <mox/time.h>

#include "platform/os.h"
#include "time/truncate.h"

#include <cmath>

namespace mox {

namespace {

constexpr uint32_t kDaysBeforeDayZero = 693594; // 1 January 0001 to 30 December 1899
constexpr uint32_t kMsPerDay = 86400000;
constexpr double kUnixEpochDay = 25569.0; // 1 January 1970

bool is_leap(uint32_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int32_t month_length(int64_t year, int64_t month) {
    static constexpr int32_t kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 1 || year > 9999 || month < 1 || month > 12)
        return 0;
    return month == 2 && is_leap(static_cast<uint32_t>(year)) ? 29 : kDays[month - 1];
}

// The inclusive upper bounds are intended: 24:60:60.1000 is a valid time here.
bool time_fields_fit(uint32_t hour, uint32_t minute, uint32_t second, uint32_t milisecond) {
    return hour <= 24 && minute <= 60 && second <= 60 && milisecond <= 1000;
}

// Integer division of the day's milliseconds: 0 for any time under 24 hours, intended.
uint32_t whole_days_of(uint32_t hour, uint32_t minute, uint32_t second, uint32_t milisecond) {
    return (((hour * 60 + minute) * 60 + second) * 1000 + milisecond) / kMsPerDay;
}

// The day number, or false for a date that doesn't exist. A date before day 0 wraps in 32 bits,
// intended, so that the decoder, which reads the low 32 bits, finds it again.
bool day_number(int64_t year, int64_t month, uint32_t day, uint32_t* number) {
    if (year < 1 || year > 9999 || month < 1 || month > 12)
        return false;
    if (day == 0 || day > static_cast<uint32_t>(month_length(year, month)))
        return false;
    uint32_t n = day;
    for (int64_t m = 0; m < month; ++m)
        n += static_cast<uint32_t>(month_length(year, m));
    const uint32_t y = static_cast<uint32_t>(year) - 1;
    *number = y * 365 + y / 4 - y / 100 + y / 400 + n - kDaysBeforeDayZero;
    return true;
}

struct Fields {
    uint32_t day_of_year, day_of_week, year, month, day, hour, minute, second, milisecond;
};

Fields decode(mox_time time) {
    Fields f{};
    const uint32_t whole = truncate_low_32(time);
    uint32_t d = whole + kDaysBeforeDayZero;
    f.day_of_week = d % 7 + 1;
    d -= 1;
    uint32_t year = 1;
    if (d >= 146097) {
        const uint32_t q = d / 146097;
        year = q * 400 + 1;
        d -= q * 146097;
    }
    uint32_t c = d / 36524;
    d -= c * 36524;
    if (c == 4) {
        c = 3;
        d += 36524;
    }
    year += c * 100;
    const uint32_t q = d / 1461;
    d -= q * 1461;
    year += q * 4;
    uint32_t a = d / 365;
    d -= a * 365;
    if (a == 4) {
        a = 3;
        d += 365;
    }
    year += a;
    f.day_of_year = d;
    // Month 0 has length 0, so the first turn only moves the count to 1. Our decision: a year
    // beyond 9999 has no month lengths, and the walk stops at the first month of length 0 after
    // month 0 instead of running forever, so such a year decodes to month 1.
    uint32_t month = 0;
    for (;;) {
        const uint32_t length = static_cast<uint32_t>(month_length(year, month));
        if (d < length || (length == 0 && month != 0))
            break;
        d -= length;
        ++month;
    }
    f.year = year;
    f.month = month;
    f.day = d + 1;
    const double fraction = time - static_cast<double>(whole);
    const uint32_t ms = truncate_low_32(fraction * 86400000.0);
    const uint32_t minutes = ms / 60000;
    const uint32_t rest = ms % 60000;
    f.hour = minutes / 60;
    f.minute = minutes % 60;
    f.second = rest / 1000;
    f.milisecond = rest % 1000;
    return f;
}

void store(uint32_t* slot, uint32_t value) {
    if (slot != nullptr)
        *slot = value;
}

// ---- Templates ----

enum class Field {
    none,
    year,
    short_year,
    month,
    day,
    day_of_year,
    week_day,
    hour,
    hour_12,
    minute,
    second,
    milisecond,
    meridiem
};

struct Placeholder {
    Field field;
    uint32_t letters; // letters of the template after the "$"
    uint32_t width;   // digits written, and characters read
};

// The placeholder that starts at `at`, just behind a "$"; Field::none if `at` starts none.
Placeholder placeholder_at(const char* at) {
    switch (at[0]) {
    case 'y':
        return at[1] == 's' ? Placeholder{Field::short_year, 2, 2} : Placeholder{Field::year, 1, 4};
    case 'm':
        return {Field::month, 1, 2};
    case 'd':
        return at[1] == 'y' ? Placeholder{Field::day_of_year, 2, 3} : Placeholder{Field::day, 1, 2};
    case 'w':
        return {Field::week_day, 1, 3};
    case 'h':
        return at[1] == 's' ? Placeholder{Field::hour_12, 2, 2} : Placeholder{Field::hour, 1, 2};
    case 'n':
        return {Field::minute, 1, 2};
    case 's':
        return {Field::second, 1, 2};
    case 'i':
        return {Field::milisecond, 1, 3};
    case 'p':
        return {Field::meridiem, 1, 2};
    default:
        return {Field::none, 0, 0};
    }
}

uint32_t number_of(const Fields& f, Field field) {
    switch (field) {
    case Field::year:
    case Field::short_year:
        return f.year;
    case Field::month:
        return f.month;
    case Field::day:
        return f.day;
    case Field::day_of_year:
        return f.day_of_year;
    case Field::week_day:
        return f.day_of_week;
    case Field::hour:
        return f.hour;
    case Field::hour_12:
        return f.hour % 12;
    case Field::minute:
        return f.minute;
    case Field::second:
        return f.second;
    case Field::milisecond:
        return f.milisecond;
    default:
        return 0;
    }
}

mox_bool to_string(mox_time time, mox_astring* out, const char* templ) {
    if (out == nullptr)
        return 0;
    // Our decision: a null template is refused like a null out string.
    if (templ == nullptr)
        return 0;
    const Fields f = decode(time);
    // The template's length plus 64 is all the room there is; the buffer keeps that size.
    const uint32_t room = mox_astring_length(templ) + 64;
    if (!mox_astring_set_length(out, room))
        return 0;
    mox_astring digits = nullptr;
    char* const start = *out;
    uint32_t used = 0;
    // Our decision: what doesn't fit in that room is dropped instead of written past the block.
    auto put = [start, room, &used](char c) {
        if (used < room)
            start[used++] = c;
    };
    const char* at = templ;
    while (*at != 0) {
        if (*at != '$') {
            put(*at++);
            continue;
        }
        ++at;
        // Our decision: a "$" that ends the template ends the walk instead of reading past it.
        if (*at == 0)
            break;
        const Placeholder p = placeholder_at(at);
        if (p.field == Field::none) {
            put(*at++); // "$$" writes "$", "$x" writes "x"
            continue;
        }
        at += p.letters;
        if (p.field == Field::meridiem) {
            // Intended: only hours above 12 are "PM", so noon is "AM".
            const char* mark = f.hour > 12 ? "PM" : "AM";
            put(mark[0]);
            put(mark[1]);
            continue;
        }
        // Our decision: if the digits can't be made for want of memory, the whole call fails.
        if (!mox_astring_from_u32(&digits, number_of(f, p.field), 10, p.width)) {
            mox_astring_destruct(&digits);
            return 0;
        }
        for (const char* d = digits; *d != 0; ++d)
            put(*d);
    }
    start[used] = 0;
    mox_astring_destruct(&digits);
    return 1;
}

mox_time from_string(const char* text, const char* templ) {
    // Our decision: a null text or template gives 0.0 at once, without taking the scratch.
    if (text == nullptr || templ == nullptr)
        return 0.0;
    mox_astring scratch = nullptr;
    if (!mox_astring_set_length(&scratch, 32))
        return 0.0;
    uint32_t year = 0, month = 0, day = 0, day_of_year = 0, hour = 0, minute = 0, second = 0, milisecond = 0;
    bool has_date = false, has_time = false;
    uint32_t fill = 0;
    // Our decision: the text is never stepped past its terminator, whatever the template asks.
    auto skip_text = [&text]() {
        if (*text != 0)
            ++text;
    };
    const char* at = templ;
    while (*at != 0) {
        if (*at != '$') {
            ++at;
            skip_text();
            continue;
        }
        ++at;
        // Our decision: a "$" that ends the template ends the walk instead of reading past it.
        if (*at == 0)
            break;
        const Placeholder p = placeholder_at(at);
        if (p.field == Field::none || p.field == Field::week_day) {
            ++at;
            skip_text();
            continue;
        }
        at += p.letters;
        for (uint32_t i = 0; i < p.width && *text != 0; ++i)
            scratch[fill++] = *text++;
        // Intended: the terminator goes to the scratch's first byte, ahead of the digits, so every
        // field reads as empty; storing it behind the digits would make this a date parser.
        fill = 0;
        scratch[fill] = 0;
        ++fill;
        uint32_t value = 0;
        if (!mox_astring_to_u32(scratch, &value, 10)) {
            mox_astring_destruct(&scratch);
            return 0.0;
        }
        switch (p.field) {
        case Field::year:
            year = value;
            has_date = true;
            break;
        case Field::short_year:
            year = mox_normalize_short_year(value);
            has_date = true;
            break;
        case Field::month:
            month = value;
            has_date = true;
            break;
        case Field::day:
            day = value;
            has_date = true;
            break;
        case Field::day_of_year:
            day_of_year = value;
            has_date = true;
            break;
        case Field::hour:
        case Field::hour_12:
            hour = value;
            has_time = true;
            break;
        case Field::minute:
            minute = value;
            has_time = true;
            break;
        case Field::second:
            second = value;
            has_time = true;
            break;
        case Field::milisecond:
            milisecond = value;
            has_time = true;
            break;
        case Field::meridiem:
            if (mox_astring_compare(scratch, "PM")) {
                hour += 12;
                if (hour > 24)
                    hour -= 12;
            }
            has_time = true;
            break;
        default:
            break;
        }
    }
    mox_time result;
    if (has_date && !has_time)
        result = mox_time_code_date(static_cast<int32_t>(year), static_cast<int32_t>(month), day);
    else if (has_time && !has_date)
        result = mox_time_code_time(hour, minute, second, milisecond);
    else
        result = mox_time_code(year, static_cast<int32_t>(month), day, hour, minute, second, milisecond);
    if (day_of_year > 0)
        result += day_of_year;
    mox_astring_destruct(&scratch);
    return result;
}

os::SYSTEMTIME local_time() {
    os::SYSTEMTIME now{};
    os::GetLocalTime(&now);
    return now;
}

} // namespace

} // namespace mox

using namespace mox;

extern "C" {

MOX_API mox_bool mox_is_leap_year(uint32_t year) { return is_leap(year) ? 1 : 0; }

MOX_API int32_t mox_day_of_month(int32_t year, uint32_t month) { return month_length(year, month); }

MOX_API uint32_t mox_normalize_short_year(uint32_t short_year) {
    const uint32_t year = local_time().wYear;
    const uint32_t century = year / 100 * 100;
    if (year % 100 < 50 && short_year >= 50)
        return century + short_year - 100;
    return century + short_year;
}

MOX_API mox_time mox_time_code(uint32_t year, int32_t month, uint32_t day, uint32_t hour, uint32_t minute,
                               uint32_t second, uint32_t milisecond) {
    uint32_t number = 0;
    if (!day_number(year, month, day, &number) || !time_fields_fit(hour, minute, second, milisecond))
        return 0.0;
    return static_cast<double>(number) + static_cast<double>(whole_days_of(hour, minute, second, milisecond));
}

MOX_API mox_time mox_time_code_date(int32_t year, int32_t month, uint32_t day) {
    uint32_t number = 0;
    if (!day_number(year, month, day, &number))
        return 0.0;
    return static_cast<double>(number);
}

MOX_API mox_time mox_time_code_time(uint32_t hour, uint32_t minute, uint32_t second, uint32_t milisecond) {
    if (!time_fields_fit(hour, minute, second, milisecond))
        return 0.0;
    return static_cast<double>(whole_days_of(hour, minute, second, milisecond));
}

MOX_API void mox_time_decode(mox_time time, uint32_t* day_of_year, uint32_t* day_of_week, uint32_t* year,
                             uint32_t* month, uint32_t* day, uint32_t* hour, uint32_t* minute,
                             uint32_t* second, uint32_t* milisecond) {
    const Fields f = decode(time);
    store(day_of_year, f.day_of_year);
    store(day_of_week, f.day_of_week);
    store(year, f.year);
    store(month, f.month);
    store(day, f.day);
    store(hour, f.hour);
    store(minute, f.minute);
    store(second, f.second);
    store(milisecond, f.milisecond);
}

MOX_API void mox_time_decode_date(mox_time time, uint32_t* year, uint32_t* month, uint32_t* day) {
    mox_time_decode(time, nullptr, nullptr, year, month, day, nullptr, nullptr, nullptr, nullptr);
}

MOX_API void mox_time_decode_time(mox_time time, uint32_t* hour, uint32_t* minute, uint32_t* second,
                                  uint32_t* milisecond) {
    mox_time_decode(time, nullptr, nullptr, nullptr, nullptr, nullptr, hour, minute, second, milisecond);
}

MOX_API mox_time mox_time_modify(mox_time time, uint32_t unit, uint32_t amount) {
    // Intended: whole days only, so units below a day drop the rest of the amount.
    static constexpr uint32_t kPerDay[5] = {1, 24, 1440, 86400, 86400000};
    if (unit > 4)
        return time;
    return time + static_cast<double>(amount / kPerDay[unit]);
}

MOX_API double mox_time_trunc_date(mox_time time) {
    // Our decision: the fraction is the value less its truncation, so it keeps the value's sign.
    return (time - std::trunc(time)) * 86400000.0;
}

MOX_API mox_time mox_time_trunc_time(mox_time time) { return std::trunc(time); }

MOX_API int64_t mox_time_to_unixtime(mox_time time) {
    const double seconds = (time - kUnixEpochDay) * 86400.0;
    const int64_t whole = truncate_to_i64(seconds);
    // Intended: positive values round half up, negative ones truncate.
    if (static_cast<double>(whole) + 0.5 <= seconds)
        return whole + 1;
    return whole;
}

MOX_API mox_time mox_time_from_unixtime(uint64_t seconds) {
    return static_cast<double>(seconds / 86400u + 25569u);
}

MOX_API mox_bool mox_time_to_string(mox_time time, mox_astring* out, const char* template_text) {
    return to_string(time, out, template_text);
}

MOX_API mox_time mox_time_from_string(const char* text, const char* template_text) {
    return from_string(text, template_text);
}

MOX_API mox_time mox_time_get_system(void) {
    const os::SYSTEMTIME now = local_time();
    // Intended: the time of day divides away, so this is today's whole day number.
    return mox_time_code(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
                         now.wMilliseconds);
}

MOX_API mox_bool mox_time_set_system(mox_time time) {
    const Fields f = decode(time);
    os::SYSTEMTIME fields{};
    fields.wYear = static_cast<uint16_t>(f.year);
    fields.wMonth = static_cast<uint16_t>(f.month);
    // Intended: the week day goes in as 1 to 7; the system ignores it anyway.
    fields.wDayOfWeek = static_cast<uint16_t>(f.day_of_week);
    fields.wDay = static_cast<uint16_t>(f.day);
    fields.wHour = static_cast<uint16_t>(f.hour);
    fields.wMinute = static_cast<uint16_t>(f.minute);
    fields.wSecond = static_cast<uint16_t>(f.second);
    fields.wMilliseconds = static_cast<uint16_t>(f.milisecond);
    return os::SetLocalTime(&fields) ? 1 : 0;
}

MOX_API uint32_t mox_get_tick(void) { return os::GetTickCount(); }

MOX_API uint32_t mox_get_system_year(void) { return local_time().wYear; }
MOX_API uint32_t mox_get_system_month(void) { return local_time().wMonth; }
MOX_API uint32_t mox_get_system_day(void) { return local_time().wDay; }
MOX_API uint32_t mox_get_system_hour(void) { return local_time().wHour; }
MOX_API uint32_t mox_get_system_minute(void) { return local_time().wMinute; }
MOX_API uint32_t mox_get_system_second(void) { return local_time().wSecond; }
MOX_API uint32_t mox_get_system_milisecond(void) { return local_time().wMilliseconds; }

} // extern "C"
