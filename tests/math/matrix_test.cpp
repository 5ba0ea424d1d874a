#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <initializer_list>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

// cos of 90 degrees as the library computes it: the radian value rounded to single precision is a
// little above pi/2.
constexpr float kCos90 = -4.371139e-8f;

template <typename M> void expect_matrix(const M& m, std::initializer_list<float> values) {
    ASSERT_EQ(values.size(), sizeof(m.m) / sizeof(float));
    int i = 0;
    for (float value : values) {
        EXPECT_EQ(m.m[i], value) << "element " << i;
        ++i;
    }
}

template <typename M> void expect_same(const M& a, const M& b) {
    for (size_t i = 0; i < sizeof(a.m) / sizeof(float); ++i)
        EXPECT_EQ(a.m[i], b.m[i]) << "element " << i;
}

mox_matrix_4x4_r32 identity4() {
    mox_matrix_4x4_r32 m;
    mox_matrix_4x4_r32_identity(&m);
    return m;
}

float at(const mox_matrix_4x4_r32& m, int row, int column) { return m.m[row * 4 + column]; }

const mox_matrix_3x3_r32 kClassic3{{1, 2, 3, 0, 1, 4, 5, 6, 0}};                     // true determinant 1
const mox_matrix_4x4_r32 kBlocks{{2, 1, 0, 0, 1, 1, 0, 0, 0, 0, 1, 2, 0, 0, 1, 3}};  // determinant 1
const mox_matrix_4x4_r32 kGeneral{{1, 2, 3, 4, 5, 6, 7, 8, 2, 6, 4, 8, 3, 1, 1, 2}}; // determinant 72
const mox_matrix_4x4_r32 kSparse{{2, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 3, 0, 2}};  // determinant 2
const mox_matrix_4x4_r32 kCounting{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}}; // singular

} // namespace

TEST(Matrix2, IdentityKeepsItsIrregularSecondRow) {
    mox_matrix_2x2_r32 m{{9, 9, 9, 9}};
    EXPECT_EQ(mox_matrix_2x2_r32_identity(&m), 1);
    expect_matrix(m, {1, 0, 1, 0}); // intended
}

TEST(Matrix2, MultiplyAndTranspose) {
    mox_matrix_2x2_r32 a{{1, 2, 3, 4}}, m;
    EXPECT_EQ(mox_matrix_2x2_r32_multiply(&m, a, {{5, 6, 7, 8}}), 1);
    expect_matrix(m, {19, 22, 43, 50});
    EXPECT_EQ(mox_matrix_2x2_r32_transpose(&m, a), 1);
    expect_matrix(m, {1, 3, 2, 4});
    EXPECT_EQ(mox_matrix_2x2_r32_multiply(&a, a, a), 1); // the output may be an operand
    expect_matrix(a, {7, 10, 15, 22});
}

