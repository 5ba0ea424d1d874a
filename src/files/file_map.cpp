// The file map: a mapping of an open file and one view of it.
#include <mox/core.h>
#include <mox/files.h>

#include "core/instance.h"
#include "core/words.h"
#include "platform/os.h"
#include <cstddef>

// On a 32-bit target the records have the library's defined layout.
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_file_map) == 28 && offsetof(mox_file_map, handle) == 16 &&
              offsetof(mox_file_map, mode) == 20 && offsetof(mox_file_map, view) == 24);
#endif

namespace mox {

namespace {

os::HANDLE mapping_handle(const mox_file_map* self) { return reinterpret_cast<os::HANDLE>(self->handle); }

// Intended: with execute the numbers are sums of two of the system's protections (0x40 + 0x04 and
// 0x20 + 0x02). The system takes exactly one protection and refuses such sums, and a file opened by
// this library has no execute access either, so an executable mapping is never had.
uint32_t protection_of(uint32_t mode) {
    if (mode & MOX_FILE_MAP_EXECUTE) {
        if (mode & MOX_FILE_MAP_WRITE)
            return os::PAGE_EXECUTE_READWRITE | os::PAGE_READWRITE;
        if (mode & MOX_FILE_MAP_READ)
            return os::PAGE_EXECUTE_READ | os::PAGE_READONLY;
        return os::PAGE_EXECUTE;
    }
    if (mode & MOX_FILE_MAP_WRITE)
        return os::PAGE_READWRITE;
    if (mode & MOX_FILE_MAP_READ)
        return os::PAGE_READONLY;
    return 0;
}

uint32_t access_of(uint32_t mode) {
    uint32_t access = 0;
    if (mode & MOX_FILE_MAP_READ)
        access |= os::FILE_MAP_READ;
    if (mode & MOX_FILE_MAP_WRITE)
        access |= os::FILE_MAP_WRITE;
    if (mode & MOX_FILE_MAP_EXECUTE)
        access |= os::FILE_MAP_EXECUTE;
    return access;
}

mox_bool view(mox_file_map* self, uint64_t offset, uint32_t size) {
    if (self == nullptr)
        return fail_params();
    if (self->view != nullptr) {
        os::UnmapViewOfFile(self->view);
        self->view = nullptr;
    }
    self->view = os::MapViewOfFile(mapping_handle(self), access_of(self->mode),
                                   static_cast<uint32_t>(offset >> 32), static_cast<uint32_t>(offset), size);
    if (self->view != nullptr)
        return 1;
    // Intended: the mapping is closed, but `handle` keeps its stale value.
    os::CloseHandle(mapping_handle(self));
    return 0;
}

} // namespace

} // namespace mox

using mox::fail_params;

extern "C" {

MOX_API mox_bool mox_file_map_construct(mox_file_map* self, void* owner) {
    if (self == nullptr)
        return fail_params();
    mox_object_construct(self, owner, MOX_FILE_MAP_CLASS_ID);
    self->handle = 0;
    self->mode = 0;
    self->view = nullptr;
    return 1;
}

MOX_API mox_bool mox_file_map_destruct(mox_file_map* self) {
    if (self == nullptr)
        return fail_params();
    mox_file_map_close(self);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_file_map_new(mox_file_map** out, void* owner) {
    return mox::new_instance<mox_file_map, mox_file_map_construct, mox::NullArguments::posted>(out, owner);
}

MOX_API mox_bool mox_file_map_free(mox_file_map** slot) {
    if (slot == nullptr)
        return fail_params();
    if (*slot == nullptr)
        mox::hint_params();
    else
        mox_file_map_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_file_map_open(mox_file_map* self, mox_file* file, uint32_t mode) {
    if (self == nullptr || file == nullptr)
        return fail_params();
    uint32_t protection = mox::protection_of(mode);
    mox_file_map_close(self);
    mox::os::HANDLE handle = mox::os::CreateFileMappingA(reinterpret_cast<mox::os::HANDLE>(file->handle),
                                                         nullptr, protection, 0, 0, nullptr);
    self->handle = reinterpret_cast<uintptr_t>(handle);
    if (handle == nullptr)
        return 0;
    self->mode = mode;
    return 1;
}

MOX_API mox_bool mox_file_map_view_u32(mox_file_map* self, uint32_t offset, uint32_t size) {
    return mox::view(self, offset, size);
}

MOX_API mox_bool mox_file_map_view_u64(mox_file_map* self, uint64_t offset, uint32_t size) {
    return mox::view(self, offset, size);
}

// Intended: only the low word of the offset is added to the view.
MOX_API mox_bool mox_file_map_flush(mox_file_map* self, uint64_t offset, uint32_t size) {
    if (self == nullptr)
        return fail_params();
    // Worked out as a number, since the view may be null.
    uintptr_t base = reinterpret_cast<uintptr_t>(self->view) + static_cast<uint32_t>(offset);
    return mox::os::FlushViewOfFile(reinterpret_cast<const void*>(base), size) ? 1 : 0;
}

// The system's answers are not looked at: the fields end cleared and the result is true.
MOX_API mox_bool mox_file_map_close(mox_file_map* self) {
    if (self == nullptr)
        return fail_params();
    if (self->view != nullptr)
        mox::os::UnmapViewOfFile(self->view);
    if (self->handle != 0)
        mox::os::CloseHandle(reinterpret_cast<mox::os::HANDLE>(self->handle));
    self->view = nullptr;
    self->handle = 0;
    return 1;
}

} // extern "C"
