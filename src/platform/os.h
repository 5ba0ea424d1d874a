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

// ---- Files ---------------------------------------------------------------------------------------

namespace mox::os {

inline constexpr uint32_t GENERIC_READ = 0x80000000;
inline constexpr uint32_t GENERIC_WRITE = 0x40000000;
inline constexpr uint32_t GENERIC_EXECUTE = 0x20000000;

inline constexpr uint32_t FILE_SHARE_READ = 0x00000001;
inline constexpr uint32_t FILE_SHARE_WRITE = 0x00000002;

inline constexpr uint32_t CREATE_NEW = 1;
inline constexpr uint32_t CREATE_ALWAYS = 2;
inline constexpr uint32_t OPEN_EXISTING = 3;
inline constexpr uint32_t OPEN_ALWAYS = 4;
inline constexpr uint32_t TRUNCATE_EXISTING = 5;

inline constexpr uint32_t FILE_ATTRIBUTE_NORMAL = 0x00000080;

inline constexpr uint32_t FILE_BEGIN = 0;
inline constexpr uint32_t FILE_CURRENT = 1;
inline constexpr uint32_t FILE_END = 2;

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<intptr_t>(-1));
inline constexpr uint32_t INVALID_SET_FILE_POINTER = 0xFFFFFFFF;
inline constexpr uint32_t INVALID_FILE_SIZE = 0xFFFFFFFF;

// Page protections of a file mapping; a mapping takes exactly one of them.
inline constexpr uint32_t PAGE_NOACCESS = 0x01;
inline constexpr uint32_t PAGE_READONLY = 0x02;
inline constexpr uint32_t PAGE_READWRITE = 0x04;
inline constexpr uint32_t PAGE_WRITECOPY = 0x08;
inline constexpr uint32_t PAGE_EXECUTE = 0x10;
inline constexpr uint32_t PAGE_EXECUTE_READ = 0x20;
inline constexpr uint32_t PAGE_EXECUTE_READWRITE = 0x40;

// Access of a view.
inline constexpr uint32_t FILE_MAP_COPY = 0x01;
inline constexpr uint32_t FILE_MAP_WRITE = 0x02;
inline constexpr uint32_t FILE_MAP_READ = 0x04;
inline constexpr uint32_t FILE_MAP_EXECUTE = 0x20;

// Views start at multiples of this.
inline constexpr uint32_t ALLOCATION_GRANULARITY = 0x10000;

// INVALID_HANDLE_VALUE on failure. Never creates with OPEN_EXISTING. A second opener is refused
// when its access collides with the share mode of a handle already open on the file, or its share
// mode with that handle's access. `security` and `template_file` must be null.
HANDLE CreateFileA(const char* name, uint32_t access, uint32_t share, void* security, uint32_t disposition,
                   uint32_t attributes, HANDLE template_file);
bool CloseHandle(HANDLE handle);
// Reads until `size` bytes or the end of the file; at the end `*read` is 0 and the call succeeds.
bool ReadFile(HANDLE handle, void* data, uint32_t size, uint32_t* read, void* overlapped);
bool WriteFile(HANDLE handle, const void* data, uint32_t size, uint32_t* written, void* overlapped);
// Without `distance_high` the distance is a signed 32-bit number; with it, the two words form a
// signed 64-bit one and `*distance_high` receives the high word of the new position. The low word
// of the new position, or INVALID_SET_FILE_POINTER on failure.
uint32_t SetFilePointer(HANDLE handle, int32_t distance_low, int32_t* distance_high, uint32_t method);
// The low word of the size, INVALID_FILE_SIZE on failure; `*size_high` gets the high word.
uint32_t GetFileSize(HANDLE handle, uint32_t* size_high);
// Cuts or extends the file at the handle's current position.
bool SetEndOfFile(HANDLE handle);

// A mapping of the whole file when both size words are 0; null on failure.
HANDLE CreateFileMappingA(HANDLE file, void* security, uint32_t protection, uint32_t size_high,
                          uint32_t size_low, const char* name);
// `size` 0 maps up to the end of the mapping. Null on failure.
void* MapViewOfFile(HANDLE mapping, uint32_t access, uint32_t offset_high, uint32_t offset_low, size_t size);
bool UnmapViewOfFile(const void* view);
// `size` 0 flushes up to the end of the view that holds `base`.
bool FlushViewOfFile(const void* base, size_t size);

} // namespace mox::os

// ---- Code page conversion ------------------------------------------------------------------------

