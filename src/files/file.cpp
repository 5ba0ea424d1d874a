// The file: a system handle with its position mirrored in the record.
#include <mox/core.h>
#include <mox/files.h>

#include "core/instance.h"
#include "core/words.h"
#include "platform/os.h"

namespace mox {

namespace {

os::HANDLE system_handle(const mox_file* self) { return reinterpret_cast<os::HANDLE>(self->handle); }

bool is_open(const mox_file* self) { return self->handle != MOX_FILE_CLOSED; }

void close_handle(mox_file* self) {
    if (is_open(self))
        os::CloseHandle(system_handle(self));
    self->handle = MOX_FILE_CLOSED;
}

uint32_t access_of(uint32_t mode) {
    uint32_t access = 0;
    if (mode & MOX_FILE_READ)
        access |= os::GENERIC_READ;
    if (mode & MOX_FILE_WRITE)
        access |= os::GENERIC_WRITE;
    return access;
}

uint32_t share_of(uint32_t mode) {
    uint32_t share = 0;
    if (mode & MOX_FILE_SHARE_READ)
        share |= os::FILE_SHARE_READ;
    if (mode & MOX_FILE_SHARE_WRITE)
        share |= os::FILE_SHARE_WRITE;
    return share;
}

} // namespace

} // namespace mox

using mox::fail_params;

extern "C" {

MOX_API mox_bool mox_file_construct(mox_file* self, void* owner) {
    if (self == nullptr)
        return fail_params();
    mox_object_construct(self, owner, MOX_FILE_CLASS_ID);
    self->handle = MOX_FILE_CLOSED;
    self->mode = 0;
    self->position = 0;
    return 1;
}

MOX_API mox_bool mox_file_destruct(mox_file* self) {
    if (self == nullptr)
        return fail_params();
    mox::close_handle(self);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_file_new(mox_file** out, void* owner) {
    return mox::new_instance<mox_file, mox_file_construct, mox::NullArguments::posted>(out, owner);
}

MOX_API mox_bool mox_file_free(mox_file** slot) {
    if (slot == nullptr)
        return fail_params();
    if (*slot == nullptr)
        mox::hint_params();
    else
        mox_file_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_file_open(mox_file* self, const char* name, uint32_t mode) {
    if (self == nullptr)
        return fail_params();
    mox::close_handle(self);
    // A missing file is never created here, and the failure is silent.
    mox::os::HANDLE handle =
        mox::os::CreateFileA(name, mox::access_of(mode), mox::share_of(mode), nullptr, mox::os::OPEN_EXISTING,
                             mox::os::FILE_ATTRIBUTE_NORMAL, nullptr);
    self->handle = reinterpret_cast<uintptr_t>(handle);
    if (handle == mox::os::INVALID_HANDLE_VALUE)
        return 0;
    mox::os::SetFilePointer(handle, 0, nullptr, mox::os::FILE_BEGIN);
    self->position = 0;
    self->mode = mode;
    return 1;
}

// `position` is left as it was.
MOX_API mox_bool mox_file_close(mox_file* self) {
    if (self == nullptr)
        return fail_params();
    mox::close_handle(self);
    return 1;
}

// Intended: true whatever the system answered, so a closed file reports 0xFFFFFFFF.
MOX_API mox_bool mox_file_get_size_u32(mox_file* self, uint32_t* size) {
    if (self == nullptr || size == nullptr)
        return fail_params();
    *size = mox::os::GetFileSize(mox::system_handle(self), nullptr);
    return 1;
}

// Intended: true whatever the system answered. The high word starts at 0, so a closed file
// reports 0x00000000FFFFFFFF.
MOX_API mox_bool mox_file_get_size_u64(mox_file* self, uint64_t* size) {
    if (self == nullptr || size == nullptr)
        return fail_params();
    uint32_t high = 0;
    uint32_t low = mox::os::GetFileSize(mox::system_handle(self), &high);
    *size = (static_cast<uint64_t>(high) << 32) | low;
    return 1;
}

MOX_API mox_bool mox_file_set_eof(mox_file* self) {
    if (self == nullptr)
        return fail_params();
    return mox::os::SetEndOfFile(mox::system_handle(self)) ? 1 : 0;
}

// Intended: the position goes to the system as a signed 32-bit distance with no high word, so
// positions from 2 GiB up are refused as a seek in front of the start.
MOX_API mox_bool mox_file_set_pointer_u32(mox_file* self, uint32_t position) {
    if (self == nullptr)
        return fail_params();
    uint32_t result = mox::os::SetFilePointer(mox::system_handle(self), static_cast<int32_t>(position),
                                              nullptr, mox::os::FILE_BEGIN);
    if (result == mox::os::INVALID_SET_FILE_POINTER)
        return 0;
    self->position = position;
    return 1;
}

// Intended: a position whose low word is 0xFFFFFFFF reads as the system's failure value, so it
// gives false although the system has moved there, and `position` isn't updated.
MOX_API mox_bool mox_file_set_pointer_u64(mox_file* self, uint64_t position) {
    if (self == nullptr)
        return fail_params();
    auto high = static_cast<int32_t>(static_cast<uint32_t>(position >> 32));
    uint32_t low = static_cast<uint32_t>(position);
    uint32_t result = mox::os::SetFilePointer(mox::system_handle(self), static_cast<int32_t>(low), &high,
                                              mox::os::FILE_BEGIN);
    if (result == mox::os::INVALID_SET_FILE_POINTER)
        return 0;
    self->position = (static_cast<uint64_t>(static_cast<uint32_t>(high)) << 32) | low;
    return 1;
}

// A count, not a truth value: a short write shows only in the count.
MOX_API uint32_t mox_file_write(mox_file* self, const void* data, uint32_t size) {
    if (self == nullptr || data == nullptr) {
        mox::hint_params();
        return 0;
    }
    uint32_t written = 0;
    if (!mox::os::WriteFile(mox::system_handle(self), data, size, &written, nullptr))
        return 0;
    self->position += written;
    return written;
}

// A count, not a truth value: the end of the file gives 0 without a word.
MOX_API uint32_t mox_file_read(mox_file* self, void* data, uint32_t size) {
    if (self == nullptr || data == nullptr) {
        mox::hint_params();
        return 0;
    }
    uint32_t read = 0;
    if (!mox::os::ReadFile(mox::system_handle(self), data, size, &read, nullptr))
        return 0;
    self->position += read;
    return read;
}

} // extern "C"
