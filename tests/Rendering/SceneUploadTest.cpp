// What uploads leave in the buffers.
#include "Scenes.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace ostrella {
namespace {

using namespace scenes;
using Floats = std::vector<float>;

std::vector<std::uint32_t> indicesOf(const SceneBuffers& buffers, SceneBuffer buffer) {
    const auto& bytes = buffers[buffer].bytes;
    const auto* values = reinterpret_cast<const std::uint32_t*>(bytes.data());
    return {values, values + bytes.size() / 4};
}

TEST(ModelUpload, laysPositionsAndNormalsInTurn) {
    Scene scene;
    scene.renderer.upload(TriangleMesh({Vec3(0, 0, 0), Vec3(2, 0, 0), Vec3(0, 3, 0)},
        {Vec3(1, 0, 0), Vec3(1, 0, 0), Vec3(1, 0, 0)}));
    const SceneBuffers& buffers = scene.renderer.buffers();
    // The normals are the facet's own, not those of the file.
    EXPECT_EQ(floats(buffers, SceneBuffer::modelVertices),
        (Floats{0, 0, 0, 0, 0, 0, 1, 0, 2, 0, 0, 0, 0, 0, 1, 0, 0, 3, 0, 0, 0, 0, 1, 0}));
    EXPECT_EQ(indicesOf(buffers, SceneBuffer::modelIndices), (std::vector<std::uint32_t>{0, 1, 2}));
    // An open triangle is all boundary.
    EXPECT_EQ(floats(buffers, SceneBuffer::featureEdges),
        (Floats{0, 0, 0, 1, 2, 0, 0, 1, 2, 0, 0, 1, 0, 3, 0, 1, 0, 0, 0, 1, 0, 3, 0, 1}));
    EXPECT_EQ(scene.renderer.contents().meshIndexCount, 3U);
    EXPECT_EQ(scene.renderer.contents().featureEdgeVertexCount, 6U);
    EXPECT_EQ(scene.renderer.contents().meshBounds.max, Vec3(2, 3, 0));
}

TEST(ModelUpload, sharesCornersAndFindsTheEdges) {
    Scene scene;
    scene.renderer.upload(cube());
    EXPECT_EQ(scene.renderer.buffers()[SceneBuffer::modelVertices].bytes.size(), 8U * 32U);
    EXPECT_EQ(scene.renderer.contents().meshIndexCount, 36U);
    EXPECT_EQ(scene.renderer.contents().featureEdgeVertexCount, 24U);
    EXPECT_TRUE(scene.renderer.hasModel());
    EXPECT_FALSE(scene.renderer.hasResult());
}

TEST(ModelUpload, isTheSameForAModelPreparedElsewhere) {
    Scene scene;
    Scene prepared;
    scene.renderer.upload(cube());
    prepared.renderer.upload(PreparedModel::of(cube()));
    for (const SceneBuffer buffer :
        {SceneBuffer::modelVertices, SceneBuffer::modelIndices, SceneBuffer::featureEdges})
        EXPECT_EQ(
            scene.renderer.buffers()[buffer].bytes, prepared.renderer.buffers()[buffer].bytes);
    EXPECT_EQ(scene.renderer.camera, prepared.renderer.camera);
}

TEST(ModelUpload, replacesTheModelWhole) {
    Scene scene;
    scene.renderer.upload(cube());
    const auto version = scene.renderer.buffers()[SceneBuffer::modelVertices].version;
    scene.renderer.upload(TriangleMesh(
        {Vec3(0, 0, 0), Vec3(2, 0, 0), Vec3(0, 3, 0)}, std::vector<Vec3>(3, Vec3(0, 0, 1))));
    EXPECT_EQ(scene.renderer.contents().meshIndexCount, 3U);
    EXPECT_NE(scene.renderer.buffers()[SceneBuffer::modelVertices].version, version);
}

TEST(ModelUpload, isUndoneByClear) {
    Scene scene;
    scene.renderer.upload(cube());
    scene.renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    scene.renderer.clear();
    EXPECT_FALSE(scene.renderer.hasModel());
    EXPECT_TRUE(scene.renderer.hasResult());
    EXPECT_EQ(scene.renderer.contents().meshBounds, BoundingBox{});
    EXPECT_EQ(scene.renderer.contents().featureEdgeVertexCount, 0U);
    for (const SceneBuffer buffer :
        {SceneBuffer::modelVertices, SceneBuffer::modelIndices, SceneBuffer::featureEdges})
        EXPECT_TRUE(scene.renderer.buffers()[buffer].bytes.empty());
}

TEST(SurfaceUpload, laysPositionsWithTheirScalars) {
    Scene scene;
    scene.renderer.uploadSurface(surface({-1, -2, -3}, {1, 2, 3}));
    EXPECT_EQ(floats(scene.renderer.buffers(), SceneBuffer::surfaceVertices),
        (Floats{-1, -2, -3, -0.5F, 1, -2, -3, 0.25F, 1, 2, 3, 1.5F}));
    const SceneContents& contents = scene.renderer.contents();
    EXPECT_EQ(contents.surfaceIndexCount, 3U);
    EXPECT_EQ(contents.surfacePrimitive, Topology::triangles);
    EXPECT_EQ(contents.surfaceScalarRange, Vec2(-0.5F, 1.5F));
    EXPECT_EQ(contents.surfaceBounds, (BoundingBox{{-1, -2, -3}, {1, 2, 3}}));
}

TEST(SurfaceUpload, isNoResultWithoutCells) {
    Scene scene;
    SurfaceField field = surface(Vec3(-1.0F), Vec3(1.0F));
    field.indices = {};
    scene.renderer.uploadSurface(field);
    EXPECT_FALSE(scene.renderer.hasResult());
    scene.renderer.uploadSurface(SurfaceField());
    EXPECT_FALSE(scene.renderer.hasResult());
}

TEST(LinesUpload, keepsPointsIndicesAndSpeeds) {
    Scene scene;
    scene.renderer.uploadStreamlines(lines({0, 0, 0}, {4, 0, 0}));
    EXPECT_EQ(floats(scene.renderer.buffers(), SceneBuffer::ribbonPoints),
        (Floats{0, 0, 0, 10, 0, 4, 0, 1, 2, 0, 0, 20, 2, 4, 0, 0, 4, 0, 0, 30, 4, 4, 0, 2}));
    EXPECT_EQ(indicesOf(scene.renderer.buffers(), SceneBuffer::ribbonIndices),
        (std::vector<std::uint32_t>{0, 1, 2, 1, 3, 2, 2, 3, 4, 3, 5, 4}));
    EXPECT_EQ(scene.renderer.contents().streamlineMagRange, Vec2(10, 30));
    EXPECT_EQ(scene.renderer.contents().streamlineBounds, (BoundingBox{{0, 0, 0}, {4, 0, 0}}));
}

TEST(LinesUpload, ofNoneClearTheRibbonsAndLeaveTheirRange) {
    Scene scene;
    scene.renderer.uploadStreamlines(lines({0, 0, 0}, {4, 0, 0}));
    scene.renderer.uploadStreamlines({});
    EXPECT_FALSE(scene.renderer.hasResult());
    EXPECT_TRUE(scene.renderer.buffers()[SceneBuffer::ribbonPoints].bytes.empty());
    EXPECT_TRUE(scene.renderer.buffers()[SceneBuffer::ribbonIndices].bytes.empty());
    EXPECT_EQ(scene.renderer.contents().ribbonIndexCount, 0U);
    EXPECT_EQ(scene.renderer.contents().streamlineMagRange, Vec2(10, 30));
}

TEST(VortexUpload, laysPositionsAndNormalsInTurn) {
    Scene scene;
    scene.renderer.uploadVortex(vortex());
    EXPECT_EQ(floats(scene.renderer.buffers(), SceneBuffer::vortexVertices),
        (Floats{0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 1, 0}));
    EXPECT_EQ(scene.renderer.contents().vortexIndexCount, 3U);
    scene.renderer.uploadVortex({});
    EXPECT_EQ(scene.renderer.contents().vortexIndexCount, 0U);
    EXPECT_TRUE(scene.renderer.buffers()[SceneBuffer::vortexVertices].bytes.empty());
    EXPECT_FALSE(scene.renderer.hasResult());
}

TEST(ResultUpload, isUndoneByClearResults) {
    Scene scene;
    scene.renderer.upload(cube());
    scene.renderer.uploadSurface(surface(Vec3(-1.0F), Vec3(1.0F)));
    scene.renderer.uploadStreamlines(lines({0, 0, 0}, {4, 0, 0}));
    scene.renderer.uploadVortex(vortex());
    scene.renderer.clearResults();
    EXPECT_FALSE(scene.renderer.hasResult());
    EXPECT_TRUE(scene.renderer.hasModel());
    for (const SceneBuffer buffer :
        {SceneBuffer::surfaceVertices, SceneBuffer::surfaceIndices, SceneBuffer::ribbonPoints,
            SceneBuffer::ribbonIndices, SceneBuffer::vortexVertices, SceneBuffer::vortexIndices})
        EXPECT_TRUE(scene.renderer.buffers()[buffer].bytes.empty());
}

TEST(GridUpload, layersAreLineListsWithAOneBehindEachPoint) {
    Scene scene;
    // The empty scene's grid: 0.5 m, 21 lines on each side, every second one major.
    const Floats major = floats(scene.renderer.buffers(), SceneBuffer::gridMajor);
    const Floats minor = floats(scene.renderer.buffers(), SceneBuffer::gridMinor);
    ASSERT_EQ(major.size(), 2U * 21U * 2U * 4U);
    ASSERT_EQ(minor.size(), 2U * 22U * 2U * 4U);
    EXPECT_EQ(scene.renderer.contents().gridMajorVertexCount, 84U);
    EXPECT_EQ(scene.renderer.contents().gridMinorVertexCount, 88U);
    EXPECT_EQ(Floats(minor.begin(), minor.begin() + 8),
        (Floats{-10.5F, -0.06F, -10.5F, 1, -10.5F, -0.06F, 10.5F, 1}));
}

TEST(GridUpload, isMadeAnewOnlyForAnotherPlan) {
    Scene scene;
    scene.renderer.upload(cube());
    const auto version = scene.renderer.buffers()[SceneBuffer::gridMinor].version;
    scene.renderer.upload(cube());
    scene.renderer.refreshGrid();
    EXPECT_EQ(scene.renderer.buffers()[SceneBuffer::gridMinor].version, version);
    scene.renderer.upload(box(Vec3(-1.0F), Vec3(2.0F)));
    EXPECT_NE(scene.renderer.buffers()[SceneBuffer::gridMinor].version, version);
}

TEST(BufferVersions, areNeverUsedTwice) {
    Scene scene;
    scene.renderer.orientMode = true;
    std::set<std::uint64_t> seen;
    std::size_t replaced = 0;
    for (int round = 1; round <= 3; ++round) {
        scene.renderer.upload(box(Vec3(0.0F), Vec3(static_cast<float>(round))));
        scene.frame();
        for (const SceneBuffer buffer : {SceneBuffer::modelVertices, SceneBuffer::modelIndices,
                 SceneBuffer::gridMinor, SceneBuffer::ringX, SceneBuffer::ringZ}) {
            seen.insert(scene.renderer.buffers()[buffer].version);
            ++replaced;
        }
    }
    EXPECT_EQ(seen.size(), replaced);
}

} // namespace
} // namespace ostrella
