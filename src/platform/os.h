// The operating system as the library sees it: the services its behaviour is defined by, under their
// Win32 names and with their argument meanings and constant values. The Windows backend passes them
// through; the POSIX backend gives each its meaning on Linux. No other code calls the system.
#pragma once

#include <cstddef>
#include <cstdint>

namespace mox::os {

using HANDLE = void*;

// ---- Process heap --------------------------------------------------------------------------------

inline constexpr uint32_t HEAP_ZERO_MEMORY = 0x00000008;

HANDLE GetProcessHeap();
// Null on failure. With HEAP_ZERO_MEMORY the block comes zero-filled.
void* HeapAlloc(HANDLE heap, uint32_t flags, size_t bytes);
// Null on failure, and the old block stays as it was. With HEAP_ZERO_MEMORY the bytes a growth
// adds are zero.
void* HeapReAlloc(HANDLE heap, uint32_t flags, void* block, size_t bytes);
bool HeapFree(HANDLE heap, uint32_t flags, void* block);

// ---- Code pages ----------------------------------------------------------------------------------

inline constexpr uint32_t CP_UTF8 = 65001;

uint32_t GetACP();
uint32_t GetOEMCP();

// ---- Structured exceptions -----------------------------------------------------------------------

inline constexpr uint32_t EXCEPTION_MAXIMUM_PARAMETERS = 15;
inline constexpr uint32_t EXCEPTION_NONCONTINUABLE = 0x1;

inline constexpr uint32_t EXCEPTION_ACCESS_VIOLATION = 0xC0000005;
inline constexpr uint32_t EXCEPTION_IN_PAGE_ERROR = 0xC0000006;
inline constexpr uint32_t EXCEPTION_DATATYPE_MISALIGNMENT = 0x80000002;
inline constexpr uint32_t EXCEPTION_BREAKPOINT = 0x80000003;
inline constexpr uint32_t EXCEPTION_ILLEGAL_INSTRUCTION = 0xC000001D;
inline constexpr uint32_t EXCEPTION_PRIV_INSTRUCTION = 0xC0000096;
inline constexpr uint32_t EXCEPTION_INT_DIVIDE_BY_ZERO = 0xC0000094;
inline constexpr uint32_t EXCEPTION_INT_OVERFLOW = 0xC0000095;
inline constexpr uint32_t EXCEPTION_FLT_DIVIDE_BY_ZERO = 0xC000008E;
inline constexpr uint32_t EXCEPTION_FLT_INEXACT_RESULT = 0xC000008F;
inline constexpr uint32_t EXCEPTION_FLT_INVALID_OPERATION = 0xC0000090;
inline constexpr uint32_t EXCEPTION_FLT_OVERFLOW = 0xC0000091;
inline constexpr uint32_t EXCEPTION_FLT_UNDERFLOW = 0xC0000093;
inline constexpr uint32_t EXCEPTION_ARRAY_BOUNDS_EXCEEDED = 0xC000008C;

struct EXCEPTION_RECORD {
    uint32_t ExceptionCode;
    uint32_t ExceptionFlags;
    EXCEPTION_RECORD* ExceptionRecord;
    void* ExceptionAddress;
    uint32_t NumberParameters;
    uintptr_t ExceptionInformation[EXCEPTION_MAXIMUM_PARAMETERS];
};

struct EXCEPTION_POINTERS {
    EXCEPTION_RECORD* ExceptionRecord;
    void* ContextRecord;
};

// What an unhandled-exception filter answers.
inline constexpr int32_t EXCEPTION_EXECUTE_HANDLER = 1;     // end the process
inline constexpr int32_t EXCEPTION_CONTINUE_SEARCH = 0;     // let the system's search go on
inline constexpr int32_t EXCEPTION_CONTINUE_EXECUTION = -1; // resume where the exception happened

using TopLevelExceptionFilter = int32_t (*)(EXCEPTION_POINTERS* pointers);

// One process-wide filter; returns the one it replaces.
TopLevelExceptionFilter SetUnhandledExceptionFilter(TopLevelExceptionFilter filter);
void RaiseException(uint32_t code, uint32_t flags, uint32_t argument_count, const uintptr_t* arguments);

} // namespace mox::os
