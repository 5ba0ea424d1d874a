// Matrices: building, combining and inverting the row-major matrix records, camera and projection
// matrices, and the project and unproject entries that rest on them. Silent value operations; the
// deliberate irregularities (the 2x2 identity, the 3x3 determinant's sign, rotation about y, the
// asymmetries between the projection forms, the shadow's m[0][3]) are marked where they stand.
#include <mox/math.h>

#include <cmath>

#include "math/lanes.h"

namespace mox {
namespace {

using Matrix4 = mox_matrix_4x4_r32;
using Matrix3 = mox_matrix_3x3_r32;

template <typename M> constexpr int order() {
    constexpr int count = Lanes<M>::count;
    return count == 4 ? 2 : count == 9 ? 3 : 4;
}

template <typename M> M identity() {
    constexpr int n = order<M>();
    Lanes<M> r{};
    for (int i = 0; i < n; ++i)
        r[i * n + i] = 1.0f;
    return record_of(r);
}

// A on the left; each element is summed over k in rising order in single precision.
template <typename M> M multiply(const M& a, const M& b) {
    constexpr int n = order<M>();
    Lanes<M> x = lanes_of(a), y = lanes_of(b), r;
    for (int row = 0; row < n; ++row)
        for (int column = 0; column < n; ++column) {
            float sum = x[row * n] * y[column];
            for (int k = 1; k < n; ++k)
                sum += x[row * n + k] * y[k * n + column];
            r[row * n + column] = sum;
        }
    return record_of(r);
}

template <typename M> M transpose(const M& a) {
    constexpr int n = order<M>();
    Lanes<M> x = lanes_of(a), r;
    for (int row = 0; row < n; ++row)
        for (int column = 0; column < n; ++column)
            r[column * n + row] = x[row * n + column];
    return record_of(r);
}

template <typename M> mox_bool store(M* out, const M& value) {
    if (out == nullptr)
        return 0;
    *out = value;
    return 1;
}

float& at(Matrix4& m, int row, int column) { return m.m[row * 4 + column]; }
float at(const Matrix4& m, int row, int column) { return m.m[row * 4 + column]; }
float& at(Matrix3& m, int row, int column) { return m.m[row * 3 + column]; }
float at(const Matrix3& m, int row, int column) { return m.m[row * 3 + column]; }

mox_vector4_r32 column4(const Matrix4& m, int c) {
    return {at(m, 0, c), at(m, 1, c), at(m, 2, c), at(m, 3, c)};
}
mox_vector4_r32 row4(const Matrix4& m, int r) { return {at(m, r, 0), at(m, r, 1), at(m, r, 2), at(m, r, 3)}; }
mox_vector3_r32 row3(const Matrix3& m, int r) { return {at(m, r, 0), at(m, r, 1), at(m, r, 2)}; }

float determinant(const Matrix4& m) {
    mox_vector4_r32 v = cross(column4(m, 0), column4(m, 1), column4(m, 2));
    return static_cast<float>(
        -(static_cast<double>(v.x) * at(m, 0, 3) + static_cast<double>(v.y) * at(m, 1, 3) +
          static_cast<double>(v.z) * at(m, 2, 3) + static_cast<double>(v.w) * at(m, 3, 3)));
}

// The 4x4 construction with a fourth component of 1. Its value is the negative of the true
// determinant (-1 for the identity), and the inverse carries that sign. Intended.
float determinant(const Matrix3& m) {
    mox_vector4_r32 c0{at(m, 0, 0), at(m, 1, 0), at(m, 2, 0), 1.0f};
    mox_vector4_r32 c1{at(m, 0, 1), at(m, 1, 1), at(m, 2, 1), 1.0f};
    mox_vector4_r32 c2{at(m, 0, 2), at(m, 1, 2), at(m, 2, 2), 1.0f};
    mox_vector4_r32 v = cross(c0, c1, c2);
    return static_cast<float>(-(static_cast<double>(v.x) * at(m, 0, 2) +
                                static_cast<double>(v.y) * at(m, 1, 2) +
                                static_cast<double>(v.z) * at(m, 2, 2)));
}

// The cross product of the rows other than `skipped`, in their order.
mox_vector4_r32 cross_of_other_rows(const Matrix4& m, int skipped) {
    mox_vector4_r32 rows[3];
    for (int r = 0, k = 0; r < 4; ++r)
        if (r != skipped)
            rows[k++] = row4(m, r);
    return cross(rows[0], rows[1], rows[2]);
}
mox_vector3_r32 cross_of_other_rows(const Matrix3& m, int skipped) {
    mox_vector3_r32 rows[2];
    for (int r = 0, k = 0; r < 3; ++r)
        if (r != skipped)
            rows[k++] = row3(m, r);
    return cross(rows[0], rows[1]);
}

// No epsilon: only a determinant that compares equal to zero stops, so a NaN goes on.
template <typename M> float inverse(M* out, const M& a) {
    constexpr int n = order<M>();
    if (out == nullptr)
        return 0.0f;
    float d = determinant(a);
    if (d == 0.0f)
        return d;
    M r;
    for (int i = 0; i < n; ++i) {
        Lanes<decltype(cross_of_other_rows(a, i))> v = lanes_of(cross_of_other_rows(a, i));
        float sign = std::pow(-1.0f, static_cast<float>(i));
        for (int j = 0; j < n; ++j)
            at(r, j, i) = sign * v[j] / d;
    }
    *out = r;
    return d;
}

// Degrees to radians with the double constant, rounded to single precision.
float radians(float degrees) {
    return static_cast<float>(static_cast<double>(degrees) * 0.017453292519943295);
}
float cosine(float angle) { return static_cast<float>(std::cos(static_cast<double>(angle))); }
float sine(float angle) { return static_cast<float>(std::sin(static_cast<double>(angle))); }

enum class Axis { x, y, z };

Matrix4 rotation(Axis axis, float degrees) {
    Matrix4 m = identity<Matrix4>();
    float a = radians(degrees);
    if (a == 0.0f)
        return m;
    float c = cosine(a), s = sine(a);
    switch (axis) {
    case Axis::x:
        at(m, 1, 1) = c;
        at(m, 1, 2) = -s;
        at(m, 2, 1) = s;
        at(m, 2, 2) = c;
        break;
    case Axis::y:
        // The positive sine stands in the middle row, at m[1][2], and m[0][2] stays 0. Intended.
        at(m, 0, 0) = c;
        at(m, 1, 2) = s;
        at(m, 2, 0) = -s;
        at(m, 2, 2) = c;
        break;
    case Axis::z:
        at(m, 0, 0) = c;
        at(m, 0, 1) = -s;
        at(m, 1, 0) = s;
        at(m, 1, 1) = c;
        break;
    }
    return m;
}

Matrix4 rotation_xyz(float x, float y, float z) {
    return multiply(multiply(rotation(Axis::y, y), rotation(Axis::z, z)), rotation(Axis::x, x));
}

Matrix4 translation(float x, float y, float z) {
    Matrix4 m = identity<Matrix4>();
    at(m, 3, 0) = x;
    at(m, 3, 1) = y;
    at(m, 3, 2) = z;
    return m;
}

Matrix4 scaling(float x, float y, float z) {
    Matrix4 m = identity<Matrix4>();
    at(m, 0, 0) = x;
    at(m, 1, 1) = y;
    at(m, 2, 2) = z;
    return m;
}

// A normalize that fails writes nothing; our temporaries start at zero, so a failed step yields a zero
// vector and everything built on it follows from that.
template <typename V> V normalized_or_zero(const V& v) {
    V n{};
    normalize(&n, v);
    return n;
}

mox_vector3_r32 minus(const mox_vector3_r32& a, const mox_vector3_r32& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Matrix4 look_at(const mox_vector3_r32& z0, const mox_vector3_r32& eye, const mox_vector3_r32& up) {
    mox_vector3_r32 z = normalized_or_zero(z0);
    mox_vector3_r32 x0 = cross(up, z);
    // y is taken from the unnormalized x.
    mox_vector3_r32 y0 = cross(z, x0);
    mox_vector3_r32 x = normalized_or_zero(x0), y = normalized_or_zero(y0);
    Matrix4 m = identity<Matrix4>();
    at(m, 0, 0) = x.x;
    at(m, 1, 0) = x.y;
    at(m, 2, 0) = x.z;
    at(m, 0, 1) = y.x;
    at(m, 1, 1) = y.y;
    at(m, 2, 1) = y.z;
    at(m, 0, 2) = z.x;
    at(m, 1, 2) = z.y;
    at(m, 2, 2) = z.z;
    at(m, 3, 0) = -dot(x, eye);
    at(m, 3, 1) = -dot(y, eye);
    at(m, 3, 2) = -dot(z, eye);
    return m;
}

// The four elements every projection writes; the rest keep their identity values.
Matrix4 projection(float m00, float m11, float m22, float m32) {
    Matrix4 m = identity<Matrix4>();
    at(m, 0, 0) = m00;
    at(m, 1, 1) = m11;
    at(m, 2, 2) = m22;
    at(m, 3, 2) = m32;
    return m;
}

// The perspective rows move w into the z column.
Matrix4 perspective(float m00, float m11, float m22, float m32, float m23) {
    Matrix4 m = projection(m00, m11, m22, m32);
    at(m, 2, 3) = m23;
    at(m, 3, 3) = 0.0f;
    return m;
}

float fov_height(float fov) {
    float half = static_cast<float>(fov / 2.0f);
    return cosine(half) / sine(half);
}

} // namespace
} // namespace mox

using mox::at;
using mox::Matrix3;
using mox::Matrix4;

// Intended: copied from a fixed table whose second row is (1, 0).
MOX_API mox_bool mox_matrix_2x2_r32_identity(mox_matrix_2x2_r32* out) {
    static const mox_matrix_2x2_r32 table{{1.0f, 0.0f, 1.0f, 0.0f}};
    return mox::store(out, table);
}
MOX_API mox_bool mox_matrix_2x2_r32_multiply(mox_matrix_2x2_r32* out, mox_matrix_2x2_r32 a,
                                             mox_matrix_2x2_r32 b) {
    return mox::store(out, mox::multiply(a, b));
}
MOX_API mox_bool mox_matrix_2x2_r32_transpose(mox_matrix_2x2_r32* out, mox_matrix_2x2_r32 a) {
    return mox::store(out, mox::transpose(a));
}

MOX_API mox_bool mox_matrix_3x3_r32_identity(mox_matrix_3x3_r32* out) {
    return mox::store(out, mox::identity<Matrix3>());
}
MOX_API float mox_matrix_3x3_r32_determinant(mox_matrix_3x3_r32 a) { return mox::determinant(a); }
MOX_API float mox_matrix_3x3_r32_inverse(mox_matrix_3x3_r32* out, mox_matrix_3x3_r32 a) {
    return mox::inverse(out, a);
}
MOX_API mox_bool mox_matrix_3x3_r32_multiply(mox_matrix_3x3_r32* out, mox_matrix_3x3_r32 a,
                                             mox_matrix_3x3_r32 b) {
    return mox::store(out, mox::multiply(a, b));
}
MOX_API mox_bool mox_matrix_3x3_r32_transpose(mox_matrix_3x3_r32* out, mox_matrix_3x3_r32 a) {
    return mox::store(out, mox::transpose(a));
}
MOX_API mox_bool mox_matrix_3x3_r32_translation(mox_matrix_3x3_r32* out, float x, float y) {
    Matrix3 m = mox::identity<Matrix3>();
    at(m, 2, 0) = x;
    at(m, 2, 1) = y;
    return mox::store(out, m);
}
// The sine stands at m[0][1] and its negative at m[1][0]: the opposite convention from the 4x4
// rotation about z. Intended. Like the 4x4 rotations it stops at the identity for a zero angle.
MOX_API mox_bool mox_matrix_3x3_r32_rotation(mox_matrix_3x3_r32* out, float angle) {
    Matrix3 m = mox::identity<Matrix3>();
    float a = mox::radians(angle);
    if (a != 0.0f) {
        float c = mox::cosine(a), s = mox::sine(a);
        at(m, 0, 0) = c;
        at(m, 0, 1) = s;
        at(m, 1, 0) = -s;
        at(m, 1, 1) = c;
    }
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_3x3_r32_scaling(mox_matrix_3x3_r32* out, float x, float y) {
    Matrix3 m = mox::identity<Matrix3>();
    at(m, 0, 0) = x;
    at(m, 1, 1) = y;
    return mox::store(out, m);
}

MOX_API mox_bool mox_matrix_4x4_r32_identity(mox_matrix_4x4_r32* out) {
    return mox::store(out, mox::identity<Matrix4>());
}
MOX_API float mox_matrix_4x4_r32_determinant(mox_matrix_4x4_r32 a) { return mox::determinant(a); }
MOX_API float mox_matrix_4x4_r32_inverse(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a) {
    return mox::inverse(out, a);
}
MOX_API mox_bool mox_matrix_4x4_r32_multiply(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a,
                                             mox_matrix_4x4_r32 b) {
    return mox::store(out, mox::multiply(a, b));
}
MOX_API mox_bool mox_matrix_4x4_r32_multiply_transpose(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a,
                                                       mox_matrix_4x4_r32 b) {
    return mox::store(out, mox::transpose(mox::multiply(a, b)));
}
MOX_API mox_bool mox_matrix_4x4_r32_transpose(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a) {
    return mox::store(out, mox::transpose(a));
}
MOX_API mox_bool mox_matrix_4x4_r32_translation(mox_matrix_4x4_r32* out, float x, float y, float z) {
    return mox::store(out, mox::translation(x, y, z));
}
MOX_API mox_bool mox_matrix_4x4_r32_scaling(mox_matrix_4x4_r32* out, float x, float y, float z) {
    return mox::store(out, mox::scaling(x, y, z));
}
MOX_API mox_bool mox_matrix_4x4_r32_rotation_x(mox_matrix_4x4_r32* out, float angle) {
    return mox::store(out, mox::rotation(mox::Axis::x, angle));
}
MOX_API mox_bool mox_matrix_4x4_r32_rotation_y(mox_matrix_4x4_r32* out, float angle) {
    return mox::store(out, mox::rotation(mox::Axis::y, angle));
}
MOX_API mox_bool mox_matrix_4x4_r32_rotation_z(mox_matrix_4x4_r32* out, float angle) {
    return mox::store(out, mox::rotation(mox::Axis::z, angle));
}
MOX_API mox_bool mox_matrix_4x4_r32_rotation_xyz(mox_matrix_4x4_r32* out, float x, float y, float z) {
    return mox::store(out, mox::rotation_xyz(x, y, z));
}
// The products use the axis as given and only the sine terms the normalized one. Intended.
MOX_API mox_bool mox_matrix_4x4_r32_rotation_axis(mox_matrix_4x4_r32* out, float x, float y, float z,
                                                  float angle) {
    float a = mox::radians(angle);
    float c = mox::cosine(a), s = mox::sine(a), t = 1.0f - c;
    mox_vector3_r32 n = mox::normalized_or_zero(mox_vector3_r32{x, y, z});
    Matrix4 m = mox::identity<Matrix4>();
    at(m, 0, 0) = x * x * t + c;
    at(m, 0, 1) = x * y * t + n.z * s;
    at(m, 0, 2) = x * z * t - n.y * s;
    at(m, 1, 0) = x * y * t - n.z * s;
    at(m, 1, 1) = y * y * t + c;
    at(m, 1, 2) = y * z * t + n.x * s;
    at(m, 2, 0) = x * z * t + n.y * s;
    at(m, 2, 1) = y * z * t - n.x * s;
    at(m, 2, 2) = z * z * t + c;
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_4x4_r32_rotation_quaternion(mox_matrix_4x4_r32* out, float x, float y, float z,
                                                        float w) {
    Matrix4 m = mox::identity<Matrix4>();
    at(m, 0, 0) = 1.0f - 2.0f * (y * y + z * z);
    at(m, 0, 1) = 2.0f * (x * y + w * z);
    at(m, 0, 2) = 2.0f * (x * z - w * y);
    at(m, 1, 0) = 2.0f * (x * y - w * z);
    at(m, 1, 1) = 1.0f - 2.0f * (x * x + z * z);
    at(m, 1, 2) = 2.0f * (y * z + x * w);
    at(m, 2, 0) = 2.0f * (x * z + w * y);
    at(m, 2, 1) = 2.0f * (y * z - x * w);
    at(m, 2, 2) = 1.0f - 2.0f * (x * x + y * y);
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_4x4_r32_transformation(mox_matrix_4x4_r32* out, float tx, float ty, float tz,
                                                   float rx, float ry, float rz, float sx, float sy,
                                                   float sz) {
    Matrix4 rs = mox::multiply(mox::rotation_xyz(rx, ry, rz), mox::scaling(sx, sy, sz));
    return mox::store(out, mox::multiply(rs, mox::translation(tx, ty, tz)));
}
MOX_API mox_bool mox_matrix_4x4_r32_look_at_lh(mox_matrix_4x4_r32* out, mox_vector3_r32 target,
                                               mox_vector3_r32 eye, mox_vector3_r32 up) {
    return mox::store(out, mox::look_at(mox::minus(target, eye), eye, up));
}
MOX_API mox_bool mox_matrix_4x4_r32_look_at_rh(mox_matrix_4x4_r32* out, mox_vector3_r32 target,
                                               mox_vector3_r32 eye, mox_vector3_r32 up) {
    return mox::store(out, mox::look_at(mox::minus(eye, target), eye, up));
}

MOX_API mox_bool mox_matrix_4x4_r32_ortho_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                             float near, float far) {
    return mox::store(
        out, mox::projection(2.0f / (x2 - x1), 2.0f / (y2 - y1), 1.0f / (far - near), -near / (far - near)));
}
MOX_API mox_bool mox_matrix_4x4_r32_ortho_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                             float near, float far) {
    return mox::store(
        out, mox::projection(2.0f / (x2 - x1), 2.0f / (y2 - y1), 1.0f / (near - far), near / (near - far)));
}
// The two center forms differ in m[2][2] alone, and m[3][0] and m[3][1] have opposite orientation of
// their denominators. Intended.
MOX_API mox_bool mox_matrix_4x4_r32_ortho_center_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                    float y2, float near, float far) {
    Matrix4 m = mox::projection(2.0f / (x2 - x1), 2.0f / (y2 - y1), 1.0f / (far - near), near / (near - far));
    at(m, 3, 0) = (x1 + x2) / (x1 - x2);
    at(m, 3, 1) = (y1 + y2) / (y2 - y1);
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_4x4_r32_ortho_center_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                    float y2, float near, float far) {
    Matrix4 m = mox::projection(2.0f / (x2 - x1), 2.0f / (y2 - y1), 1.0f / (near - far), near / (near - far));
    at(m, 3, 0) = (x1 + x2) / (x1 - x2);
    at(m, 3, 1) = (y1 + y2) / (y2 - y1);
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_4x4_r32_screen_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                              float near, float far) {
    Matrix4 m = mox::projection(2.0f / (x2 - x1), -2.0f / (y1 - y2), -2.0f / (far - near),
                                (near + far) / (far - near));
    at(m, 3, 0) = (x1 - x2) / (x2 - x1);
    at(m, 3, 1) = (y2 - y1) / (y1 - y2);
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_4x4_r32_screen_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                              float near, float far) {
    Matrix4 m = mox::projection(2.0f / (x2 - x1), 2.0f / (y1 - y2), -2.0f / (far - near),
                                (near + far) / (far - near));
    at(m, 3, 0) = (x1 - x2) / (x2 - x1);
    at(m, 3, 1) = (y2 - y1) / (y1 - y2);
    return mox::store(out, m);
}
MOX_API mox_bool mox_matrix_4x4_r32_perspective_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                   float y2, float near, float far) {
    return mox::store(out, mox::perspective(2.0f * near / (x2 - x1), 2.0f * near / (y2 - y1),
                                            far / (far - near), near * far / (near - far), 1.0f));
}
MOX_API mox_bool mox_matrix_4x4_r32_perspective_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                   float y2, float near, float far) {
    return mox::store(out, mox::perspective(2.0f * near / (x2 - x1), 2.0f * near / (y2 - y1),
                                            far / (near - far), near * far / (near - far), -1.0f));
}
MOX_API mox_bool mox_matrix_4x4_r32_perspective_center_lh(mox_matrix_4x4_r32* out, float x1, float y1,
                                                          float x2, float y2, float near, float far) {
    Matrix4 m = mox::perspective(2.0f * near / (x2 - x1), 2.0f * near / (y2 - y1), far / (far - near),
                                 near * far / (near - far), 1.0f);
    at(m, 2, 0) = (x1 + x2) / (x2 - x1);
    at(m, 2, 1) = (y1 + y2) / (y2 - y1);
    return mox::store(out, m);
}
// The denominators run the other way from the left-handed form's. Intended.
MOX_API mox_bool mox_matrix_4x4_r32_perspective_center_rh(mox_matrix_4x4_r32* out, float x1, float y1,
                                                          float x2, float y2, float near, float far) {
    Matrix4 m = mox::perspective(2.0f * near / (x2 - x1), 2.0f * near / (y2 - y1), far / (near - far),
                                 near * far / (near - far), -1.0f);
    at(m, 2, 0) = (x1 + x2) / (x1 - x2);
    at(m, 2, 1) = (y1 + y2) / (y1 - y2);
    return mox::store(out, m);
}
// m[2][2] is the right-handed f/(n-f), unlike perspective_lh. Intended.
MOX_API mox_bool mox_matrix_4x4_r32_perspective_fov_lh(mox_matrix_4x4_r32* out, float fov, float aspect,
                                                       float near, float far) {
    float h = mox::fov_height(fov);
    return mox::store(out,
                      mox::perspective(h / aspect, h, far / (near - far), -near * far / (far - near), 1.0f));
}
MOX_API mox_bool mox_matrix_4x4_r32_perspective_fov_rh(mox_matrix_4x4_r32* out, float fov, float aspect,
                                                       float near, float far) {
    float h = mox::fov_height(fov);
    return mox::store(out,
                      mox::perspective(h / aspect, h, far / (near - far), near * far / (near - far), -1.0f));
}

