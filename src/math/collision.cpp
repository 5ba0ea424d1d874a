// Collision tests between simple shapes. They hold no state and allocate nothing; the drawing and
// window code stands on their exact results, so the integer and float forms share one body each.
#include <mox/math.h>

#include <cmath>
#include <cstdint>

#include "math/lanes.h"

namespace mox {
namespace {

// The number form of the two-dimensional tests: how a coordinate difference becomes a float and how
// a computed coordinate is stored.
template <typename Number> struct Plane2;
template <> struct Plane2<int32_t> {
    using Point = mox_point2_i32;
    // A 32-bit integer subtraction, wrapping as the machine does, then a float.
    static float difference(int32_t a, int32_t b) {
        return static_cast<float>(static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b)));
    }
    // Worked out in double from the exact integer difference, then truncated toward zero.
    static int32_t along(int32_t start, int32_t end, float t) {
        double step = static_cast<int32_t>(static_cast<uint32_t>(end) - static_cast<uint32_t>(start));
        return truncate_to_i32(static_cast<double>(start) + step * t);
    }
};
template <> struct Plane2<float> {
    using Point = mox_vector2_r32;
    static float difference(float a, float b) { return a - b; }
    static float along(float start, float end, float t) {
        return static_cast<float>(static_cast<double>(start) + static_cast<double>(end - start) * t);
    }
};

// a*b - c*e worked out in double and rounded to single precision once.
float cross_difference(float a, float b, float c, float e) {
    return static_cast<float>(static_cast<double>(a) * b - static_cast<double>(c) * e);
}

// The line test as it stands: t runs along the segment from the first point of the first line to the
// first point of the second, u along the one between the second points, and the point written walks
// along the first line. Intended; the bitmap clipper and the window hit test depend on these results.
template <typename Number>
mox_bool line_line(typename Plane2<Number>::Point* out, Number x1, Number y1, Number x2, Number y2, Number x3,
                   Number y3, Number x4, Number y4) {
    using Form = Plane2<Number>;
    float a = Form::difference(x1, x3), b = Form::difference(y4, y2), c = Form::difference(y1, y3);
    float e = Form::difference(x4, x2), f = Form::difference(x1, x2), g = Form::difference(y1, y2);
    float d = cross_difference(a, b, c, e);
    // There is no parallelism epsilon: this comparison never holds, and a zero d is caught below where
    // the division gives an infinity or a NaN. Intended.
    if (std::fabs(d) < 0.0f)
        return 0;
    float t = cross_difference(b, f, e, g) / d;
    float u = cross_difference(a, g, c, f) / d;
    if (!(t >= 0.0f && t <= 1.0f && u >= 0.0f && u <= 1.0f))
        return 0;
    if (out != nullptr)
        *out = {Form::along(x1, x2, t), Form::along(y1, y2, t)};
    return 1;
}

template <typename Number> bool rect_holds(const Number (&rect)[4], Number x, Number y) {
    return rect[0] <= x && x <= rect[2] && rect[1] <= y && y <= rect[3];
}

// Moves each end of a copy of the line onto a side where the line test hits. Ends above or below are
// tried against the top or bottom side; ends to the left are tried against the right side and ends to
// the right against the left side, which is required and not an oversight.
template <typename Number> mox_bool rect_line(Number* out, const Number (&rect)[4], const Number (&line)[4]) {
    const Number left = rect[0], top = rect[1], right = rect[2], bottom = rect[3];
    Number ax = line[0], ay = line[1], bx = line[2], by = line[3];
    bool hit = false;
    typename Plane2<Number>::Point point;
    auto top_side = [&] { return line_line(&point, left, top, right, top, ax, ay, bx, by) != 0; };
    auto right_side = [&] { return line_line(&point, right, top, right, bottom, ax, ay, bx, by) != 0; };
    auto bottom_side = [&] { return line_line(&point, right, bottom, left, bottom, ax, ay, bx, by) != 0; };
    auto left_side = [&] { return line_line(&point, left, bottom, left, top, ax, ay, bx, by) != 0; };
    auto move = [&](Number& x, Number& y) {
        x = point.x;
        y = point.y;
        hit = true;
    };

    if (!rect_holds(rect, ax, ay)) {
        if (ay < top) {
            if (top_side())
                move(ax, ay);
        } else if (ay > bottom) {
            if (bottom_side())
                move(ax, ay);
        }
        if (ax < left) {
            if (right_side())
                move(ax, ay);
        } else if (ax > right) {
            if (left_side())
                move(ax, ay);
        }
    }
    if (!rect_holds(rect, bx, by)) {
        if (by < top) {
            if (top_side())
                move(bx, by);
        } else if (by > bottom) {
            if (bottom_side())
                move(bx, by);
        }
        if (bx < left) {
            if (right_side())
                move(bx, by);
        } else if (bx > right) {
            if (left_side())
                move(bx, by);
        }
    }
    // A line wholly inside, or one whose side tests all fail, gives false. Intended.
    if (!hit)
        return 0;
    if (out != nullptr) {
        out[0] = ax;
        out[1] = ay;
        out[2] = bx;
        out[3] = by;
    }
    return 1;
}

