// The table-driven CRC: one table build and one loop per width over a shared body, so that each byte
// costs one lookup and the width and reflection are looked at once per call.
#include <mox/checksum.h>
#include <mox/core.h>
#include <mox/files.h>

#include <cstddef>

#include "core/instance.h"
#include "files/file_words.h"

namespace mox {

namespace {

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_crc) == 40 && offsetof(mox_crc, reflect) == 28 &&
              offsetof(mox_crc, final_xor) == 32);
#endif

// Every table block is sized for 32-bit entries, whatever the width it was built for, so that a
// caller who changes `width` between make and calc reads wrong sums rather than past the block.
constexpr uint32_t kTableBytes = 256 * sizeof(uint32_t);
constexpr uint32_t kFileBytes = 17;

struct Preset {
    int32_t number;
    uint32_t width, polynomial, init;
    uint8_t reflect;
    uint32_t final_xor;
};

// Preset 200 pairs the reversed form of 0x8005 with the direct algorithm; its sums differ from those
// of the reflected algorithm on 0xA001, and that is intended.
constexpr Preset kPresets[] = {
    {100, 8, 0x31, 0xFF, 0, 0},
    {200, 16, 0xA001, 0xFFFF, 0, 0},
    {201, 16, 0x1021, 0xFFFF, 0, 0},
    {202, 16, 0x8005, 0xFFFF, 1, 0},
    {300, 32, 0x04C11DB7, 0xFFFFFFFF, 1, 0xFFFFFFFF},
};

uint32_t reverse_bits(uint32_t value, uint32_t count) {
    uint32_t out = 0;
    for (uint32_t i = 0; i < count; ++i) {
        out = (out << 1) | (value & 1);
        value >>= 1;
    }
    return out;
}

bool width_supported(uint32_t width) { return width == 8 || width == 16 || width == 32; }

template <typename Entry> void build_table(Entry* table, uint32_t width, uint32_t polynomial, bool reflect) {
    const uint32_t top = 1u << (width - 1);
    const uint32_t mask = top * 2 - 1; // wraps to all ones for width 32
    for (uint32_t index = 0; index < 256; ++index) {
        uint32_t x = (reflect ? reverse_bits(index, 8) : index) << (width - 8);
        for (int bit = 0; bit < 8; ++bit)
            x = (x & top) != 0 ? (x << 1) ^ polynomial : x << 1;
        if (reflect)
            x = reverse_bits(x & mask, width);
        table[index] = static_cast<Entry>(x & mask);
    }
}

// The register runs in the entry type, so the 8- and 16-bit loops keep to their width for free.
template <typename Entry>
uint32_t run_reflected(const Entry* table, Entry crc, const uint8_t* data, size_t size) {
    for (size_t i = 0; i < size; ++i)
        crc = static_cast<Entry>((crc >> 8) ^ table[(crc ^ data[i]) & 0xFF]);
    return crc;
}

template <typename Entry>
uint32_t run_direct(const Entry* table, Entry crc, const uint8_t* data, size_t size) {
    constexpr unsigned kHighShift = sizeof(Entry) * 8 - 8;
    for (size_t i = 0; i < size; ++i)
        crc = static_cast<Entry>(static_cast<Entry>(crc << 8) ^ table[(crc >> kHighShift) ^ data[i]]);
    return crc;
}

// Width 8 has a single form: a byte's reflection makes no difference to this step.
uint32_t run_byte(const uint8_t* table, uint8_t crc, const uint8_t* data, size_t size) {
    for (size_t i = 0; i < size; ++i)
        crc = table[data[i] ^ crc];
    return crc;
}

