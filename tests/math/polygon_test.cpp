#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/error_listener.h"

using mox_test::ErrorListener;
using mox_test::run_in_child;

namespace {

struct Xy {
    float x, y;
};

// A fresh cluster filled with the given vertices, through the entries and the public records.
uint32_t add_cluster(mox_polygon2_r32* polygon, const std::vector<Xy>& points) {
    uint32_t cluster = 0xDEAD;
    EXPECT_EQ(mox_polygon2_r32_create_cluster(polygon, &cluster), 1);
    for (const Xy& point : points) {
        uint32_t index = 0xDEAD;
        EXPECT_EQ(mox_polygon2_r32_create_vertex(polygon, cluster, &index), 1);
        polygon->clusters[cluster].vertices[index] = {point.x, point.y};
    }
    return cluster;
}

void expect_vertices(const mox_polygon2_r32_cluster& cluster, const std::vector<Xy>& points) {
    ASSERT_EQ(cluster.vertex_count, points.size());
    for (size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(cluster.vertices[i].x, points[i].x) << i;
        EXPECT_EQ(cluster.vertices[i].y, points[i].y) << i;
    }
}

// A count whose growth by one asks for 0xFFFFFFF0 bytes of records of this size.
template <typename Item> constexpr uint32_t count_before_huge_block() {
    static_assert(0xFFFFFFF0u % sizeof(Item) == 0);
    return static_cast<uint32_t>(0xFFFFFFF0u / sizeof(Item)) - 1;
}

const std::vector<Xy> kUnitSquare = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

class Polygon : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(mox_polygon2_r32_construct(&polygon, nullptr), 1); }
    void TearDown() override { EXPECT_EQ(mox_polygon2_r32_destruct(&polygon), 1); }
    mox_polygon2_r32 polygon;
    ErrorListener listener;
};

} // namespace

TEST(PolygonLayout, RecordsHaveTheSharedClusterLayout) {
    EXPECT_EQ(offsetof(mox_polygon2_r32, fill_mode), sizeof(mox_object));
    EXPECT_EQ(offsetof(mox_polygon2_r32, cluster_count), sizeof(mox_object) + 4);
    EXPECT_EQ(offsetof(mox_polygon2_r32, clusters) % alignof(void*), 0u);
    EXPECT_EQ(offsetof(mox_polygon2_r32_cluster, vertex_count), 0u);
    EXPECT_EQ(offsetof(mox_polygon2_r32_cluster, vertices), alignof(void*));
    EXPECT_EQ(offsetof(mox_polygon2_r32_cluster, reserved), 2 * alignof(void*));
    EXPECT_EQ(MOX_POLYGON2_R32_CLASS_ID, 0xBD00330Du);
}

