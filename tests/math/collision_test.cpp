#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

void expect_vector(const mox_vector3_r32& v, float x, float y, float z) {
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

template <typename Number> void expect_four(const Number* out, Number a, Number b, Number c, Number d) {
    EXPECT_EQ(out[0], a);
    EXPECT_EQ(out[1], b);
    EXPECT_EQ(out[2], c);
    EXPECT_EQ(out[3], d);
}

} // namespace

TEST(CollisionRectPoint, AllFourBoundsAreInclusive) {
    ErrorListener listener;
    mox_rect2_i32 rect{0, 0, 10, 20};
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 5, 5), 1);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 0, 0), 1);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 10, 20), 1);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 0, 20), 1);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 10, 7), 1);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, -1, 5), 0);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 11, 5), 0);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 5, -1), 0);
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32(rect, 5, 21), 0);
    // Edges are not reordered: a reversed rectangle holds nothing.
    EXPECT_EQ(mox_collision_rect2_i32_point2_i32({10, 0, 0, 20}, 5, 5), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionRectPoint, FloatFormIsInclusiveAndRefusesNaN) {
    ErrorListener listener;
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 0.5f, 1), 1);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 0, 0), 1);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 1, 2), 1);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 1, 0), 1);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 0, 2), 1);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 1.0000001f, 1), 0);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 0.5f, -0.0000001f), 0);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, kNaN, 1), 0);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, 2, 0.5f, kNaN), 0);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(kNaN, 0, 1, 2, 0.5f, 1), 0);
    EXPECT_EQ(mox_collision_rect2_r32_vector2_r32(0, 0, 1, kNaN, 0.5f, 1), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionLine, CrossingLinesOfTheUsualTestMissHere) {
    // The usual segment test meets at (5, 0); this pairing gives a zero determinant. Intended.
    ErrorListener listener;
    mox_point2_i32 p{77, 77};
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(&p, 0, 0, 10, 0, 5, -5, 5, 5), 0);
    EXPECT_EQ(p.x, 77);
    EXPECT_EQ(p.y, 77);
    mox_vector2_r32 v{7, 7};
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(&v, 0, 0, 10, 0, 5, -5, 5, 5), 0);
    EXPECT_EQ(v.x, 7.0f);
    EXPECT_EQ(v.y, 7.0f);
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(nullptr, 0, 0, 10, 0, 5, -5, 5, 5), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionLine, ParallelLinesOfTheUsualTestHitHere) {
    // Two parallel lines never meet in the usual test; here t = u = 0.5 and the point is on the first.
    ErrorListener listener;
    mox_point2_i32 p{};
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(&p, 0, 0, 2, 0, 2, 2, 0, 2), 1);
    EXPECT_EQ(p.x, 1);
    EXPECT_EQ(p.y, 0);
    mox_vector2_r32 v{};
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(&v, 0, 0, 2, 0, 2, 2, 0, 2), 1);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 0.0f);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionLine, NullOutStillReportsTrue) {
    ErrorListener listener;
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(nullptr, 0, 0, 2, 0, 2, 2, 0, 2), 1);
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(nullptr, 0, 0, 2, 0, 2, 2, 0, 2), 1);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionLine, IntegerPointIsTruncatedTowardZero) {
    mox_point2_i32 p{};
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(&p, 0, 0, 3, 0, 3, 2, 0, 2), 1);
    EXPECT_EQ(p.x, 1); // 1.5
    EXPECT_EQ(p.y, 0);
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(&p, 0, 0, -3, 0, -3, 2, 0, 2), 1);
    EXPECT_EQ(p.x, -1); // -1.5
    EXPECT_EQ(p.y, 0);
    mox_vector2_r32 v{};
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(&v, 0, 0, 3, 0, 3, 2, 0, 2), 1);
    EXPECT_EQ(v.x, 1.5f);
    EXPECT_EQ(v.y, 0.0f);
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(&v, 0.5f, 0.25f, 1.5f, 0.25f, 1.5f, 2.25f, 0.5f, 2.25f), 1);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 0.25f);
}

TEST(CollisionLine, ParameterBoundsAreInclusive) {
    // t = 1 and u = 0.5: the point is the end of the first line.
    mox_point2_i32 p{};
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(&p, 0, 0, 2, 0, 2, 2, 2, 4), 1);
    EXPECT_EQ(p.x, 2);
    EXPECT_EQ(p.y, 0);
    // t = 0 and u = 0.5.
    EXPECT_EQ(mox_collision_line2_i32_line2_i32(&p, 0, 0, 2, 0, 0, 2, -2, 0), 1);
    EXPECT_EQ(p.x, 0);
    EXPECT_EQ(p.y, 0);
    // t = 1 and u = -1 fails.
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(nullptr, 0, 0, 2, 0, 2, 2, 2, -2), 0);
}