TEST(Matrix3, IdentityMultiplyTranspose) {
    mox_matrix_3x3_r32 m;
    EXPECT_EQ(mox_matrix_3x3_r32_identity(&m), 1);
    expect_matrix(m, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    mox_matrix_3x3_r32 p;
    EXPECT_EQ(mox_matrix_3x3_r32_multiply(&p, kClassic3, {{2, 0, 0, 0, 3, 0, 0, 0, 4}}), 1);
    expect_matrix(p, {2, 6, 12, 0, 3, 16, 10, 18, 0});
    EXPECT_EQ(mox_matrix_3x3_r32_multiply(&p, kClassic3, m), 1);
    expect_same(p, kClassic3);
    EXPECT_EQ(mox_matrix_3x3_r32_transpose(&p, kClassic3), 1);
    expect_matrix(p, {1, 0, 5, 2, 1, 6, 3, 4, 0});
}

TEST(Matrix3, DeterminantHasItsSignReversed) {
    mox_matrix_3x3_r32 id;
    mox_matrix_3x3_r32_identity(&id);
    EXPECT_EQ(mox_matrix_3x3_r32_determinant(id), -1.0f); // intended
    EXPECT_EQ(mox_matrix_3x3_r32_determinant({{2, 0, 0, 0, 3, 0, 0, 0, 4}}), -24.0f);
    EXPECT_EQ(mox_matrix_3x3_r32_determinant(kClassic3), -1.0f);
    // The product rule with the reversed sign: -(det(A) * det(B)).
    mox_matrix_3x3_r32 b{{2, 1, 0, 0, 3, 0, 1, 0, 4}}, ab;
    EXPECT_EQ(mox_matrix_3x3_r32_determinant(b), -24.0f);
    mox_matrix_3x3_r32_multiply(&ab, kClassic3, b);
    EXPECT_EQ(mox_matrix_3x3_r32_determinant(ab), -(-1.0f * -24.0f));
}

TEST(Matrix3, InverseIsTheNegativeOfTheTrueInverse) {
    mox_matrix_3x3_r32 id, m;
    mox_matrix_3x3_r32_identity(&id);
    EXPECT_EQ(mox_matrix_3x3_r32_inverse(&m, id), -1.0f);
    expect_matrix(m, {-1, 0, 0, 0, -1, 0, 0, 0, -1}); // intended
    EXPECT_EQ(mox_matrix_3x3_r32_inverse(&m, kClassic3), -1.0f);
    expect_matrix(m, {24, -18, -5, -20, 15, 4, 5, -4, -1});
    mox_matrix_3x3_r32 product;
    mox_matrix_3x3_r32_multiply(&product, kClassic3, m);
    expect_matrix(product, {-1, 0, 0, 0, -1, 0, 0, 0, -1});
    // Singular: zero comes back and the output is untouched.
    mox_matrix_3x3_r32 kept{{9, 9, 9, 9, 9, 9, 9, 9, 9}};
    EXPECT_EQ(mox_matrix_3x3_r32_inverse(&kept, {{1, 2, 3, 2, 4, 6, 0, 0, 1}}), 0.0f);
    expect_matrix(kept, {9, 9, 9, 9, 9, 9, 9, 9, 9});
    EXPECT_EQ(mox_matrix_3x3_r32_inverse(nullptr, kClassic3), 0.0f);
}

TEST(Matrix3, Builders) {
    mox_matrix_3x3_r32 m;
    EXPECT_EQ(mox_matrix_3x3_r32_translation(&m, 5, 6), 1);
    expect_matrix(m, {1, 0, 0, 0, 1, 0, 5, 6, 1});
    EXPECT_EQ(mox_matrix_3x3_r32_scaling(&m, 2, 3), 1);
    expect_matrix(m, {2, 0, 0, 0, 3, 0, 0, 0, 1});
    EXPECT_EQ(mox_matrix_3x3_r32_rotation(&m, 0), 1);
    expect_matrix(m, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    EXPECT_EQ(mox_matrix_3x3_r32_rotation(&m, 90), 1);
    EXPECT_FLOAT_EQ(m.m[0], kCos90);
    EXPECT_EQ(m.m[1], 1.0f); // sine at m[0][1]: the opposite of the 4x4 rotation about z. Intended.
    EXPECT_EQ(m.m[3], -1.0f);
    EXPECT_FLOAT_EQ(m.m[4], kCos90);
    EXPECT_EQ(m.m[8], 1.0f);
    mox_matrix_4x4_r32 z;
    mox_matrix_4x4_r32_rotation_z(&z, 90);
    EXPECT_EQ(at(z, 0, 1), -m.m[1]);
    EXPECT_EQ(at(z, 1, 0), -m.m[3]);
}

TEST(Matrix4, IdentityDeterminantAndInverse) {
    mox_matrix_4x4_r32 id = identity4();
    expect_matrix(id, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(id), 1.0f);
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_inverse(&m, id), 1.0f);
    expect_same(m, id);
}

TEST(Matrix4, InverseTimesMatrixIsTheIdentity) {
    mox_matrix_4x4_r32 inverse, product;
    EXPECT_EQ(mox_matrix_4x4_r32_inverse(&inverse, kBlocks), 1.0f);
    expect_matrix(inverse, {1, -1, 0, 0, -1, 2, 0, 0, 0, 0, 3, -2, 0, 0, -1, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_multiply(&product, kBlocks, inverse), 1);
    expect_same(product, identity4());
    EXPECT_EQ(mox_matrix_4x4_r32_multiply(&product, inverse, kBlocks), 1);
    expect_same(product, identity4());
    // A translation by a scaling inverts to exact powers of two.
    mox_matrix_4x4_r32 t, s, ts;
    mox_matrix_4x4_r32_translation(&t, 1, 2, 3);
    mox_matrix_4x4_r32_scaling(&s, 2, 4, 8);
    mox_matrix_4x4_r32_multiply(&ts, t, s);
    EXPECT_EQ(mox_matrix_4x4_r32_inverse(&inverse, ts), 64.0f);
    expect_matrix(inverse, {0.5f, 0, 0, 0, 0, 0.25f, 0, 0, 0, 0, 0.125f, 0, -1, -2, -3, 1});
    mox_matrix_4x4_r32_multiply(&product, ts, inverse);
    expect_same(product, identity4());
}

TEST(Matrix4, DeterminantOfAProductIsTheProductOfDeterminants) {
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(kGeneral), 72.0f);
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(kSparse), 2.0f);
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(kBlocks), 1.0f);
    mox_matrix_4x4_r32 p;
    mox_matrix_4x4_r32_multiply(&p, kSparse, kGeneral);
    expect_matrix(p, {4, 10, 10, 16, 5, 6, 7, 8, 3, 8, 7, 12, 21, 20, 23, 28});
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(p), 144.0f);
    mox_matrix_4x4_r32_multiply(&p, kBlocks, kGeneral);
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(p), 72.0f);
}

