// Planes, rectangles in their three number forms, and integer triangles: silent value operations.
// One template serves the three rectangle forms; only the way intersect decides its result and the
// conversions between forms depend on the form.
#include <mox/math.h>

#include <cmath>
#include <cstddef>

#include "math/lanes.h"

static_assert(sizeof(mox_plane_r32) == 16 && offsetof(mox_plane_r32, d) == 12);
static_assert(sizeof(mox_rect2_i32) == 16 && offsetof(mox_rect2_i32, bottom) == 12);
static_assert(sizeof(mox_rect2_r32) == 16 && offsetof(mox_rect2_r32, bottom) == 12);
static_assert(sizeof(mox_rect2_f32) == 16 && offsetof(mox_rect2_f32, bottom) == 12);
static_assert(sizeof(mox_face2_i32) == 24 && offsetof(mox_face2_i32, y3) == 20);

namespace mox {
namespace {

mox_vector3_r32 normal_of(const mox_plane_r32& p) { return {p.a, p.b, p.c}; }
mox_vector4_r32 as_vector(const mox_plane_r32& p) { return {p.a, p.b, p.c, p.d}; }
mox_vector3_r32 minus(const mox_vector3_r32& a, const mox_vector3_r32& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

mox_plane_r32 from_point_normal(const mox_vector3_r32& point, const mox_vector3_r32& n) {
    // d ignores the point altogether. Intended.
    return {point.x, point.y, point.z, -(n.x * n.x + n.y * n.y + n.z * n.z)};
}

// The number form of a rectangle: its record and the way its intersect decides.
template <typename Rect> struct Form;
template <> struct Form<mox_rect2_i32> {
    using Number = int32_t;
    // True when the overlap has extent in at least one direction, even if the rectangles miss each
    // other in the other one. Intended; the bitmap and window callers stand on it.
    static bool intersect_holds(const mox_rect2_i32& r) { return r.right > r.left || r.bottom > r.top; }
};
template <> struct Form<mox_rect2_f32> {
    using Number = mox_f32;
    // The other way about: true only when the edges cross over. Intended.
    static bool intersect_holds(const mox_rect2_f32& r) { return r.right < r.left || r.bottom < r.top; }
};
template <> struct Form<mox_rect2_r32> {
    using Number = float;
    // As the fixed-point form, and unordered edges (NaN) count as crossed. Intended.
    static bool intersect_holds(const mox_rect2_r32& r) {
        return !(r.left <= r.right) || !(r.top <= r.bottom);
    }
};

template <typename Rect, typename Number = typename Form<Rect>::Number>
mox_bool set(Rect* out, Number left, Number top, Number right, Number bottom) {
    if (out == nullptr)
        return 0;
    *out = {left, top, right, bottom};
    return 1;
}

template <typename Number> Number greater(Number a, Number b) { return b > a ? b : a; }
template <typename Number> Number lesser(Number a, Number b) { return b < a ? b : a; }

template <typename Rect> mox_bool intersect(Rect* out, const Rect& a, const Rect& b) {
    *out = {greater(a.left, b.left), greater(a.top, b.top), lesser(a.right, b.right),
            lesser(a.bottom, b.bottom)};
    if (Form<Rect>::intersect_holds(*out))
        return 1;
    *out = {};
    return 0;
}

template <typename Rect> bool all_non_zero(const Rect& r) {
    return r.left != 0 && r.top != 0 && r.right != 0 && r.bottom != 0;
}
template <typename Rect> bool all_zero(const Rect& r) {
    return r.left == 0 && r.top == 0 && r.right == 0 && r.bottom == 0;
}

// A b with any zero number, a rectangle at the origin included, is ignored altogether. Intended.
template <typename Rect> mox_bool unite(Rect* out, const Rect& a, const Rect& b) {
    Rect r = a;
    if (all_non_zero(b))
        r = {lesser(a.left, b.left), lesser(a.top, b.top), greater(a.right, b.right),
             greater(a.bottom, b.bottom)};
    *out = r;
    if (!all_zero(r))
        return 1;
    *out = {};
    return 0;
}

// Per-number conversions between the forms.
int32_t to_i32(float v) { return truncate_to_i32(v); }
int32_t fixed_to_i32(mox_f32 v) { return v >> 16; } // toward minus infinity
float to_r32(int32_t v) { return static_cast<float>(v); }
float fixed_to_r32(mox_f32 v) { return static_cast<float>(static_cast<double>(v) * 1.52587890625e-5); }
// The high 16 bits fall off. Intended.
mox_f32 to_f32(int32_t v) { return static_cast<mox_f32>(static_cast<uint32_t>(v) << 16); }
mox_f32 to_f32(float v) { return truncate_to_i32(static_cast<double>(v) * 65536.0); }

template <typename To, typename From, typename Convert>
mox_bool convert(To* out, const From& r, Convert number) {
    if (out == nullptr)
        return 0;
    *out = {number(r.left), number(r.top), number(r.right), number(r.bottom)};
    return 1;
}

void exchange_corners(int32_t& xa, int32_t& ya, int32_t& xb, int32_t& yb) {
    if (ya > yb) {
        int32_t x = xa, y = ya;
        xa = xb;
        ya = yb;
        xb = x;
        yb = y;
    }
}

} // namespace
} // namespace mox

MOX_API float mox_plane_r32_dot(mox_plane_r32 plane, mox_vector4_r32 v) {
    return mox::dot(mox::as_vector(plane), v);
}
MOX_API float mox_plane_r32_dot_coord(mox_plane_r32 plane, mox_vector3_r32 v) {
    return plane.a * v.x + plane.b * v.y + plane.c * v.z + plane.d;
}
MOX_API float mox_plane_r32_dot_normal(mox_plane_r32 plane, mox_vector3_r32 v) {
    return plane.a * v.x + plane.b * v.y + plane.c * v.z;
}
MOX_API mox_bool mox_plane_r32_normalize(mox_plane_r32* out, mox_plane_r32 plane) {
    if (out == nullptr)
        return 0;
    // The true root here, unlike the vector normalize.
    float r = static_cast<float>(std::sqrt(static_cast<double>(plane.a) * plane.a +
                                           static_cast<double>(plane.b) * plane.b +
                                           static_cast<double>(plane.c) * plane.c));
    if (r == 0.0f)
        return 0;
    *out = {plane.a / r, plane.b / r, plane.c / r, plane.d / r};
    return 1;
}
MOX_API mox_bool mox_plane_r32_from_point_normal(mox_plane_r32* out, mox_vector3_r32 point,
                                                 mox_vector3_r32 normal) {
    if (out == nullptr)
        return 0;
    *out = mox::from_point_normal(point, normal);
    return 1;
}
MOX_API mox_bool mox_plane_r32_from_points(mox_plane_r32* out, mox_vector3_r32 p1, mox_vector3_r32 p2,
                                           mox_vector3_r32 p3) {
    if (out == nullptr)
        return 0;
    // Collinear points fail the normalize, which writes nothing; the normal then stays zero, so d
    // comes out as -0.
    mox_vector3_r32 n{};
    mox::normalize(&n, mox::cross(mox::minus(p2, p1), mox::minus(p3, p1)));
    *out = mox::from_point_normal(p1, n);
    return 1;
}
MOX_API mox_bool mox_plane_r32_intersect_line(mox_vector3_r32* out, mox_plane_r32 plane, mox_vector3_r32 p1,
                                              mox_vector3_r32 p2) {
    if (out == nullptr)
        return 0;
    mox_vector3_r32 e = mox::minus(p2, p1), n = mox::normal_of(plane);
    float g = mox::dot(n, e);
    if (g == 0.0f)
        return 0;
    float t = (mox::dot(n, p1) + plane.d) / g;
    *out = {p1.x - t * e.x, p1.y - t * e.y, p1.z - t * e.z};
    return 1;
}
MOX_API mox_bool mox_plane_r32_transform4(mox_plane_r32* out, mox_plane_r32 plane, mox_matrix_4x4_r32 m) {
    if (out == nullptr)
        return 0;
    mox_vector4_r32 v = mox::transform(mox::as_vector(plane), m);
    *out = {v.x, v.y, v.z, v.w};
    return 1;
}

MOX_API mox_bool mox_rect2_i32_set(mox_rect2_i32* out, int32_t left, int32_t top, int32_t right,
                                   int32_t bottom) {
    return mox::set(out, left, top, right, bottom);
}
MOX_API mox_bool mox_rect2_f32_set(mox_rect2_f32* out, mox_f32 left, mox_f32 top, mox_f32 right,
                                   mox_f32 bottom) {
    return mox::set(out, left, top, right, bottom);
}
MOX_API mox_bool mox_rect2_r32_set(mox_rect2_r32* out, float left, float top, float right, float bottom) {
    return mox::set(out, left, top, right, bottom);
}
MOX_API mox_bool mox_rect2_i32_from_rect_r32(mox_rect2_i32* out, mox_rect2_r32 rect) {
    return mox::convert(out, rect, [](float v) { return mox::to_i32(v); });
}
MOX_API mox_bool mox_rect2_i32_from_rect_f32(mox_rect2_i32* out, mox_rect2_f32 rect) {
    return mox::convert(out, rect, mox::fixed_to_i32);
}
MOX_API mox_bool mox_rect2_r32_from_rect_i32(mox_rect2_r32* out, mox_rect2_i32 rect) {
    return mox::convert(out, rect, mox::to_r32);
}
MOX_API mox_bool mox_rect2_r32_from_rect_f32(mox_rect2_r32* out, mox_rect2_f32 rect) {
    return mox::convert(out, rect, mox::fixed_to_r32);
}
MOX_API mox_bool mox_rect2_f32_from_rect_i32(mox_rect2_f32* out, mox_rect2_i32 rect) {
    return mox::convert(out, rect, [](int32_t v) { return mox::to_f32(v); });
}
MOX_API mox_bool mox_rect2_f32_from_rect_r32(mox_rect2_f32* out, mox_rect2_r32 rect) {
    return mox::convert(out, rect, [](float v) { return mox::to_f32(v); });
}
MOX_API mox_bool mox_rect2_i32_intersect(mox_rect2_i32* out, mox_rect2_i32 a, mox_rect2_i32 b) {
    return mox::intersect(out, a, b);
}
MOX_API mox_bool mox_rect2_r32_intersect(mox_rect2_r32* out, mox_rect2_r32 a, mox_rect2_r32 b) {
    return mox::intersect(out, a, b);
}
MOX_API mox_bool mox_rect2_f32_intersect(mox_rect2_f32* out, mox_rect2_f32 a, mox_rect2_f32 b) {
    return mox::intersect(out, a, b);
}
MOX_API mox_bool mox_rect2_i32_union(mox_rect2_i32* out, mox_rect2_i32 a, mox_rect2_i32 b) {
    return mox::unite(out, a, b);
}
MOX_API mox_bool mox_rect2_f32_union(mox_rect2_f32* out, mox_rect2_f32 a, mox_rect2_f32 b) {
    return mox::unite(out, a, b);
}
MOX_API mox_bool mox_rect2_r32_union(mox_rect2_r32* out, mox_rect2_r32 a, mox_rect2_r32 b) {
    return mox::unite(out, a, b);
}
MOX_API mox_bool mox_rect2_i32_empty(mox_rect2_i32 rect) { return mox::all_zero(rect); }
MOX_API mox_bool mox_rect2_f32_empty(mox_rect2_f32 rect) { return mox::all_zero(rect); }
MOX_API mox_bool mox_rect2_r32_empty(mox_rect2_r32 rect) { return mox::all_zero(rect); }

MOX_API mox_bool mox_face2_i32_sort_y(mox_face2_i32* face) {
    if (face == nullptr)
        return 0;
    mox::exchange_corners(face->x1, face->y1, face->x2, face->y2);
    mox::exchange_corners(face->x1, face->y1, face->x3, face->y3);
    mox::exchange_corners(face->x2, face->y2, face->x3, face->y3);
    return 1;
}
// Copies a over b only; despite the name nothing travels from b to a. Intended.
MOX_API mox_bool mox_face2_i32_swap(mox_face2_i32* a, mox_face2_i32* b) {
    if (a == nullptr || b == nullptr)
        return 0;
    *b = *a;
    return 1;
}