mox_vector3_r32 minus(const mox_vector3_r32& a, const mox_vector3_r32& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

// Each named value of the three-dimensional tests is worked out in double and rounded once.
float dot_rounded(const mox_vector3_r32& a, const mox_vector3_r32& b) {
    return static_cast<float>(static_cast<double>(a.x) * b.x + static_cast<double>(a.y) * b.y +
                              static_cast<double>(a.z) * b.z);
}

mox_vector3_r32 cross_rounded(const mox_vector3_r32& a, const mox_vector3_r32& b) {
    return {cross_difference(a.y, b.z, a.z, b.y), cross_difference(a.z, b.x, a.x, b.z),
            cross_difference(a.x, b.y, a.y, b.x)};
}

float step_along(float origin, float direction, float t) {
    return static_cast<float>(static_cast<double>(direction) * t + origin);
}

mox_vector3_r32 point_along(const mox_vector3_r32& origin, const mox_vector3_r32& direction, float t) {
    return {step_along(origin.x, direction.x, t), step_along(origin.y, direction.y, t),
            step_along(origin.z, direction.z, t)};
}

mox_bool ray_sphere(mox_vector3_r32* out, const mox_vector3_r32& origin, const mox_vector3_r32& direction,
                    const mox_vector3_r32& centre, float radius) {
    mox_vector3_r32 m = minus(origin, centre);
    float p = static_cast<float>(2.0 * (static_cast<double>(direction.x) * m.x +
                                        static_cast<double>(direction.y) * m.y +
                                        static_cast<double>(direction.z) * m.z));
    float q = static_cast<float>(static_cast<double>(m.x) * m.x + static_cast<double>(m.y) * m.y +
                                 static_cast<double>(m.z) * m.z - static_cast<double>(radius) * radius);
    float discriminant = static_cast<float>(static_cast<double>(p) * p - 4.0 * q);
    if (discriminant < 0.0f)
        return 0;
    float s = std::sqrt(discriminant);
    float t0 = static_cast<float>((static_cast<double>(s) - p) * 0.5);
    float t1 = static_cast<float>((-static_cast<double>(p) - s) * 0.5);
    if (t0 < 0.0f && t1 < 0.0f)
        return 0;
    if (out == nullptr)
        return 1;
    // The smaller root, so from inside the sphere the point lies behind the origin. Intended.
    float t = t1 < t0 ? t1 : t0;
    *out = point_along(origin, direction, t);
    return 1;
}

mox_bool ray_box(mox_vector3_r32* out, const mox_vector3_r32& origin_record,
                 const mox_vector3_r32& direction_record, const mox_vector3_r32& minimum_record,
                 const mox_vector3_r32& maximum_record) {
    Lanes<mox_vector3_r32> origin = lanes_of(origin_record), direction = lanes_of(direction_record);
    Lanes<mox_vector3_r32> minimum = lanes_of(minimum_record), maximum = lanes_of(maximum_record);
    Lanes<mox_vector3_r32> candidate{};
    bool outside[3];
    bool all_middle = true;
    for (int i = 0; i < 3; ++i) {
        outside[i] = true;
        if (origin[i] < minimum[i])
            candidate[i] = minimum[i];
        // Every axis compares its maximum with the origin's x. Intended.
        else if (maximum[i] < origin[0])
            candidate[i] = maximum[i];
        else
            outside[i] = false;
        all_middle = all_middle && !outside[i];
    }
    if (all_middle) {
        // Guarded here, where the behaviour would write through a null pointer; the answer stays true.
        if (out != nullptr)
            *out = origin_record;
        return 1;
    }
    float distance[3];
    for (int i = 0; i < 3; ++i)
        distance[i] = outside[i] && direction[i] != 0.0f
                          ? static_cast<float>((static_cast<double>(candidate[i]) - origin[i]) / direction[i])
                          : -1.0f;
    int w = 0; // ties keep the lower axis
    if (distance[1] > distance[0])
        w = 1;
    if (distance[2] > distance[w])
        w = 2;
    if (distance[w] < 0.0f)
        return 0;
    if (out == nullptr)
        return 1;
    float* written = &out->x;
    for (int i = 0; i < 3; ++i) {
        if (i == w) {
            written[i] = candidate[w];
            continue;
        }
        float v = step_along(origin[i], direction[i], distance[w]);
        written[i] = v;
        // The components before this one stay written. Intended.
        if (v < minimum[i] || v > maximum[i])
            return 0;
    }
    return 1;
}

mox_bool ray_face(mox_vector3_r32* out, const mox_vector3_r32& origin, const mox_vector3_r32& direction,
                  const mox_vector3_r32& a, const mox_vector3_r32& b, const mox_vector3_r32& c) {
    constexpr float kSmallest = 0.000001f;
    mox_vector3_r32 e1 = minus(b, a), e2 = minus(c, a);
    mox_vector3_r32 p = cross_rounded(direction, e2);
    float det = dot_rounded(e1, p);
    if (det < kSmallest) // back faces and edge-on triangles
        return 0;
    mox_vector3_r32 s = minus(origin, a);
    float u = dot_rounded(s, p);
    if (u < 0.0f || u > det)
        return 0;
    mox_vector3_r32 q = cross_rounded(s, e1);
    float v = dot_rounded(direction, q);
    if (v < 0.0f || u + v > det)
        return 0;
    if (out == nullptr)
        return 1;
    // The sign of t is not looked at, so a triangle behind the origin collides. Intended.
    float t = static_cast<float>((static_cast<double>(e2.x) * q.x + static_cast<double>(e2.y) * q.y +
                                  static_cast<double>(e2.z) * q.z) *
                                 static_cast<double>(1.0f / det));
    *out = point_along(origin, direction, t);
    return 1;
}

} // namespace
} // namespace mox

