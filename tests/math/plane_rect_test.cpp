#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

template <typename Rect>
void expect_rect(const Rect& r, decltype(r.left) left, decltype(r.left) top, decltype(r.left) right,
                 decltype(r.left) bottom) {
    EXPECT_EQ(r.left, left);
    EXPECT_EQ(r.top, top);
    EXPECT_EQ(r.right, right);
    EXPECT_EQ(r.bottom, bottom);
}

void expect_plane(const mox_plane_r32& p, float a, float b, float c, float d) {
    EXPECT_EQ(p.a, a);
    EXPECT_EQ(p.b, b);
    EXPECT_EQ(p.c, c);
    EXPECT_EQ(p.d, d);
}

} // namespace

TEST(PlaneRectLayout, RecordsHaveTheirFieldsInOrder) {
    EXPECT_EQ(sizeof(mox_plane_r32), 16u);
    EXPECT_EQ(offsetof(mox_plane_r32, d), 12u);
    EXPECT_EQ(sizeof(mox_rect2_i32), 16u);
    EXPECT_EQ(offsetof(mox_rect2_i32, right), 8u);
    EXPECT_EQ(sizeof(mox_rect2_r32), 16u);
    EXPECT_EQ(offsetof(mox_rect2_r32, bottom), 12u);
    EXPECT_EQ(sizeof(mox_rect2_f32), 16u);
    EXPECT_EQ(offsetof(mox_rect2_f32, top), 4u);
    EXPECT_EQ(sizeof(mox_face2_i32), 24u);
    EXPECT_EQ(offsetof(mox_face2_i32, x3), 16u);
}

TEST(Plane, Dots) {
    mox_plane_r32 p{1, 2, 3, 4};
    EXPECT_EQ(mox_plane_r32_dot(p, {1, 1, 1, 2}), 14.0f);
    EXPECT_EQ(mox_plane_r32_dot_coord(p, {1, 1, 1}), 10.0f);
    EXPECT_EQ(mox_plane_r32_dot_normal(p, {1, 1, 1}), 6.0f);
}

TEST(Plane, NormalizeDividesByTheTrueRoot) {
    mox_plane_r32 p{9, 9, 9, 9};
    EXPECT_EQ(mox_plane_r32_normalize(&p, {0, 3, 4, 10}), 1);
    expect_plane(p, 0, 0.6f, 0.8f, 2);
    EXPECT_EQ(mox_plane_r32_normalize(&p, {0, 0, 0, 5}), 0);
    expect_plane(p, 0, 0.6f, 0.8f, 2);
    EXPECT_EQ(mox_plane_r32_normalize(&p, p), 1); // the output may be the operand
    expect_plane(p, 0, 0.6f / 1.0f, 0.8f / 1.0f, 2.0f / 1.0f);
}

TEST(Plane, FromPointNormalIgnoresThePointInD) {
    mox_plane_r32 p;
    // Intended: d is minus the sum of squares of the normal.
    EXPECT_EQ(mox_plane_r32_from_point_normal(&p, {1, 2, 3}, {2, 0, 1}), 1);
    expect_plane(p, 1, 2, 3, -5);
}

TEST(Plane, FromPointsKeepsTheFirstPointAndTheUnrootedNormal) {
    mox_plane_r32 p;
    // cross((2,0,0), (0,2,0)) = (0,0,4), normalized by 16 to (0,0,0.25).
    EXPECT_EQ(mox_plane_r32_from_points(&p, {1, 1, 1}, {3, 1, 1}, {1, 3, 1}), 1);
    expect_plane(p, 1, 1, 1, -0.0625f);
    // Collinear points: the failed normalize leaves a zero normal, so d is -0.
    EXPECT_EQ(mox_plane_r32_from_points(&p, {1, 2, 3}, {2, 4, 6}, {3, 6, 9}), 1);
    expect_plane(p, 1, 2, 3, 0);
    EXPECT_TRUE(std::signbit(p.d));
}

TEST(Plane, IntersectLine) {
    mox_plane_r32 z5{0, 0, 1, -5};
    mox_vector3_r32 v{9, 9, 9};
    EXPECT_EQ(mox_plane_r32_intersect_line(&v, z5, {0, 0, 0}, {0, 0, 10}), 1);
    EXPECT_EQ(v.x, 0.0f);
    EXPECT_EQ(v.y, 0.0f);
    EXPECT_EQ(v.z, 5.0f);
    // The line is infinite: the point may lie beyond p2.
    EXPECT_EQ(mox_plane_r32_intersect_line(&v, z5, {1, 2, 0}, {1, 2, 1}), 1);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 2.0f);
    EXPECT_EQ(v.z, 5.0f);
    v = {9, 9, 9};
    EXPECT_EQ(mox_plane_r32_intersect_line(&v, z5, {0, 0, 0}, {1, 0, 0}), 0);
    EXPECT_EQ(v.x, 9.0f);
    EXPECT_EQ(v.z, 9.0f);
}

