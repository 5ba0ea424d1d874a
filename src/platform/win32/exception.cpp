// Unhandled exceptions are the system's own. The library's filter takes the library's records, so a
// filter of ours stands in the system between them: it hands the system's record over as it is (the
// two records have the same fields in the same places) and gives the library's answer back. An answer
// to search on goes to the filter that stood before ours, as programs chain their filters here.
#include "platform/win32/system.h"

#include <cstddef>

namespace mox::os {

namespace {

static_assert(sizeof(EXCEPTION_RECORD) == sizeof(::EXCEPTION_RECORD));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionAddress) == offsetof(::EXCEPTION_RECORD, ExceptionAddress));
static_assert(offsetof(EXCEPTION_RECORD, NumberParameters) == offsetof(::EXCEPTION_RECORD, NumberParameters));
static_assert(offsetof(EXCEPTION_RECORD, ExceptionInformation) ==
              offsetof(::EXCEPTION_RECORD, ExceptionInformation));

TopLevelExceptionFilter g_filter = nullptr;
bool g_installed = false;
LPTOP_LEVEL_EXCEPTION_FILTER g_earlier = nullptr;

LONG WINAPI on_unhandled_exception(::EXCEPTION_POINTERS* system) {
    EXCEPTION_RECORD record = *reinterpret_cast<const EXCEPTION_RECORD*>(system->ExceptionRecord);
    EXCEPTION_POINTERS pointers{&record, system->ContextRecord};
    TopLevelExceptionFilter filter = __atomic_load_n(&g_filter, __ATOMIC_ACQUIRE);
    int32_t verdict = filter != nullptr ? filter(&pointers) : EXCEPTION_CONTINUE_SEARCH;
    if (verdict == EXCEPTION_CONTINUE_SEARCH && g_earlier != nullptr)
        return g_earlier(system);
    // The system ends the process with the exception's code as its exit code; ending it here does
    // the same at once, and the same way on every system that runs Windows programs.
    if (verdict == EXCEPTION_EXECUTE_HANDLER)
        ::TerminateProcess(::GetCurrentProcess(), system->ExceptionRecord->ExceptionCode);
    return verdict;
}

} // namespace

TopLevelExceptionFilter SetUnhandledExceptionFilter(TopLevelExceptionFilter filter) {
    TopLevelExceptionFilter previous = __atomic_exchange_n(&g_filter, filter, __ATOMIC_ACQ_REL);
    if (filter != nullptr && !g_installed) {
        g_earlier = ::SetUnhandledExceptionFilter(on_unhandled_exception);
        g_installed = true;
    } else if (filter == nullptr && g_installed) {
        ::SetUnhandledExceptionFilter(g_earlier);
        g_earlier = nullptr;
        g_installed = false;
    }
    return previous;
}

void RaiseException(uint32_t code, uint32_t flags, uint32_t argument_count, const uintptr_t* arguments) {
    DWORD count = 0;
    if (arguments != nullptr)
        count = argument_count < EXCEPTION_MAXIMUM_PARAMETERS ? argument_count : EXCEPTION_MAXIMUM_PARAMETERS;
    ::RaiseException(code, flags, count, reinterpret_cast<const ULONG_PTR*>(arguments));
}

} // namespace mox::os