TEST(PolygonFrame, ConstructZeroesTheFields) {
    ErrorListener listener;
    mox_polygon2_r32 polygon;
    std::memset(&polygon, 0xA5, sizeof polygon);
    int owner = 0;
    EXPECT_EQ(mox_polygon2_r32_construct(&polygon, &owner), 1);
    EXPECT_EQ(polygon.header.owner, &owner);
    EXPECT_EQ(polygon.header.class_id, MOX_POLYGON2_R32_CLASS_ID);
    EXPECT_EQ(polygon.header.flags, 0u);
    EXPECT_EQ(polygon.header.user, 0u);
    EXPECT_EQ(polygon.fill_mode, 0u);
    EXPECT_EQ(polygon.cluster_count, 0u);
    EXPECT_EQ(polygon.clusters, nullptr);
    EXPECT_EQ(mox_polygon2_r32_destruct(&polygon), 1);
    EXPECT_EQ(mox_polygon2_r32_construct(nullptr, &owner), 0);
    EXPECT_EQ(mox_polygon2_r32_destruct(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(PolygonFrame, NewAndFreeReleaseEverything) {
    ErrorListener listener;
    mox_polygon2_r32* polygon = nullptr;
    ASSERT_EQ(mox_polygon2_r32_new(&polygon, nullptr), 1);
    ASSERT_NE(polygon, nullptr);
    EXPECT_EQ(polygon->header.class_id, MOX_POLYGON2_R32_CLASS_ID);
    EXPECT_EQ(polygon->cluster_count, 0u);
    add_cluster(polygon, kUnitSquare);
    add_cluster(polygon, {{5, 5}});
    EXPECT_EQ(mox_polygon2_r32_free(&polygon), 1);
    EXPECT_EQ(polygon, nullptr);
    // A null slot content gives the result of the memory free: false, silently.
    EXPECT_EQ(mox_polygon2_r32_free(&polygon), 0);
    EXPECT_EQ(mox_polygon2_r32_free(nullptr), 0);
    EXPECT_EQ(mox_polygon2_r32_new(nullptr, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, IndicesAreHandedOutInTurn) {
    uint32_t index = 99;
    for (uint32_t expected = 0; expected < 3; ++expected) {
        EXPECT_EQ(mox_polygon2_r32_create_cluster(&polygon, &index), 1);
        EXPECT_EQ(index, expected);
        EXPECT_EQ(polygon.cluster_count, expected + 1);
        EXPECT_EQ(polygon.clusters[expected].vertex_count, 0u);
        EXPECT_EQ(polygon.clusters[expected].vertices, nullptr);
        EXPECT_EQ(polygon.clusters[expected].reserved, 0u);
    }
    for (uint32_t cluster = 0; cluster < 3; ++cluster) {
        for (uint32_t expected = 0; expected < 3; ++expected) {
            EXPECT_EQ(mox_polygon2_r32_create_vertex(&polygon, cluster, &index), 1);
            EXPECT_EQ(index, expected);
            EXPECT_EQ(polygon.clusters[cluster].vertex_count, expected + 1);
            // New memory is zeroed: a new vertex is (0, 0).
            EXPECT_EQ(polygon.clusters[cluster].vertices[expected].x, 0.0f);
            EXPECT_EQ(polygon.clusters[cluster].vertices[expected].y, 0.0f);
            polygon.clusters[cluster].vertices[expected] = {1.5f, -2.5f};
        }
    }
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, GrowingChecksItsArguments) {
    uint32_t index = 99;
    EXPECT_EQ(mox_polygon2_r32_create_cluster(nullptr, &index), 0);
    EXPECT_EQ(mox_polygon2_r32_create_cluster(&polygon, nullptr), 0);
    EXPECT_EQ(polygon.cluster_count, 0u);
    // No clusters at all: not even the number equal to the count reaches anything.
    EXPECT_EQ(mox_polygon2_r32_create_vertex(&polygon, 0, &index), 0);
    add_cluster(&polygon, {});
    EXPECT_EQ(mox_polygon2_r32_create_vertex(nullptr, 0, &index), 0);
    EXPECT_EQ(mox_polygon2_r32_create_vertex(&polygon, 0, nullptr), 0);
    EXPECT_EQ(mox_polygon2_r32_create_vertex(&polygon, 2, &index), 0);
    EXPECT_EQ(index, 99u);
    EXPECT_EQ(polygon.clusters[0].vertex_count, 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, DroppingVertexZeroIsThePlainRemoval) {
    add_cluster(&polygon, {{1, 2}, {3, 4}, {5, 6}});
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 0, 0), 1);
    expect_vertices(polygon.clusters[0], {{3, 4}, {5, 6}});
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, DroppingALaterVertexMovesTheRestToTheFront) {
    // A, B, C, D without vertex 1 is C, D, C: the vertices behind it overwrite the front. Intended.
    add_cluster(&polygon, {{1, 1}, {2, 2}, {3, 3}, {4, 4}});
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 0, 1), 1);
    expect_vertices(polygon.clusters[0], {{3, 3}, {4, 4}, {3, 3}});
    // The last one: nothing moves and the count goes down.
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 0, 2), 1);
    expect_vertices(polygon.clusters[0], {{3, 3}, {4, 4}});
}

TEST_F(Polygon, DroppingTheLastVertexReleasesTheBlock) {
    add_cluster(&polygon, {{1, 1}});
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 0, 0), 1);
    EXPECT_EQ(polygon.clusters[0].vertex_count, 0u);
    EXPECT_EQ(polygon.clusters[0].vertices, nullptr);
}

