#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/disc_file.h"

using mox_test::ErrorListener;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

mox_matrix_2x2_r32 counting2() { return {{1, 2, 3, 4}}; }
mox_matrix_3x3_r32 counting3() { return {{1, 2, 3, 4, 5, 6, 7, 8, 9}}; }
mox_matrix_4x4_r32 counting4() { return {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}}; }

} // namespace

TEST(VectorLayout, RecordsArePackedLanes) {
    EXPECT_EQ(sizeof(mox_vector2_r32), 8u);
    EXPECT_EQ(sizeof(mox_vector3_r32), 12u);
    EXPECT_EQ(sizeof(mox_vector4_r32), 16u);
    EXPECT_EQ(offsetof(mox_vector4_r32, w), 12u);
    EXPECT_EQ(sizeof(mox_point2_i32), 8u);
    EXPECT_EQ(sizeof(mox_point3_i32), 12u);
    EXPECT_EQ(offsetof(mox_point4_i32, w), 12u);
    EXPECT_EQ(offsetof(mox_range_i32, upper), 4u);
    EXPECT_EQ(offsetof(mox_range_r32, upper), 4u);
    EXPECT_EQ(sizeof(mox_matrix_2x2_r32), 16u);
    EXPECT_EQ(sizeof(mox_matrix_3x3_r32), 36u);
    EXPECT_EQ(sizeof(mox_matrix_4x4_r32), 64u);
}

TEST(Vector, ComponentArithmetic) {
    mox_vector2_r32 v2;
    EXPECT_EQ(mox_vector2_r32_add(&v2, {1, 2}, {3, 5}), 1);
    EXPECT_EQ(v2.x, 4.0f);
    EXPECT_EQ(v2.y, 7.0f);
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_sub(&v3, {1, 2, 3}, {3, 5, -1}), 1);
    EXPECT_EQ(v3.x, -2.0f);
    EXPECT_EQ(v3.y, -3.0f);
    EXPECT_EQ(v3.z, 4.0f);
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_mul(&v4, {1, 2, 3, 4}, {5, 6, 7, -8}), 1);
    EXPECT_EQ(v4.x, 5.0f);
    EXPECT_EQ(v4.y, 12.0f);
    EXPECT_EQ(v4.z, 21.0f);
    EXPECT_EQ(v4.w, -32.0f);
    EXPECT_EQ(mox_vector4_r32_div(&v4, {1, 6, 0, -1}, {4, 3, 0, 0}), 1);
    EXPECT_EQ(v4.x, 0.25f);
    EXPECT_EQ(v4.y, 2.0f);
    EXPECT_TRUE(std::isnan(v4.z));
    EXPECT_EQ(v4.w, -kInf);
    EXPECT_EQ(mox_vector2_r32_mul(&v2, {3, 4}, {0.5f, 2}), 1);
    EXPECT_EQ(v2.x, 1.5f);
    EXPECT_EQ(v2.y, 8.0f);
    EXPECT_EQ(mox_vector2_r32_div(&v2, {3, 1}, {2, 0}), 1);
    EXPECT_EQ(v2.x, 1.5f);
    EXPECT_EQ(v2.y, kInf);
    EXPECT_EQ(mox_vector2_r32_sub(&v2, {3, 1}, {2, 4}), 1);
    EXPECT_EQ(v2.x, 1.0f);
    EXPECT_EQ(v2.y, -3.0f);
    EXPECT_EQ(mox_vector3_r32_add(&v3, {1, 2, 3}, {1, 1, 1}), 1);
    EXPECT_EQ(v3.z, 4.0f);
    EXPECT_EQ(mox_vector3_r32_mul(&v3, {1, 2, 3}, {2, 2, 2}), 1);
    EXPECT_EQ(v3.z, 6.0f);
    EXPECT_EQ(mox_vector3_r32_div(&v3, {1, 2, 3}, {2, 2, 2}), 1);
    EXPECT_EQ(v3.z, 1.5f);
    EXPECT_EQ(mox_vector4_r32_add(&v4, {1, 2, 3, 4}, {1, 1, 1, 1}), 1);
    EXPECT_EQ(v4.w, 5.0f);
    EXPECT_EQ(mox_vector4_r32_sub(&v4, {1, 2, 3, 4}, {1, 1, 1, 1}), 1);
    EXPECT_EQ(v4.w, 3.0f);
}

