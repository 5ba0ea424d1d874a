// The shared bodies of the mathematics entries. A value record of n floats (or n 32-bit words) is
// seen as an array of n lanes, so that one template serves every size and every type tag.
#pragma once

#include <mox/files.h>
#include <mox/math.h>

#include <cstdint>
#include <cstring>

#include "files/file_words.h"

namespace mox {

// Truncation toward zero. Values the 32-bit integer cannot hold, and NaN, give the machine's
// "integer indefinite" INT32_MIN instead of undefined behaviour.
inline int32_t truncate_to_i32(double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0))
        return INT32_MIN;
    return static_cast<int32_t>(value);
}

template <typename Record, typename Lane = float> struct Lanes {
    static constexpr int count = static_cast<int>(sizeof(Record) / sizeof(Lane));
    static_assert(sizeof(Record) == count * sizeof(Lane), "a value record is made of lanes only");
    Lane c[count];
    Lane& operator[](int i) { return c[i]; }
    Lane operator[](int i) const { return c[i]; }
};

template <typename Lane = float, typename Record> Lanes<Record, Lane> lanes_of(const Record& record) {
    Lanes<Record, Lane> lanes;
    std::memcpy(lanes.c, &record, sizeof record);
    return lanes;
}

template <typename Record, typename Lane> Record record_of(const Lanes<Record, Lane>& lanes) {
    Record record;
    std::memcpy(&record, lanes.c, sizeof record);
    return record;
}

// Applies `op` lane by lane to a and b and stores the result; the operands are copies, so `out` may
// alias either.
template <typename V, typename Op> mox_bool per_lane(V* out, const V& a, const V& b, Op op) {
    if (out == nullptr)
        return 0;
    Lanes<V> x = lanes_of(a), y = lanes_of(b), r;
    for (int i = 0; i < r.count; ++i)
        r[i] = op(x[i], y[i]);
    *out = record_of(r);
    return 1;
}

// Summed in lane order in single precision, so every size rounds the same way.
template <typename V> float dot(const V& a, const V& b) {
    Lanes<V> x = lanes_of(a), y = lanes_of(b);
    float sum = x[0] * y[0];
    for (int i = 1; i < x.count; ++i)
        sum += x[i] * y[i];
    return sum;
}

// Where a value is defined as rounded to single precision it is worked out in double and rounded once.
template <typename V> float sum_of_squares(const V& a) {
    Lanes<V> x = lanes_of(a);
    double sum = 0.0;
    for (int i = 0; i < x.count; ++i)
        sum += static_cast<double>(x[i]) * x[i];
    return static_cast<float>(sum);
}

// Divides by the sum of the squares and not by its root: every caller in the library (look-at,
// rotation about an axis, shadow, plane from points, calc_normal) is built on this value. Intended.
// An equality test, so a NaN sum goes on and spreads.
template <typename V> mox_bool normalize(V* out, const V& a) {
    if (out == nullptr)
        return 0;
    float s = sum_of_squares(a);
    if (s == 0.0f)
        return 0;
    Lanes<V> r = lanes_of(a);
    for (int i = 0; i < r.count; ++i)
        r[i] = r[i] / s;
    *out = record_of(r);
    return 1;
}

inline mox_vector3_r32 cross(const mox_vector3_r32& a, const mox_vector3_r32& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// The four-dimensional cross product through six 2x2 minors of b and c.
inline mox_vector4_r32 cross(const mox_vector4_r32& a, const mox_vector4_r32& b, const mox_vector4_r32& c) {
    float p = c.w * b.z - b.w * c.z;
    float q = b.y * c.w - c.y * b.w;
    float r = b.y * c.z - c.y * b.z;
    float s = c.w * b.x - b.w * c.x;
    float t = c.z * b.x - b.z * c.x;
    float u = b.x * c.y - c.x * b.y;
    return {a.w * r + a.y * p - a.z * q, -(a.x * p - a.z * s + a.w * t), a.w * u + a.x * q - a.y * s,
            -(a.x * r - a.y * t + a.z * u)};
}

inline mox_vector4_r32 transform(const mox_vector4_r32& v, const mox_matrix_4x4_r32& matrix) {
    const float* m = matrix.m;
    return {v.x * m[0] + v.y * m[4] + v.z * m[8] + v.w * m[12],
            v.x * m[1] + v.y * m[5] + v.z * m[9] + v.w * m[13],
            v.x * m[2] + v.y * m[6] + v.z * m[10] + v.w * m[14],
            v.x * m[3] + v.y * m[7] + v.z * m[11] + v.w * m[15]};
}

// Not the homogeneous transform: v.w*m12 is added to every row, m13 and m14 are never read and m15
// only multiplies v.z in the divisor. Intended; the projection entries stand on it.
inline mox_bool transform_coord(mox_vector4_r32* out, const mox_vector4_r32& v,
                                const mox_matrix_4x4_r32& matrix) {
    if (out == nullptr)
        return 0;
    const float* m = matrix.m;
    float e = v.w * m[12];
    float d = static_cast<float>(static_cast<double>(v.x) * m[3] + static_cast<double>(v.y) * m[7] +
                                 static_cast<double>(v.z) * m[15] + e);
    if (d == 0.0f)
        return 0;
    *out = {(v.x * m[0] + v.y * m[4] + v.z * m[8] + e) / d, (v.x * m[1] + v.y * m[5] + v.z * m[9] + e) / d,
            (v.x * m[2] + v.y * m[6] + v.z * m[10] + e) / d, (v.x * m[3] + v.y * m[7] + v.z * m[11] + e) / d};
    return 1;
}

// Persisted values are 32-bit words, little-endian whatever the machine, one file call per word.
template <typename Record> mox_bool save_words(const Record* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    Lanes<Record, uint32_t> words = lanes_of<uint32_t>(*self);
    for (int i = 0; i < words.count; ++i) {
        uint8_t bytes[4];
        put_u32_le(bytes, words[i]);
        mox_file_write(file, bytes, 4);
    }
    return 1;
}

// The read lands on the field's own bytes, so a short read at the end of the file leaves the bytes it
// did not reach as they were; the result of the read is not looked at.
template <typename Record> mox_bool load_words(Record* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    Lanes<Record, uint32_t> words = lanes_of<uint32_t>(*self);
    for (int i = 0; i < words.count; ++i) {
        uint8_t bytes[4];
        put_u32_le(bytes, words[i]);
        mox_file_read(file, bytes, 4);
        words[i] = get_u32_le(bytes);
    }
    *self = record_of(words);
    return 1;
}

} // namespace mox
