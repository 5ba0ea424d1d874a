/* Mathematics: vectors, points, ranges, matrices, planes, rectangles, collisions, polygons, random generators. */
#ifndef MOX_MATH_H
#define MOX_MATH_H

#include <mox/base.h>

MOX_BEGIN_DECLS

MOX_END_DECLS

#endif
