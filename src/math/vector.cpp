// Vectors, points and ranges: silent value arithmetic. Each entry forwards to one body shared by the
// sizes, and the deliberate irregularities (crossed length names, swapped point fills, partial zero
// fills, the coordinate transforms) are marked where they stand.
#include <mox/math.h>

#include <cmath>
#include <cstddef>

#include "math/lanes.h"

static_assert(sizeof(mox_vector2_r32) == 8 && sizeof(mox_vector3_r32) == 12 && sizeof(mox_vector4_r32) == 16);
static_assert(sizeof(mox_point2_i32) == 8 && sizeof(mox_point3_i32) == 12 && sizeof(mox_point4_i32) == 16);
static_assert(sizeof(mox_range_i32) == 8 && sizeof(mox_range_r32) == 8);
static_assert(offsetof(mox_range_i32, upper) == 4 && offsetof(mox_range_r32, upper) == 4);
static_assert(sizeof(mox_matrix_2x2_r32) == 16 && sizeof(mox_matrix_3x3_r32) == 36 &&
              sizeof(mox_matrix_4x4_r32) == 64);

namespace mox {
namespace {

template <typename V> mox_bool add(V* out, V a, V b) {
    return per_lane(out, a, b, [](float x, float y) { return x + y; });
}
template <typename V> mox_bool sub(V* out, V a, V b) {
    return per_lane(out, a, b, [](float x, float y) { return x - y; });
}
template <typename V> mox_bool mul(V* out, V a, V b) {
    return per_lane(out, a, b, [](float x, float y) { return x * y; });
}
template <typename V> mox_bool div(V* out, V a, V b) {
    return per_lane(out, a, b, [](float x, float y) { return x / y; });
}
// b wins ties and unordered pairs (a NaN on either side).
template <typename V> mox_bool min(V* out, V a, V b) {
    return per_lane(out, a, b, [](float x, float y) { return x < y ? x : y; });
}
template <typename V> mox_bool max(V* out, V a, V b) {
    return per_lane(out, a, b, [](float x, float y) { return x > y ? x : y; });
}

template <typename V> mox_bool lerp(V* out, V a, V b, float t) {
    return per_lane(out, a, b, [t](float x, float y) { return x * (1.0f - t) + y * t; });
}

template <typename V> mox_bool bary_centric(V* out, V a, V b, V c, float f, float g) {
    if (out == nullptr)
        return 0;
    Lanes<V> x = lanes_of(a), y = lanes_of(b), z = lanes_of(c), r;
    for (int i = 0; i < r.count; ++i)
        r[i] = x[i] * (1.0f - f - g) + y[i] * f + z[i] * g;
    *out = record_of(r);
    return 1;
}

template <typename V> mox_bool catmull_rom(V* out, V q0, V q1, V q2, V q3, float t) {
    if (out == nullptr)
        return 0;
    Lanes<V> a = lanes_of(q0), b = lanes_of(q1), c = lanes_of(q2), d = lanes_of(q3), r;
    for (int i = 0; i < r.count; ++i) {
        float p0 = a[i], p1 = b[i], p2 = c[i], p3 = d[i];
        r[i] = 0.5f * (2.0f * p1 + (p2 - p0) * t + (2.0f * p0 - 5.0f * p1 + 4.0f * p2 - p3) * t * t +
                       (3.0f * p1 - 3.0f * p2 + p3 - p0) * t * t * t);
    }
    *out = record_of(r);
    return 1;
}

// The four weights are worked out in double precision and rounded to single before they are applied.
template <typename V> mox_bool hermite(V* out, V q1, V tangent1, V q2, V tangent2, float s) {
    if (out == nullptr)
        return 0;
    double s1 = s, s2 = s1 * s1, s3 = s2 * s1;
    float w1 = static_cast<float>(2.0 * s3 - 3.0 * s2 + 1.0);
    float w2 = static_cast<float>(s3 - 2.0 * s2 + s1);
    float w3 = static_cast<float>(3.0 * s2 - 2.0 * s3);
    float w4 = static_cast<float>(s3 - s2);
    Lanes<V> a = lanes_of(q1), b = lanes_of(tangent1), c = lanes_of(q2), d = lanes_of(tangent2), r;
    for (int i = 0; i < r.count; ++i)
        r[i] = a[i] * w1 + b[i] * w2 + c[i] * w3 + d[i] * w4;
    *out = record_of(r);
    return 1;
}

// Intended: `length` gives the sum of the squares and `length_square` the root; the names are crossed.
template <typename V> float crossed_length(V a) { return sum_of_squares(a); }
template <typename V> float crossed_length_square(V a) { return std::sqrt(sum_of_squares(a)); }

// Sets x and y only: the three-component zero is the two-component one, so z stays. Intended.
template <typename V> mox_bool zero_xy(V* out) {
    if (out == nullptr)
        return 0;
    out->x = 0.0f;
    out->y = 0.0f;
    return 1;
}

template <typename Record, typename Lane> mox_bool fill(Record* out, Lane value) {
    if (out == nullptr)
        return 0;
    Lanes<Record, Lane> r;
    for (int i = 0; i < r.count; ++i)
        r[i] = value;
    *out = record_of(r);
    return 1;
}

} // namespace
} // namespace mox

