// Folders are the system's own. Two meanings are kept where the system's differ: a listing never
// shows a link to a folder as a folder, so that no walk follows one, and DeleteFileA removes such a
// link, which the system only removes as a folder.
#include "platform/win32/system.h"

#include <cstring>

namespace mox::os {

namespace {

bool is_folder_link(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

void take_entry(const ::WIN32_FIND_DATAA& found, WIN32_FIND_DATAA* data) {
    DWORD attributes = found.dwFileAttributes;
    if (is_folder_link(attributes))
        attributes &= ~static_cast<DWORD>(FILE_ATTRIBUTE_DIRECTORY);
    data->dwFileAttributes = attributes;
    data->nFileSize = (static_cast<uint64_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
    static_assert(sizeof(data->cFileName) == sizeof(found.cFileName));
    std::memcpy(data->cFileName, found.cFileName, sizeof(data->cFileName));
}

} // namespace

bool CreateDirectoryA(const char* name, void* security) {
    return ::CreateDirectoryA(name, static_cast<LPSECURITY_ATTRIBUTES>(security)) != FALSE;
}

bool RemoveDirectoryA(const char* name) { return ::RemoveDirectoryA(name) != FALSE; }

bool DeleteFileA(const char* name) {
    if (::DeleteFileA(name) != FALSE)
        return true;
    return is_folder_link(::GetFileAttributesA(name)) && ::RemoveDirectoryA(name) != FALSE;
}

bool CopyFileA(const char* from, const char* to, bool fail_if_exists) {
    return ::CopyFileA(from, to, fail_if_exists ? TRUE : FALSE) != FALSE;
}

HANDLE FindFirstFileA(const char* pattern, WIN32_FIND_DATAA* data) {
    ::WIN32_FIND_DATAA found{};
    HANDLE search = ::FindFirstFileA(pattern, &found);
    if (search != INVALID_HANDLE_VALUE)
        take_entry(found, data);
    return search;
}

bool FindNextFileA(HANDLE search, WIN32_FIND_DATAA* data) {
    ::WIN32_FIND_DATAA found{};
    if (::FindNextFileA(search, &found) == FALSE)
        return false;
    take_entry(found, data);
    return true;
}

bool FindClose(HANDLE search) { return ::FindClose(search) != FALSE; }

uint32_t GetCurrentDirectoryA(uint32_t size, char* buffer) { return ::GetCurrentDirectoryA(size, buffer); }

bool SetCurrentDirectoryA(const char* name) { return ::SetCurrentDirectoryA(name) != FALSE; }

uint32_t GetTempPathA(uint32_t size, char* buffer) { return ::GetTempPathA(size, buffer); }

uint32_t GetLongPathNameA(const char* source, char* target, uint32_t size) {
    return ::GetLongPathNameA(source, target, size);
}

uint32_t GetTempFileNameA(const char* folder, const char* prefix, uint32_t unique, char* buffer) {
    const UINT number = ::GetTempFileNameA(folder, prefix, unique, buffer);
    if (number == 0 && buffer != nullptr)
        buffer[0] = '\0';
    return number;
}

} // namespace mox::os