TEST(Matrix4, SingularInverseLeavesTheOutput) {
    EXPECT_EQ(mox_matrix_4x4_r32_determinant(kCounting), 0.0f);
    mox_matrix_4x4_r32 kept = kGeneral;
    EXPECT_EQ(mox_matrix_4x4_r32_inverse(&kept, kCounting), 0.0f);
    expect_same(kept, kGeneral);
    EXPECT_EQ(mox_matrix_4x4_r32_inverse(nullptr, kGeneral), 0.0f);
}

TEST(Matrix4, MultiplyTransposeAndAliasing) {
    mox_matrix_4x4_r32 p, t, pt;
    EXPECT_EQ(mox_matrix_4x4_r32_transpose(&t, kCounting), 1);
    expect_matrix(t, {1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16});
    EXPECT_EQ(mox_matrix_4x4_r32_multiply(&p, kSparse, kCounting), 1);
    EXPECT_EQ(mox_matrix_4x4_r32_multiply_transpose(&pt, kSparse, kCounting), 1);
    mox_matrix_4x4_r32_transpose(&t, p);
    expect_same(pt, t);
    mox_matrix_4x4_r32 a = kSparse;
    EXPECT_EQ(mox_matrix_4x4_r32_multiply(&a, a, kCounting), 1);
    expect_same(a, p);
    mox_matrix_4x4_r32 b = kCounting;
    EXPECT_EQ(mox_matrix_4x4_r32_multiply(&b, kSparse, b), 1);
    expect_same(b, p);
}

TEST(Matrix4, TranslationAndScaling) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_translation(&m, 1, 2, 3), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1});
    mox_vector4_r32 v;
    mox_vector4_r32_transform_4x4_r32(&v, {10, 20, 30, 1}, m);
    EXPECT_EQ(v.x, 11.0f);
    EXPECT_EQ(v.y, 22.0f);
    EXPECT_EQ(v.z, 33.0f);
    EXPECT_EQ(mox_matrix_4x4_r32_scaling(&m, 2, 3, 4), 1);
    expect_matrix(m, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1});
}