MOX_API mox_bool mox_matrix_4x4_r32_reflect(mox_matrix_4x4_r32* out, mox_plane_r32 plane) {
    if (out == nullptr)
        return 0;
    // A plane with no normal fails the normalize; the zero-filled temporary then gives the identity
    // with a last row of -0.
    mox_plane_r32 p{};
    mox_plane_r32_normalize(&p, plane);
    float a = p.a, b = p.b, c = p.c, d = p.d;
    Matrix4 m = mox::identity<Matrix4>();
    at(m, 0, 0) = 1.0f - 2.0f * a * a;
    at(m, 0, 1) = -2.0f * a * b;
    at(m, 0, 2) = -2.0f * a * c;
    at(m, 1, 0) = -2.0f * a * b;
    at(m, 1, 1) = 1.0f - 2.0f * b * b;
    at(m, 1, 2) = -2.0f * b * c;
    at(m, 2, 0) = -2.0f * a * c;
    at(m, 2, 1) = -2.0f * b * c;
    at(m, 2, 2) = 1.0f - 2.0f * c * c;
    at(m, 3, 0) = -2.0f * a * d;
    at(m, 3, 1) = -2.0f * b * d;
    at(m, 3, 2) = -2.0f * c * d;
    *out = m;
    return 1;
}
MOX_API mox_bool mox_matrix_4x4_r32_shadow(mox_matrix_4x4_r32* out, mox_vector4_r32 l, mox_plane_r32 plane) {
    if (out == nullptr)
        return 0;
    // The vector normalize: the divisor is the sum of the squares of all four numbers. A failure leaves
    // the zero-filled temporary.
    mox_vector4_r32 v = mox::normalized_or_zero(mox_vector4_r32{plane.a, plane.b, plane.c, plane.d});
    mox_plane_r32 p{v.x, v.y, v.z, v.w};
    float e = mox_plane_r32_dot(p, l);
    Matrix4 m;
    at(m, 0, 0) = e - l.x * p.a;
    at(m, 0, 1) = -p.a * l.y;
    at(m, 0, 2) = -p.a * l.z;
    at(m, 0, 3) = -p.a * l.z; // l.z, not l.w. Intended.
    at(m, 1, 0) = -p.b * l.x;
    at(m, 1, 1) = e - p.b * l.y;
    at(m, 1, 2) = -p.b * l.z;
    at(m, 1, 3) = -p.b * l.w;
    at(m, 2, 0) = -p.c * l.x;
    at(m, 2, 1) = -p.c * l.y;
    at(m, 2, 2) = e - p.c * l.z;
    at(m, 2, 3) = -p.c * l.w;
    at(m, 3, 0) = -p.d * l.x;
    at(m, 3, 1) = -p.d * l.y;
    at(m, 3, 2) = -p.d * l.z;
    at(m, 3, 3) = e - p.d * l.w;
    *out = m;
    return 1;
}

