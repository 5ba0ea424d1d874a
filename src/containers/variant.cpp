// The variant: one value of a tagged kind, copied as bytes and never interpreted. The family is
// silent.
#include <mox/containers.h>
#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

#include <cstring>

#include "files/file_words.h"
#include "containers/free_instance.h"
#include "containers/variant.h"
#include "core/instance.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_var) == 24 && offsetof(mox_var, type) == 16 && offsetof(mox_var, value) == 20);
#endif

namespace mox {

namespace {

constexpr uint32_t kStringTag = 12;

// Bytes of the value by tag; the library knows nothing else about the kinds.
constexpr uint32_t kTagSizes[kStringTag + 1] = {0, 4, 1, 1, 2, 4, 1, 2, 4, 4, 8, 8, 4};

constexpr uint32_t kWidestTag = 8;

void** block_slot(mox_var* self) { return &self->value; }
mox_astring* text_slot(mox_var* self) { return reinterpret_cast<mox_astring*>(&self->value); }

// A loaded text's address sits in the first word of the block, followed by a zero byte so that the
// block read as text always ends inside itself.
constexpr uint32_t kLoadedTextBlock = sizeof(mox_astring) + 1;

mox_bool var_destruct_body(mox_var* self) {
    if (self->value != nullptr)
        mox_memory_free(block_slot(self));
    return mox_object_destruct(self);
}

} // namespace

void var_skip_in_file(mox_file* file) {
    mox_var scratch;
    mox_var_construct(&scratch, nullptr);
    mox_var_load_from_file(&scratch, file);
    // Only a load that got as far as tag 12 leaves a text address in the block.
    if (scratch.type == kStringTag && scratch.value != nullptr) {
        mox_astring text;
        std::memcpy(&text, scratch.value, sizeof text);
        mox_astring_destruct(&text);
    }
    var_destruct_body(&scratch);
}

} // namespace mox

extern "C" {

MOX_API mox_bool mox_var_construct(mox_var* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_VAR_CLASS_ID))
        return 0;
    self->type = 0;
    self->value = nullptr;
    return 1;
}

MOX_API mox_bool mox_var_destruct(mox_var* self) {
    if (self == nullptr)
        return 0;
    return mox::var_destruct_body(self);
}

MOX_API mox_bool mox_var_new(mox_var** out, void* owner) {
    return mox::new_instance<mox_var, mox_var_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_var_free(mox_var** slot) { return mox::free_instance<mox_var, mox_var_destruct>(slot); }

MOX_API mox_bool mox_var_sizeof(mox_var* self, uint32_t* size) {
    if (self == nullptr || size == nullptr || self->type > mox::kStringTag)
        return 0;
    *size = mox::kTagSizes[self->type];
    return 1;
}

MOX_API mox_bool mox_var_set_type(mox_var* self, uint32_t type) {
    if (self == nullptr)
        return 0;
    if (type == self->type)
        return 1;
    if (self->type == mox::kStringTag)
        mox_memory_free(mox::block_slot(self));
    // Intended: an unknown tag stays stored although the answer is false.
    self->type = type;
    if (type > mox::kStringTag)
        return 0;
    // Intended: the answer is the resize's, so a change to tag 0 with no block (from tag 12 too,
    // whose block is already gone) is false.
    mox_bool resized = mox_memory_resize(mox::block_slot(self), mox::kTagSizes[type]);
    // A block kept from a byte value would be text without an end; the new string block is empty.
    if (type == mox::kStringTag && self->value != nullptr)
        std::memset(self->value, 0, mox::kTagSizes[type]);
    return resized;
}

MOX_API mox_bool mox_var_set(mox_var* self, const void* data) {
    if (self == nullptr || data == nullptr || self->type > mox::kStringTag)
        return 0;
    if (self->type == 0)
        return 1;
    if (self->type == mox::kStringTag)
        return mox_astring_duplicate(mox::text_slot(self), static_cast<const char*>(data));
    // A growth that lost its block leaves nowhere to copy to.
    if (self->value == nullptr)
        return 0;
    std::memcpy(self->value, data, mox::kTagSizes[self->type]);
    return 1;
}

MOX_API mox_bool mox_var_get(mox_var* self, void* out) {
    if (self == nullptr || out == nullptr || self->type > mox::kStringTag)
        return 0;
    if (self->type == 0)
        return 1;
    if (self->type == mox::kStringTag)
        return mox_astring_duplicate(static_cast<mox_astring*>(out), static_cast<const char*>(self->value));
    if (self->value == nullptr)
        return 0;
    std::memcpy(out, self->value, mox::kTagSizes[self->type]);
    return 1;
}

MOX_API mox_bool mox_var_save_to_file(mox_var* self, mox_file* file) {
    if (self == nullptr || file == nullptr || self->type > mox::kStringTag)
        return 0;
    mox::write_u32_le(file, self->type);
    // Intended: tag 0 answers false with its four bytes already written.
    if (self->type == 0)
        return 0;
    if (self->type == mox::kStringTag) {
        mox_astring_save_to_file(static_cast<const char*>(self->value), file);
        return 1;
    }
    // Intended: what goes out is the `value` word itself, little-endian, not the block it points at.
    // Exactly the tag's size is written starting at the field. On 64-bit the field is 8 bytes, so
    // every tag stays inside it; on a 32-bit target the second word of an 8-byte tag lies past the
    // record, and zero bytes stand in for it.
    uint8_t bytes[mox::kWidestTag] = {};
    auto word = reinterpret_cast<uintptr_t>(self->value);
    for (uint32_t i = 0; i < sizeof word && i < mox::kWidestTag; ++i)
        bytes[i] = static_cast<uint8_t>(word >> (8 * i));
    mox_file_write(file, bytes, mox::kTagSizes[self->type]);
    return 1;
}

MOX_API mox_bool mox_var_load_from_file(mox_var* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    // A file that ends inside the tag changes nothing.
    uint32_t type = 0;
    if (!mox::read_u32_le(file, &type))
        return 0;
    if (!mox_var_set_type(self, type))
        return 0;
    if (type == 0)
        return 0;
    if (type == mox::kStringTag) {
        // The text's address lands in the first word of the block and `value` keeps pointing at the
        // block, so the text is reachable only through that word. The text is read into a fresh
        // slot rather than into what the first word held, which may be text and no address.
        mox_astring text = nullptr;
        mox_astring_load_from_file(&text, file);
        if (!mox_memory_resize(mox::block_slot(self), mox::kLoadedTextBlock) || self->value == nullptr) {
            mox_astring_destruct(&text);
            return 1;
        }
        std::memcpy(self->value, &text, sizeof text);
        static_cast<uint8_t*>(self->value)[sizeof text] = 0;
        return 1;
    }
    // Intended: the value does not come back. Exactly the tag's size is read, as it was written
    // starting at the field; the bytes are a pointer word of another process, so they are taken
    // from the file into a stand-in for the field and dropped, and the block that the tag gave
    // stays, so that the record can still be used and ended without following a foreign address.
    uint8_t stand_in[mox::kWidestTag];
    mox_file_read(file, stand_in, mox::kTagSizes[type]);
    return 1;
}

} // extern "C"