MOX_API mox_bool mox_vector2_r32_add(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b) {
    return mox::add(out, a, b);
}
MOX_API mox_bool mox_vector3_r32_add(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    return mox::add(out, a, b);
}
MOX_API mox_bool mox_vector4_r32_add(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b) {
    return mox::add(out, a, b);
}
MOX_API mox_bool mox_vector2_r32_sub(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b) {
    return mox::sub(out, a, b);
}
MOX_API mox_bool mox_vector3_r32_sub(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    return mox::sub(out, a, b);
}
MOX_API mox_bool mox_vector4_r32_sub(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b) {
    return mox::sub(out, a, b);
}
MOX_API mox_bool mox_vector2_r32_mul(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b) {
    return mox::mul(out, a, b);
}
MOX_API mox_bool mox_vector3_r32_mul(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    return mox::mul(out, a, b);
}
MOX_API mox_bool mox_vector4_r32_mul(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b) {
    return mox::mul(out, a, b);
}
MOX_API mox_bool mox_vector2_r32_div(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b) {
    return mox::div(out, a, b);
}
MOX_API mox_bool mox_vector3_r32_div(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    return mox::div(out, a, b);
}
MOX_API mox_bool mox_vector4_r32_div(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b) {
    return mox::div(out, a, b);
}
MOX_API mox_bool mox_vector2_r32_min(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b) {
    return mox::min(out, a, b);
}
MOX_API mox_bool mox_vector3_r32_min(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    return mox::min(out, a, b);
}
MOX_API mox_bool mox_vector4_r32_min(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b) {
    return mox::min(out, a, b);
}
MOX_API mox_bool mox_vector2_r32_max(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b) {
    return mox::max(out, a, b);
}
MOX_API mox_bool mox_vector3_r32_max(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    return mox::max(out, a, b);
}
MOX_API mox_bool mox_vector4_r32_max(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b) {
    return mox::max(out, a, b);
}
MOX_API mox_bool mox_vector2_r32_lerp(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b, float t) {
    return mox::lerp(out, a, b, t);
}
MOX_API mox_bool mox_vector3_r32_lerp(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b, float t) {
    return mox::lerp(out, a, b, t);
}
MOX_API mox_bool mox_vector4_r32_lerp(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b, float t) {
    return mox::lerp(out, a, b, t);
}
MOX_API mox_bool mox_vector2_r32_bary_centric(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b,
                                              mox_vector2_r32 c, float f, float g) {
    return mox::bary_centric(out, a, b, c, f, g);
}
MOX_API mox_bool mox_vector3_r32_bary_centric(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b,
                                              mox_vector3_r32 c, float f, float g) {
    return mox::bary_centric(out, a, b, c, f, g);
}
MOX_API mox_bool mox_vector4_r32_bary_centric(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b,
                                              mox_vector4_r32 c, float f, float g) {
    return mox::bary_centric(out, a, b, c, f, g);
}
MOX_API mox_bool mox_vector2_r32_catmull_rom(mox_vector2_r32* out, mox_vector2_r32 p0, mox_vector2_r32 p1,
                                             mox_vector2_r32 p2, mox_vector2_r32 p3, float t) {
    return mox::catmull_rom(out, p0, p1, p2, p3, t);
}
MOX_API mox_bool mox_vector3_r32_catmull_rom(mox_vector3_r32* out, mox_vector3_r32 p0, mox_vector3_r32 p1,
                                             mox_vector3_r32 p2, mox_vector3_r32 p3, float t) {
    return mox::catmull_rom(out, p0, p1, p2, p3, t);
}
MOX_API mox_bool mox_vector4_r32_catmull_rom(mox_vector4_r32* out, mox_vector4_r32 p0, mox_vector4_r32 p1,
                                             mox_vector4_r32 p2, mox_vector4_r32 p3, float t) {
    return mox::catmull_rom(out, p0, p1, p2, p3, t);
}
MOX_API mox_bool mox_vector3_r32_hermite(mox_vector3_r32* out, mox_vector3_r32 p1, mox_vector3_r32 t1,
                                         mox_vector3_r32 p2, mox_vector3_r32 t2, float s) {
    return mox::hermite(out, p1, t1, p2, t2, s);
}
MOX_API mox_bool mox_vector4_r32_hermite(mox_vector4_r32* out, mox_vector4_r32 p1, mox_vector4_r32 t1,
                                         mox_vector4_r32 p2, mox_vector4_r32 t2, float s) {
    return mox::hermite(out, p1, t1, p2, t2, s);
}
MOX_API mox_bool mox_vector2_r32_normalize(mox_vector2_r32* out, mox_vector2_r32 a) {
    return mox::normalize(out, a);
}
MOX_API mox_bool mox_vector3_r32_normalize(mox_vector3_r32* out, mox_vector3_r32 a) {
    return mox::normalize(out, a);
}
MOX_API mox_bool mox_vector4_r32_normalize(mox_vector4_r32* out, mox_vector4_r32 a) {
    return mox::normalize(out, a);
}

