// The stream: a byte cache over an open file, so that byte-by-byte readers and writers don't cost a
// system call per byte. The family is silent.
#include <mox/core.h>
#include <mox/files.h>

#include <cstring>

#include "core/instance.h"
#include <cstddef>

// On a 32-bit target the records have the library's defined layout.
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_file_stream) == 36 && offsetof(mox_file_stream, file) == 16 &&
              offsetof(mox_file_stream, cache_size) == 20 && offsetof(mox_file_stream, cache_filled) == 28 &&
              offsetof(mox_file_stream, cache) == 32);
#endif

namespace mox {

namespace {

// Sends the whole cache out when it is full. False on a short write; the cache counts as empty
// either way.
bool flush_if_full(mox_file_stream* self) {
    if (self->cache_position < self->cache_size)
        return true;
    uint32_t written = mox_file_write(self->file, self->cache, self->cache_size);
    self->cache_position = 0;
    return written == self->cache_size;
}

void refill(mox_file_stream* self) {
    self->cache_filled = mox_file_read(self->file, self->cache, self->cache_size);
    self->cache_position = 0;
}

} // namespace

} // namespace mox

extern "C" {

MOX_API mox_bool mox_file_stream_construct(mox_file_stream* self, void* owner) {
    if (self == nullptr)
        return 0;
    mox_object_construct(self, owner, MOX_FILE_STREAM_CLASS_ID);
    self->file = nullptr;
    self->cache_size = 0;
    self->cache_position = 0;
    self->cache_filled = 0;
    self->cache = nullptr;
    return 1;
}

// Pending bytes are dropped, not written: only a flush writes them.
MOX_API mox_bool mox_file_stream_destruct(mox_file_stream* self) {
    if (self == nullptr)
        return 0;
    if (self->cache != nullptr)
        mox_memory_free(reinterpret_cast<void**>(&self->cache));
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_file_stream_new(mox_file_stream** out, void* owner) {
    return mox::new_instance<mox_file_stream, mox_file_stream_construct, mox::NullArguments::silent>(out,
                                                                                                     owner);
}

MOX_API mox_bool mox_file_stream_free(mox_file_stream** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_file_stream_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

// `cache_filled` is left as it was. The result is that of the resize, so releasing a cache that
// was never there is false.
MOX_API mox_bool mox_file_stream_cache_size(mox_file_stream* self, uint32_t size) {
    if (self == nullptr)
        return 0;
    self->cache_size = 0;
    self->cache_position = 0;
    if (!mox_memory_resize(reinterpret_cast<void**>(&self->cache), size))
        return 0;
    self->cache_size = size;
    return 1;
}

// Intended: a write that fills the cache exactly leaves the bytes pending; they go out at the next
// byte or at a flush.
MOX_API mox_bool mox_file_stream_write(mox_file_stream* self, const void* data, uint32_t size) {
    // A stream without a cache has nowhere to put a byte.
    if (self == nullptr || data == nullptr || self->cache == nullptr)
        return 0;
    if (!mox::flush_if_full(self))
        return 0;
    const auto* source = static_cast<const uint8_t*>(data);
    uint32_t left = size;
    while (left > 0) {
        if (!mox::flush_if_full(self))
            return 0;
        uint32_t room = self->cache_size - self->cache_position;
        uint32_t chunk = left < room ? left : room;
        std::memcpy(self->cache + self->cache_position, source, chunk);
        self->cache_position += chunk;
        source += chunk;
        left -= chunk;
    }
    return 1;
}

// Intended: the end of the file isn't reported. Past it every byte delivered is the first byte of
// the cache; `cache_filled` at 0 is what tells a reader. Only an empty file gives false.
MOX_API mox_bool mox_file_stream_read(mox_file_stream* self, void* data, uint32_t size) {
    // A stream without a cache has nothing to deliver from.
    if (self == nullptr || data == nullptr || self->cache == nullptr)
        return 0;
    if (self->cache_filled == 0) {
        uint64_t file_size = 0;
        mox_file_get_size_u64(self->file, &file_size);
        if (file_size == 0) {
            self->cache_filled = 0;
            return 0;
        }
        if (self->file->position != file_size)
            mox::refill(self);
    }
    if (self->cache_position >= self->cache_filled)
        mox::refill(self);
    auto* target = static_cast<uint8_t*>(data);
    const uint8_t* reading = self->cache + self->cache_position;
    uint32_t left = size;
    while (left > 0) {
        if (self->cache_position >= self->cache_filled) {
            mox::refill(self);
            reading = self->cache;
        }
        if (self->cache_filled == 0) {
            // At the end the same first byte comes again for every byte asked.
            *target++ = *reading++;
            ++self->cache_position;
            --left;
            continue;
        }
        uint32_t available = self->cache_filled - self->cache_position;
        uint32_t chunk = left < available ? left : available;
        std::memcpy(target, reading, chunk);
        target += chunk;
        reading += chunk;
        self->cache_position += chunk;
        left -= chunk;
    }
    return 1;
}

// Intended: only the indexes and the file position come back, not the cache's bytes, so a peek that
// crossed into a new block leaves the next read taking bytes from the wrong place.
MOX_API mox_bool mox_file_stream_peek(mox_file_stream* self, void* data, uint32_t size) {
    if (self == nullptr || data == nullptr || self->file == nullptr)
        return 0;
    uint32_t filled = self->cache_filled;
    uint32_t position = self->cache_position;
    uint64_t file_position = self->file->position;
    mox_bool result = mox_file_stream_read(self, data, size);
    mox_file_set_pointer_u64(self->file, file_position);
    self->cache_filled = filled;
    self->cache_position = position;
    return result;
}

MOX_API mox_bool mox_file_stream_flush(mox_file_stream* self) {
    if (self == nullptr)
        return 0;
    uint32_t written = mox_file_write(self->file, self->cache, self->cache_position);
    if (written < self->cache_position)
        return 0;
    self->cache_position = 0;
    return 1;
}

} // extern "C"