TEST(Plane, Transform4IsTheVectorTransform) {
    mox_matrix_4x4_r32 m{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
    mox_plane_r32 p;
    EXPECT_EQ(mox_plane_r32_transform4(&p, {1, 2, 3, 4}, m), 1);
    expect_plane(p, 90, 100, 110, 120);
}

TEST(Rect, Set) {
    mox_rect2_i32 ri;
    EXPECT_EQ(mox_rect2_i32_set(&ri, 1, -2, 3, 4), 1);
    expect_rect(ri, 1, -2, 3, 4);
    mox_rect2_f32 rf;
    EXPECT_EQ(mox_rect2_f32_set(&rf, 65536, -1, 0x7FFFFFFF, 4), 1);
    expect_rect(rf, 65536, -1, 0x7FFFFFFF, 4);
    mox_rect2_r32 rr;
    EXPECT_EQ(mox_rect2_r32_set(&rr, 0.5f, -2, 3, 4.25f), 1);
    expect_rect(rr, 0.5f, -2.0f, 3.0f, 4.25f);
}

TEST(Rect, ConversionsBetweenNumberForms) {
    mox_rect2_i32 ri;
    EXPECT_EQ(mox_rect2_i32_from_rect_r32(&ri, {1.9f, -1.9f, 2.5f, -0.5f}), 1);
    expect_rect(ri, 1, -1, 2, 0);
    // Our choice for what no integer holds: the machine's integer-indefinite value.
    EXPECT_EQ(mox_rect2_i32_from_rect_r32(&ri, {kNaN, 3e9f, -3e9f, 2147483520.0f}), 1);
    expect_rect(ri, INT32_MIN, INT32_MIN, INT32_MIN, 2147483520);
    // Arithmetic shift: fractions go toward minus infinity.
    EXPECT_EQ(mox_rect2_i32_from_rect_f32(&ri, {-1, 98304, -65536, -65537}), 1);
    expect_rect(ri, -1, 1, -1, -2);

    mox_rect2_r32 rr;
    EXPECT_EQ(mox_rect2_r32_from_rect_i32(&rr, {1, -2, 3, 16777217}), 1);
    expect_rect(rr, 1.0f, -2.0f, 3.0f, 16777216.0f);
    EXPECT_EQ(mox_rect2_r32_from_rect_f32(&rr, {98304, -1, 0x7FFF0000, 0}), 1);
    expect_rect(rr, 1.5f, -1.52587890625e-5f, 32767.0f, 0.0f);

    mox_rect2_f32 rf;
    // The high 16 bits fall off. Intended.
    EXPECT_EQ(mox_rect2_f32_from_rect_i32(&rf, {1, -1, 0x12345, 32767}), 1);
    expect_rect(rf, 65536, -65536, 0x23450000, 0x7FFF0000);
    EXPECT_EQ(mox_rect2_f32_from_rect_r32(&rf, {1.5f, -0.00001f, -2.75f, 1e10f}), 1);
    expect_rect(rf, 98304, 0, -180224, INT32_MIN);
}

TEST(Rect, FixedPointRoundTripWithinSixteenBits) {
    mox_rect2_f32 rf;
    mox_rect2_i32 ri;
    EXPECT_EQ(mox_rect2_f32_from_rect_i32(&rf, {-32768, 32767, 0, -1}), 1);
    EXPECT_EQ(mox_rect2_i32_from_rect_f32(&ri, rf), 1);
    expect_rect(ri, -32768, 32767, 0, -1);
    mox_rect2_r32 rr;
    EXPECT_EQ(mox_rect2_f32_from_rect_r32(&rf, {1.5f, -0.25f, 100.125f, 0}), 1);
    EXPECT_EQ(mox_rect2_r32_from_rect_f32(&rr, rf), 1);
    expect_rect(rr, 1.5f, -0.25f, 100.125f, 0.0f);
}

TEST(Rect, IntegerIntersectNeedsExtentInOneDirectionOnly) {
    mox_rect2_i32 r;
    // Intended: they miss each other horizontally, yet bottom > top makes it true.
    EXPECT_EQ(mox_rect2_i32_intersect(&r, {0, 0, 10, 10}, {20, 0, 30, 10}), 1);
    expect_rect(r, 20, 0, 10, 10);
    EXPECT_EQ(mox_rect2_i32_intersect(&r, {0, 0, 10, 10}, {5, 5, 15, 15}), 1);
    expect_rect(r, 5, 5, 10, 10);
    EXPECT_EQ(mox_rect2_i32_intersect(&r, {0, 0, 10, 10}, {10, 10, 20, 20}), 0);
    expect_rect(r, 0, 0, 0, 0);
    mox_rect2_i32 a{0, 0, 10, 10};
    EXPECT_EQ(mox_rect2_i32_intersect(&a, a, {2, 3, 20, 4}), 1);
    expect_rect(a, 2, 3, 10, 4);
}

TEST(Rect, FixedAndFloatIntersectAreTheOtherWayAbout) {
    // Intended: a proper overlap is false with zeros, a miss is true and keeps the inverted edges.
    mox_rect2_f32 f{9, 9, 9, 9};
    EXPECT_EQ(mox_rect2_f32_intersect(&f, {0, 0, 10, 10}, {5, 5, 15, 15}), 0);
    expect_rect(f, 0, 0, 0, 0);
    EXPECT_EQ(mox_rect2_f32_intersect(&f, {0, 0, 10, 10}, {20, 0, 30, 10}), 1);
    expect_rect(f, 20, 0, 10, 10);
    EXPECT_EQ(mox_rect2_f32_intersect(&f, {0, 0, 10, 10}, {10, 10, 20, 20}), 0);
    expect_rect(f, 0, 0, 0, 0);
    mox_rect2_r32 r{9, 9, 9, 9};
    EXPECT_EQ(mox_rect2_r32_intersect(&r, {0, 0, 10, 10}, {5, 5, 15, 15}), 0);
    expect_rect(r, 0.0f, 0.0f, 0.0f, 0.0f);
    EXPECT_EQ(mox_rect2_r32_intersect(&r, {0, 0, 10, 10}, {0, 20, 10, 30}), 1);
    expect_rect(r, 0.0f, 20.0f, 10.0f, 10.0f);
    // Unordered edges count as crossed.
    EXPECT_EQ(mox_rect2_r32_intersect(&r, {kNaN, 0, 10, 10}, {0, 0, 10, 10}), 1);
    EXPECT_TRUE(std::isnan(r.left));
    EXPECT_EQ(r.top, 0.0f);
    EXPECT_EQ(r.right, 10.0f);
    EXPECT_EQ(r.bottom, 10.0f);
}

TEST(Rect, UnionIgnoresASecondRectangleWithAnyZero) {
    mox_rect2_i32 r;
    EXPECT_EQ(mox_rect2_i32_union(&r, {1, 1, 5, 5}, {0, 2, 8, 8}), 1);
    expect_rect(r, 1, 1, 5, 5);
    EXPECT_EQ(mox_rect2_i32_union(&r, {1, 1, 5, 5}, {2, -3, 8, 4}), 1);
    expect_rect(r, 1, -3, 8, 5);
    EXPECT_EQ(mox_rect2_i32_union(&r, {0, 0, 0, 0}, {1, 1, 2, 2}), 1);
    expect_rect(r, 0, 0, 2, 2);
    r = {9, 9, 9, 9};
    EXPECT_EQ(mox_rect2_i32_union(&r, {0, 0, 0, 0}, {0, 1, 2, 2}), 0);
    expect_rect(r, 0, 0, 0, 0);
    mox_rect2_f32 f;
    EXPECT_EQ(mox_rect2_f32_union(&f, {65536, 65536, 5 << 16, 5 << 16}, {-65536, 2, 3, 8 << 16}), 1);
    expect_rect(f, -65536, 2, 5 << 16, 8 << 16);
    f = {9, 9, 9, 9};
    EXPECT_EQ(mox_rect2_f32_union(&f, {0, 0, 0, 0}, {0, 0, 0, 0}), 0);
    expect_rect(f, 0, 0, 0, 0);
    mox_rect2_r32 rr;
    EXPECT_EQ(mox_rect2_r32_union(&rr, {1, 1, 5, 5}, {0.5f, 2, 8, 0.0f}), 1);
    expect_rect(rr, 1.0f, 1.0f, 5.0f, 5.0f);
    EXPECT_EQ(mox_rect2_r32_union(&rr, {1, 1, 5, 5}, {0.5f, 2, 8, 0.25f}), 1);
    expect_rect(rr, 0.5f, 1.0f, 8.0f, 5.0f);
    rr = {9, 9, 9, 9};
    EXPECT_EQ(mox_rect2_r32_union(&rr, {0, -0.0f, 0, 0}, {0, 0, 0, 0}), 0);
    expect_rect(rr, 0.0f, 0.0f, 0.0f, 0.0f);
}

TEST(Rect, EmptyMeansAllFourZero) {
    EXPECT_EQ(mox_rect2_i32_empty({0, 0, 0, 0}), 1);
    EXPECT_EQ(mox_rect2_i32_empty({5, 5, 5, 5}), 0);
    EXPECT_EQ(mox_rect2_i32_empty({0, 0, 0, 1}), 0);
    EXPECT_EQ(mox_rect2_f32_empty({0, 0, 0, 0}), 1);
    EXPECT_EQ(mox_rect2_f32_empty({1, 0, 0, 0}), 0);
    EXPECT_EQ(mox_rect2_r32_empty({0, -0.0f, 0, 0}), 1);
    EXPECT_EQ(mox_rect2_r32_empty({0, 0, kNaN, 0}), 0);
    EXPECT_EQ(mox_rect2_r32_empty({5, 5, 5, 5}), 0);
}

TEST(Face, SortYOrdersCornersByRisingY) {
    mox_face2_i32 f{10, 3, 20, 1, 30, 2};
    EXPECT_EQ(mox_face2_i32_sort_y(&f), 1);
    EXPECT_EQ(f.x1, 20);
    EXPECT_EQ(f.y1, 1);
    EXPECT_EQ(f.x2, 30);
    EXPECT_EQ(f.y2, 2);
    EXPECT_EQ(f.x3, 10);
    EXPECT_EQ(f.y3, 3);
    mox_face2_i32 g{10, 3, 20, 2, 30, 1};
    EXPECT_EQ(mox_face2_i32_sort_y(&g), 1);
    EXPECT_EQ(g.x1, 30);
    EXPECT_EQ(g.x2, 20);
    EXPECT_EQ(g.x3, 10);
    // Equal y keep their order.
    mox_face2_i32 h{1, 5, 2, 5, 3, 5};
    EXPECT_EQ(mox_face2_i32_sort_y(&h), 1);
    EXPECT_EQ(h.x1, 1);
    EXPECT_EQ(h.x2, 2);
    EXPECT_EQ(h.x3, 3);
}

TEST(Face, SwapCopiesTheFirstOverTheSecondOnly) {
    mox_face2_i32 a{1, 2, 3, 4, 5, 6}, b{7, 8, 9, 10, 11, 12};
    EXPECT_EQ(mox_face2_i32_swap(&a, &b), 1);
    // Intended: both end equal to the first.
    EXPECT_EQ(std::memcmp(&a, &b, sizeof a), 0);
    EXPECT_EQ(a.x1, 1);
    EXPECT_EQ(a.y3, 6);
}

TEST(PlaneRect, NullPointersFailSilently) {
    ErrorListener listener;
    mox_face2_i32 face{};
    EXPECT_EQ(mox_plane_r32_normalize(nullptr, {0, 0, 1, 0}), 0);
    EXPECT_EQ(mox_plane_r32_from_point_normal(nullptr, {1, 2, 3}, {0, 0, 1}), 0);
    EXPECT_EQ(mox_plane_r32_from_points(nullptr, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 0);
    EXPECT_EQ(mox_plane_r32_intersect_line(nullptr, {0, 0, 1, 0}, {0, 0, 0}, {0, 0, 1}), 0);
    EXPECT_EQ(mox_plane_r32_transform4(nullptr, {0, 0, 1, 0}, {}), 0);
    EXPECT_EQ(mox_rect2_i32_set(nullptr, 1, 2, 3, 4), 0);
    EXPECT_EQ(mox_rect2_f32_set(nullptr, 1, 2, 3, 4), 0);
    EXPECT_EQ(mox_rect2_r32_set(nullptr, 1, 2, 3, 4), 0);
    EXPECT_EQ(mox_rect2_i32_from_rect_r32(nullptr, {}), 0);
    EXPECT_EQ(mox_rect2_i32_from_rect_f32(nullptr, {}), 0);
    EXPECT_EQ(mox_rect2_r32_from_rect_i32(nullptr, {}), 0);
    EXPECT_EQ(mox_rect2_r32_from_rect_f32(nullptr, {}), 0);
    EXPECT_EQ(mox_rect2_f32_from_rect_i32(nullptr, {}), 0);
    EXPECT_EQ(mox_rect2_f32_from_rect_r32(nullptr, {}), 0);
    EXPECT_EQ(mox_face2_i32_sort_y(nullptr), 0);
    EXPECT_EQ(mox_face2_i32_swap(nullptr, &face), 0);
    EXPECT_EQ(mox_face2_i32_swap(&face, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}