TEST(Vector, OutputMayBeAnOperand) {
    mox_vector3_r32 a{1, 2, 3};
    EXPECT_EQ(mox_vector3_r32_add(&a, a, a), 1);
    EXPECT_EQ(a.x, 2.0f);
    EXPECT_EQ(a.y, 4.0f);
    EXPECT_EQ(a.z, 6.0f);
    mox_vector3_r32 b{0, 0, 1};
    EXPECT_EQ(mox_vector3_r32_cross(&a, {1, 0, 0}, {0, 1, 0}), 1);
    EXPECT_EQ(mox_vector3_r32_cross(&b, a, b), 1); // (0,0,1) x (0,0,1)
    EXPECT_EQ(b.x, 0.0f);
    EXPECT_EQ(b.y, 0.0f);
    EXPECT_EQ(b.z, 0.0f);
}

TEST(Vector, MinAndMaxGiveTheSecondOperandOnTiesAndNaN) {
    mox_vector4_r32 v;
    EXPECT_EQ(mox_vector4_r32_min(&v, {1, 5, kNaN, 0.0f}, {2, 3, 7, -0.0f}), 1);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 3.0f);
    EXPECT_EQ(v.z, 7.0f);
    EXPECT_TRUE(std::signbit(v.w)); // 0 and -0 are equal: the second operand's -0
    EXPECT_EQ(mox_vector4_r32_max(&v, {1, 5, 7, -0.0f}, {2, 3, kNaN, 0.0f}), 1);
    EXPECT_EQ(v.x, 2.0f);
    EXPECT_EQ(v.y, 5.0f);
    EXPECT_TRUE(std::isnan(v.z)); // the NaN of the second operand wins
    EXPECT_FALSE(std::signbit(v.w));
    mox_vector2_r32 v2;
    EXPECT_EQ(mox_vector2_r32_min(&v2, {kNaN, 4}, {1, 4}), 1);
    EXPECT_EQ(v2.x, 1.0f);
    EXPECT_EQ(mox_vector2_r32_max(&v2, {kNaN, 4}, {1, 9}), 1);
    EXPECT_EQ(v2.x, 1.0f);
    EXPECT_EQ(v2.y, 9.0f);
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_min(&v3, {1, 2, 3}, {3, 2, 1}), 1);
    EXPECT_EQ(v3.x, 1.0f);
    EXPECT_EQ(v3.z, 1.0f);
    EXPECT_EQ(mox_vector3_r32_max(&v3, {1, 2, 3}, {3, 2, 1}), 1);
    EXPECT_EQ(v3.x, 3.0f);
    EXPECT_EQ(v3.z, 3.0f);
}

TEST(Vector, Interpolation) {
    mox_vector2_r32 v2;
    EXPECT_EQ(mox_vector2_r32_lerp(&v2, {0, 10}, {10, 20}, 0.25f), 1);
    EXPECT_EQ(v2.x, 2.5f);
    EXPECT_EQ(v2.y, 12.5f);
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_lerp(&v3, {0, 0, 4}, {8, 0, 0}, 0.5f), 1);
    EXPECT_EQ(v3.x, 4.0f);
    EXPECT_EQ(v3.z, 2.0f);
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_lerp(&v4, {0, 0, 0, 1}, {4, 4, 4, 1}, 0.75f), 1);
    EXPECT_EQ(v4.x, 3.0f);
    EXPECT_EQ(v4.w, 1.0f);

    EXPECT_EQ(mox_vector3_r32_bary_centric(&v3, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, 0.25f, 0.5f), 1);
    EXPECT_EQ(v3.x, 0.25f);
    EXPECT_EQ(v3.y, 0.25f);
    EXPECT_EQ(v3.z, 0.5f);
    EXPECT_EQ(mox_vector2_r32_bary_centric(&v2, {4, 0}, {0, 4}, {8, 8}, 0.5f, 0.25f), 1);
    EXPECT_EQ(v2.x, 3.0f); // 4*0.25 + 0*0.5 + 8*0.25
    EXPECT_EQ(v2.y, 4.0f); // 0 + 4*0.5 + 8*0.25
    EXPECT_EQ(mox_vector4_r32_bary_centric(&v4, {4, 0, 0, 1}, {0, 4, 0, 1}, {0, 0, 4, 1}, 0.5f, 0.25f), 1);
    EXPECT_EQ(v4.x, 1.0f);
    EXPECT_EQ(v4.y, 2.0f);
    EXPECT_EQ(v4.z, 1.0f);
    EXPECT_EQ(v4.w, 1.0f);
}