uint32_t calculate(const mox_crc* self, const uint8_t* data, size_t size) {
    if (self->table == nullptr || !width_supported(self->width))
        return self->init;
    uint32_t crc;
    switch (self->width) {
    case 8:
        crc =
            run_byte(static_cast<const uint8_t*>(self->table), static_cast<uint8_t>(self->init), data, size);
        break;
    case 16: {
        auto* table = static_cast<const uint16_t*>(self->table);
        auto init = static_cast<uint16_t>(self->init);
        crc =
            self->reflect != 0 ? run_reflected(table, init, data, size) : run_direct(table, init, data, size);
        break;
    }
    default: {
        auto* table = static_cast<const uint32_t*>(self->table);
        crc = self->reflect != 0 ? run_reflected(table, self->init, data, size)
                                 : run_direct(table, self->init, data, size);
        break;
    }
    }
    return crc ^ self->final_xor;
}

bool release_table(mox_crc* self) {
    if (self->table == nullptr)
        return true;
    return mox_memory_free(&self->table) != 0;
}

} // namespace

} // namespace mox

MOX_API mox_bool mox_crc_construct(mox_crc* self, void* owner) {
    if (self == nullptr)
        return 0;
    mox_object_construct(self, owner, MOX_CRC_CLASS_ID);
    self->width = 0;
    self->polynomial = 0;
    self->init = 0;
    self->reflect = 1;
    self->final_xor = 0;
    self->table = nullptr;
    return 1;
}

MOX_API mox_bool mox_crc_destruct(mox_crc* self) {
    if (self == nullptr)
        return 0;
    mox::release_table(self);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_crc_new(mox_crc** out, void* owner) {
    return mox::new_instance<mox_crc, mox_crc_construct, mox::NullArguments::silent>(out, owner);
}

// A null slot is refused here rather than handed to the memory family, which would post.
MOX_API mox_bool mox_crc_free(mox_crc** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_crc_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_crc_preset(mox_crc* self, int32_t preset) {
    if (self == nullptr)
        return 0;
    for (const mox::Preset& entry : mox::kPresets) {
        if (entry.number != preset)
            continue;
        self->width = entry.width;
        self->polynomial = entry.polynomial;
        self->init = entry.init;
        self->reflect = entry.reflect;
        self->final_xor = entry.final_xor;
        return 1;
    }
    return 0;
}

// The width is checked before anything is freed, so a refused width keeps the old table; a failed
// allocation leaves no table.
MOX_API mox_bool mox_crc_make(mox_crc* self) {
    if (self == nullptr || !mox::width_supported(self->width))
        return 0;
    if (!mox::release_table(self))
        return 0;
    if (!mox_memory_new(&self->table, mox::kTableBytes))
        return 0;
    const bool reflect = self->reflect != 0;
    switch (self->width) {
    case 8:
        mox::build_table(static_cast<uint8_t*>(self->table), 8, self->polynomial, reflect);
        break;
    case 16:
        mox::build_table(static_cast<uint16_t*>(self->table), 16, self->polynomial, reflect);
        break;
    default:
        mox::build_table(static_cast<uint32_t*>(self->table), 32, self->polynomial, reflect);
        break;
    }
    return 1;
}

// Intended: an empty or missing input gives 0, not `init`, while a missing table gives `init`.
MOX_API int32_t mox_crc_calc(mox_crc* self, const uint8_t* data, int32_t size) {
    if (self == nullptr || data == nullptr || size <= 0)
        return 0;
    return static_cast<int32_t>(mox::calculate(self, data, static_cast<size_t>(size)));
}

MOX_API mox_bool mox_crc_save_to_file(mox_crc* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    uint8_t bytes[mox::kFileBytes];
    mox::put_u32_le(bytes + 0, self->width);
    mox::put_u32_le(bytes + 4, self->polynomial);
    mox::put_u32_le(bytes + 8, self->init);
    bytes[12] = self->reflect;
    mox::put_u32_le(bytes + 13, self->final_xor);
    mox_file_write(file, bytes, mox::kFileBytes);
    return 1;
}

MOX_API mox_bool mox_crc_load_from_stream(mox_crc* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    mox::read_u32_le(file, &self->width);
    mox::read_u32_le(file, &self->polynomial);
    mox::read_u32_le(file, &self->init);
    uint8_t reflect;
    if (mox_file_read(file, &reflect, 1) == 1)
        self->reflect = reflect;
    mox::read_u32_le(file, &self->final_xor);
    return 1;
}