TEST(Matrix4, SingleAxisRotations) {
    mox_matrix_4x4_r32 m;
    for (auto entry :
         {mox_matrix_4x4_r32_rotation_x, mox_matrix_4x4_r32_rotation_y, mox_matrix_4x4_r32_rotation_z}) {
        EXPECT_EQ(entry(&m, 0), 1);
        expect_same(m, identity4());
    }
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_x(&m, 90), 1);
    EXPECT_FLOAT_EQ(at(m, 1, 1), kCos90);
    EXPECT_EQ(at(m, 1, 2), -1.0f);
    EXPECT_EQ(at(m, 2, 1), 1.0f);
    EXPECT_FLOAT_EQ(at(m, 2, 2), kCos90);
    EXPECT_EQ(at(m, 0, 0), 1.0f);

    EXPECT_EQ(mox_matrix_4x4_r32_rotation_y(&m, 90), 1);
    EXPECT_FLOAT_EQ(at(m, 0, 0), kCos90);
    EXPECT_EQ(at(m, 0, 2), 0.0f); // intended: the sine sits in the middle row
    EXPECT_EQ(at(m, 1, 2), 1.0f);
    EXPECT_EQ(at(m, 2, 0), -1.0f);
    EXPECT_FLOAT_EQ(at(m, 2, 2), kCos90);
    EXPECT_EQ(at(m, 1, 1), 1.0f);

    EXPECT_EQ(mox_matrix_4x4_r32_rotation_z(&m, 90), 1);
    EXPECT_FLOAT_EQ(at(m, 0, 0), kCos90);
    EXPECT_EQ(at(m, 0, 1), -1.0f);
    EXPECT_EQ(at(m, 1, 0), 1.0f);
    EXPECT_FLOAT_EQ(at(m, 1, 1), kCos90);
    EXPECT_EQ(at(m, 2, 2), 1.0f);
    // The degree factor in double, then single: 30 degrees.
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_z(&m, 30), 1);
    float a = static_cast<float>(30.0 * 0.017453292519943295);
    EXPECT_EQ(at(m, 0, 0), static_cast<float>(std::cos(static_cast<double>(a))));
    EXPECT_EQ(at(m, 1, 0), static_cast<float>(std::sin(static_cast<double>(a))));
    EXPECT_FLOAT_EQ(at(m, 1, 0), 0.5f);
}

TEST(Matrix4, RotationXyzTurnsByYThenZThenX) {
    mox_matrix_4x4_r32 m, single;
    mox_matrix_4x4_r32_rotation_y(&single, 90);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_xyz(&m, 0, 90, 0), 1);
    expect_same(m, single);
    mox_matrix_4x4_r32_rotation_x(&single, 30);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_xyz(&m, 30, 0, 0), 1);
    expect_same(m, single);
    mox_matrix_4x4_r32_rotation_z(&single, 45);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_xyz(&m, 0, 0, 45), 1);
    expect_same(m, single);
    // Two axes: Z by X, so (1, 0, 0) goes first to (c, -1, 0) by z, then to (c, -c, 1) by x; the
    // other order would give z = 0.
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_xyz(&m, 90, 0, 90), 1);
    mox_vector4_r32 v;
    mox_vector4_r32_transform_4x4_r32(&v, {1, 0, 0, 1}, m);
    EXPECT_FLOAT_EQ(v.x, kCos90);
    EXPECT_FLOAT_EQ(v.y, -kCos90);
    EXPECT_EQ(v.z, 1.0f);
}

TEST(Matrix4, TransformationIsRotationByScalingByTranslation) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_transformation(&m, 1, 2, 3, 0, 0, 0, 2, 3, 4), 1);
    expect_matrix(m, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 1, 2, 3, 1}); // the translation is not scaled
    mox_matrix_4x4_r32 r, s, t, rs, expected;
    mox_matrix_4x4_r32_rotation_xyz(&r, 10, 20, 30);
    mox_matrix_4x4_r32_scaling(&s, 2, 3, 4);
    mox_matrix_4x4_r32_translation(&t, 5, 6, 7);
    mox_matrix_4x4_r32_multiply(&rs, r, s);
    mox_matrix_4x4_r32_multiply(&expected, rs, t);
    EXPECT_EQ(mox_matrix_4x4_r32_transformation(&m, 5, 6, 7, 10, 20, 30, 2, 3, 4), 1);
    expect_same(m, expected);
}