TEST(Vector, CatmullRom) {
    // Through p1 at t = 0 and p2 at t = 1; 0.5625 = 0.5*(0.5 + 4*0.25 - 3*0.125) for the bump 0, 0, 1, 0.
    mox_vector2_r32 v2;
    EXPECT_EQ(mox_vector2_r32_catmull_rom(&v2, {0, 0}, {1, 0}, {2, 1}, {3, 0}, 0.5f), 1);
    EXPECT_EQ(v2.x, 1.5f);
    EXPECT_EQ(v2.y, 0.5625f);
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_catmull_rom(&v3, {9, 9, 9}, {1, 2, 3}, {4, 5, 6}, {7, 7, 7}, 0.0f), 1);
    EXPECT_EQ(v3.x, 1.0f);
    EXPECT_EQ(v3.y, 2.0f);
    EXPECT_EQ(v3.z, 3.0f);
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_catmull_rom(&v4, {9, 9, 9, 9}, {1, 2, 3, 4}, {4, 5, 6, 8}, {7, 7, 7, 7}, 1.0f),
              1);
    EXPECT_EQ(v4.x, 4.0f);
    EXPECT_EQ(v4.w, 8.0f);
}

TEST(Vector, Hermite) {
    // At s = 0.5 the weights are 0.5, 0.125, 0.5, -0.125.
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_hermite(&v4, {2, 0, 0, 1}, {0, 8, 0, 1}, {0, 0, 4, 1}, {0, 0, 0, 8}, 0.5f), 1);
    EXPECT_EQ(v4.x, 1.0f);
    EXPECT_EQ(v4.y, 1.0f);
    EXPECT_EQ(v4.z, 2.0f);
    EXPECT_EQ(v4.w, 0.125f);
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_hermite(&v3, {2, 0, 0}, {0, 8, 0}, {0, 0, 4}, {0, 8, 0}, 0.5f), 1);
    EXPECT_EQ(v3.x, 1.0f);
    EXPECT_EQ(v3.y, 0.0f);
    EXPECT_EQ(v3.z, 2.0f);
    EXPECT_EQ(mox_vector3_r32_hermite(&v3, {2, 3, 4}, {5, 5, 5}, {7, 7, 7}, {5, 5, 5}, 1.0f), 1);
    EXPECT_EQ(v3.x, 7.0f);
}

TEST(Vector, NormalizeDividesByTheSumOfSquares) {
    mox_vector2_r32 v2{9, 9};
    EXPECT_EQ(mox_vector2_r32_normalize(&v2, {3, 4}), 1);
    EXPECT_EQ(v2.x, 3.0f / 25.0f); // intended: 0.12, not 0.6
    EXPECT_EQ(v2.y, 4.0f / 25.0f);
    EXPECT_EQ(mox_vector2_r32_normalize(&v2, {0, 0}), 0);
    EXPECT_EQ(v2.x, 3.0f / 25.0f);
    mox_vector3_r32 v3{9, 9, 9};
    EXPECT_EQ(mox_vector3_r32_normalize(&v3, {1, 2, 2}), 1);
    EXPECT_EQ(v3.x, 1.0f / 9.0f);
    EXPECT_EQ(v3.y, 2.0f / 9.0f);
    EXPECT_EQ(mox_vector3_r32_normalize(&v3, {0, 1, 0}), 1); // unit input stays unit
    EXPECT_EQ(v3.y, 1.0f);
    EXPECT_EQ(mox_vector3_r32_normalize(&v3, {0, 0, 0}), 0);
    EXPECT_EQ(v3.y, 1.0f);
    mox_vector4_r32 v4{};
    EXPECT_EQ(mox_vector4_r32_normalize(&v4, {1, 1, 1, 1}), 1);
    EXPECT_EQ(v4.w, 0.25f);
    EXPECT_EQ(mox_vector4_r32_normalize(&v4, {0, 0, 0, 0}), 0);
    EXPECT_EQ(v4.w, 0.25f);
    // A NaN sum passes the equality test and spreads.
    EXPECT_EQ(mox_vector4_r32_normalize(&v4, {kNaN, 1, 0, 0}), 1);
    EXPECT_TRUE(std::isnan(v4.y));
    // The sum is rounded to single precision once: 1 + 2^-24 + 2^-24 is 1 + 2^-23, where adding in
    // single precision step by step would give 1.
    const float small = 1.0f / 4096.0f;
    EXPECT_EQ(mox_vector3_r32_normalize(&v3, {1, small, small}), 1);
    EXPECT_EQ(v3.x, 1.0f / (1.0f + 1.0f / 8388608.0f));
    EXPECT_EQ(mox_vector3_r32_length({1, small, small}), 1.0f + 1.0f / 8388608.0f);
    // A sum that rounds to zero in single precision fails.
    EXPECT_EQ(mox_vector2_r32_normalize(&v2, {1e-30f, 0}), 0);
}