MOX_API float mox_vector2_r32_dot(mox_vector2_r32 a, mox_vector2_r32 b) { return mox::dot(a, b); }
MOX_API float mox_vector3_r32_dot(mox_vector3_r32 a, mox_vector3_r32 b) { return mox::dot(a, b); }
MOX_API float mox_vector4_r32_dot(mox_vector4_r32 a, mox_vector4_r32 b) { return mox::dot(a, b); }
MOX_API float mox_vector2_r32_length(mox_vector2_r32 a) { return mox::crossed_length(a); }
MOX_API float mox_vector3_r32_length(mox_vector3_r32 a) { return mox::crossed_length(a); }
MOX_API float mox_vector4_r32_length(mox_vector4_r32 a) { return mox::crossed_length(a); }
MOX_API float mox_vector2_r32_length_square(mox_vector2_r32 a) { return mox::crossed_length_square(a); }
MOX_API float mox_vector3_r32_length_square(mox_vector3_r32 a) { return mox::crossed_length_square(a); }
MOX_API float mox_vector4_r32_length_square(mox_vector4_r32 a) { return mox::crossed_length_square(a); }
MOX_API float mox_vector2_r32_ccw(mox_vector2_r32 a, mox_vector2_r32 b) { return a.x * b.y - a.y * b.x; }