TEST_F(Polygon, DroppingAVertexChecksItsArguments) {
    add_cluster(&polygon, {{1, 1}, {2, 2}});
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(nullptr, 0, 0), 0);
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 2, 0), 0);
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 0, 3), 0);
    expect_vertices(polygon.clusters[0], {{1, 1}, {2, 2}});
    // A number equal to the count passes: the count goes down and nothing moves.
    EXPECT_EQ(mox_polygon2_r32_drop_vertex(&polygon, 0, 2), 1);
    expect_vertices(polygon.clusters[0], {{1, 1}});
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, DroppingClusterZeroIsThePlainRemoval) {
    add_cluster(&polygon, {{1, 1}, {2, 2}});
    add_cluster(&polygon, {{3, 3}});
    add_cluster(&polygon, {{4, 4}, {5, 5}, {6, 6}});
    EXPECT_EQ(mox_polygon2_r32_drop_cluster(&polygon, 0), 1);
    ASSERT_EQ(polygon.cluster_count, 2u);
    expect_vertices(polygon.clusters[0], {{3, 3}});
    expect_vertices(polygon.clusters[1], {{4, 4}, {5, 5}, {6, 6}});
    EXPECT_EQ(mox_polygon2_r32_drop_cluster(&polygon, 1), 1);
    ASSERT_EQ(polygon.cluster_count, 1u);
    expect_vertices(polygon.clusters[0], {{3, 3}});
    EXPECT_EQ(mox_polygon2_r32_drop_cluster(&polygon, 0), 1);
    EXPECT_EQ(polygon.cluster_count, 0u);
    EXPECT_EQ(polygon.clusters, nullptr);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, DroppingALaterClusterMovesTheRestToTheFront) {
    // Cluster 0 is overwritten by cluster 2 and its vertices are not released; the test releases them
    // itself. Intended.
    add_cluster(&polygon, {{1, 1}});
    add_cluster(&polygon, {{2, 2}, {2, 3}});
    add_cluster(&polygon, {{3, 3}});
    mox_vector2_r32* lost = polygon.clusters[0].vertices;
    EXPECT_EQ(mox_polygon2_r32_drop_cluster(&polygon, 1), 1);
    ASSERT_EQ(polygon.cluster_count, 2u);
    expect_vertices(polygon.clusters[0], {{3, 3}});
    // The second place still holds cluster 1's record as its vertices were dropped: empty.
    EXPECT_EQ(polygon.clusters[1].vertex_count, 0u);
    EXPECT_EQ(polygon.clusters[1].vertices, nullptr);
    void* slot = lost;
    EXPECT_EQ(mox_memory_free(&slot), 1);
}

TEST_F(Polygon, DroppingAClusterChecksItsArguments) {
    add_cluster(&polygon, {{1, 1}});
    EXPECT_EQ(mox_polygon2_r32_drop_cluster(nullptr, 0), 0);
    EXPECT_EQ(mox_polygon2_r32_drop_cluster(&polygon, 2), 0);
    EXPECT_EQ(polygon.cluster_count, 1u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, ClearDropsEveryCluster) {
    EXPECT_EQ(mox_polygon2_r32_clear(&polygon), 1);
    EXPECT_EQ(polygon.cluster_count, 0u);
    add_cluster(&polygon, kUnitSquare);
    add_cluster(&polygon, {{1, 1}});
    add_cluster(&polygon, {});
    EXPECT_EQ(mox_polygon2_r32_clear(&polygon), 1);
    EXPECT_EQ(polygon.cluster_count, 0u);
    EXPECT_EQ(polygon.clusters, nullptr);
    EXPECT_EQ(mox_polygon2_r32_clear(nullptr), 0);
    // The polygon grows again from index 0.
    EXPECT_EQ(add_cluster(&polygon, {{2, 2}}), 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, AreaHasTheSignOfTheWinding) {
    add_cluster(&polygon, kUnitSquare);
    add_cluster(&polygon, {{0, 1}, {1, 1}, {1, 0}, {0, 0}});
    add_cluster(&polygon, {});
    add_cluster(&polygon, {{0, 0}, {4, 0}, {0, 3}});
    add_cluster(&polygon, {{1, 1}, {2, 2}});
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 0), -1.0f);
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 1), 1.0f);
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 2), 0.0f);
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 3), -6.0f);
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 4), 0.0f);
}

TEST_F(Polygon, AreaRoundsTheSumAtEachStep) {
    // The terms are 2^24, 1, 0, -2^24, -0 in this order. Rounded at each step the 1 is lost and the area
    // is 0; the exact sum would give 0.5.
    add_cluster(&polygon, {{0, 0}, {1, -1}, {-1, 8388608.0f}, {-1, 0}, {1, 16777216.0f}});
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 0), 0.0f);
    // The same outline started at another vertex: the terms are -2^24, -0, 2^24, 1, -0, the 1 survives
    // and the area is 0.5.
    add_cluster(&polygon, {{-1, 0}, {1, 16777216.0f}, {0, 0}, {1, -1}, {-1, 8388608.0f}});
    EXPECT_EQ(mox_polygon2_r32_area(&polygon, 1), 0.5f);
}