MOX_API mox_bool mox_vector4_r32_project(mox_vector4_r32* out, mox_vector4_r32 v, float viewport_x,
                                         float viewport_y, float viewport_width, float viewport_height,
                                         mox_matrix_4x4_r32 m1, mox_matrix_4x4_r32 m2, float near,
                                         float far) {
    if (out == nullptr)
        return 0;
    // A failed coordinate transform leaves the zero-filled temporary.
    mox_vector4_r32 p{};
    mox::transform_coord(&p, v, mox::multiply(m2, m1));
    // The viewport origin stands inside the product and is scaled with the rest. Intended.
    out->x = (viewport_x + 1.0f + p.x) * viewport_width * 0.5f;
    out->y = (1.0f + viewport_y - p.y) * viewport_height * 0.5f;
    out->z = near + (far - near) * p.z;
    return 1;
}
MOX_API mox_bool mox_vector4_r32_unproject(mox_vector4_r32* out, mox_vector4_r32 v, float viewport_x,
                                           float viewport_y, float viewport_width, float viewport_height,
                                           mox_matrix_4x4_r32 m1, mox_matrix_4x4_r32 m2, float near,
                                           float far) {
    if (out == nullptr)
        return 0;
    out->x = 1.0f;
    out->y = 1.0f;
    out->z = 1.0f;
    // A singular product leaves the zero-filled temporary, whose coordinate transform then fails.
    Matrix4 i{};
    mox::inverse(&i, mox::multiply(m2, m1));
    // v.w is not read; the intermediate's w is 1, the point's own homogeneous weight.
    mox_vector4_r32 q{(v.x - viewport_x) * 2.0f / viewport_width - 1.0f,
                      1.0f - 2.0f * (v.y - viewport_y) / viewport_height, (v.z - near) / (far - near), 1.0f};
    return mox::transform_coord(out, q, i);
}