TEST(Vector, ScalarProductsAndCrossedLengthNames) {
    EXPECT_EQ(mox_vector2_r32_dot({1, 2}, {3, 4}), 11.0f);
    EXPECT_EQ(mox_vector3_r32_dot({1, 2, 3}, {4, 5, 6}), 32.0f);
    EXPECT_EQ(mox_vector4_r32_dot({1, 2, 3, 4}, {4, 5, 6, -1}), 28.0f);
    // Intended: `length` is the sum of squares, `length_square` the Euclidean length.
    EXPECT_EQ(mox_vector2_r32_length({3, 4}), 25.0f);
    EXPECT_EQ(mox_vector2_r32_length_square({3, 4}), 5.0f);
    EXPECT_EQ(mox_vector3_r32_length({1, 2, 2}), 9.0f);
    EXPECT_EQ(mox_vector3_r32_length_square({1, 2, 2}), 3.0f);
    EXPECT_EQ(mox_vector4_r32_length({1, 1, 1, 1}), 4.0f);
    EXPECT_EQ(mox_vector4_r32_length_square({1, 1, 1, 1}), 2.0f);
    EXPECT_EQ(mox_vector2_r32_ccw({1, 0}, {0, 1}), 1.0f);
    EXPECT_EQ(mox_vector2_r32_ccw({0, 1}, {1, 0}), -1.0f);
    EXPECT_EQ(mox_vector2_r32_ccw({2, 3}, {4, 5}), -2.0f);
}

TEST(Vector, ConstantFillsAreIrregularAsIntended) {
    mox_vector2_r32 v2{5, 6};
    EXPECT_EQ(mox_vector2_r32_zero(&v2), 1);
    EXPECT_EQ(v2.x, 0.0f);
    EXPECT_EQ(v2.y, 0.0f);
    EXPECT_EQ(mox_vector2_r32_one(&v2), 1);
    EXPECT_EQ(v2.x, 1.0f);
    EXPECT_EQ(v2.y, 1.0f);
    mox_vector3_r32 v3{5, 6, 7};
    EXPECT_EQ(mox_vector3_r32_zero(&v3), 1);
    EXPECT_EQ(v3.x, 0.0f);
    EXPECT_EQ(v3.y, 0.0f);
    EXPECT_EQ(v3.z, 7.0f); // intended: z stays
    EXPECT_EQ(mox_vector3_r32_one(&v3), 1);
    EXPECT_EQ(v3.x, 1.0f);
    EXPECT_EQ(v3.y, 1.0f);
    EXPECT_EQ(v3.z, 1.0f);
    mox_vector4_r32 v4{5, 6, 7, 8};
    EXPECT_EQ(mox_vector4_r32_zero(&v4), 1);
    EXPECT_EQ(v4.x, 0.0f);
    EXPECT_EQ(v4.y, 0.0f);
    EXPECT_EQ(v4.z, 7.0f); // intended: z stays and w becomes 1
    EXPECT_EQ(v4.w, 1.0f);
    v4 = {5, 6, 7, 8};
    EXPECT_EQ(mox_vector4_r32_one(&v4), 1);
    EXPECT_EQ(v4.x, 1.0f);
    EXPECT_EQ(v4.y, 1.0f);
    EXPECT_EQ(v4.z, 1.0f);
    EXPECT_EQ(v4.w, 1.0f);

    // Intended: the point2 and point3 zero and one are swapped.
    mox_point2_i32 p2{5, 6};
    EXPECT_EQ(mox_point2_i32_zero(&p2), 1);
    EXPECT_EQ(p2.x, 1);
    EXPECT_EQ(p2.y, 1);
    EXPECT_EQ(mox_point2_i32_one(&p2), 1);
    EXPECT_EQ(p2.x, 0);
    EXPECT_EQ(p2.y, 0);
    mox_point3_i32 p3{5, 6, 7};
    EXPECT_EQ(mox_point3_i32_zero(&p3), 1);
    EXPECT_EQ(p3.x, 1);
    EXPECT_EQ(p3.y, 1);
    EXPECT_EQ(p3.z, 1);
    EXPECT_EQ(mox_point3_i32_one(&p3), 1);
    EXPECT_EQ(p3.x, 0);
    EXPECT_EQ(p3.y, 0);
    EXPECT_EQ(p3.z, 0);
    mox_point4_i32 p4{5, 6, 7, 8};
    EXPECT_EQ(mox_point4_i32_zero(&p4), 1);
    EXPECT_EQ(p4.x, 0);
    EXPECT_EQ(p4.y, 0);
    EXPECT_EQ(p4.z, 0);
    EXPECT_EQ(p4.w, 0);
    p4 = {5, 6, 7, 8};
    EXPECT_EQ(mox_point4_i32_one(&p4), 1);
    EXPECT_EQ(p4.x, 0);
    EXPECT_EQ(p4.y, 0);
    EXPECT_EQ(p4.z, 0);
    EXPECT_EQ(p4.w, 1);
}