namespace mox::os {

inline constexpr uint32_t CP_ACP = 0;
inline constexpr uint32_t CP_OEMCP = 1;

// Units written, or with `target_size` 0 the units needed; 0 on failure (an unknown code page, an
// empty source, or a target too small, which is then left untouched). A `source_length` of -1
// converts up to and with the terminator. Bytes that are no character of the page become U+FFFD.
int32_t MultiByteToWideChar(uint32_t code_page, uint32_t flags, const char* source, int32_t source_length,
                            uint16_t* target, int32_t target_size);
// The inverse, in bytes. Units the page has no character for become "?", or U+FFFD in UTF-8; when
// `used_default` is given it tells whether that happened.
int32_t WideCharToMultiByte(uint32_t code_page, uint32_t flags, const uint16_t* source, int32_t source_length,
                            char* target, int32_t target_size, const char* default_char, bool* used_default);

} // namespace mox::os

// ---- Folders -------------------------------------------------------------------------------------

namespace mox::os {

inline constexpr uint32_t MAX_PATH = 260;

inline constexpr uint32_t FILE_ATTRIBUTE_READONLY = 0x00000001;
inline constexpr uint32_t FILE_ATTRIBUTE_DIRECTORY = 0x00000010;

// One entry of a folder listing. The name is the system's own, with no folder in front.
struct WIN32_FIND_DATAA {
    uint32_t dwFileAttributes;
    uint64_t nFileSize;
    char cFileName[MAX_PATH];
};

// False if the folder exists or its parent doesn't. `security` must be null.
bool CreateDirectoryA(const char* name, void* security);
// Only an empty folder is removed.
bool RemoveDirectoryA(const char* name);
// Removes a file or a symbolic link, never a folder.
bool DeleteFileA(const char* name);
// Copies the bytes of a file; with `fail_if_exists` an existing target is refused, otherwise it is
// replaced.
bool CopyFileA(const char* from, const char* to, bool fail_if_exists);

// `pattern` is a folder, the separator and a last part that may hold the wildcards "*" and "?".
// The listing holds "." and "..", as the system gives them. A symbolic link is listed as what it
// is and never as a folder, so that a walk doesn't follow it. INVALID_HANDLE_VALUE on failure.
HANDLE FindFirstFileA(const char* pattern, WIN32_FIND_DATAA* data);
// False once there is no further entry.
bool FindNextFileA(HANDLE search, WIN32_FIND_DATAA* data);
bool FindClose(HANDLE search);

// Characters written without the terminator; if `size` is too small, the size needed with the
// terminator, with `buffer` untouched; 0 on failure.
uint32_t GetCurrentDirectoryA(uint32_t size, char* buffer);
bool SetCurrentDirectoryA(const char* name);
// The temporary folder with a separator at its end, counted as GetCurrentDirectoryA counts.
uint32_t GetTempPathA(uint32_t size, char* buffer);
// The name as it stands once the file is known to exist (this system has no short names); `target`
// may be `source`. Counted as GetCurrentDirectoryA counts; 0 for a missing file.
uint32_t GetLongPathNameA(const char* source, char* target, uint32_t size);
// Makes an empty file "<folder>\<first three of prefix><four hex digits>.TMP" with a number not in
// use and writes its name to `buffer` (MAX_PATH bytes). With `unique` non-zero that number is used
// and no file is made. The number, or 0 on failure with an empty `buffer`.
uint32_t GetTempFileNameA(const char* folder, const char* prefix, uint32_t unique, char* buffer);

} // namespace mox::os

// ---- Clock ---------------------------------------------------------------------------------------

namespace mox::os {

// A calendar moment in fields, in the Win32 order. `wDayOfWeek` runs from 0 for Sunday.
struct SYSTEMTIME {
    uint16_t wYear;
    uint16_t wMonth;
    uint16_t wDayOfWeek;
    uint16_t wDay;
    uint16_t wHour;
    uint16_t wMinute;
    uint16_t wSecond;
    uint16_t wMilliseconds;
};

// The wall clock in the local time zone.
void GetLocalTime(SYSTEMTIME* time);
// Sets the wall clock from local fields; `wDayOfWeek` is ignored. False for fields that are no
// moment (years outside 1601 to 30827 among them) or when the process may not set the clock.
bool SetLocalTime(const SYSTEMTIME* time);
// Milliseconds since the system started, wrapping at 32 bits.
uint32_t GetTickCount();

} // namespace mox::os
