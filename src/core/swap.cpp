// Exchanges and byte reversals. None of these checks its pointers.
#include <mox/core.h>

namespace {

template <typename T> void exchange(T* a, T* b) {
    T held = *a;
    *a = *b;
    *b = held;
}

} // namespace

extern "C" {

MOX_API void mox_swap_i8(int8_t* a, int8_t* b) { exchange(a, b); }
MOX_API void mox_swap_i16(int16_t* a, int16_t* b) { exchange(a, b); }
MOX_API void mox_swap_i32(int32_t* a, int32_t* b) { exchange(a, b); }
MOX_API void mox_swap_r32(float* a, float* b) { exchange(a, b); }
MOX_API void mox_swap_r64(double* a, double* b) { exchange(a, b); }

// Intended: the shifted value is not masked, so the old high nibble shows again in bits 8 to 11.
MOX_API uint32_t mox_swap_bit4(uint8_t x) { return (uint32_t(x) >> 4) | (uint32_t(x) << 4); }

// Intended: not masked either; the old high byte shows again in bits 16 to 23.
MOX_API uint32_t mox_swap_bit8(uint16_t x) { return (uint32_t(x) >> 8) | (uint32_t(x) << 8); }

// Whole byte reversals, not exchanges of halves.
MOX_API uint32_t mox_swap_bit16(uint32_t x) { return __builtin_bswap32(x); }
MOX_API uint64_t mox_swap_bit32(uint64_t x) { return __builtin_bswap64(x); }

} // extern "C"
