#include "Rendering/PreparedModel.h"

#include "Scenes.h"

#include <gtest/gtest.h>

#include <thread>

namespace ostrella {
namespace {

using namespace scenes;

TEST(PreparedModel, isEmptyForNoFacets) {
    const PreparedModel model = PreparedModel::of(TriangleMesh());
    EXPECT_EQ(model.indexCount, 0U);
    EXPECT_TRUE(model.vertices.empty());
    EXPECT_EQ(model.bounds, BoundingBox{});
}

TEST(PreparedModel, countsWhatItsArraysHold) {
    const PreparedModel model = PreparedModel::of(cube());
    EXPECT_EQ(model.positions.size(), 8U);
    EXPECT_EQ(model.vertices.size(), 8U * 32U);
    EXPECT_EQ(model.indexCount, 36U);
    EXPECT_EQ(model.indices.size(), 36U * 4U);
    EXPECT_EQ(model.featureEdgeVertexCount, 24U);
    EXPECT_EQ(model.featureEdges.size(), 24U * 16U);
    EXPECT_EQ(model.bounds, (BoundingBox{Vec3(-1.0F), Vec3(1.0F)}));
}

TEST(PreparedModel, goesWithoutLinesWhereNoneAreDrawn) {
    const PreparedModel model =
        PreparedModel::of(cube(), PreparedModel::Picking::walk, PreparedModel::Lines::none);
    EXPECT_EQ(model.featureEdgeVertexCount, 0U);
    EXPECT_TRUE(model.featureEdges.empty());
    EXPECT_EQ(model.vertices, PreparedModel::of(cube()).vertices);
    EXPECT_EQ(model.indices, PreparedModel::of(cube()).indices);
}

TEST(PreparedModel, isMadeOnAnyThread) {
    PreparedModel elsewhere;
    std::thread worker([&] { elsewhere = PreparedModel::of(cube()); });
    worker.join();
    EXPECT_EQ(elsewhere.vertices, PreparedModel::of(cube()).vertices);
}

TEST(PreparedModel, weldsOnACoarserGridFarFromTheOrigin) {
    // On its own grid of 1e-5 the corners' keys would pass 32 bits.
    const PreparedModel model = PreparedModel::of(box(Vec3(1e6F), Vec3(1e6F + 1.0F)));
    EXPECT_EQ(model.positions.size(), 8U);
    EXPECT_EQ(model.indexCount, 36U);
}

TEST(PreparedModel, isHitAlikeWithAndWithoutATree) {
    const PreparedModel walked = PreparedModel::of(cube(), PreparedModel::Picking::walk);
    PreparedModel indexed = PreparedModel::of(cube(), PreparedModel::Picking::tree);
    EXPECT_FALSE(walked.tree);
    ASSERT_TRUE(indexed.tree);
    // The tree looks into arrays that copies share.
    const PreparedModel copy = indexed;
    indexed = {};
    int hits = 0;
    for (float x = -2; x <= 2; x += 0.23F) {
        for (float y = -2; y <= 2; y += 0.23F) {
            const ViewportPicking::Ray ray{{x, y, 5}, {0.05F, -0.1F, -1}};
            EXPECT_EQ(walked.nearestHit(ray), copy.nearestHit(ray)) << x << " " << y;
            hits += walked.nearestHit(ray) ? 1 : 0;
        }
    }
    // Of 18 × 18 rays about a quarter meet the cube.
    EXPECT_GT(hits, 60);
    EXPECT_LT(hits, 120);
}

} // namespace
} // namespace ostrella