TEST(Vector, CrossProducts) {
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_cross(&v3, {1, 2, 3}, {4, 5, 6}), 1);
    EXPECT_EQ(v3.x, -3.0f);
    EXPECT_EQ(v3.y, 6.0f);
    EXPECT_EQ(v3.z, -3.0f);
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_cross(&v4, {1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}), 1);
    EXPECT_EQ(v4.x, 0.0f);
    EXPECT_EQ(v4.y, 0.0f);
    EXPECT_EQ(v4.z, 0.0f);
    EXPECT_EQ(v4.w, -1.0f);
    EXPECT_EQ(mox_vector4_r32_cross(&v4, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}), 1);
    EXPECT_EQ(v4.x, 1.0f);
    EXPECT_EQ(v4.y, 0.0f);
    EXPECT_EQ(v4.z, 0.0f);
    EXPECT_EQ(v4.w, 0.0f);
    // Orthogonal to all three operands, exactly, for small integers.
    mox_vector4_r32 a{1, 2, 3, 4}, b{2, -1, 0, 5}, c{3, 1, -2, 1};
    EXPECT_EQ(mox_vector4_r32_cross(&v4, a, b, c), 1);
    EXPECT_EQ(mox_vector4_r32_dot(v4, a), 0.0f);
    EXPECT_EQ(mox_vector4_r32_dot(v4, b), 0.0f);
    EXPECT_EQ(mox_vector4_r32_dot(v4, c), 0.0f);
    EXPECT_NE(mox_vector4_r32_length(v4), 0.0f);
}

TEST(Vector, CalcNormalIsTheUnrootedNormalizeOfTheCross) {
    mox_vector3_r32 n{9, 9, 9};
    EXPECT_EQ(mox_vector3_r32_calc_normal(&n, {1, 1, 1}, {3, 1, 1}, {1, 3, 1}), 1);
    EXPECT_EQ(n.x, 0.0f);
    EXPECT_EQ(n.y, 0.0f);
    EXPECT_EQ(n.z, 0.25f); // (0, 0, 4) divided by 16
    n = {9, 9, 9};
    EXPECT_EQ(mox_vector3_r32_calc_normal(&n, {0, 0, 0}, {1, 1, 1}, {2, 2, 2}), 0);
    EXPECT_EQ(n.x, 9.0f);
    EXPECT_EQ(n.y, 9.0f);
    EXPECT_EQ(n.z, 9.0f);
}

TEST(Vector, Transforms) {
    mox_vector2_r32 v2;
    EXPECT_EQ(mox_vector2_r32_transform_2x2_r32(&v2, {1, 2}, counting2()), 1);
    EXPECT_EQ(v2.x, 7.0f);
    EXPECT_EQ(v2.y, 10.0f);
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_transform_3x3_r32(&v3, {1, 2, 3}, counting3()), 1);
    EXPECT_EQ(v3.x, 30.0f);
    EXPECT_EQ(v3.y, 36.0f);
    EXPECT_EQ(v3.z, 42.0f);
    v3 = {};
    EXPECT_EQ(mox_vector3_r32_transform_normal_3x3_r32(&v3, {1, 2, 3}, counting3()), 1);
    EXPECT_EQ(v3.x, 30.0f);
    EXPECT_EQ(v3.y, 36.0f);
    EXPECT_EQ(v3.z, 42.0f);
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_transform_4x4_r32(&v4, {1, 2, 3, 4}, counting4()), 1);
    EXPECT_EQ(v4.x, 90.0f);
    EXPECT_EQ(v4.y, 100.0f);
    EXPECT_EQ(v4.z, 110.0f);
    EXPECT_EQ(v4.w, 120.0f);
    // Intended: w repeats z, and v.w is not read.
    EXPECT_EQ(mox_vector4_r32_transform_normal_4x4_r32(&v4, {1, 2, 3, kNaN}, counting4()), 1);
    EXPECT_EQ(v4.x, 38.0f);
    EXPECT_EQ(v4.y, 44.0f);
    EXPECT_EQ(v4.z, 50.0f);
    EXPECT_EQ(v4.w, 50.0f);
}

