// The cluster operations shared by every record whose header is followed by one 32-bit word,
// `cluster_count` and `clusters`, and whose cluster records are `vertex_count`, `vertices`,
// `reserved`: the polygon, and the 2D shape description with its own vertex record. One body serves
// them all; the record type only fixes the size of a vertex.
#pragma once

#include <mox/core.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace mox {

template <typename Record> using ClusterOf = std::remove_pointer_t<decltype(Record::clusters)>;
template <typename Record> using VertexOf = std::remove_pointer_t<decltype(ClusterOf<Record>::vertices)>;

// The shared layout the bodies rely on, checked for each record that uses them.
struct ClusterHolderLayout {
    mox_object header;
    uint32_t leading;
    uint32_t cluster_count;
    void* clusters;
};
struct ClusterLayout {
    uint32_t vertex_count;
    void* vertices;
    uint32_t reserved;
};
template <typename Record> constexpr bool has_cluster_layout() {
    using Cluster = ClusterOf<Record>;
    return offsetof(Record, cluster_count) == offsetof(ClusterHolderLayout, cluster_count) &&
           offsetof(Record, clusters) == offsetof(ClusterHolderLayout, clusters) &&
           sizeof(Cluster) == sizeof(ClusterLayout) &&
           offsetof(Cluster, vertices) == offsetof(ClusterLayout, vertices) &&
           offsetof(Cluster, reserved) == offsetof(ClusterLayout, reserved);
}

// With no block at all a number equal to the count would reach through a null pointer; that one case
// is refused.
template <typename Record> bool no_clusters(const Record* self) { return self->clusters == nullptr; }

// Block sizes are 32-bit, as everywhere in the memory family.
template <typename Item> uint32_t block_bytes(uint32_t count) {
    return count * static_cast<uint32_t>(sizeof(Item));
}

// Moves the items behind `dropped` to the front of the block, in order. For `dropped` 0 this is the
// plain removal; for any other number the items before it are overwritten and stale ones stay at the
// end. Intended: the library itself only drops item 0, and the behaviour is kept.
template <typename Item> void move_behind_to_front(Item* items, uint32_t old_count, uint32_t dropped) {
    uint32_t destination = 0;
    for (uint32_t i = 0; i < old_count; ++i)
        if (i > dropped)
            items[destination++] = items[i];
}

template <typename Record> mox_bool create_cluster(Record* self, uint32_t* index) {
    using Cluster = ClusterOf<Record>;
    if (self == nullptr || index == nullptr)
        return 0;
    *index = self->cluster_count;
    self->cluster_count += 1;
    void* block = self->clusters;
    // A failed resize leaves the count at 0, not at the old count, and the block as it was: the record
    // is then empty to every entry. Intended. A resize that reports success with no block is treated
    // the same way, since nothing could be written.
    if (!mox_memory_resize(&block, block_bytes<Cluster>(self->cluster_count)) || block == nullptr) {
        self->cluster_count = 0;
        return 0;
    }
    self->clusters = static_cast<Cluster*>(block);
    return mox_memory_fill_u8(reinterpret_cast<uint8_t*>(&self->clusters[*index]), 0, sizeof(Cluster));
}

// A cluster number equal to the count passes the check and reaches one record past the end of the
// array. Intended: callers give numbers in range.
template <typename Record> mox_bool create_vertex(Record* self, uint32_t cluster, uint32_t* index) {
    using Vertex = VertexOf<Record>;
    if (self == nullptr || index == nullptr || cluster > self->cluster_count || no_clusters(self))
        return 0;
    auto& record = self->clusters[cluster];
    *index = record.vertex_count;
    record.vertex_count += 1;
    void* block = record.vertices;
    if (!mox_memory_resize(&block, block_bytes<Vertex>(record.vertex_count)) || block == nullptr) {
        record.vertex_count = 0; // not the old count; intended, as for clusters
        return 0;
    }
    record.vertices = static_cast<Vertex*>(block);
    return mox_memory_fill_u8(reinterpret_cast<uint8_t*>(&record.vertices[*index]), 0, sizeof(Vertex));
}

// Numbers equal to the counts pass the checks, as above. Dropping from an empty cluster wraps the count
// to 0xFFFFFFFF and asks for a block of that many vertices: callers test for a non-zero count first.
template <typename Record> mox_bool drop_vertex(Record* self, uint32_t cluster, uint32_t vertex) {
    using Vertex = VertexOf<Record>;
    if (self == nullptr || cluster > self->cluster_count || no_clusters(self))
        return 0;
    auto& record = self->clusters[cluster];
    if (vertex > record.vertex_count)
        return 0;
    record.vertex_count -= 1;
    void* block = record.vertices;
    if (record.vertex_count == 0) {
        mox_bool freed = mox_memory_free(&block);
        record.vertices = static_cast<Vertex*>(block);
        return freed;
    }
    move_behind_to_front(record.vertices, record.vertex_count + 1, vertex);
    mox_bool resized = mox_memory_resize(&block, block_bytes<Vertex>(record.vertex_count));
    record.vertices = static_cast<Vertex*>(block);
    return resized;
}

template <typename Record> mox_bool drop_cluster(Record* self, uint32_t cluster) {
    using Cluster = ClusterOf<Record>;
    if (self == nullptr || cluster > self->cluster_count || no_clusters(self))
        return 0;
    self->cluster_count -= 1;
    while (self->clusters[cluster].vertex_count != 0)
        drop_vertex(self, cluster, 0);
    void* block = self->clusters;
    if (self->cluster_count == 0) {
        mox_memory_free(&block);
        self->clusters = static_cast<Cluster*>(block);
        return 1;
    }
    move_behind_to_front(self->clusters, self->cluster_count + 1, cluster);
    mox_bool resized = mox_memory_resize(&block, block_bytes<Cluster>(self->cluster_count));
    self->clusters = static_cast<Cluster*>(block);
    return resized;
}

// What clear, destruct and free share: cluster 0 is dropped until none is left.
template <typename Record> void drop_all_clusters(Record* self) {
    while (self->cluster_count != 0)
        drop_cluster(self, 0);
}

} // namespace mox