MOX_API mox_bool mox_vector2_r32_zero(mox_vector2_r32* out) { return mox::zero_xy(out); }
MOX_API mox_bool mox_vector3_r32_zero(mox_vector3_r32* out) { return mox::zero_xy(out); }
MOX_API mox_bool mox_vector4_r32_zero(mox_vector4_r32* out) {
    // Leaves z alone and sets w to 1. Intended.
    if (!mox::zero_xy(out))
        return 0;
    out->w = 1.0f;
    return 1;
}
MOX_API mox_bool mox_vector2_r32_one(mox_vector2_r32* out) { return mox::fill(out, 1.0f); }
MOX_API mox_bool mox_vector3_r32_one(mox_vector3_r32* out) { return mox::fill(out, 1.0f); }
MOX_API mox_bool mox_vector4_r32_one(mox_vector4_r32* out) { return mox::fill(out, 1.0f); }
// Intended: for two and three components `zero` fills ones and `one` fills zeros.
MOX_API mox_bool mox_point2_i32_zero(mox_point2_i32* out) { return mox::fill(out, int32_t{1}); }
MOX_API mox_bool mox_point2_i32_one(mox_point2_i32* out) { return mox::fill(out, int32_t{0}); }
MOX_API mox_bool mox_point3_i32_zero(mox_point3_i32* out) { return mox::fill(out, int32_t{1}); }
MOX_API mox_bool mox_point3_i32_one(mox_point3_i32* out) { return mox::fill(out, int32_t{0}); }
MOX_API mox_bool mox_point4_i32_zero(mox_point4_i32* out) { return mox::fill(out, int32_t{0}); }
MOX_API mox_bool mox_point4_i32_one(mox_point4_i32* out) {
    if (out == nullptr)
        return 0;
    *out = {0, 0, 0, 1};
    return 1;
}

MOX_API mox_bool mox_vector3_r32_cross(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b) {
    if (out == nullptr)
        return 0;
    *out = mox::cross(a, b);
    return 1;
}
MOX_API mox_bool mox_vector4_r32_cross(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b,
                                       mox_vector4_r32 c) {
    if (out == nullptr)
        return 0;
    *out = mox::cross(a, b, c);
    return 1;
}
MOX_API mox_bool mox_vector3_r32_calc_normal(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b,
                                             mox_vector3_r32 c) {
    if (out == nullptr)
        return 0;
    mox_vector3_r32 ab{b.x - a.x, b.y - a.y, b.z - a.z}, ac{c.x - a.x, c.y - a.y, c.z - a.z};
    return mox::normalize(out, mox::cross(ab, ac));
}