TEST(Vector, CoordinateTransformsUseTheirOwnDivisor) {
    mox_vector2_r32 v2;
    // d = 1*2 + 2*4 = 10; y is d/d. Intended.
    EXPECT_EQ(mox_vector2_r32_transform_coord_2x2_r32(&v2, {1, 2}, counting2()), 1);
    EXPECT_EQ(v2.x, 7.0f / 10.0f);
    EXPECT_EQ(v2.y, 1.0f);
    EXPECT_EQ(mox_vector2_r32_transform_coord_2x2_r32(&v2, {-3, 0.5f}, {{2, 5, 1, 7}}), 1);
    EXPECT_EQ(v2.y, 1.0f);
    v2 = {9, 9};
    EXPECT_EQ(mox_vector2_r32_transform_coord_2x2_r32(&v2, {1, 2}, {{1, 0, 3, 0}}), 0);
    EXPECT_EQ(v2.x, 9.0f);

    // n = 42, d = n + m6 = 49. Intended.
    mox_vector3_r32 v3;
    EXPECT_EQ(mox_vector3_r32_transform_coord_3x3_r32(&v3, {1, 2, 3}, counting3()), 1);
    EXPECT_EQ(v3.x, 30.0f / 49.0f);
    EXPECT_EQ(v3.y, 36.0f / 49.0f);
    EXPECT_EQ(v3.z, 42.0f / 49.0f);
    v3 = {9, 9, 9};
    EXPECT_EQ(mox_vector3_r32_transform_coord_3x3_r32(&v3, {1, 0, 0}, {{1, 1, -1, 0, 0, 0, 1, 0, 0}}), 0);
    EXPECT_EQ(v3.x, 9.0f);

    // e = 4*m12 = 52 in every row; d = 4 + 16 + 3*16 + 52 = 120. Intended.
    mox_vector4_r32 v4;
    EXPECT_EQ(mox_vector4_r32_transform_coord_4x4_r32(&v4, {1, 2, 3, 4}, counting4()), 1);
    EXPECT_EQ(v4.x, 90.0f / 120.0f);
    EXPECT_EQ(v4.y, 96.0f / 120.0f);
    EXPECT_EQ(v4.z, 102.0f / 120.0f);
    EXPECT_EQ(v4.w, 108.0f / 120.0f);
    // m13 and m14 are never read.
    mox_matrix_4x4_r32 m = counting4();
    m.m[13] = kNaN;
    m.m[14] = kNaN;
    mox_vector4_r32 again;
    EXPECT_EQ(mox_vector4_r32_transform_coord_4x4_r32(&again, {1, 2, 3, 4}, m), 1);
    EXPECT_EQ(std::memcmp(&again, &v4, sizeof v4), 0);
    v4 = {9, 9, 9, 9};
    mox_matrix_4x4_r32 flat{};
    EXPECT_EQ(mox_vector4_r32_transform_coord_4x4_r32(&v4, {1, 2, 3, 4}, flat), 0);
    EXPECT_EQ(v4.x, 9.0f);
}