TEST(Matrix4, RotationAxisMixesTheGivenAndTheNormalizedAxis) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_axis(&m, 0, 0, 1, 90), 1);
    EXPECT_FLOAT_EQ(at(m, 0, 0), kCos90);
    EXPECT_EQ(at(m, 0, 1), 1.0f);
    EXPECT_EQ(at(m, 0, 2), 0.0f);
    EXPECT_EQ(at(m, 1, 0), -1.0f);
    EXPECT_EQ(at(m, 2, 2), 0.99999994f); // 1*1*(1 - c) + c rounded to single
    EXPECT_EQ(at(m, 3, 3), 1.0f);
    // Intended: the sine terms take the axis divided by its sum of squares, (0, 0, 0.5), while the
    // products take the axis as given.
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_axis(&m, 0, 0, 2, 90), 1);
    EXPECT_EQ(at(m, 0, 1), 0.5f);
    EXPECT_EQ(at(m, 1, 0), -0.5f);
    EXPECT_EQ(at(m, 2, 2), 4.0f);
    // A zero axis fails the normalize; the zero temporary leaves only the cosines.
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_axis(&m, 0, 0, 0, 90), 1);
    EXPECT_FLOAT_EQ(at(m, 0, 0), kCos90);
    EXPECT_EQ(at(m, 0, 1), 0.0f);
    EXPECT_EQ(at(m, 1, 0), 0.0f);
    EXPECT_FLOAT_EQ(at(m, 2, 2), kCos90);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_axis(&m, 1, 0, 0, 0), 1);
    expect_same(m, identity4());
}

TEST(Matrix4, RotationQuaternionIsNotNormalized) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_quaternion(&m, 0, 0, 0, 1), 1);
    expect_same(m, identity4());
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_quaternion(&m, 1, 2, 3, 4), 1);
    expect_matrix(m, {-25, 28, -10, 0, -20, -19, 20, 0, 22, 4, -9, 0, 0, 0, 0, 1});
}

TEST(Matrix4, LookAt) {
    mox_matrix_4x4_r32 m;
    // One unit away with a perpendicular unit up: orthonormal, and the usual left-handed view matrix.
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_lh(&m, {1, 2, 3}, {1, 2, 2}, {0, 1, 0}), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -2, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_rh(&m, {0, 0, 0}, {0, 0, -1}, {0, 1, 0}), 1);
    expect_matrix(m, {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, -1, 1});
    // Two units away: z = (0, 0, 2)/4; x0 = (0.5, 0, 0) becomes (2, 0, 0) and y0 = (0, 0.25, 0) becomes
    // (0, 4, 0), since normalize divides by the sum of squares.
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_lh(&m, {0, 0, 0}, {0, 0, -2}, {0, 1, 0}), 1);
    expect_matrix(m, {2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0.5f, 0, 0, 0, 1, 1});
    // The eye at the target: every normalize fails and the zero temporaries give a zero block.
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_lh(&m, {1, 1, 1}, {1, 1, 1}, {0, 1, 0}), 1);
    expect_matrix(m, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
    // Up parallel to the view: z survives, x and y are zero.
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_rh(&m, {0, 0, 0}, {0, 1, 0}, {0, 1, 0}), 1);
    expect_matrix(m, {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, -1, 1});
}

TEST(Matrix4, OrthoAndScreen) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_lh(&m, -2, -1, 2, 1, 1, 5), 1);
    expect_matrix(m, {0.5f, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.25f, 0, 0, 0, -0.25f, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_rh(&m, -2, -1, 2, 1, 1, 5), 1);
    expect_matrix(m, {0.5f, 0, 0, 0, 0, 1, 0, 0, 0, 0, -0.25f, 0, 0, 0, -0.25f, 1});
    // The two center forms differ in m[2][2] alone. Intended.
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_center_lh(&m, 0, 0, 4, 2, 1, 5), 1);
    expect_matrix(m, {0.5f, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.25f, 0, -1, 1, -0.25f, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_center_rh(&m, 0, 0, 4, 2, 1, 5), 1);
    expect_matrix(m, {0.5f, 0, 0, 0, 0, 1, 0, 0, 0, 0, -0.25f, 0, -1, 1, -0.25f, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_screen_lh(&m, 0, 0, 4, 2, 1, 5), 1);
    expect_matrix(m, {0.5f, 0, 0, 0, 0, 1, 0, 0, 0, 0, -0.5f, 0, -1, -1, 1.5f, 1});
    EXPECT_EQ(mox_matrix_4x4_r32_screen_rh(&m, 0, 0, 4, 2, 1, 5), 1);
    expect_matrix(m, {0.5f, 0, 0, 0, 0, -1, 0, 0, 0, 0, -0.5f, 0, -1, -1, 1.5f, 1});
}

TEST(Matrix4, Perspective) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_lh(&m, -1, -1, 1, 1, 1, 3), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1.5f, 1, 0, 0, -1.5f, 0});
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_rh(&m, -1, -1, 1, 1, 1, 3), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1.5f, -1, 0, 0, -1.5f, 0});
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_center_lh(&m, 0, 0, 2, 4, 1, 3), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, 0.5f, 0, 0, 1, 1, 1.5f, 1, 0, 0, -1.5f, 0});
    // The right-handed center form turns its denominators round. Intended.
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_center_rh(&m, 0, 0, 2, 4, 1, 3), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, 0.5f, 0, 0, -1, -1, -1.5f, -1, 0, 0, -1.5f, 0});
}

