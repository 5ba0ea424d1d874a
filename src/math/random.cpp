// Three pseudo-random generators with process-wide state, and the entries that fit a 32-bit value into
// a range. Nothing seeds the state at library start, so the sequences depend only on how many values
// the process has drawn. The state is not locked; the callers draw from one thread at a time.
#include <mox/math.h>

#include <cmath>
#include <cstdint>

namespace mox {
namespace {

// Exactly 1 / 2^32.
constexpr double kUnit = 2.3283064365386963e-10;

uint32_t linear_state = 0;

uint32_t kiss_x = 123456789;
uint32_t kiss_y = 362436000;
uint32_t kiss_z = 521288629;
uint32_t kiss_c = 7654321;

double mother_x1 = 0, mother_x2 = 0, mother_x3 = 0, mother_x4 = 0;
double mother_carry = 0;

uint32_t linear_step(uint32_t state) { return state * 1664525u + 1013904223u; }

// The low 32 bits of v truncated toward zero, as a signed 32-bit integer. fmod is exact, so this holds
// for every finite v; an infinity or a NaN gives 0, the low half of the machine's 64-bit "integer
// indefinite".
int32_t low_word_of_truncated(double v) {
    if (!std::isfinite(v))
        return 0;
    double low = std::fmod(std::trunc(v), 4294967296.0);
    if (low < 0)
        low += 4294967296.0;
    return static_cast<int32_t>(static_cast<uint32_t>(low));
}

} // namespace
} // namespace mox

MOX_API uint32_t mox_random_linear_init_u32(uint32_t seed) {
    mox::linear_state = seed;
    return seed;
}

MOX_API uint32_t mox_random_linear_u32(void) {
    mox::linear_state = mox::linear_step(mox::linear_state);
    return mox::linear_state;
}

MOX_API uint32_t mox_random_kiss_u32(void) {
    using namespace mox;
    kiss_y ^= kiss_y << 13;
    // Shifted left, unlike the published generator of this name, whose shift goes right. Intended: the
    // sequence differs from the published one.
    kiss_y ^= kiss_y << 17;
    kiss_y ^= kiss_y << 5;
    kiss_x = kiss_x * 69069u + 12345u;
    uint64_t t = static_cast<uint64_t>(kiss_z) * 698769069u + kiss_c;
    kiss_z = static_cast<uint32_t>(t);
    kiss_c = static_cast<uint32_t>(t >> 32);
    return kiss_x + kiss_y + kiss_z;
}

// The linear step runs in 64 bits, so the state values are in general not below 1 and the later ones
// can be negative. Intended.
MOX_API uint32_t mox_random_mother_of_all_init_u32(uint32_t seed) {
    using namespace mox;
    uint64_t s = seed;
    double* state[4] = {&mother_x1, &mother_x2, &mother_x3, &mother_x4};
    for (double* value : state) {
        s = s * 1664525u + 1013904223u;
        *value = static_cast<double>(static_cast<int64_t>(s)) * kUnit;
    }
    return static_cast<uint32_t>(s);
}

MOX_API double mox_random_mother_of_all_r64(void) {
    using namespace mox;
    double v = 2111111111.0 * mother_x4 + 1492.0 * mother_x3 + 1776.0 * mother_x2 + 5115.0 * mother_x1 +
               mother_carry;
    double k = low_word_of_truncated(v);
    mother_x4 = mother_x3;
    mother_x3 = mother_x2;
    mother_x2 = mother_x1;
    mother_x1 = v - k;
    mother_carry = k * kUnit;
    return mother_x1;
}

// A max of 0 divides by zero. Intended: callers give a non-zero range.
MOX_API uint32_t mox_random_max_u32_i32(uint32_t value, uint32_t max) { return value % max; }

MOX_API float mox_random_max_u32_r32(uint32_t value, float max) {
    return static_cast<float>(value * mox::kUnit * max);
}

// `low` is not used: the result lies between 0 and `high`. Intended.
MOX_API int32_t mox_random_range_u32_i32(uint32_t value, int32_t low, int32_t high) {
    (void)low;
    return static_cast<int32_t>(value * mox::kUnit * high);
}

MOX_API float mox_random_range_u32_r32(uint32_t value, float low, float high) {
    return static_cast<float>((static_cast<double>(high) - low) * (value * mox::kUnit) + low);
}