TEST_F(Polygon, PointTestIsEvenOddPerCluster) {
    add_cluster(&polygon, kUnitSquare);
    uint32_t cluster = 99;
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0.5f, 0.5f, &cluster), 1);
    EXPECT_EQ(cluster, 0u);
    cluster = 99;
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 1.5f, 0.5f, &cluster), 0);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, -0.5f, 0.5f, &cluster), 0);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0.5f, 1.5f, &cluster), 0);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0.5f, -0.5f, &cluster), 0);
    EXPECT_EQ(cluster, 99u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(Polygon, PointOnAnEdgeCountsOnOneSideOnly) {
    // The crossing must lie strictly left of the point, and a vertex level with y counts for the edge
    // above it only: the right edge and y = 1 are inside, the left edge and y = 0 outside. Intended.
    add_cluster(&polygon, kUnitSquare);
    uint32_t cluster = 99;
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 1, 0.5f, &cluster), 1);
    EXPECT_EQ(cluster, 0u);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0.5f, 1, &cluster), 1);
    cluster = 99;
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0, 0.5f, &cluster), 0);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0.5f, 0, &cluster), 0);
    EXPECT_EQ(cluster, 99u);
}

TEST_F(Polygon, FirstClusterThatHoldsThePointWins) {
    add_cluster(&polygon, {{10, 10}, {11, 10}, {11, 11}, {10, 11}});
    add_cluster(&polygon, {{0, 0}, {4, 0}, {4, 4}, {0, 4}});
    add_cluster(&polygon, {{1, 1}, {2, 1}, {2, 2}, {1, 2}}); // no hole: the outer cluster holds first
    uint32_t cluster = 99;
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 1.5f, 1.5f, &cluster), 1);
    EXPECT_EQ(cluster, 1u);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 10.5f, 10.5f, &cluster), 1);
    EXPECT_EQ(cluster, 0u);
}

TEST_F(Polygon, SmallClustersHoldNothing) {
    uint32_t cluster = 99;
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0, 0, &cluster), 0);
    add_cluster(&polygon, {});
    add_cluster(&polygon, {{0, 0}});
    add_cluster(&polygon, {{0, 0}, {2, 2}});
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 0, 0, &cluster), 0);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 1, 1, &cluster), 0);
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 2, 1, &cluster), 0);
    EXPECT_EQ(cluster, 99u);
    // A two-vertex cluster is walked like any other: its two edges cross at the same place, and the
    // flips cancel out.
    EXPECT_EQ(mox_polygon2_r32_in_vector2_r32(&polygon, 3, 1, &cluster), 0);
}

TEST(PolygonFailure, AFailedClusterGrowthLeavesTheCountAtZero) {
    if (const char* reason = mox_test::why_allocations_cannot_be_made_to_fail())
        GTEST_SKIP() << reason;
    auto outcome = run_in_child([] {
        mox_polygon2_r32 polygon;
        mox_polygon2_r32_construct(&polygon, nullptr);
        polygon.cluster_count = count_before_huge_block<mox_polygon2_r32_cluster>();
        mox_test::limit_address_space();
        ErrorListener listener;
        uint32_t index = 0;
        mox_bool result = mox_polygon2_r32_create_cluster(&polygon, &index);
        std::printf("result=%d index=%d count=%u null=%d silent=%d\n", result,
                    index == count_before_huge_block<mox_polygon2_r32_cluster>(), polygon.cluster_count,
                    polygon.clusters == nullptr, listener.silent());
    });
    // Not the old count: 0. Intended.
    EXPECT_NE(outcome.output.find("result=0 index=1 count=0 null=1 silent=1"), std::string::npos)
        << outcome.output;
}

TEST(PolygonFailure, AFailedVertexGrowthLeavesTheCountAtZero) {
    if (const char* reason = mox_test::why_allocations_cannot_be_made_to_fail())
        GTEST_SKIP() << reason;
    auto outcome = run_in_child([] {
        mox_polygon2_r32 polygon;
        mox_polygon2_r32_construct(&polygon, nullptr);
        uint32_t index = 0;
        mox_polygon2_r32_create_cluster(&polygon, &index);
        mox_polygon2_r32_cluster* block = polygon.clusters;
        block[0].vertex_count = count_before_huge_block<mox_vector2_r32>();
        mox_test::limit_address_space();
        ErrorListener listener;
        mox_bool result = mox_polygon2_r32_create_vertex(&polygon, 0, &index);
        std::printf("result=%d index=%d count=%u null=%d same=%d silent=%d\n", result,
                    index == count_before_huge_block<mox_vector2_r32>(), block[0].vertex_count,
                    block[0].vertices == nullptr, polygon.clusters == block, listener.silent());
    });
    EXPECT_NE(outcome.output.find("result=0 index=1 count=0 null=1 same=1 silent=1"), std::string::npos)
        << outcome.output;
}
