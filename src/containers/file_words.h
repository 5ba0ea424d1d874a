// Little-endian 32-bit words in a file, for the containers' save and load entries.
#pragma once

#include <mox/files.h>

#include <cstdint>

namespace mox {

inline void write_u32_le(mox_file* file, uint32_t value) {
    uint8_t bytes[4] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                        static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
    mox_file_write(file, bytes, 4);
}

// True only when all four bytes arrived; a file that ends inside the word leaves `value` alone.
inline bool read_u32_le(mox_file* file, uint32_t* value) {
    uint8_t bytes[4];
    if (mox_file_read(file, bytes, 4) != 4)
        return false;
    *value = static_cast<uint32_t>(bytes[0]) | (static_cast<uint32_t>(bytes[1]) << 8) |
             (static_cast<uint32_t>(bytes[2]) << 16) | (static_cast<uint32_t>(bytes[3]) << 24);
    return true;
}

} // namespace mox