MOX_API mox_bool mox_vector2_r32_transform_2x2_r32(mox_vector2_r32* out, mox_vector2_r32 v,
                                                   mox_matrix_2x2_r32 m) {
    if (out == nullptr)
        return 0;
    *out = {v.x * m.m[0] + v.y * m.m[2], v.x * m.m[1] + v.y * m.m[3]};
    return 1;
}
// Divides by the second column's result, so y comes out as d/d, 1 for any finite non-zero d. Intended.
MOX_API mox_bool mox_vector2_r32_transform_coord_2x2_r32(mox_vector2_r32* out, mox_vector2_r32 v,
                                                         mox_matrix_2x2_r32 m) {
    if (out == nullptr)
        return 0;
    float d = static_cast<float>(static_cast<double>(v.x) * m.m[1] + static_cast<double>(v.y) * m.m[3]);
    if (d == 0.0f)
        return 0;
    *out = {(v.x * m.m[0] + v.y * m.m[2]) / d, d / d};
    return 1;
}
MOX_API mox_bool mox_vector3_r32_transform_3x3_r32(mox_vector3_r32* out, mox_vector3_r32 v,
                                                   mox_matrix_3x3_r32 m) {
    if (out == nullptr)
        return 0;
    *out = {v.x * m.m[0] + v.y * m.m[3] + v.z * m.m[6], v.x * m.m[1] + v.y * m.m[4] + v.z * m.m[7],
            v.x * m.m[2] + v.y * m.m[5] + v.z * m.m[8]};
    return 1;
}
MOX_API mox_bool mox_vector3_r32_transform_normal_3x3_r32(mox_vector3_r32* out, mox_vector3_r32 v,
                                                          mox_matrix_3x3_r32 m) {
    return mox_vector3_r32_transform_3x3_r32(out, v, m);
}
// The divisor is the third column's result plus m6, and m6 also stands in x. Intended.
MOX_API mox_bool mox_vector3_r32_transform_coord_3x3_r32(mox_vector3_r32* out, mox_vector3_r32 v,
                                                         mox_matrix_3x3_r32 m) {
    if (out == nullptr)
        return 0;
    float n = v.x * m.m[2] + v.y * m.m[5] + v.z * m.m[8];
    float d = n + m.m[6];
    if (d == 0.0f)
        return 0;
    *out = {(v.x * m.m[0] + v.y * m.m[3] + v.z * m.m[6]) / d,
            (v.x * m.m[1] + v.y * m.m[4] + v.z * m.m[7]) / d, n / d};
    return 1;
}
MOX_API mox_bool mox_vector4_r32_transform_4x4_r32(mox_vector4_r32* out, mox_vector4_r32 v,
                                                   mox_matrix_4x4_r32 m) {
    if (out == nullptr)
        return 0;
    *out = mox::transform(v, m);
    return 1;
}
// w repeats z and v.w is never read. Intended.
MOX_API mox_bool mox_vector4_r32_transform_normal_4x4_r32(mox_vector4_r32* out, mox_vector4_r32 v,
                                                          mox_matrix_4x4_r32 m) {
    if (out == nullptr)
        return 0;
    float z = v.x * m.m[2] + v.y * m.m[6] + v.z * m.m[10];
    *out = {v.x * m.m[0] + v.y * m.m[4] + v.z * m.m[8], v.x * m.m[1] + v.y * m.m[5] + v.z * m.m[9], z, z};
    return 1;
}
MOX_API mox_bool mox_vector4_r32_transform_coord_4x4_r32(mox_vector4_r32* out, mox_vector4_r32 v,
                                                         mox_matrix_4x4_r32 m) {
    return mox::transform_coord(out, v, m);
}

MOX_API mox_bool mox_point2_i32_save_to_file(mox_point2_i32* self, mox_file* file) {
    return mox::save_words(self, file);
}
MOX_API mox_bool mox_point2_i32_load_from_file(mox_point2_i32* self, mox_file* file) {
    return mox::load_words(self, file);
}
MOX_API mox_bool mox_point3_i32_save_to_file(mox_point3_i32* self, mox_file* file) {
    return mox::save_words(self, file);
}
MOX_API mox_bool mox_point3_i32_load_from_file(mox_point3_i32* self, mox_file* file) {
    return mox::load_words(self, file);
}
MOX_API mox_bool mox_point4_i32_save_to_file(mox_point4_i32* self, mox_file* file) {
    return mox::save_words(self, file);
}
MOX_API mox_bool mox_point4_i32_load_from_file(mox_point4_i32* self, mox_file* file) {
    return mox::load_words(self, file);
}
MOX_API mox_bool mox_range_i32_save_to_file(mox_range_i32* self, mox_file* file) {
    return mox::save_words(self, file);
}
MOX_API mox_bool mox_range_i32_load_from_file(mox_range_i32* self, mox_file* file) {
    return mox::load_words(self, file);
}
MOX_API mox_bool mox_range_r32_save_to_file(mox_range_r32* self, mox_file* file) {
    return mox::save_words(self, file);
}
MOX_API mox_bool mox_range_r32_load_from_file(mox_range_r32* self, mox_file* file) {
    return mox::load_words(self, file);
}
