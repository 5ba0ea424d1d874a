/* Mathematics: vectors, points, ranges, matrices, planes, rectangles, collisions, polygons, random
 * generators. */
#ifndef MOX_MATH_H
#define MOX_MATH_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- Vectors, points and ranges ----------------------------------------------------------------- */

/* Plain values with no header, owned and copied by the caller. */
typedef struct mox_vector2_r32 {
    float x, y;
} mox_vector2_r32;
typedef struct mox_vector3_r32 {
    float x, y, z;
} mox_vector3_r32;
typedef struct mox_vector4_r32 {
    float x, y, z, w;
} mox_vector4_r32;
typedef struct mox_point2_i32 {
    int32_t x, y;
} mox_point2_i32;
typedef struct mox_point3_i32 {
    int32_t x, y, z;
} mox_point3_i32;
typedef struct mox_point4_i32 {
    int32_t x, y, z, w;
} mox_point4_i32;
/* Nothing checks that `lower` is below `upper`. */
typedef struct mox_range_i32 {
    int32_t lower, upper;
} mox_range_i32;
typedef struct mox_range_r32 {
    float lower, upper;
} mox_range_r32;

/* Row-major matrices: the element of row r and column c of an n-column matrix is m[r*n+c], and a
   vector multiplies as a row on the left, so translation lies in the last row. */
typedef struct mox_matrix_2x2_r32 {
    float m[4];
} mox_matrix_2x2_r32;
typedef struct mox_matrix_3x3_r32 {
    float m[9];
} mox_matrix_3x3_r32;
typedef struct mox_matrix_4x4_r32 {
    float m[16];
} mox_matrix_4x4_r32;

/* Every entry that produces a vector takes `out` first, its operands by value (so `out` may be an
   operand's own variable), and returns false for a null `out` with nothing written. Nothing posts. */