TEST(Vector, NullOutputsFailSilently) {
    ErrorListener listener;
    mox_vector2_r32 a2{1, 2};
    mox_vector3_r32 a3{1, 2, 3};
    mox_vector4_r32 a4{1, 2, 3, 4};
    EXPECT_EQ(mox_vector2_r32_add(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_vector3_r32_add(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_add(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_vector2_r32_sub(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_vector3_r32_sub(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_sub(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_vector2_r32_mul(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_vector3_r32_mul(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_mul(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_vector2_r32_div(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_vector3_r32_div(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_div(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_vector2_r32_min(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_vector3_r32_min(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_min(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_vector2_r32_max(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_vector3_r32_max(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_max(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_vector2_r32_lerp(nullptr, a2, a2, 0.5f), 0);
    EXPECT_EQ(mox_vector3_r32_lerp(nullptr, a3, a3, 0.5f), 0);
    EXPECT_EQ(mox_vector4_r32_lerp(nullptr, a4, a4, 0.5f), 0);
    EXPECT_EQ(mox_vector2_r32_bary_centric(nullptr, a2, a2, a2, 0.5f, 0.5f), 0);
    EXPECT_EQ(mox_vector3_r32_bary_centric(nullptr, a3, a3, a3, 0.5f, 0.5f), 0);
    EXPECT_EQ(mox_vector4_r32_bary_centric(nullptr, a4, a4, a4, 0.5f, 0.5f), 0);
    EXPECT_EQ(mox_vector2_r32_catmull_rom(nullptr, a2, a2, a2, a2, 0.5f), 0);
    EXPECT_EQ(mox_vector3_r32_catmull_rom(nullptr, a3, a3, a3, a3, 0.5f), 0);
    EXPECT_EQ(mox_vector4_r32_catmull_rom(nullptr, a4, a4, a4, a4, 0.5f), 0);
    EXPECT_EQ(mox_vector3_r32_hermite(nullptr, a3, a3, a3, a3, 0.5f), 0);
    EXPECT_EQ(mox_vector4_r32_hermite(nullptr, a4, a4, a4, a4, 0.5f), 0);
    EXPECT_EQ(mox_vector2_r32_normalize(nullptr, a2), 0);
    EXPECT_EQ(mox_vector3_r32_normalize(nullptr, a3), 0);
    EXPECT_EQ(mox_vector4_r32_normalize(nullptr, a4), 0);
    EXPECT_EQ(mox_vector2_r32_zero(nullptr), 0);
    EXPECT_EQ(mox_vector3_r32_zero(nullptr), 0);
    EXPECT_EQ(mox_vector4_r32_zero(nullptr), 0);
    EXPECT_EQ(mox_vector2_r32_one(nullptr), 0);
    EXPECT_EQ(mox_vector3_r32_one(nullptr), 0);
    EXPECT_EQ(mox_vector4_r32_one(nullptr), 0);
    EXPECT_EQ(mox_point2_i32_zero(nullptr), 0);
    EXPECT_EQ(mox_point2_i32_one(nullptr), 0);
    EXPECT_EQ(mox_point3_i32_zero(nullptr), 0);
    EXPECT_EQ(mox_point3_i32_one(nullptr), 0);
    EXPECT_EQ(mox_point4_i32_zero(nullptr), 0);
    EXPECT_EQ(mox_point4_i32_one(nullptr), 0);
    EXPECT_EQ(mox_vector3_r32_cross(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_vector4_r32_cross(nullptr, a4, a4, a4), 0);
    EXPECT_EQ(mox_vector3_r32_calc_normal(nullptr, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 0);
    EXPECT_EQ(mox_vector2_r32_transform_2x2_r32(nullptr, a2, counting2()), 0);
    EXPECT_EQ(mox_vector2_r32_transform_coord_2x2_r32(nullptr, a2, counting2()), 0);
    EXPECT_EQ(mox_vector3_r32_transform_3x3_r32(nullptr, a3, counting3()), 0);
    EXPECT_EQ(mox_vector3_r32_transform_normal_3x3_r32(nullptr, a3, counting3()), 0);
    EXPECT_EQ(mox_vector3_r32_transform_coord_3x3_r32(nullptr, a3, counting3()), 0);
    EXPECT_EQ(mox_vector4_r32_transform_4x4_r32(nullptr, a4, counting4()), 0);
    EXPECT_EQ(mox_vector4_r32_transform_normal_4x4_r32(nullptr, a4, counting4()), 0);
    EXPECT_EQ(mox_vector4_r32_transform_coord_4x4_r32(nullptr, a4, counting4()), 0);
    EXPECT_TRUE(listener.silent());
}

namespace {

struct PersistTest : ::testing::Test {
    mox_test::DiscFile disc{"value.bin"};
    mox_file& file = disc.file;
    void open_with(const std::vector<uint8_t>& bytes) { ASSERT_TRUE(disc.open_with(bytes)); }
    std::vector<uint8_t> on_disc() { return disc.on_disc(); }
};

} // namespace

TEST_F(PersistTest, PointsAndRangesAreRawLittleEndianWords) {
    open_with({});
    mox_point2_i32 p2{1, -2};
    mox_point3_i32 p3{0x01020304, 5, -1};
    mox_point4_i32 p4{1, 2, 3, 0x7F000000};
    mox_range_i32 ri{-7, 0x100};
    mox_range_r32 rr{1.5f, -2.0f};
    EXPECT_EQ(mox_point2_i32_save_to_file(&p2, &file), 1);
    EXPECT_EQ(mox_point3_i32_save_to_file(&p3, &file), 1);
    EXPECT_EQ(mox_point4_i32_save_to_file(&p4, &file), 1);
    EXPECT_EQ(mox_range_i32_save_to_file(&ri, &file), 1);
    EXPECT_EQ(mox_range_r32_save_to_file(&rr, &file), 1);
    std::vector<uint8_t> expected{
        1,    0,    0,    0,    0xFE, 0xFF, 0xFF, 0xFF,                                        // point2
        4,    3,    2,    1,    5,    0,    0,    0,    0xFF, 0xFF, 0xFF, 0xFF,                // point3
        1,    0,    0,    0,    2,    0,    0,    0,    3,    0,    0,    0,    0, 0, 0, 0x7F, // point4
        0xF9, 0xFF, 0xFF, 0xFF, 0,    1,    0,    0,                                           // range_i32
        0,    0,    0xC0, 0x3F, 0,    0,    0,    0xC0};                                       // 1.5f, -2.0f
    EXPECT_EQ(on_disc(), expected);

    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_point2_i32 q2{};
    mox_point3_i32 q3{};
    mox_point4_i32 q4{};
    mox_range_i32 si{};
    mox_range_r32 sr{};
    EXPECT_EQ(mox_point2_i32_load_from_file(&q2, &file), 1);
    EXPECT_EQ(mox_point3_i32_load_from_file(&q3, &file), 1);
    EXPECT_EQ(mox_point4_i32_load_from_file(&q4, &file), 1);
    EXPECT_EQ(mox_range_i32_load_from_file(&si, &file), 1);
    EXPECT_EQ(mox_range_r32_load_from_file(&sr, &file), 1);
    EXPECT_EQ(std::memcmp(&q2, &p2, sizeof p2), 0);
    EXPECT_EQ(std::memcmp(&q3, &p3, sizeof p3), 0);
    EXPECT_EQ(std::memcmp(&q4, &p4, sizeof p4), 0);
    EXPECT_EQ(std::memcmp(&si, &ri, sizeof ri), 0);
    EXPECT_EQ(std::memcmp(&sr, &rr, sizeof rr), 0);
}

TEST_F(PersistTest, ReadPastTheEndStillSucceeds) {
    open_with({0xAA, 0, 0, 0, 0xBB, 0xCC});
    mox_point2_i32 p{0x11111111, 0x22222222};
    EXPECT_EQ(mox_point2_i32_load_from_file(&p, &file), 1);
    EXPECT_EQ(p.x, 0xAA);
    // The two bytes that were there land in the low half; the rest of the field is as it was.
    EXPECT_EQ(static_cast<uint32_t>(p.y), 0x2222CCBBu);
    mox_range_r32 r{1.0f, 2.0f};
    EXPECT_EQ(mox_range_r32_load_from_file(&r, &file), 1);
    EXPECT_EQ(r.lower, 1.0f);
    EXPECT_EQ(r.upper, 2.0f);
}

TEST_F(PersistTest, NullArgumentsFailSilently) {
    open_with({});
    ErrorListener listener;
    mox_point2_i32 p2{};
    mox_point3_i32 p3{};
    mox_point4_i32 p4{};
    mox_range_i32 ri{};
    mox_range_r32 rr{};
    EXPECT_EQ(mox_point2_i32_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_point2_i32_save_to_file(&p2, nullptr), 0);
    EXPECT_EQ(mox_point2_i32_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_point2_i32_load_from_file(&p2, nullptr), 0);
    EXPECT_EQ(mox_point3_i32_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_point3_i32_save_to_file(&p3, nullptr), 0);
    EXPECT_EQ(mox_point3_i32_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_point3_i32_load_from_file(&p3, nullptr), 0);
    EXPECT_EQ(mox_point4_i32_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_point4_i32_save_to_file(&p4, nullptr), 0);
    EXPECT_EQ(mox_point4_i32_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_point4_i32_load_from_file(&p4, nullptr), 0);
    EXPECT_EQ(mox_range_i32_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_range_i32_save_to_file(&ri, nullptr), 0);
    EXPECT_EQ(mox_range_i32_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_range_i32_load_from_file(&ri, nullptr), 0);
    EXPECT_EQ(mox_range_r32_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_range_r32_save_to_file(&rr, nullptr), 0);
    EXPECT_EQ(mox_range_r32_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_range_r32_load_from_file(&rr, nullptr), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_TRUE(on_disc().empty());
}