TEST(Matrix4, PerspectiveFieldOfViewInRadians) {
    mox_matrix_4x4_r32 m;
    const float quarter_turn = 1.5707963705062866f;
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_fov_lh(&m, quarter_turn, 2, 1, 3), 1);
    EXPECT_FLOAT_EQ(at(m, 0, 0), 0.5f);
    EXPECT_FLOAT_EQ(at(m, 1, 1), 1.0f);
    EXPECT_EQ(at(m, 2, 2), -1.5f); // the right-handed f/(n-f). Intended.
    EXPECT_EQ(at(m, 2, 3), 1.0f);
    EXPECT_EQ(at(m, 3, 2), -1.5f);
    EXPECT_EQ(at(m, 3, 3), 0.0f);
    EXPECT_EQ(at(m, 0, 1), 0.0f);
    EXPECT_EQ(at(m, 3, 0), 0.0f);
    float half = quarter_turn / 2.0f;
    float h = static_cast<float>(std::cos(static_cast<double>(half))) /
              static_cast<float>(std::sin(static_cast<double>(half)));
    EXPECT_EQ(at(m, 1, 1), h);
    EXPECT_EQ(at(m, 0, 0), h / 2.0f);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_fov_rh(&m, quarter_turn, 2, 1, 3), 1);
    EXPECT_EQ(at(m, 1, 1), h);
    EXPECT_EQ(at(m, 2, 2), -1.5f);
    EXPECT_EQ(at(m, 2, 3), -1.0f);
    EXPECT_EQ(at(m, 3, 2), -1.5f);
    EXPECT_EQ(at(m, 3, 3), 0.0f);
}

TEST(Matrix4, ReflectMirrorsThroughTheNormalizedPlane) {
    mox_matrix_4x4_r32 m;
    // The plane y = 2, given unnormalized.
    EXPECT_EQ(mox_matrix_4x4_r32_reflect(&m, {0, 2, 0, -4}), 1);
    expect_matrix(m, {1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 4, 0, 1});
    mox_vector4_r32 v;
    mox_vector4_r32_transform_4x4_r32(&v, {3, 5, 7, 1}, m);
    EXPECT_EQ(v.x, 3.0f);
    EXPECT_EQ(v.y, -1.0f);
    EXPECT_EQ(v.z, 7.0f);
    // No normal: the zero temporary gives the identity.
    EXPECT_EQ(mox_matrix_4x4_r32_reflect(&m, {0, 0, 0, 3}), 1);
    expect_same(m, identity4());
}