MOX_API mox_bool mox_vector2_r32_add(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API mox_bool mox_vector3_r32_add(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_add(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b);
MOX_API mox_bool mox_vector2_r32_sub(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API mox_bool mox_vector3_r32_sub(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_sub(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b);
MOX_API mox_bool mox_vector2_r32_mul(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API mox_bool mox_vector3_r32_mul(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_mul(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b);
/* Division by zero gives infinity or NaN and still returns true. */
MOX_API mox_bool mox_vector2_r32_div(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API mox_bool mox_vector3_r32_div(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_div(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b);
/* Per component; ties and unordered pairs give b's component. */
MOX_API mox_bool mox_vector2_r32_min(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API mox_bool mox_vector3_r32_min(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_min(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b);
MOX_API mox_bool mox_vector2_r32_max(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API mox_bool mox_vector3_r32_max(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_max(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b);
/* a*(1-t) + b*t. */
MOX_API mox_bool mox_vector2_r32_lerp(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b, float t);
MOX_API mox_bool mox_vector3_r32_lerp(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b, float t);
MOX_API mox_bool mox_vector4_r32_lerp(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b, float t);
/* a*(1-f-g) + b*f + c*g. */
MOX_API mox_bool mox_vector2_r32_bary_centric(mox_vector2_r32* out, mox_vector2_r32 a, mox_vector2_r32 b,
                                              mox_vector2_r32 c, float f, float g);
MOX_API mox_bool mox_vector3_r32_bary_centric(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b,
                                              mox_vector3_r32 c, float f, float g);
MOX_API mox_bool mox_vector4_r32_bary_centric(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b,
                                              mox_vector4_r32 c, float f, float g);
MOX_API mox_bool mox_vector2_r32_catmull_rom(mox_vector2_r32* out, mox_vector2_r32 p0, mox_vector2_r32 p1,
                                             mox_vector2_r32 p2, mox_vector2_r32 p3, float t);
MOX_API mox_bool mox_vector3_r32_catmull_rom(mox_vector3_r32* out, mox_vector3_r32 p0, mox_vector3_r32 p1,
                                             mox_vector3_r32 p2, mox_vector3_r32 p3, float t);
MOX_API mox_bool mox_vector4_r32_catmull_rom(mox_vector4_r32* out, mox_vector4_r32 p0, mox_vector4_r32 p1,
                                             mox_vector4_r32 p2, mox_vector4_r32 p3, float t);
MOX_API mox_bool mox_vector3_r32_hermite(mox_vector3_r32* out, mox_vector3_r32 p1, mox_vector3_r32 t1,
                                         mox_vector3_r32 p2, mox_vector3_r32 t2, float s);
MOX_API mox_bool mox_vector4_r32_hermite(mox_vector4_r32* out, mox_vector4_r32 p1, mox_vector4_r32 t1,
                                         mox_vector4_r32 p2, mox_vector4_r32 t2, float s);
/* Divides by the sum of the squares, not by its root; false when that sum is zero. */
MOX_API mox_bool mox_vector2_r32_normalize(mox_vector2_r32* out, mox_vector2_r32 a);
MOX_API mox_bool mox_vector3_r32_normalize(mox_vector3_r32* out, mox_vector3_r32 a);
MOX_API mox_bool mox_vector4_r32_normalize(mox_vector4_r32* out, mox_vector4_r32 a);

MOX_API float mox_vector2_r32_dot(mox_vector2_r32 a, mox_vector2_r32 b);
MOX_API float mox_vector3_r32_dot(mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API float mox_vector4_r32_dot(mox_vector4_r32 a, mox_vector4_r32 b);
/* The names of this pair are crossed: `length` is the sum of the squares, `length_square` its root. */
MOX_API float mox_vector2_r32_length(mox_vector2_r32 a);
MOX_API float mox_vector3_r32_length(mox_vector3_r32 a);
MOX_API float mox_vector4_r32_length(mox_vector4_r32 a);
MOX_API float mox_vector2_r32_length_square(mox_vector2_r32 a);
MOX_API float mox_vector3_r32_length_square(mox_vector3_r32 a);
MOX_API float mox_vector4_r32_length_square(mox_vector4_r32 a);
/* a.x*b.y - a.y*b.x: positive when b turns counter-clockwise from a with y upward. */
MOX_API float mox_vector2_r32_ccw(mox_vector2_r32 a, mox_vector2_r32 b);

/* Constant fills; false for a null pointer. The vector3 zero leaves z alone, the vector4 zero leaves
   z alone and sets w to 1, and the point2 and point3 zero and one have their meanings swapped. */
MOX_API mox_bool mox_vector2_r32_zero(mox_vector2_r32* out);
MOX_API mox_bool mox_vector3_r32_zero(mox_vector3_r32* out);
MOX_API mox_bool mox_vector4_r32_zero(mox_vector4_r32* out);
MOX_API mox_bool mox_vector2_r32_one(mox_vector2_r32* out);
MOX_API mox_bool mox_vector3_r32_one(mox_vector3_r32* out);
MOX_API mox_bool mox_vector4_r32_one(mox_vector4_r32* out);
MOX_API mox_bool mox_point2_i32_zero(mox_point2_i32* out);
MOX_API mox_bool mox_point2_i32_one(mox_point2_i32* out);
MOX_API mox_bool mox_point3_i32_zero(mox_point3_i32* out);
MOX_API mox_bool mox_point3_i32_one(mox_point3_i32* out);
MOX_API mox_bool mox_point4_i32_zero(mox_point4_i32* out);
MOX_API mox_bool mox_point4_i32_one(mox_point4_i32* out);

MOX_API mox_bool mox_vector3_r32_cross(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b);
MOX_API mox_bool mox_vector4_r32_cross(mox_vector4_r32* out, mox_vector4_r32 a, mox_vector4_r32 b,
                                       mox_vector4_r32 c);
/* The normalize of the cross of (b-a) and (c-a); false for collinear points. */
MOX_API mox_bool mox_vector3_r32_calc_normal(mox_vector3_r32* out, mox_vector3_r32 a, mox_vector3_r32 b,
                                             mox_vector3_r32 c);
MOX_API mox_bool mox_vector2_r32_transform_2x2_r32(mox_vector2_r32* out, mox_vector2_r32 v,
                                                   mox_matrix_2x2_r32 m);
MOX_API mox_bool mox_vector2_r32_transform_coord_2x2_r32(mox_vector2_r32* out, mox_vector2_r32 v,
                                                         mox_matrix_2x2_r32 m);
MOX_API mox_bool mox_vector3_r32_transform_3x3_r32(mox_vector3_r32* out, mox_vector3_r32 v,
                                                   mox_matrix_3x3_r32 m);
MOX_API mox_bool mox_vector3_r32_transform_normal_3x3_r32(mox_vector3_r32* out, mox_vector3_r32 v,
                                                          mox_matrix_3x3_r32 m);
MOX_API mox_bool mox_vector3_r32_transform_coord_3x3_r32(mox_vector3_r32* out, mox_vector3_r32 v,
                                                         mox_matrix_3x3_r32 m);
MOX_API mox_bool mox_vector4_r32_transform_4x4_r32(mox_vector4_r32* out, mox_vector4_r32 v,
                                                   mox_matrix_4x4_r32 m);
/* Leaves v.w unread and writes z's value into w as well. */
MOX_API mox_bool mox_vector4_r32_transform_normal_4x4_r32(mox_vector4_r32* out, mox_vector4_r32 v,
                                                          mox_matrix_4x4_r32 m);
/* The coordinate transforms divide by a value of their own element choice, which is not the
   homogeneous w; false, with nothing written, when it is zero. */
MOX_API mox_bool mox_vector4_r32_transform_coord_4x4_r32(mox_vector4_r32* out, mox_vector4_r32 v,
                                                         mox_matrix_4x4_r32 m);

/* Raw little-endian 32-bit fields in field order at the file's position; false only for a null
   pointer, whatever the file reports. */
MOX_API mox_bool mox_point2_i32_save_to_file(mox_point2_i32* self, mox_file* file);
MOX_API mox_bool mox_point2_i32_load_from_file(mox_point2_i32* self, mox_file* file);
MOX_API mox_bool mox_point3_i32_save_to_file(mox_point3_i32* self, mox_file* file);
MOX_API mox_bool mox_point3_i32_load_from_file(mox_point3_i32* self, mox_file* file);
MOX_API mox_bool mox_point4_i32_save_to_file(mox_point4_i32* self, mox_file* file);
MOX_API mox_bool mox_point4_i32_load_from_file(mox_point4_i32* self, mox_file* file);
MOX_API mox_bool mox_range_i32_save_to_file(mox_range_i32* self, mox_file* file);
MOX_API mox_bool mox_range_i32_load_from_file(mox_range_i32* self, mox_file* file);
MOX_API mox_bool mox_range_r32_save_to_file(mox_range_r32* self, mox_file* file);
MOX_API mox_bool mox_range_r32_load_from_file(mox_range_r32* self, mox_file* file);

/* ---- Planes, rectangles and triangles ----------------------------------------------------------- */

/* The plane a*x + b*y + c*z + d = 0, as far as the entries keep to that. */
typedef struct mox_plane_r32 {
    float a, b, c, d;
} mox_plane_r32;
/* Rectangles have no enforced edge order; all four numbers zero is the empty rectangle. */
typedef struct mox_rect2_i32 {
    int32_t left, top, right, bottom;
} mox_rect2_i32;
typedef struct mox_rect2_r32 {
    float left, top, right, bottom;
} mox_rect2_r32;
/* Each number is signed 16.16 fixed point: the value times 65536. */
typedef struct mox_rect2_f32 {
    mox_f32 left, top, right, bottom;
} mox_rect2_f32;
/* A triangle given by its three corners. */
typedef struct mox_face2_i32 {
    int32_t x1, y1, x2, y2, x3, y3;
} mox_face2_i32;

MOX_API float mox_plane_r32_dot(mox_plane_r32 plane, mox_vector4_r32 v);
MOX_API float mox_plane_r32_dot_coord(mox_plane_r32 plane, mox_vector3_r32 v);
MOX_API float mox_plane_r32_dot_normal(mox_plane_r32 plane, mox_vector3_r32 v);
/* Divides all four numbers by the root of a*a + b*b + c*c (unlike the vector normalize). */
MOX_API mox_bool mox_plane_r32_normalize(mox_plane_r32* out, mox_plane_r32 plane);
/* a, b, c are the point and d is minus the sum of squares of the normal: the plane does not go
   through the point in the usual sense. */
MOX_API mox_bool mox_plane_r32_from_point_normal(mox_plane_r32* out, mox_vector3_r32 point,
                                                 mox_vector3_r32 normal);
MOX_API mox_bool mox_plane_r32_from_points(mox_plane_r32* out, mox_vector3_r32 p1, mox_vector3_r32 p2,
                                           mox_vector3_r32 p3);
/* The infinite line through p1 and p2; false when it is parallel to the plane. */
MOX_API mox_bool mox_plane_r32_intersect_line(mox_vector3_r32* out, mox_plane_r32 plane, mox_vector3_r32 p1,
                                              mox_vector3_r32 p2);
MOX_API mox_bool mox_plane_r32_transform4(mox_plane_r32* out, mox_plane_r32 plane, mox_matrix_4x4_r32 m);

MOX_API mox_bool mox_rect2_i32_set(mox_rect2_i32* out, int32_t left, int32_t top, int32_t right,
                                   int32_t bottom);
MOX_API mox_bool mox_rect2_f32_set(mox_rect2_f32* out, mox_f32 left, mox_f32 top, mox_f32 right,
                                   mox_f32 bottom);
MOX_API mox_bool mox_rect2_r32_set(mox_rect2_r32* out, float left, float top, float right, float bottom);
MOX_API mox_bool mox_rect2_i32_from_rect_r32(mox_rect2_i32* out, mox_rect2_r32 rect);
MOX_API mox_bool mox_rect2_i32_from_rect_f32(mox_rect2_i32* out, mox_rect2_f32 rect);
MOX_API mox_bool mox_rect2_r32_from_rect_i32(mox_rect2_r32* out, mox_rect2_i32 rect);
MOX_API mox_bool mox_rect2_r32_from_rect_f32(mox_rect2_r32* out, mox_rect2_f32 rect);
MOX_API mox_bool mox_rect2_f32_from_rect_i32(mox_rect2_f32* out, mox_rect2_i32 rect);
MOX_API mox_bool mox_rect2_f32_from_rect_r32(mox_rect2_f32* out, mox_rect2_r32 rect);
/* `out` must not be null: intersect and union write it unchecked. Intersect keeps the inner edges;
   the i32 form is true when they leave extent in at least one direction, while the f32 and r32 forms
   are true only when the edges cross over (no overlap), and every false result zeroes `out`. Union
   ignores a b with any zero number and is false, with zeros, when the result is all zeros. */
MOX_API mox_bool mox_rect2_i32_intersect(mox_rect2_i32* out, mox_rect2_i32 a, mox_rect2_i32 b);
MOX_API mox_bool mox_rect2_r32_intersect(mox_rect2_r32* out, mox_rect2_r32 a, mox_rect2_r32 b);
MOX_API mox_bool mox_rect2_f32_intersect(mox_rect2_f32* out, mox_rect2_f32 a, mox_rect2_f32 b);
MOX_API mox_bool mox_rect2_i32_union(mox_rect2_i32* out, mox_rect2_i32 a, mox_rect2_i32 b);
MOX_API mox_bool mox_rect2_f32_union(mox_rect2_f32* out, mox_rect2_f32 a, mox_rect2_f32 b);
MOX_API mox_bool mox_rect2_r32_union(mox_rect2_r32* out, mox_rect2_r32 a, mox_rect2_r32 b);
/* True only when all four numbers are zero. */
MOX_API mox_bool mox_rect2_i32_empty(mox_rect2_i32 rect);
MOX_API mox_bool mox_rect2_f32_empty(mox_rect2_f32 rect);
MOX_API mox_bool mox_rect2_r32_empty(mox_rect2_r32 rect);

/* Orders the corners by rising y; equal y keep their order. */
MOX_API mox_bool mox_face2_i32_sort_y(mox_face2_i32* face);
/* Copies a over b and leaves a as it was: nothing travels from b to a. */
MOX_API mox_bool mox_face2_i32_swap(mox_face2_i32* a, mox_face2_i32* b);

/* ---- Matrices ------------------------------------------------------------------------------------ */

/* Every entry takes `out` first and every operand by value, so `out` may be an operand's variable; false
   (or 0 for determinant and inverse) for a null `out`, with nothing written. Entries that build a
   matrix fill the identity first and then write only their own elements. Rotation angles are in
   degrees, fields of view in radians. Nothing posts. */
/* Writes 1, 0, 1, 0: the second row is (1, 0), not (0, 1), on purpose. */
MOX_API mox_bool mox_matrix_2x2_r32_identity(mox_matrix_2x2_r32* out);
MOX_API mox_bool mox_matrix_2x2_r32_multiply(mox_matrix_2x2_r32* out, mox_matrix_2x2_r32 a,
                                             mox_matrix_2x2_r32 b);
MOX_API mox_bool mox_matrix_2x2_r32_transpose(mox_matrix_2x2_r32* out, mox_matrix_2x2_r32 a);

MOX_API mox_bool mox_matrix_3x3_r32_identity(mox_matrix_3x3_r32* out);
/* The negative of the true determinant: -1 for the identity. */
MOX_API float mox_matrix_3x3_r32_determinant(mox_matrix_3x3_r32 a);
/* Returns this family's determinant; with its reversed sign the result is the negative of the true
   inverse. A zero determinant leaves `out` untouched. */
MOX_API float mox_matrix_3x3_r32_inverse(mox_matrix_3x3_r32* out, mox_matrix_3x3_r32 a);
MOX_API mox_bool mox_matrix_3x3_r32_multiply(mox_matrix_3x3_r32* out, mox_matrix_3x3_r32 a,
                                             mox_matrix_3x3_r32 b);
MOX_API mox_bool mox_matrix_3x3_r32_transpose(mox_matrix_3x3_r32* out, mox_matrix_3x3_r32 a);
MOX_API mox_bool mox_matrix_3x3_r32_translation(mox_matrix_3x3_r32* out, float x, float y);
/* The opposite sign convention from the 4x4 rotation about z. */
MOX_API mox_bool mox_matrix_3x3_r32_rotation(mox_matrix_3x3_r32* out, float angle);
MOX_API mox_bool mox_matrix_3x3_r32_scaling(mox_matrix_3x3_r32* out, float x, float y);

MOX_API mox_bool mox_matrix_4x4_r32_identity(mox_matrix_4x4_r32* out);
MOX_API float mox_matrix_4x4_r32_determinant(mox_matrix_4x4_r32 a);
/* Returns the determinant; a zero determinant leaves `out` untouched. */
MOX_API float mox_matrix_4x4_r32_inverse(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a);
MOX_API mox_bool mox_matrix_4x4_r32_multiply(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a,
                                             mox_matrix_4x4_r32 b);
/* The transpose of the product of a by b. */
MOX_API mox_bool mox_matrix_4x4_r32_multiply_transpose(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a,
                                                       mox_matrix_4x4_r32 b);
MOX_API mox_bool mox_matrix_4x4_r32_transpose(mox_matrix_4x4_r32* out, mox_matrix_4x4_r32 a);
MOX_API mox_bool mox_matrix_4x4_r32_translation(mox_matrix_4x4_r32* out, float x, float y, float z);
MOX_API mox_bool mox_matrix_4x4_r32_scaling(mox_matrix_4x4_r32* out, float x, float y, float z);
MOX_API mox_bool mox_matrix_4x4_r32_rotation_x(mox_matrix_4x4_r32* out, float angle);
/* Puts the positive sine at m[1][2] and leaves m[0][2] at 0, so it is no rotation for non-zero angles;
   kept on purpose. */
MOX_API mox_bool mox_matrix_4x4_r32_rotation_y(mox_matrix_4x4_r32* out, float angle);
MOX_API mox_bool mox_matrix_4x4_r32_rotation_z(mox_matrix_4x4_r32* out, float angle);
/* Y by Z by X: a point is turned by y first, then z, then x. */
MOX_API mox_bool mox_matrix_4x4_r32_rotation_xyz(mox_matrix_4x4_r32* out, float x, float y, float z);
MOX_API mox_bool mox_matrix_4x4_r32_rotation_axis(mox_matrix_4x4_r32* out, float x, float y, float z,
                                                  float angle);
MOX_API mox_bool mox_matrix_4x4_r32_rotation_quaternion(mox_matrix_4x4_r32* out, float x, float y, float z,
                                                        float w);
/* Rotation (as rotation_xyz) by scaling by translation. */
MOX_API mox_bool mox_matrix_4x4_r32_transformation(mox_matrix_4x4_r32* out, float tx, float ty, float tz,
                                                   float rx, float ry, float rz, float sx, float sy,
                                                   float sz);
/* The view matrix from the eye to the target. Its axes go through the vector normalize, which divides
   by the sum of squares, so they have unit length only where their unnormalized length is 1. */
MOX_API mox_bool mox_matrix_4x4_r32_look_at_lh(mox_matrix_4x4_r32* out, mox_vector3_r32 target,
                                               mox_vector3_r32 eye, mox_vector3_r32 up);
MOX_API mox_bool mox_matrix_4x4_r32_look_at_rh(mox_matrix_4x4_r32* out, mox_vector3_r32 target,
                                               mox_vector3_r32 eye, mox_vector3_r32 up);
MOX_API mox_bool mox_matrix_4x4_r32_ortho_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                             float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_ortho_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                             float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_ortho_center_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                    float y2, float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_ortho_center_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                    float y2, float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_screen_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                              float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_screen_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2, float y2,
                                              float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_perspective_lh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                   float y2, float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_perspective_rh(mox_matrix_4x4_r32* out, float x1, float y1, float x2,
                                                   float y2, float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_perspective_center_lh(mox_matrix_4x4_r32* out, float x1, float y1,
                                                          float x2, float y2, float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_perspective_center_rh(mox_matrix_4x4_r32* out, float x1, float y1,
                                                          float x2, float y2, float near, float far);
/* The left-handed form has the right-handed m[2][2], on purpose. */
MOX_API mox_bool mox_matrix_4x4_r32_perspective_fov_lh(mox_matrix_4x4_r32* out, float fov, float aspect,
                                                       float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_perspective_fov_rh(mox_matrix_4x4_r32* out, float fov, float aspect,
                                                       float near, float far);
MOX_API mox_bool mox_matrix_4x4_r32_reflect(mox_matrix_4x4_r32* out, mox_plane_r32 plane);
/* m[0][3] takes the light's z where the rows below take its w, on purpose. */
MOX_API mox_bool mox_matrix_4x4_r32_shadow(mox_matrix_4x4_r32* out, mox_vector4_r32 light,
                                           mox_plane_r32 plane);
/* Through m2 by m1 and the coordinate transform to the viewport x, y, width, height and the depth
   range near to far. The viewport origin is scaled with the rest, on purpose; out->w is not written. */
MOX_API mox_bool mox_vector4_r32_project(mox_vector4_r32* out, mox_vector4_r32 v, float viewport_x,
                                         float viewport_y, float viewport_width, float viewport_height,
                                         mox_matrix_4x4_r32 m1, mox_matrix_4x4_r32 m2, float near, float far);
/* The way back through the inverse of m2 by m1; x, y and z are 1 when the last step fails. */
MOX_API mox_bool mox_vector4_r32_unproject(mox_vector4_r32* out, mox_vector4_r32 v, float viewport_x,
                                           float viewport_y, float viewport_width, float viewport_height,
                                           mox_matrix_4x4_r32 m1, mox_matrix_4x4_r32 m2, float near,
                                           float far);

/* ---- Collision tests ----------------------------------------------------------------------------- */

/* Stand-alone tests between shapes given by their numbers; none posts and none allocates. A null
   `out` is allowed and then only the truth value is computed. All four rectangle bounds are
   inclusive. */
MOX_API mox_bool mox_collision_rect2_i32_point2_i32(mox_rect2_i32 rect, int32_t x, int32_t y);
/* A NaN in any compared number gives false. */
MOX_API mox_bool mox_collision_rect2_r32_vector2_r32(float left, float top, float right, float bottom,
                                                     float x, float y);
/* Pairs the first points of the two lines and their second points in the determinant, while the point
   written walks along the first line, on purpose: the results differ from the usual segment test. */
MOX_API mox_bool mox_collision_line2_i32_line2_i32(mox_point2_i32* out, int32_t x1, int32_t y1, int32_t x2,
                                                   int32_t y2, int32_t x3, int32_t y3, int32_t x4,
                                                   int32_t y4);
MOX_API mox_bool mox_collision_line2_r32_line2_r32(mox_vector2_r32* out, float x1, float y1, float x2,
                                                   float y2, float x3, float y3, float x4, float y4);
/* The direction is taken to be of unit length. From inside the sphere the point lies behind the
   origin, on purpose. */
MOX_API mox_bool mox_collision_ray3_r32_sphere3_r32(mox_vector3_r32* out, float ox, float oy, float oz,
                                                    float dx, float dy, float dz, float cx, float cy,
                                                    float cz, float r);
/* The upper slab test of every axis compares with the origin's x, on purpose. */
MOX_API mox_bool mox_collision_ray3_r32_bbox3_r32(mox_vector3_r32* out, float ox, float oy, float oz,
                                                  float dx, float dy, float dz, float min_x, float min_y,
                                                  float min_z, float max_x, float max_y, float max_z);
/* Back faces and edge-on triangles never collide; a triangle behind the origin does. */
MOX_API mox_bool mox_collision_ray3_r32_face3_r32(mox_vector3_r32* out, float ox, float oy, float oz,
                                                  float dx, float dy, float dz, float ax, float ay, float az,
                                                  float bx, float by, float bz, float cx, float cy, float cz);
/* Moves the ends of the line onto sides of the rectangle where the line test reports a hit; `out`
   (four numbers: x1, y1, x2, y2) is written only when at least one end moved. An end left of the
   rectangle is tested against its right side and the reverse, on purpose. */
MOX_API mox_bool mox_collision_rect4_i32_line2_i32(int32_t* out, mox_rect2_i32 rect, int32_t x1, int32_t y1,
                                                   int32_t x2, int32_t y2);
MOX_API mox_bool mox_collision_rect4_r32_line2_r32(float* out, float left, float top, float right,
                                                   float bottom, float x1, float y1, float x2, float y2);

/* ---- Polygon ---------------------------------------------------------------------------------------- */

#define MOX_POLYGON2_R32_CLASS_ID 0xBD00330Du

/* One closed outline: the last vertex joins the first. */
typedef struct mox_polygon2_r32_cluster {
    uint32_t vertex_count;
    mox_vector2_r32* vertices; /* one heap block of vertex_count vectors; null when empty */
    uint32_t reserved;
} mox_polygon2_r32_cluster;

/* A set of outlines. The blocks belong to the polygon; callers fill new vertices through `clusters`. */
typedef struct mox_polygon2_r32 {
    mox_object header;
    uint32_t fill_mode;
    uint32_t cluster_count;
    mox_polygon2_r32_cluster* clusters; /* one heap block of cluster_count records; null when empty */
} mox_polygon2_r32;

MOX_API mox_bool mox_polygon2_r32_construct(mox_polygon2_r32* self, void* owner);
MOX_API mox_bool mox_polygon2_r32_destruct(mox_polygon2_r32* self);
MOX_API mox_bool mox_polygon2_r32_new(mox_polygon2_r32** out, void* owner);
MOX_API mox_bool mox_polygon2_r32_free(mox_polygon2_r32** slot);
/* A failed growth leaves cluster_count at 0, not at the old count. */
MOX_API mox_bool mox_polygon2_r32_create_cluster(mox_polygon2_r32* self, uint32_t* index);
/* A cluster number equal to cluster_count passes the check: callers give numbers in range. */
MOX_API mox_bool mox_polygon2_r32_create_vertex(mox_polygon2_r32* self, uint32_t cluster, uint32_t* index);
/* The vertices behind the dropped one move to the front of the block, overwriting what stood there:
   only vertex 0 is a plain removal. The count must not be zero. */
MOX_API mox_bool mox_polygon2_r32_drop_vertex(mox_polygon2_r32* self, uint32_t cluster, uint32_t vertex);
/* Moves the records the same way as drop_vertex. */
MOX_API mox_bool mox_polygon2_r32_drop_cluster(mox_polygon2_r32* self, uint32_t cluster);
MOX_API mox_bool mox_polygon2_r32_clear(mox_polygon2_r32* self);
/* Negative for a counter-clockwise outline with y upward. Neither argument is checked. */
MOX_API float mox_polygon2_r32_area(mox_polygon2_r32* self, uint32_t cluster);
/* The first cluster that holds the point by the even-odd rule wins; `cluster` receives its number.
   Neither pointer is checked. */
MOX_API mox_bool mox_polygon2_r32_in_vector2_r32(mox_polygon2_r32* self, float x, float y, uint32_t* cluster);

/* ---- Random generators ---------------------------------------------------------------------------- */

/* Process-wide state with fixed start values and no locking: a process that draws the same number of
   values gets the same sequence. */
MOX_API uint32_t mox_random_linear_init_u32(uint32_t seed);
MOX_API uint32_t mox_random_linear_u32(void);
MOX_API uint32_t mox_random_kiss_u32(void);
/* Seeds the four state values of the multiply-with-carry generator; the carry stays as it was. */
MOX_API uint32_t mox_random_mother_of_all_init_u32(uint32_t seed);
MOX_API double mox_random_mother_of_all_r64(void);
/* value modulo max; a max of 0 is not guarded. */
MOX_API uint32_t mox_random_max_u32_i32(uint32_t value, uint32_t max);
MOX_API float mox_random_max_u32_r32(uint32_t value, float max);
/* Between 0 and high: `low` is not used. */
MOX_API int32_t mox_random_range_u32_i32(uint32_t value, int32_t low, int32_t high);
MOX_API float mox_random_range_u32_r32(uint32_t value, float low, float high);

MOX_END_DECLS

#endif
