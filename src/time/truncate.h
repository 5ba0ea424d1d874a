// Truncation of a float into integers, defined for every input.
#pragma once

#include <cstdint>

namespace mox {

// Toward zero into 64 bits. Our decision: NaN and values outside the 64-bit range give the
// smallest 64-bit number, as the processor's own conversion does, instead of undefined behaviour.
inline int64_t truncate_to_i64(double value) {
    if (!(value > -9223372036854775808.0 && value < 9223372036854775808.0))
        return INT64_MIN;
    return static_cast<int64_t>(value);
}

// Toward zero, keeping the low 32 bits of the 64-bit result.
inline uint32_t truncate_low_32(double value) {
    return static_cast<uint32_t>(static_cast<uint64_t>(truncate_to_i64(value)));
}

} // namespace mox