TEST(Matrix4, ShadowTakesTheLightsZInItsFirstRow) {
    mox_matrix_4x4_r32 m;
    EXPECT_EQ(mox_matrix_4x4_r32_shadow(&m, {2, 3, 4, 5}, {1, 0, 0, 0}), 1);
    // e = 2; m[0][3] is -a*l.z = -4, not -a*l.w = -5. Intended.
    expect_matrix(m, {0, -3, -4, -4, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2});
    // The plane goes through the vector normalize: (0, 2, 0, 2) / 8 = (0, 0.25, 0, 0.25).
    EXPECT_EQ(mox_matrix_4x4_r32_shadow(&m, {0, 4, 0, 1}, {0, 2, 0, 2}), 1);
    expect_matrix(m, {1.25f, 0, 0, 0, 0, 0.25f, 0, -0.25f, 0, 0, 1.25f, 0, 0, -1, 0, 1});
    // A zero plane leaves the zero temporary, and every element is zero.
    EXPECT_EQ(mox_matrix_4x4_r32_shadow(&m, {1, 2, 3, 4}, {0, 0, 0, 0}), 1);
    expect_matrix(m, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
}

TEST(Vector4Project, ScalesTheViewportOriginWithTheRest) {
    mox_matrix_4x4_r32 id = identity4();
    mox_vector4_r32 out{0, 0, 0, 7};
    EXPECT_EQ(mox_vector4_r32_project(&out, {0, 0, 0.5f, 1}, 0, 0, 640, 480, id, id, 0, 1), 1);
    EXPECT_EQ(out.x, 320.0f);
    EXPECT_EQ(out.y, 240.0f);
    EXPECT_EQ(out.z, 1.0f);
    EXPECT_EQ(out.w, 7.0f); // not written
    // Intended: (10 + 1 + 0) * 640 * 0.5, not 10 + 320.
    EXPECT_EQ(mox_vector4_r32_project(&out, {0, 0, 0.5f, 1}, 10, 20, 640, 480, id, id, 0, 1), 1);
    EXPECT_EQ(out.x, 3520.0f);
    EXPECT_EQ(out.y, 5040.0f);
    // Through a translation: p = (0.5, 0.5, 1.5, 0.5) / 1.5 by the coordinate transform.
    mox_matrix_4x4_r32 t;
    mox_matrix_4x4_r32_translation(&t, 0.5f, -0.5f, 0);
    EXPECT_EQ(mox_vector4_r32_project(&out, {0, 0, 1, 1}, 0, 0, 640, 480, t, id, 2, 4), 1);
    EXPECT_EQ(out.x, (1.0f + 0.5f / 1.5f) * 640.0f * 0.5f);
    EXPECT_EQ(out.y, (1.0f - 0.5f / 1.5f) * 480.0f * 0.5f);
    EXPECT_EQ(out.z, 4.0f);
    // m2 stands on the left of the product.
    mox_matrix_4x4_r32 s, st;
    mox_matrix_4x4_r32_scaling(&s, 2, 3, 4);
    mox_matrix_4x4_r32_multiply(&st, s, t);
    mox_vector4_r32 expected, got;
    mox_vector4_r32_project(&expected, {1, 2, 3, 1}, 0, 0, 640, 480, id, st, 0, 1);
    EXPECT_EQ(mox_vector4_r32_project(&got, {1, 2, 3, 1}, 0, 0, 640, 480, t, s, 0, 1), 1);
    EXPECT_EQ(got.x, expected.x);
    EXPECT_EQ(got.y, expected.y);
    EXPECT_EQ(got.z, expected.z);
    // A failed coordinate transform leaves the zero-filled intermediate.
    EXPECT_EQ(mox_vector4_r32_project(&out, {0, 0, 0, 0}, 0, 0, 640, 480, id, id, 0.25f, 1), 1);
    EXPECT_EQ(out.x, 320.0f);
    EXPECT_EQ(out.y, 240.0f);
    EXPECT_EQ(out.z, 0.25f);
}

TEST(Vector4Unproject, GoesBackThroughTheInverse) {
    mox_matrix_4x4_r32 id = identity4();
    mox_vector4_r32 out;
    EXPECT_EQ(mox_vector4_r32_unproject(&out, {320, 240, 1, 99}, 0, 0, 640, 480, id, id, 0, 1), 1);
    EXPECT_EQ(out.x, 0.0f);
    EXPECT_EQ(out.y, 0.0f);
    EXPECT_EQ(out.z, 1.0f);
    EXPECT_EQ(out.w, 0.0f);
    // The intermediate's w is 1: with the inverse translation (-3, 0, 0) it brings e = -3 into every
    // row, so d = 1 - 3 and x = -3 / -2.
    mox_matrix_4x4_r32 t;
    mox_matrix_4x4_r32_translation(&t, 3, 0, 0);
    EXPECT_EQ(mox_vector4_r32_unproject(&out, {320, 240, 1, 0}, 0, 0, 640, 480, t, id, 0, 1), 1);
    EXPECT_EQ(out.x, 1.5f);
    EXPECT_EQ(out.y, 1.5f);
    EXPECT_EQ(out.z, 1.0f);
    EXPECT_EQ(out.w, 1.5f);
    // A singular product: the inverse fails, the last step fails, and x, y, z stay 1.
    mox_matrix_4x4_r32 zero{};
    out = {5, 5, 5, 5};
    EXPECT_EQ(mox_vector4_r32_unproject(&out, {320, 240, 1, 0}, 0, 0, 640, 480, zero, id, 0, 1), 0);
    EXPECT_EQ(out.x, 1.0f);
    EXPECT_EQ(out.y, 1.0f);
    EXPECT_EQ(out.z, 1.0f);
    EXPECT_EQ(out.w, 5.0f);
}

TEST(Matrix, NullOutputsFailSilently) {
    ErrorListener listener;
    mox_matrix_2x2_r32 a2{};
    mox_matrix_3x3_r32 a3{};
    mox_matrix_4x4_r32 a4 = identity4();
    EXPECT_EQ(mox_matrix_2x2_r32_identity(nullptr), 0);
    EXPECT_EQ(mox_matrix_2x2_r32_multiply(nullptr, a2, a2), 0);
    EXPECT_EQ(mox_matrix_2x2_r32_transpose(nullptr, a2), 0);
    EXPECT_EQ(mox_matrix_3x3_r32_identity(nullptr), 0);
    EXPECT_EQ(mox_matrix_3x3_r32_multiply(nullptr, a3, a3), 0);
    EXPECT_EQ(mox_matrix_3x3_r32_transpose(nullptr, a3), 0);
    EXPECT_EQ(mox_matrix_3x3_r32_translation(nullptr, 1, 2), 0);
    EXPECT_EQ(mox_matrix_3x3_r32_rotation(nullptr, 30), 0);
    EXPECT_EQ(mox_matrix_3x3_r32_scaling(nullptr, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_identity(nullptr), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_multiply(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_multiply_transpose(nullptr, a4, a4), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_transpose(nullptr, a4), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_translation(nullptr, 1, 2, 3), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_scaling(nullptr, 1, 2, 3), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_x(nullptr, 30), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_y(nullptr, 30), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_z(nullptr, 30), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_xyz(nullptr, 1, 2, 3), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_axis(nullptr, 0, 0, 1, 30), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_rotation_quaternion(nullptr, 0, 0, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_transformation(nullptr, 0, 0, 0, 0, 0, 0, 1, 1, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_lh(nullptr, {0, 0, 1}, {0, 0, 0}, {0, 1, 0}), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_look_at_rh(nullptr, {0, 0, 1}, {0, 0, 0}, {0, 1, 0}), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_lh(nullptr, 0, 0, 1, 1, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_rh(nullptr, 0, 0, 1, 1, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_center_lh(nullptr, 0, 0, 1, 1, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_ortho_center_rh(nullptr, 0, 0, 1, 1, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_screen_lh(nullptr, 0, 0, 1, 1, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_screen_rh(nullptr, 0, 0, 1, 1, 0, 1), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_lh(nullptr, 0, 0, 1, 1, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_rh(nullptr, 0, 0, 1, 1, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_center_lh(nullptr, 0, 0, 1, 1, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_center_rh(nullptr, 0, 0, 1, 1, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_fov_lh(nullptr, 1, 1, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_perspective_fov_rh(nullptr, 1, 1, 1, 2), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_reflect(nullptr, {0, 1, 0, 0}), 0);
    EXPECT_EQ(mox_matrix_4x4_r32_shadow(nullptr, {0, 1, 0, 0}, {0, 1, 0, 0}), 0);
    EXPECT_EQ(mox_vector4_r32_project(nullptr, {0, 0, 1, 1}, 0, 0, 1, 1, a4, a4, 0, 1), 0);
    EXPECT_EQ(mox_vector4_r32_unproject(nullptr, {0, 0, 1, 1}, 0, 0, 1, 1, a4, a4, 0, 1), 0);
    EXPECT_TRUE(listener.silent());
}
