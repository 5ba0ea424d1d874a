// The clock on Linux: the wall clock through clock_gettime and the local time zone, the tick count
// from the boot clock, and setting the clock through clock_settime, which needs CAP_SYS_TIME.
#include "platform/os.h"

#include <time.h>

namespace mox::os {

namespace {

bool is_leap(uint32_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

uint32_t days_in_month(uint32_t year, uint32_t month) {
    static constexpr uint8_t kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && is_leap(year) ? 29 : kDays[month - 1];
}

// The checks that the system makes before it turns fields into a moment.
bool is_valid(const SYSTEMTIME& time) {
    if (time.wYear < 1601 || time.wYear > 30827 || time.wMonth < 1 || time.wMonth > 12)
        return false;
    if (time.wDay < 1 || time.wDay > days_in_month(time.wYear, time.wMonth))
        return false;
    return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 && time.wMilliseconds < 1000;
}

} // namespace

void GetLocalTime(SYSTEMTIME* time) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    // localtime_r need not look at the zone again, so the zone is read here.
    tzset();
    tm local{};
    localtime_r(&now.tv_sec, &local);
    time->wYear = static_cast<uint16_t>(local.tm_year + 1900);
    time->wMonth = static_cast<uint16_t>(local.tm_mon + 1);
    time->wDayOfWeek = static_cast<uint16_t>(local.tm_wday);
    time->wDay = static_cast<uint16_t>(local.tm_mday);
    time->wHour = static_cast<uint16_t>(local.tm_hour);
    time->wMinute = static_cast<uint16_t>(local.tm_min);
    time->wSecond = static_cast<uint16_t>(local.tm_sec);
    time->wMilliseconds = static_cast<uint16_t>(now.tv_nsec / 1000000);
}

bool SetLocalTime(const SYSTEMTIME* time) {
    if (time == nullptr || !is_valid(*time))
        return false;
    tzset();
    tm local{};
    local.tm_year = time->wYear - 1900;
    local.tm_mon = time->wMonth - 1;
    local.tm_mday = time->wDay;
    local.tm_hour = time->wHour;
    local.tm_min = time->wMinute;
    local.tm_sec = time->wSecond;
    local.tm_isdst = -1;
    const time_t seconds = mktime(&local);
    if (seconds == static_cast<time_t>(-1))
        return false;
    timespec moment{};
    moment.tv_sec = seconds;
    moment.tv_nsec = static_cast<long>(time->wMilliseconds) * 1000000L;
    // Without CAP_SYS_TIME the system answers EPERM, and the clock stays as it was.
    return clock_settime(CLOCK_REALTIME, &moment) == 0;
}

uint32_t GetTickCount() {
    timespec since_boot{};
    clock_gettime(CLOCK_BOOTTIME, &since_boot);
    const uint64_t ms = static_cast<uint64_t>(since_boot.tv_sec) * 1000u +
                        static_cast<uint64_t>(since_boot.tv_nsec) / 1000000u;
    return static_cast<uint32_t>(ms);
}

} // namespace mox::os
