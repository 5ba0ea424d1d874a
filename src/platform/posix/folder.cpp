// Folders over mkdir, rmdir, unlink, opendir and chdir. Names given to these calls are in the
// library's form, with the backslash as separator; names the system gives back are left as they are.
#include "platform/os.h"
#include "platform/posix/path.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mox::os {

namespace {

// The count rule of the system's string answers: the length written, or the size needed with the
// terminator when the buffer is too small.
uint32_t answer(const char* text, uint32_t size, char* buffer) {
    size_t length = std::strlen(text);
    if (length + 1 > size || buffer == nullptr)
        return static_cast<uint32_t>(length + 1);
    std::memmove(buffer, text, length + 1);
    return static_cast<uint32_t>(length);
}

struct Search {
    DIR* folder;
    int folder_fd;
    char pattern[MAX_PATH];
};

// Fills `data` from the next entry that matches; false at the end.
bool next_match(Search* search, WIN32_FIND_DATAA* data) {
    for (;;) {
        errno = 0;
        dirent* entry = readdir(search->folder);
        if (entry == nullptr)
            return false;
        if (fnmatch(search->pattern, entry->d_name, 0) != 0)
            continue;
        if (std::strlen(entry->d_name) >= MAX_PATH)
            continue;
        struct stat info {};
        // The link itself is described, so that a link to a folder doesn't count as a folder.
        if (fstatat(search->folder_fd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        std::memset(data, 0, sizeof *data);
        data->dwFileAttributes = S_ISDIR(info.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
        if (!S_ISDIR(info.st_mode) && (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
            data->dwFileAttributes = FILE_ATTRIBUTE_READONLY;
        data->nFileSize = static_cast<uint64_t>(info.st_size);
        std::strcpy(data->cFileName, entry->d_name);
        return true;
    }
}

} // namespace

bool CreateDirectoryA(const char* name, void*) {
    char path[PATH_MAX];
    return system_path(name, path, sizeof path) && ::mkdir(path, 0777) == 0;
}

bool RemoveDirectoryA(const char* name) {
    char path[PATH_MAX];
    return system_path(name, path, sizeof path) && ::rmdir(path) == 0;
}

bool DeleteFileA(const char* name) {
    char path[PATH_MAX];
    if (!system_path(name, path, sizeof path))
        return false;
    struct stat info {};
    if (lstat(path, &info) != 0 || S_ISDIR(info.st_mode))
        return false;
    return ::unlink(path) == 0;
}

bool CopyFileA(const char* from, const char* to, bool fail_if_exists) {
    char source_path[PATH_MAX];
    char target_path[PATH_MAX];
    if (!system_path(from, source_path, sizeof source_path) ||
        !system_path(to, target_path, sizeof target_path))
        return false;
    int source = ::open(source_path, O_RDONLY | O_CLOEXEC);
    if (source < 0)
        return false;
    struct stat info {};
    if (fstat(source, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(source);
        return false;
    }
    int target = ::open(target_path, O_WRONLY | O_CREAT | O_CLOEXEC | (fail_if_exists ? O_EXCL : O_TRUNC),
                        info.st_mode & 0777);
    if (target < 0) {
        ::close(source);
        return false;
    }
    bool ok = true;
    char block[65536];
    for (;;) {
        ssize_t got = ::read(source, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            ok = got == 0;
            break;
        }
        ssize_t done = 0;
        while (done < got) {
            ssize_t put = ::write(target, block + done, static_cast<size_t>(got - done));
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0) {
                ok = false;
                break;
            }
            done += put;
        }
        if (!ok)
            break;
    }
    ::close(source);
    if (::close(target) != 0)
        ok = false;
    return ok;
}

HANDLE FindFirstFileA(const char* pattern, WIN32_FIND_DATAA* data) {
    char path[PATH_MAX];
    if (data == nullptr || !system_path(pattern, path, sizeof path))
        return INVALID_HANDLE_VALUE;
    char* last = std::strrchr(path, '/');
    const char* folder = ".";
    const char* match = path;
    if (last != nullptr) {
        *last = 0;
        folder = last == path ? "/" : path;
        match = last + 1;
    }
    if (*match == 0 || std::strlen(match) >= MAX_PATH)
        return INVALID_HANDLE_VALUE;
    auto* search = static_cast<Search*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Search)));
    if (search == nullptr)
        return INVALID_HANDLE_VALUE;
    std::strcpy(search->pattern, match);
    search->folder = opendir(folder);
    if (search->folder == nullptr) {
        HeapFree(GetProcessHeap(), 0, search);
        return INVALID_HANDLE_VALUE;
    }
    search->folder_fd = dirfd(search->folder);
    if (!next_match(search, data)) {
        closedir(search->folder);
        HeapFree(GetProcessHeap(), 0, search);
        return INVALID_HANDLE_VALUE;
    }
    return search;
}

bool FindNextFileA(HANDLE search, WIN32_FIND_DATAA* data) {
    if (search == nullptr || search == INVALID_HANDLE_VALUE || data == nullptr)
        return false;
    return next_match(static_cast<Search*>(search), data);
}

bool FindClose(HANDLE search) {
    if (search == nullptr || search == INVALID_HANDLE_VALUE)
        return false;
    auto* open = static_cast<Search*>(search);
    closedir(open->folder);
    return HeapFree(GetProcessHeap(), 0, open);
}

uint32_t GetCurrentDirectoryA(uint32_t size, char* buffer) {
    char path[PATH_MAX];
    if (getcwd(path, sizeof path) == nullptr)
        return 0;
    return answer(path, size, buffer);
}

bool SetCurrentDirectoryA(const char* name) {
    char path[PATH_MAX];
    return system_path(name, path, sizeof path) && ::chdir(path) == 0;
}

// The system's temporary folder, fixed: the library reads no environment variable.
uint32_t GetTempPathA(uint32_t size, char* buffer) { return answer("/tmp/", size, buffer); }

uint32_t GetLongPathNameA(const char* source, char* target, uint32_t size) {
    char path[PATH_MAX];
    struct stat info {};
    if (!system_path(source, path, sizeof path) || stat(path, &info) != 0)
        return 0;
    return answer(source, size, target);
}

uint32_t GetTempFileNameA(const char* folder, const char* prefix, uint32_t unique, char* buffer) {
    if (folder == nullptr || prefix == nullptr || buffer == nullptr)
        return 0;
    size_t folder_length = std::strlen(folder);
    bool has_separator =
        folder_length > 0 && (folder[folder_length - 1] == '\\' || folder[folder_length - 1] == '/');
    char start[4] = {};
    std::strncpy(start, prefix, 3);
    // The number starts from the clock, as the system's does, and walks on past names in use.
    auto number = static_cast<uint32_t>(
        unique != 0 ? unique : (static_cast<uint32_t>(time(nullptr)) ^ static_cast<uint32_t>(getpid()) << 4));
    for (uint32_t tries = 0; tries < 0x10000; ++tries) {
        uint32_t value = number & 0xFFFF;
        if (unique == 0 && value == 0)
            value = 1;
        int written = std::snprintf(buffer, MAX_PATH, "%s%s%s%04X.TMP", folder, has_separator ? "" : "\\",
                                    start, value);
        if (written < 0 || written >= static_cast<int>(MAX_PATH))
            break;
        if (unique != 0)
            return unique;
        HANDLE file =
            CreateFileA(buffer, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            CloseHandle(file);
            return value;
        }
        char path[PATH_MAX];
        struct stat info {};
        // Anything but a name in use (a missing folder, no right to write) ends the search.
        if (!system_path(buffer, path, sizeof path) || lstat(path, &info) != 0)
            break;
        number = value + 1;
    }
    buffer[0] = 0;
    return 0;
}

} // namespace mox::os
