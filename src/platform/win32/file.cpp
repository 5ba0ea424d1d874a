// Files and file mappings are the system's own; only the word types of the arguments are adjusted.
#include "platform/win32/system.h"

namespace mox::os {

HANDLE CreateFileA(const char* name, uint32_t access, uint32_t share, void* security, uint32_t disposition,
                   uint32_t attributes, HANDLE template_file) {
    return ::CreateFileA(name, access, share, static_cast<LPSECURITY_ATTRIBUTES>(security), disposition,
                         attributes, template_file);
}

bool CloseHandle(HANDLE handle) { return ::CloseHandle(handle) != FALSE; }

bool ReadFile(HANDLE handle, void* data, uint32_t size, uint32_t* read, void* overlapped) {
    DWORD count = 0;
    const BOOL ok = ::ReadFile(handle, data, size, &count, static_cast<LPOVERLAPPED>(overlapped));
    if (read != nullptr)
        *read = count;
    return ok != FALSE;
}

bool WriteFile(HANDLE handle, const void* data, uint32_t size, uint32_t* written, void* overlapped) {
    DWORD count = 0;
    const BOOL ok = ::WriteFile(handle, data, size, &count, static_cast<LPOVERLAPPED>(overlapped));
    if (written != nullptr)
        *written = count;
    return ok != FALSE;
}

uint32_t SetFilePointer(HANDLE handle, int32_t distance_low, int32_t* distance_high, uint32_t method) {
    if (distance_high == nullptr)
        return ::SetFilePointer(handle, distance_low, nullptr, method);
    LONG high = *distance_high;
    const DWORD low = ::SetFilePointer(handle, distance_low, &high, method);
    *distance_high = high;
    return low;
}

uint32_t GetFileSize(HANDLE handle, uint32_t* size_high) {
    DWORD high = 0;
    const DWORD low = ::GetFileSize(handle, &high);
    if (size_high != nullptr)
        *size_high = high;
    return low;
}

bool SetEndOfFile(HANDLE handle) { return ::SetEndOfFile(handle) != FALSE; }

HANDLE CreateFileMappingA(HANDLE file, void* security, uint32_t protection, uint32_t size_high,
                          uint32_t size_low, const char* name) {
    return ::CreateFileMappingA(file, static_cast<LPSECURITY_ATTRIBUTES>(security), protection, size_high,
                                size_low, name);
}

void* MapViewOfFile(HANDLE mapping, uint32_t access, uint32_t offset_high, uint32_t offset_low, size_t size) {
    return ::MapViewOfFile(mapping, access, offset_high, offset_low, size);
}

bool UnmapViewOfFile(const void* view) { return ::UnmapViewOfFile(view) != FALSE; }

bool FlushViewOfFile(const void* base, size_t size) { return ::FlushViewOfFile(base, size) != FALSE; }

} // namespace mox::os