MOX_API mox_bool mox_collision_rect2_i32_point2_i32(mox_rect2_i32 rect, int32_t x, int32_t y) {
    const int32_t bounds[4] = {rect.left, rect.top, rect.right, rect.bottom};
    return mox::rect_holds(bounds, x, y) ? 1 : 0;
}

MOX_API mox_bool mox_collision_rect2_r32_vector2_r32(float left, float top, float right, float bottom,
                                                     float x, float y) {
    const float bounds[4] = {left, top, right, bottom};
    return mox::rect_holds(bounds, x, y) ? 1 : 0;
}

MOX_API mox_bool mox_collision_line2_i32_line2_i32(mox_point2_i32* out, int32_t x1, int32_t y1, int32_t x2,
                                                   int32_t y2, int32_t x3, int32_t y3, int32_t x4,
                                                   int32_t y4) {
    return mox::line_line(out, x1, y1, x2, y2, x3, y3, x4, y4);
}

MOX_API mox_bool mox_collision_line2_r32_line2_r32(mox_vector2_r32* out, float x1, float y1, float x2,
                                                   float y2, float x3, float y3, float x4, float y4) {
    return mox::line_line(out, x1, y1, x2, y2, x3, y3, x4, y4);
}

MOX_API mox_bool mox_collision_ray3_r32_sphere3_r32(mox_vector3_r32* out, float ox, float oy, float oz,
                                                    float dx, float dy, float dz, float cx, float cy,
                                                    float cz, float r) {
    return mox::ray_sphere(out, {ox, oy, oz}, {dx, dy, dz}, {cx, cy, cz}, r);
}

MOX_API mox_bool mox_collision_ray3_r32_bbox3_r32(mox_vector3_r32* out, float ox, float oy, float oz,
                                                  float dx, float dy, float dz, float min_x, float min_y,
                                                  float min_z, float max_x, float max_y, float max_z) {
    return mox::ray_box(out, {ox, oy, oz}, {dx, dy, dz}, {min_x, min_y, min_z}, {max_x, max_y, max_z});
}

MOX_API mox_bool mox_collision_ray3_r32_face3_r32(mox_vector3_r32* out, float ox, float oy, float oz,
                                                  float dx, float dy, float dz, float ax, float ay, float az,
                                                  float bx, float by, float bz, float cx, float cy,
                                                  float cz) {
    return mox::ray_face(out, {ox, oy, oz}, {dx, dy, dz}, {ax, ay, az}, {bx, by, bz}, {cx, cy, cz});
}

MOX_API mox_bool mox_collision_rect4_i32_line2_i32(int32_t* out, mox_rect2_i32 rect, int32_t x1, int32_t y1,
                                                   int32_t x2, int32_t y2) {
    const int32_t bounds[4] = {rect.left, rect.top, rect.right, rect.bottom};
    const int32_t line[4] = {x1, y1, x2, y2};
    return mox::rect_line(out, bounds, line);
}

MOX_API mox_bool mox_collision_rect4_r32_line2_r32(float* out, float left, float top, float right,
                                                   float bottom, float x1, float y1, float x2, float y2) {
    const float bounds[4] = {left, top, right, bottom};
    const float line[4] = {x1, y1, x2, y2};
    return mox::rect_line(out, bounds, line);
}
