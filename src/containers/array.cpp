// Byte buffers with a position: the array, the stack and the ring (FIFO). The array and the stack
// post on bad arguments and when they run out; the ring is silent.
#include <mox/containers.h>
#include <mox/core.h>
#include <mox/files.h>

#include <cstring>

#include "core/instance.h"
#include "core/words.h"
#include "files/file_words.h"

namespace mox {

namespace {

void** slot_of(uint8_t** data) { return reinterpret_cast<void**>(data); }

// The memory entries answer true for a growth that lost its block; a missing block is a failure
// all the same.
bool resize_block(uint8_t** data, uint32_t size) {
    if (!mox_memory_resize(slot_of(data), size))
        return false;
    return size == 0 || *data != nullptr;
}

// The array and the stack share their layout up to `data`, and with it their destruct, free and
// save bodies.
template <typename Buffer> mox_bool buffer_destruct(Buffer* self) {
    if (self == nullptr)
        return fail_params();
    if (self->data != nullptr)
        mox_memory_free(slot_of(&self->data));
    self->size = 0;
    self->position = 0;
    return mox_object_destruct(self);
}

template <typename Buffer> mox_bool buffer_free(Buffer** slot) {
    if (slot == nullptr)
        return fail_params();
    if (*slot == nullptr)
        hint_params();
    else
        buffer_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

template <typename Buffer> mox_bool buffer_save(Buffer* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return fail_params();
    write_u32_le(file, self->size);
    write_u32_le(file, self->position);
    // Results of single transfers aren't looked at; an empty buffer hands the file a null block.
    mox_file_write(file, self->data, self->size);
    return 1;
}

template <typename Buffer> mox_bool buffer_construct(Buffer* self, void* owner, uint32_t class_id) {
    if (self == nullptr)
        return fail_params();
    mox_object_construct(self, owner, class_id);
    self->size = 0;
    self->position = 0;
    self->data = nullptr;
    return 1;
}

// A byte at `offset` of a block of `size`; outside the block there is nothing to read, and 0 stands
// in for it.
uint8_t byte_at(const uint8_t* data, uint32_t size, int64_t offset) {
    if (data == nullptr || offset < 0 || offset >= static_cast<int64_t>(size))
        return 0;
    return data[offset];
}

void store_at(uint8_t* data, uint32_t size, int64_t offset, uint8_t value) {
    if (data != nullptr && offset >= 0 && offset < static_cast<int64_t>(size))
        data[offset] = value;
}

// Calls the hook of a full array, and tells whether it made room.
bool array_room_after_hook(mox_array* self) {
    if (self->on_full != nullptr)
        self->on_full(self);
    return self->position < self->size;
}

void array_end_step(mox_array* self) {
    if (self->position >= self->size && !array_room_after_hook(self))
        hint_array_full();
}

// The ring wraps every index at its size.
uint32_t ring_next(uint32_t index, uint32_t size) {
    ++index;
    return index >= size ? 0 : index;
}

} // namespace

} // namespace mox

using mox::fail_params;

extern "C" {

// ---- Array ---------------------------------------------------------------------------------------

MOX_API mox_bool mox_array_construct(mox_array* self, void* owner) {
    if (!mox::buffer_construct(self, owner, MOX_ARRAY_CLASS_ID))
        return 0;
    self->on_full = nullptr;
    return 1;
}

MOX_API mox_bool mox_array_destruct(mox_array* self) { return mox::buffer_destruct(self); }

MOX_API mox_bool mox_array_new(mox_array** out, void* owner) {
    return mox::new_instance<mox_array, mox_array_construct, mox::NullArguments::posted>(out, owner);
}

MOX_API mox_bool mox_array_free(mox_array** slot) { return mox::buffer_free(slot); }

// `position` goes back to 0 even when the size stays, which is how a growing hook restarts.
MOX_API mox_bool mox_array_resize(mox_array* self, uint32_t size) {
    if (self == nullptr)
        return fail_params();
    self->position = 0;
    if (size == self->size)
        return 1;
    if (!mox::resize_block(&self->data, size)) {
        self->size = 0;
        return 0;
    }
    self->size = size;
    return 1;
}

// Intended: a write that ends exactly at the end is true and still posts "mox.array.full".
MOX_API mox_bool mox_array_write(mox_array* self, const void* data, uint32_t size) {
    if (self == nullptr)
        return fail_params();
    if (size == 0) {
        mox::hint_range();
        return 0;
    }
    const auto* source = static_cast<const uint8_t*>(data);
    for (uint32_t i = 0; i < size; ++i) {
        if (self->position >= self->size && !mox::array_room_after_hook(self)) {
            mox::hint_array_full();
            return 0;
        }
        // The hook may have moved the block, so the target is found afresh.
        if (source != nullptr)
            self->data[self->position] = source[i];
        ++self->position;
    }
    mox::array_end_step(self);
    return 1;
}

// Intended: after the hook the destination becomes the array's own byte at `position` while the
// source goes on where it was, so the rest of such a read lands in the array, not with the caller.
// The source runs on as an offset into whatever block the array then has.
MOX_API mox_bool mox_array_read(mox_array* self, void* data, uint32_t size) {
    if (self == nullptr)
        return fail_params();
    if (size == 0) {
        mox::hint_range();
        return 0;
    }
    auto* caller = static_cast<uint8_t*>(data);
    int64_t source = self->position;
    bool into_array = false;
    int64_t target = 0;
    for (uint32_t i = 0; i < size; ++i) {
        if (self->position >= self->size) {
            if (!mox::array_room_after_hook(self)) {
                // Intended: running out while reading is "full", not "empty".
                mox::hint_array_full();
                return 0;
            }
            into_array = true;
            target = self->position;
        }
        if (caller != nullptr) {
            uint8_t byte = mox::byte_at(self->data, self->size, source);
            if (into_array)
                mox::store_at(self->data, self->size, target++, byte);
            else
                caller[i] = byte;
        }
        ++source;
        ++self->position;
    }
    mox::array_end_step(self);
    return 1;
}

MOX_API mox_bool mox_array_save_to_file(mox_array* self, mox_file* file) {
    return mox::buffer_save(self, file);
}

// Intended: the size comes from the file before anyone looks at the block, the resize then sees an
// equal size and allocates nothing, and `position` never survives. Only as many bytes as the block
// that was there can hold are read; a fresh array has none, and the file entry posts for it.
MOX_API mox_bool mox_array_load_from_file(mox_array* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return fail_params();
    uint32_t block = self->data != nullptr ? self->size : 0;
    mox::read_u32_le(file, &self->size);
    mox::read_u32_le(file, &self->position);
    mox_array_resize(self, self->size);
    mox_file_read(file, self->data, self->size < block ? self->size : block);
    return 1;
}

// ---- Stack ---------------------------------------------------------------------------------------

MOX_API mox_bool mox_stack_construct(mox_stack* self, void* owner) {
    if (!mox::buffer_construct(self, owner, MOX_STACK_CLASS_ID))
        return 0;
    self->on_limit = nullptr;
    return 1;
}

MOX_API mox_bool mox_stack_destruct(mox_stack* self) { return mox::buffer_destruct(self); }

MOX_API mox_bool mox_stack_new(mox_stack** out, void* owner) {
    return mox::new_instance<mox_stack, mox_stack_construct, mox::NullArguments::posted>(out, owner);
}

MOX_API mox_bool mox_stack_free(mox_stack** slot) { return mox::buffer_free(slot); }

// Intended: `position` stays on success, even above a smaller size.
MOX_API mox_bool mox_stack_resize(mox_stack* self, uint32_t size) {
    if (self == nullptr)
        return fail_params();
    if (!mox::resize_block(&self->data, size)) {
        self->position = 0;
        self->size = 0;
        return 0;
    }
    self->size = size;
    return 1;
}

// Intended: unlike the array, a push that fills the stack exactly posts nothing.
MOX_API mox_bool mox_stack_push(mox_stack* self, const void* data, uint32_t size) {
    if (self == nullptr || data == nullptr)
        return fail_params();
    if (size == 0) {
        mox::hint_range();
        return 0;
    }
    const auto* source = static_cast<const uint8_t*>(data);
    for (uint32_t i = 0; i < size; ++i) {
        if (self->position >= self->size) {
            if (self->on_limit != nullptr)
                self->on_limit(self);
            if (self->position >= self->size) {
                mox::hint_array_full();
                return 0;
            }
        }
        self->data[self->position] = source[i];
        ++self->position;
    }
    return 1;
}

// Intended: the source starts `size` bytes below `position`, in front of the block when the stack
// holds too little; nothing lies there to read, and 0 comes out instead. After the hook the
// destination is the stack's own byte at `position` less the bytes still to go.
MOX_API mox_bool mox_stack_pop(mox_stack* self, void* data, uint32_t size) {
    if (self == nullptr || data == nullptr)
        return fail_params();
    if (size == 0) {
        mox::hint_range();
        return 0;
    }
    auto* caller = static_cast<uint8_t*>(data);
    int64_t source = static_cast<int64_t>(self->position) - size;
    bool into_stack = false;
    int64_t target = 0;
    for (uint32_t i = 0; i < size; ++i) {
        if (self->position == 0) {
            if (self->on_limit != nullptr)
                self->on_limit(self);
            if (self->position == 0) {
                mox::hint_array_empty();
                return 0;
            }
            into_stack = true;
            target = static_cast<int64_t>(self->position) - (size - i);
        }
        uint8_t byte = mox::byte_at(self->data, self->size, source);
        if (into_stack)
            mox::store_at(self->data, self->size, target++, byte);
        else
            caller[i] = byte;
        ++source;
        --self->position;
    }
    return 1;
}

MOX_API mox_bool mox_stack_save_to_file(mox_stack* self, mox_file* file) {
    return mox::buffer_save(self, file);
}

// Unlike the array's load, this one allocates the size it reads and keeps `position`.
MOX_API mox_bool mox_stack_load_from_file(mox_stack* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return fail_params();
    mox::read_u32_le(file, &self->size);
    mox::read_u32_le(file, &self->position);
    if (!mox_stack_resize(self, self->size))
        return 0;
    mox_file_read(file, self->data, self->size);
    return 1;
}

// ---- FIFO ----------------------------------------------------------------------------------------

MOX_API mox_bool mox_fifo_construct(mox_fifo* self, void* owner) {
    if (self == nullptr)
        return 0;
    mox_object_construct(self, owner, MOX_FIFO_CLASS_ID);
    self->size = 0;
    self->count = 0;
    self->read_position = 0;
    self->write_position = 0;
    self->limit = 0;
    self->data = nullptr;
    self->on_overflow = nullptr;
    return 1;
}

MOX_API mox_bool mox_fifo_destruct(mox_fifo* self) {
    if (self == nullptr)
        return 0;
    if (self->data != nullptr)
        mox_memory_free(mox::slot_of(&self->data));
    self->size = 0;
    self->count = 0;
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_fifo_new(mox_fifo** out, void* owner) {
    return mox::new_instance<mox_fifo, mox_fifo_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_fifo_free(mox_fifo** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_fifo_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_fifo_resize(mox_fifo* self, uint32_t size) {
    if (self == nullptr)
        return 0;
    self->count = 0;
    self->read_position = 0;
    self->write_position = 0;
    if (!mox::resize_block(&self->data, size)) {
        self->size = 0;
        return 0;
    }
    self->size = size;
    return 1;
}

// Intended: `count` is raised before the loop, so a write that ends at or past full moves
// `read_position` for each of its bytes, not only for those that overwrite. A `limit` of 0 never
// lets the hook fire.
MOX_API mox_bool mox_fifo_write(mox_fifo* self, const void* data, uint32_t size) {
    if (self == nullptr || data == nullptr)
        return 0;
    self->count += size;
    if (self->count > self->size) {
        self->count = self->size;
        if (self->limit != 0 && self->limit <= self->size && self->on_overflow != nullptr)
            self->on_overflow(self);
    }
    if (self->write_position >= self->size)
        self->write_position = 0;
    // A ring without a block has nowhere to put a byte.
    if (self->data == nullptr || self->size == 0)
        return 0;
    const auto* source = static_cast<const uint8_t*>(data);
    for (uint32_t i = 0; i < size; ++i) {
        if (self->count == self->size)
            self->read_position = mox::ring_next(self->read_position, self->size);
        self->data[self->write_position] = source[i];
        self->write_position = mox::ring_next(self->write_position, self->size);
    }
    return 1;
}

// Intended: `count` isn't tested inside the loop, so reading more than it holds wraps `count`
// through zero and delivers old bytes.
MOX_API mox_bool mox_fifo_read(mox_fifo* self, void* data, uint32_t size) {
    if (self == nullptr || data == nullptr || self->count == 0)
        return 0;
    if (self->read_position >= self->size)
        self->read_position = 0;
    if (self->data == nullptr || self->size == 0)
        return 0;
    auto* target = static_cast<uint8_t*>(data);
    for (uint32_t i = 0; i < size; ++i) {
        target[i] = self->data[self->read_position];
        self->read_position = mox::ring_next(self->read_position, self->size);
        --self->count;
    }
    return 1;
}

// Intended: `self` isn't tested, so a null one is followed. The reset of `read_position` compares
// it with the size asked for, not with the ring's size.
MOX_API mox_bool mox_fifo_copy(mox_fifo* self, void* data, uint32_t size) {
    if (data == nullptr || size == 0 || self->count == 0 || size > self->size)
        return 0;
    if (self->read_position >= size)
        self->read_position = 0;
    if (self->data == nullptr)
        return 0;
    auto* target = static_cast<uint8_t*>(data);
    uint32_t take = size < self->count ? size : self->count;
    uint32_t index = self->read_position;
    for (uint32_t i = 0; i < take; ++i) {
        target[i] = self->data[index];
        index = mox::ring_next(index, self->size);
    }
    return 1;
}

MOX_API mox_bool mox_fifo_save_to_file(mox_fifo* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    mox::write_u32_le(file, self->size);
    mox::write_u32_le(file, self->count);
    mox::write_u32_le(file, self->read_position);
    mox::write_u32_le(file, self->write_position);
    mox::write_u32_le(file, self->limit);
    mox_file_write(file, self->data, self->size);
    return 1;
}

// No resize: the bytes go into the block that is there, as many as it holds.
MOX_API mox_bool mox_fifo_load_from_file(mox_fifo* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    uint32_t block = self->data != nullptr ? self->size : 0;
    mox::read_u32_le(file, &self->size);
    mox::read_u32_le(file, &self->count);
    mox::read_u32_le(file, &self->read_position);
    mox::read_u32_le(file, &self->write_position);
    mox::read_u32_le(file, &self->limit);
    mox_file_read(file, self->data, self->size < block ? self->size : block);
    return 1;
}

} // extern "C"