TEST(CollisionLine, NaNFails) {
    mox_vector2_r32 v{3, 3};
    EXPECT_EQ(mox_collision_line2_r32_line2_r32(&v, kNaN, 0, 2, 0, 2, 2, 0, 2), 0);
    EXPECT_EQ(v.x, 3.0f);
}

TEST(CollisionRectLine, LineAcrossTheRectangleIsNotClipped) {
    ErrorListener listener;
    int32_t out[4] = {9, 9, 9, 9};
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, -5, 5, 15, 5), 0);
    expect_four<int32_t>(out, 9, 9, 9, 9);
    // A vertical line through the whole rectangle is not clipped either. Intended.
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, 5, -5, 5, 15), 0);
    expect_four<int32_t>(out, 9, 9, 9, 9);
    float outf[4] = {9, 9, 9, 9};
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(outf, 0, 0, 10, 10, -5, 5, 15, 5), 0);
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(outf, 0, 0, 10, 10, 5, -5, 5, 15), 0);
    expect_four<float>(outf, 9, 9, 9, 9);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionRectLine, LineInsideIsFalse) {
    int32_t out[4] = {9, 9, 9, 9};
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, 2, 2, 8, 8), 0);
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, 0, 0, 10, 10), 0);
    expect_four<int32_t>(out, 9, 9, 9, 9);
    float outf[4] = {9, 9, 9, 9};
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(outf, 0, 0, 10, 10, 2, 2, 8, 8), 0);
    expect_four<float>(outf, 9, 9, 9, 9);
}

TEST(CollisionRectLine, LineAboveTheRectangleMovesAnEndOntoTheTop) {
    // The usual clipper rejects this line altogether; here its first end lands on the top side.
    int32_t out[4] = {};
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, 10, -10, 0, -10), 1);
    expect_four<int32_t>(out, 5, 0, 0, -10);
    float outf[4] = {};
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(outf, 0, 0, 10, 10, 10, -10, 0, -10), 1);
    expect_four<float>(outf, 5, 0, 0, -10);
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(nullptr, {0, 0, 10, 10}, 10, -10, 0, -10), 1);
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(nullptr, 0, 0, 10, 10, 10, -10, 0, -10), 1);
}

TEST(CollisionRectLine, AnEndOnTheLeftIsTriedAgainstTheRightSide) {
    int32_t out[4] = {};
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, -10, 10, -10, 0), 1);
    expect_four<int32_t>(out, 10, 5, -10, 0);
    float outf[4] = {};
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(outf, 0, 0, 10, 10, -10, 10, -10, 0), 1);
    expect_four<float>(outf, 10, 5, -10, 0);
}

TEST(CollisionRectLine, SecondEndMovesWithTheFirstAsItStands) {
    // The first end is inside; the second, right of the rectangle, is tried against the left side and
    // lands at t = 0.8 along it. The integer form truncates 1.99999988 to 1.
    int32_t out[4] = {};
    EXPECT_EQ(mox_collision_rect4_i32_line2_i32(out, {0, 0, 10, 10}, 5, 0, 20, 10), 1);
    expect_four<int32_t>(out, 5, 0, 0, 1);
    float outf[4] = {};
    EXPECT_EQ(mox_collision_rect4_r32_line2_r32(outf, 0, 0, 10, 10, 5, 0, 20, 10), 1);
    expect_four<float>(outf, 5, 0, 0, std::nextafter(2.0f, 0.0f));
}

TEST(CollisionRaySphere, RayFromOutsideGivesTheNearPoint) {
    ErrorListener listener;
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_sphere3_r32(&out, 0, 0, 0, 0, 0, 1, 0, 0, 10, 2), 1);
    expect_vector(out, 0, 0, 8);
    EXPECT_EQ(mox_collision_ray3_r32_sphere3_r32(nullptr, 0, 0, 0, 0, 0, 1, 0, 0, 10, 2), 1);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionRaySphere, RayFromTheCentreGivesAPointBehindTheOrigin) {
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_sphere3_r32(&out, 1, 1, 1, 1, 0, 0, 1, 1, 1, 2), 1);
    expect_vector(out, -1, 1, 1);
}

