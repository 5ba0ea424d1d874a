// The polygon: a set of closed outlines (clusters) that grow and shrink through the shared cluster
// bodies, with the area of one outline and an even-odd point test. No entry posts.
#include <mox/core.h>
#include <mox/math.h>

#include <cstddef>

#include "core/instance.h"
#include "math/cluster.h"

static_assert(mox::has_cluster_layout<mox_polygon2_r32>());
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_polygon2_r32) == 28 && offsetof(mox_polygon2_r32, fill_mode) == 16 &&
              offsetof(mox_polygon2_r32, cluster_count) == 20 && offsetof(mox_polygon2_r32, clusters) == 24);
static_assert(sizeof(mox_polygon2_r32_cluster) == 12 && offsetof(mox_polygon2_r32_cluster, vertices) == 4 &&
              offsetof(mox_polygon2_r32_cluster, reserved) == 8);
#endif

namespace mox {
namespace {

// The sum is rounded to single precision at every step, in this order.
float cluster_area(const mox_polygon2_r32_cluster& cluster) {
    const uint32_t n = cluster.vertex_count;
    const mox_vector2_r32* v = cluster.vertices;
    float sum = 0.0f;
    for (uint32_t i = 0, j = n - 1; i < n; j = i++) {
        float dy = v[j].y - v[i].y;
        float sx = v[j].x + v[i].x;
        sum = static_cast<float>(static_cast<double>(sum) + static_cast<double>(dy) * sx);
    }
    return sum * 0.5f;
}

// Even-odd rule. The crossing counts when it lies strictly left of the point, so a point on a right
// edge is inside and one on a left edge is outside. Intended.
bool cluster_holds(const mox_polygon2_r32_cluster& cluster, float x, float y) {
    const uint32_t n = cluster.vertex_count;
    const mox_vector2_r32* v = cluster.vertices;
    bool inside = false;
    for (uint32_t i = 0, j = n - 1; i < n; j = i++) {
        if ((v[i].y < y && v[j].y >= y) || (v[j].y < y && v[i].y >= y)) {
            float crossing = static_cast<float>(
                static_cast<double>(y - v[i].y) / (v[j].y - v[i].y) * (v[j].x - v[i].x) + v[i].x);
            if (crossing < x)
                inside = !inside;
        }
    }
    return inside;
}

} // namespace
} // namespace mox

MOX_API mox_bool mox_polygon2_r32_construct(mox_polygon2_r32* self, void* owner) {
    if (self == nullptr)
        return 0;
    mox_object_construct(self, owner, MOX_POLYGON2_R32_CLASS_ID);
    self->fill_mode = 0;
    self->cluster_count = 0;
    self->clusters = nullptr;
    return 1;
}

MOX_API mox_bool mox_polygon2_r32_destruct(mox_polygon2_r32* self) {
    if (self == nullptr)
        return 0;
    mox::drop_all_clusters(self);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_polygon2_r32_new(mox_polygon2_r32** out, void* owner) {
    return mox::new_instance<mox_polygon2_r32, mox_polygon2_r32_construct, mox::NullArguments::silent>(out,
                                                                                                       owner);
}

// A null slot is refused here rather than handed to the memory family, which would post.
MOX_API mox_bool mox_polygon2_r32_free(mox_polygon2_r32** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_polygon2_r32_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_polygon2_r32_create_cluster(mox_polygon2_r32* self, uint32_t* index) {
    return mox::create_cluster(self, index);
}

MOX_API mox_bool mox_polygon2_r32_create_vertex(mox_polygon2_r32* self, uint32_t cluster, uint32_t* index) {
    return mox::create_vertex(self, cluster, index);
}

MOX_API mox_bool mox_polygon2_r32_drop_vertex(mox_polygon2_r32* self, uint32_t cluster, uint32_t vertex) {
    return mox::drop_vertex(self, cluster, vertex);
}

MOX_API mox_bool mox_polygon2_r32_drop_cluster(mox_polygon2_r32* self, uint32_t cluster) {
    return mox::drop_cluster(self, cluster);
}

MOX_API mox_bool mox_polygon2_r32_clear(mox_polygon2_r32* self) {
    if (self == nullptr)
        return 0;
    mox::drop_all_clusters(self);
    return 1;
}

// Neither argument is checked. Intended.
MOX_API float mox_polygon2_r32_area(mox_polygon2_r32* self, uint32_t cluster) {
    return mox::cluster_area(self->clusters[cluster]);
}

// Neither pointer is checked. Intended. Each cluster is tested by itself and the first that holds the
// point wins, so a second cluster inside the first is no hole.
MOX_API mox_bool mox_polygon2_r32_in_vector2_r32(mox_polygon2_r32* self, float x, float y,
                                                 uint32_t* cluster) {
    for (uint32_t k = 0; k < self->cluster_count; ++k) {
        if (mox::cluster_holds(self->clusters[k], x, y)) {
            *cluster = k;
            return 1;
        }
    }
    return 0;
}
