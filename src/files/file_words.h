// Little-endian 32- and 64-bit words, as every persisted field is stored whatever the machine.
#pragma once

#include <mox/files.h>

#include <cstdint>

namespace mox {

inline void put_u32_le(uint8_t* out, uint32_t value) {
    out[0] = static_cast<uint8_t>(value);
    out[1] = static_cast<uint8_t>(value >> 8);
    out[2] = static_cast<uint8_t>(value >> 16);
    out[3] = static_cast<uint8_t>(value >> 24);
}

inline uint32_t get_u32_le(const uint8_t* in) {
    return static_cast<uint32_t>(in[0]) | (static_cast<uint32_t>(in[1]) << 8) |
           (static_cast<uint32_t>(in[2]) << 16) | (static_cast<uint32_t>(in[3]) << 24);
}

inline void put_u64_le(uint8_t* out, uint64_t value) {
    put_u32_le(out, static_cast<uint32_t>(value));
    put_u32_le(out + 4, static_cast<uint32_t>(value >> 32));
}

inline uint64_t get_u64_le(const uint8_t* in) {
    return static_cast<uint64_t>(get_u32_le(in)) | (static_cast<uint64_t>(get_u32_le(in + 4)) << 32);
}

inline void write_u32_le(mox_file* file, uint32_t value) {
    uint8_t bytes[4];
    put_u32_le(bytes, value);
    mox_file_write(file, bytes, 4);
}

// True only when all four bytes arrived; a file that ends inside the word leaves `value` alone.
inline bool read_u32_le(mox_file* file, uint32_t* value) {
    uint8_t bytes[4];
    if (mox_file_read(file, bytes, 4) != 4)
        return false;
    *value = get_u32_le(bytes);
    return true;
}

} // namespace mox
