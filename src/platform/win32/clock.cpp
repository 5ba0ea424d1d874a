// The clock is the system's own.
#include "platform/win32/system.h"

namespace mox::os {

namespace {

// The two records are the same eight 16-bit fields in the same order.
static_assert(sizeof(SYSTEMTIME) == sizeof(::SYSTEMTIME));

::SYSTEMTIME to_system(const SYSTEMTIME& time) {
    return ::SYSTEMTIME{time.wYear, time.wMonth,  time.wDayOfWeek, time.wDay,
                        time.wHour, time.wMinute, time.wSecond,    time.wMilliseconds};
}

} // namespace

void GetLocalTime(SYSTEMTIME* time) {
    ::SYSTEMTIME now{};
    ::GetLocalTime(&now);
    *time = SYSTEMTIME{now.wYear, now.wMonth,  now.wDayOfWeek, now.wDay,
                       now.wHour, now.wMinute, now.wSecond,    now.wMilliseconds};
}

bool SetLocalTime(const SYSTEMTIME* time) {
    if (time == nullptr)
        return false;
    const ::SYSTEMTIME fields = to_system(*time);
    return ::SetLocalTime(&fields) != FALSE;
}

uint32_t GetTickCount() { return ::GetTickCount(); }

} // namespace mox::os