TEST(CollisionRaySphere, MissesAndSpheresBehind) {
    mox_vector3_r32 out{5, 5, 5};
    EXPECT_EQ(mox_collision_ray3_r32_sphere3_r32(&out, 0, 0, 0, 0, 0, 1, 5, 0, 10, 2), 0);
    EXPECT_EQ(mox_collision_ray3_r32_sphere3_r32(&out, 0, 0, 0, 0, 0, 1, 0, 0, -10, 2), 0);
    expect_vector(out, 5, 5, 5);
    // Grazing: a discriminant of exactly zero still collides.
    EXPECT_EQ(mox_collision_ray3_r32_sphere3_r32(&out, 2, 0, 0, 0, 0, 1, 0, 0, 10, 2), 1);
    expect_vector(out, 2, 0, 10);
}

TEST(CollisionRayBox, OriginInsideReturnsTheOrigin) {
    ErrorListener listener;
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, 5, 6, 7, 0, 0, 1, 0, 0, 0, 10, 10, 10), 1);
    expect_vector(out, 5, 6, 7);
    // The null write is guarded; the answer stays true.
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(nullptr, 5, 6, 7, 0, 0, 1, 0, 0, 0, 10, 10, 10), 1);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionRayBox, RayFromOutsideGivesTheEntryPoint) {
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, -5, 5, 5, 1, 0, 0, 0, 0, 0, 10, 10, 10), 1);
    expect_vector(out, 0, 5, 5);
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, 5, 5, -4, 0, 0.5f, 2, 0, 0, 0, 10, 10, 10), 1);
    expect_vector(out, 5, 6, 0);
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(nullptr, -5, 5, 5, 1, 0, 0, 0, 0, 0, 10, 10, 10), 1);
    // Pointing away, or not moving along the outside axis.
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, -5, 5, 5, -1, 0, 0, 0, 0, 0, 10, 10, 10), 0);
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, -5, 5, 5, 0, 1, 0, 0, 0, 0, 10, 10, 10), 0);
}

TEST(CollisionRayBox, UpperTestOfEveryAxisUsesTheOriginsX) {
    // The origin lies inside the box, but the maximum y and z are below its x, so those axes count as
    // outside. Intended.
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, 10, 2, 2, 0, 1, 0, 0, 0, 0, 20, 4, 4), 1);
    expect_vector(out, 10, 4, 2);
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, 10, 2, 2, 0, -1, 0, 0, 0, 0, 20, 4, 4), 0);
}

TEST(CollisionRayBox, FailedComponentLeavesEarlierOnesWritten) {
    mox_vector3_r32 out{99, 99, 99};
    EXPECT_EQ(mox_collision_ray3_r32_bbox3_r32(&out, -5, -5, 5, 1, 0, 0, 0, 0, 0, 10, 10, 10), 0);
    expect_vector(out, 0, -5, 99);
}

TEST(CollisionRayFace, FrontFaceGivesThePoint) {
    ErrorListener listener;
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, 0.25f, 0.25f, 0, 0, 0, 1, 0, 0, 5, 0, 1, 5, 1, 0, 5), 1);
    expect_vector(out, 0.25f, 0.25f, 5);
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(nullptr, 0.25f, 0.25f, 0, 0, 0, 1, 0, 0, 5, 0, 1, 5, 1, 0, 5),
              1);
    EXPECT_TRUE(listener.silent());
}

TEST(CollisionRayFace, BackFaceAndEdgeOnMiss) {
    mox_vector3_r32 out{7, 7, 7};
    // The same triangle wound the other way: the ray passes through it and still misses.
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, 0.25f, 0.25f, 0, 0, 0, 1, 0, 0, 5, 1, 0, 5, 0, 1, 5), 0);
    // Along the triangle's plane the determinant is zero.
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, -1, 0.25f, 5, 1, 0, 0, 0, 0, 5, 0, 1, 5, 1, 0, 5), 0);
    expect_vector(out, 7, 7, 7);
}

TEST(CollisionRayFace, PointsOutsideTheTriangleMiss) {
    mox_vector3_r32 out{7, 7, 7};
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, 0.25f, -0.5f, 0, 0, 0, 1, 0, 0, 5, 0, 1, 5, 1, 0, 5), 0);
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, -0.5f, 0.25f, 0, 0, 0, 1, 0, 0, 5, 0, 1, 5, 1, 0, 5), 0);
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, 1, 1, 0, 0, 0, 1, 0, 0, 5, 0, 1, 5, 1, 0, 5), 0);
    expect_vector(out, 7, 7, 7);
}

TEST(CollisionRayFace, TriangleBehindTheOriginCollides) {
    mox_vector3_r32 out{};
    EXPECT_EQ(mox_collision_ray3_r32_face3_r32(&out, 0.25f, 0.25f, 10, 0, 0, 1, 0, 0, 5, 0, 1, 5, 1, 0, 5),
              1);
    expect_vector(out, 0.25f, 0.25f, 5);
}
