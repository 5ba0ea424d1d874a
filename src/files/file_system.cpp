// The file system helpers: plain entries over names. Paths are rebuilt from their parts by one walk
// that both the file and the folder creation share.
#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

#include <cstring>

#include "core/words.h"
#include "platform/os.h"

namespace mox {

namespace {

constexpr const char* kSeparator = "\\";

bool make_file(const char* name) {
    os::HANDLE handle = os::CreateFileA(name, os::GENERIC_READ | os::GENERIC_WRITE, 0, nullptr,
                                        os::CREATE_NEW, os::FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == os::INVALID_HANDLE_VALUE)
        return false;
    os::CloseHandle(handle);
    return true;
}

// What the walk makes at the full path: a file, whose failure counts, or a folder, whose doesn't.
enum class Last { file, folder };

// The walk over the parts of `name`. Empty parts vanish, and a leading separator with them, so the
// path comes out relative; a first part with ":" as its second character is a drive and not made.
mox_bool walk(const char* name, Last last) {
    mox_astring_array parts;
    mox_astring_array_construct(&parts, nullptr);
    mox_bool result = 0;
    if (mox_astring_parse(&parts, name, kSeparator)) {
        result = 1;
        if (parts.length >= 1 && parts.items[0][0] != 0 && parts.items[0][1] != ':')
            os::CreateDirectoryA(parts.items[0], nullptr);
        if (parts.length >= 2) {
            mox_astring path = nullptr;
            if (!mox_astring_concate_3(&path, parts.items[0], kSeparator, parts.items[1])) {
                result = 0;
            } else {
                for (uint32_t i = 2; i < parts.length && result; ++i) {
                    os::CreateDirectoryA(path, nullptr);
                    mox_astring grown = nullptr;
                    if (!mox_astring_concate_3(&grown, path, kSeparator, parts.items[i]))
                        result = 0;
                    mox_memory_free(reinterpret_cast<void**>(&path));
                    path = grown;
                }
                if (result) {
                    if (last == Last::file)
                        result = make_file(path) ? 1 : 0;
                    else
                        os::CreateDirectoryA(path, nullptr);
                }
            }
            if (path != nullptr)
                mox_memory_free(reinterpret_cast<void**>(&path));
        }
    }
    mox_astring_array_destruct(&parts);
    return result;
}

bool has_separator(const char* name) { return std::strchr(name, '\\') != nullptr; }

bool is_dot_entry(const char* name) {
    return mox_astring_compare(name, ".") || mox_astring_compare(name, "..");
}

bool is_folder(const os::WIN32_FIND_DATAA& entry) {
    return (entry.dwFileAttributes & os::FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// `folder`, the separator and `entry`, in a heap string.
bool join(mox_astring* out, const char* folder, const char* entry) {
    return mox_astring_concate_3(out, folder, kSeparator, entry);
}

// The two passes of the listings. The second pass stops at the count of the first, so a folder
// that grew meanwhile gives the names that fit.
mox_bool list_entries(mox_astring_array* out, const char* folder, bool folders) {
    if (out == nullptr || folder == nullptr)
        return fail_params();
    mox_astring pattern = nullptr;
    if (!join(&pattern, folder, "*"))
        return 0;
    os::WIN32_FIND_DATAA entry;
    auto wanted = [&]() { return is_folder(entry) == folders && !is_dot_entry(entry.cFileName); };

    uint32_t count = 0;
    os::HANDLE search = os::FindFirstFileA(pattern, &entry);
    if (search == os::INVALID_HANDLE_VALUE) {
        mox_memory_free(reinterpret_cast<void**>(&pattern));
        return 0;
    }
    do {
        if (wanted())
            ++count;
    } while (os::FindNextFileA(search, &entry));
    os::FindClose(search);
    if (count == 0) {
        mox_memory_free(reinterpret_cast<void**>(&pattern));
        return 1;
    }

    search = os::FindFirstFileA(pattern, &entry);
    mox_memory_free(reinterpret_cast<void**>(&pattern));
    if (search == os::INVALID_HANDLE_VALUE)
        return 0;
    mox_bool result = mox_astring_array_set_length(out, count);
    uint32_t next = 0;
    if (result) {
        do {
            if (wanted() && next < count)
                mox_astring_duplicate(&out->items[next++], entry.cFileName);
        } while (os::FindNextFileA(search, &entry));
    }
    os::FindClose(search);
    return result;
}

mox_bool delete_tree(const char* name) {
    mox_astring pattern = nullptr;
    if (!join(&pattern, name, "*"))
        return 0;
    os::WIN32_FIND_DATAA entry;
    os::HANDLE search = os::FindFirstFileA(pattern, &entry);
    mox_memory_free(reinterpret_cast<void**>(&pattern));
    if (search == os::INVALID_HANDLE_VALUE)
        return 0;
    bool ok = true;
    do {
        if (is_folder(entry) && is_dot_entry(entry.cFileName))
            continue;
        mox_astring path = nullptr;
        if (!join(&path, name, entry.cFileName)) {
            ok = false;
            break;
        }
        ok = is_folder(entry) ? delete_tree(path) != 0 : os::DeleteFileA(path);
        mox_memory_free(reinterpret_cast<void**>(&path));
    } while (ok && os::FindNextFileA(search, &entry));
    os::FindClose(search);
    if (!ok)
        return 0;
    return os::RemoveDirectoryA(name) ? 1 : 0;
}

} // namespace

} // namespace mox

using mox::fail_params;

extern "C" {

MOX_API mox_bool mox_create_file(const char* name, uint8_t make_folders) {
    if (name == nullptr)
        return fail_params();
    if (make_folders == 0)
        return mox::make_file(name) ? 1 : 0;
    // Intended: a name without a separator is made here, and then the walk below tries in vain to
    // make a folder of the same name.
    if (!mox::has_separator(name) && !mox::make_file(name))
        return 0;
    return mox::walk(name, mox::Last::file);
}

MOX_API mox_bool mox_file_create(mox_file* self, const char* name, uint32_t mode, uint8_t make_folders) {
    if (self == nullptr)
        return fail_params();
    if (!mox_create_file(name, make_folders))
        return 0;
    return mox_file_open(self, name, mode);
}

MOX_API mox_bool mox_delete_file(const char* name) {
    if (name == nullptr)
        return fail_params();
    return mox::os::DeleteFileA(name) ? 1 : 0;
}

// A file that somebody holds open without sharing counts as missing.
MOX_API mox_bool mox_exist_file(const char* name) {
    if (name == nullptr)
        return fail_params();
    mox::os::HANDLE handle =
        mox::os::CreateFileA(name, mox::os::GENERIC_READ, 0, nullptr, mox::os::OPEN_EXISTING,
                             mox::os::FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == mox::os::INVALID_HANDLE_VALUE)
        return 0;
    mox::os::CloseHandle(handle);
    return 1;
}

// The target comes first; only an `overwrite` of exactly 1 replaces a file that is there.
MOX_API mox_bool mox_copy_file(const char* to, const char* from, uint8_t overwrite) {
    if (to == nullptr || from == nullptr)
        return fail_params();
    return mox::os::CopyFileA(from, to, overwrite != 1) ? 1 : 0;
}

// Intended: with `make_parents` the folders of the walk are made with their results ignored, so
// that the result is true once the name parses; only a name without a separator, made at once,
// can fail on the system's answer.
MOX_API mox_bool mox_create_folder(const char* name, uint8_t make_parents) {
    if (name == nullptr)
        return fail_params();
    if (make_parents == 0)
        return mox::os::CreateDirectoryA(name, nullptr) ? 1 : 0;
    if (!mox::has_separator(name) && !mox::os::CreateDirectoryA(name, nullptr))
        return 0;
    return mox::walk(name, mox::Last::folder);
}

MOX_API mox_bool mox_delete_folder(const char* name, uint8_t recursive) {
    if (name == nullptr)
        return fail_params();
    if (recursive == 0)
        return mox::os::RemoveDirectoryA(name) ? 1 : 0;
    return mox::delete_tree(name);
}

// Goes by way of the process's current folder, and puts it back. A current folder too long for
// the 260 characters couldn't be put back, so it counts as a failure of the first step.
MOX_API mox_bool mox_exist_folder(char* name) {
    if (name == nullptr)
        return fail_params();
    char saved[mox::os::MAX_PATH];
    uint32_t count = mox::os::GetCurrentDirectoryA(mox::os::MAX_PATH, saved);
    if (count == 0 || count >= mox::os::MAX_PATH)
        return 0;
    mox_bool result = mox::os::SetCurrentDirectoryA(name) ? 1 : 0;
    mox::os::SetCurrentDirectoryA(saved);
    return result;
}

MOX_API mox_bool mox_get_files(mox_astring_array* out, const char* folder) {
    return mox::list_entries(out, folder, false);
}

MOX_API mox_bool mox_get_folders(mox_astring_array* out, const char* folder) {
    return mox::list_entries(out, folder, true);
}

MOX_API mox_bool mox_set_work_folder(const char* name) {
    if (name == nullptr)
        return fail_params();
    return mox::os::SetCurrentDirectoryA(name) ? 1 : 0;
}

// The block stays 261 bytes whatever the length of the text.
MOX_API mox_bool mox_get_work_folder(mox_astring* out) {
    if (out == nullptr)
        return fail_params();
    if (!mox_astring_set_length(out, mox::os::MAX_PATH))
        return 0;
    return mox::os::GetCurrentDirectoryA(mox::os::MAX_PATH, *out) != 0 ? 1 : 0;
}

// Intended: the answers of both system calls are ignored.
MOX_API mox_bool mox_get_temp_folder(mox_astring* out) {
    if (out == nullptr)
        return fail_params();
    char buffer[mox::os::MAX_PATH + 1] = {};
    mox::os::GetTempPathA(mox::os::MAX_PATH, buffer);
    mox::os::GetLongPathNameA(buffer, buffer, mox::os::MAX_PATH);
    return mox_astring_duplicate(out, buffer);
}

// Intended: the system's answer is ignored; after a failure the name is empty.
MOX_API mox_bool mox_get_temp_file_name(mox_astring* out, const char* folder, const char* prefix) {
    if (out == nullptr || folder == nullptr || prefix == nullptr)
        return fail_params();
    char buffer[mox::os::MAX_PATH + 1] = {};
    mox::os::GetTempFileNameA(folder, prefix, 0, buffer);
    return mox_astring_duplicate(out, buffer);
}

} // extern "C"
