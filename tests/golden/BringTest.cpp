// What a large scene draws with comes to the device over several frames.
#include "Rendering/OffscreenPicture.h"
#include "golden/FlatScene.h"
#include "golden/GoldenDevice.h"
#include "golden/PictureCompare.h"

#include <gtest/gtest.h>

#include <utility>

namespace ostrella {
namespace {

constexpr std::size_t pieceBytes = std::size_t(1) << 20;

/// A frame that brings one piece; whether all is there.
bool bring(RhiScene& device, const FlatScene& scene, std::size_t bytes = pieceBytes) {
    QRhi& rhi = GoldenDevice::current().rhi();
    QRhiCommandBuffer* commands = nullptr;
    EXPECT_EQ(rhi.beginOffscreenFrame(&commands), QRhi::FrameOpSuccess);
    const bool isWhole = device.bring(*commands, scene.frame, scene.buffers, bytes);
    EXPECT_EQ(rhi.endOffscreenFrame(), QRhi::FrameOpSuccess);
    return isWhole;
}

/// Frames until all was there, that one among them; 0 for never.
int framesToBring(RhiScene& device, const FlatScene& scene, std::size_t bytes = pieceBytes) {
    for (int frames = 1; frames <= 100; ++frames)
        if (bring(device, scene, bytes))
            return frames;
    return 0;
}

/// A surface of two triangles between `left` and `right`, behind others of no size: 3.2 MB of
/// vertices and 4.8 MB of indices.
FlatScene largeSurface(float left, float right) {
    constexpr std::uint32_t vertices = 200'000;
    constexpr std::size_t indices = 1'200'000;
    std::vector<Vec4> points(vertices - 4, Vec4(0, 0, 0, 0));
    points.insert(points.end(),
        {{left, -0.7F, 0, 1}, {right, -0.7F, 0, 1}, {left, 0.6F, 0, 1}, {right, 0.6F, 0, 1}});
    std::vector<std::uint32_t> order(indices - 6, 0);
    for (const std::uint32_t corner : {0, 1, 2, 1, 3, 2})
        order.push_back(vertices - 4 + corner);
    FlatScene scene;
    scene.fill(SceneBuffer::surfaceVertices, points);
    scene.fill(SceneBuffer::surfaceIndices, order);
    scene.draw(Pipeline::surface);
    return scene;
}

/// A glass body of four triangles that the device creases, and 100 000 feature lines.
FlatScene linedBody() {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.7F, -0.5F}, {0.7F, 0.5F}, 0, 20);
    std::vector<Vec4> ends;
    for (int line = 0; line < 100'000; ++line) {
        const float y = -0.6F + 1.2F * static_cast<float>(line % 7) / 7;
        ends.insert(ends.end(), {{-0.7F, y, 0.3F, 1}, {0.7F, y, 0.3F, 1}});
    }
    scene.fill(SceneBuffer::featureEdges, ends);
    scene.draw(Pipeline::preRunDepth);
    scene.draw(Pipeline::preRunFill, DepthState::lessEqualReadOnly);
    scene.draw(Pipeline::featureLine, DepthState::lessEqualReadOnly);
    return scene;
}

void expectSame(const QImage& seen, const FlatScene& scene) {
    ASSERT_FALSE(seen.isNull());
    EXPECT_EQ(PictureDifference::between(seen, scene.picture()).largest, 0);
}

TEST(Bring, takesOneFrameForWhatFits) {
    const FlatScene scene = largeSurface(-0.8F, 0.9F);
    RhiScene device(GoldenDevice::current().rhi());
    EXPECT_TRUE(bring(device, scene, 10 * pieceBytes));
    expectSame(scene.picture(device), scene);
}

TEST(Bring, takesAsManyFramesAsThereArePieces) {
    const FlatScene scene = largeSurface(-0.8F, 0.9F);
    RhiScene device(GoldenDevice::current().rhi());
    // 3.2 and 4.8 MB in pieces of 1 MiB, and a frame for making room for each of the two: that of
    // the second one begins when a part of a piece is left, and waits for a whole one.
    EXPECT_EQ(framesToBring(device, scene), 4 + 1 + 5 + 1);
    EXPECT_TRUE(bring(device, scene)) << "and nothing more";
    expectSame(scene.picture(device), scene);
}

TEST(Bring, bringsNothingTwice) {
    const FlatScene scene = linedBody();
    RhiScene device(GoldenDevice::current().rhi());
    EXPECT_GT(framesToBring(device, scene), 4) << "lines and the quads that draw them";
    EXPECT_TRUE(bring(device, scene, 0)) << "without any more room";
    expectSame(scene.picture(device), scene);
}

TEST(Bring, startsAfreshWithWhatReplacesTheSceneHalfway) {
    FlatScene scene = largeSurface(-0.8F, 0.9F);
    RhiScene device(GoldenDevice::current().rhi());
    for (int frame = 0; frame < 6; ++frame)
        ASSERT_FALSE(bring(device, scene));
    const FlatScene other = largeSurface(-0.2F, 0.3F);
    for (const SceneBuffer buffer : {SceneBuffer::surfaceVertices, SceneBuffer::surfaceIndices})
        scene.buffers.replace(buffer, other.buffers[buffer].bytes);
    EXPECT_EQ(framesToBring(device, scene), 11);
    expectSame(scene.picture(device), other);
}

TEST(Bring, leavesAPictureInBetweenWhole) {
    for (const FlatScene& scene : {largeSurface(-0.8F, 0.9F), linedBody()}) {
        RhiScene device(GoldenDevice::current().rhi());
        for (int frame = 0; frame < 3; ++frame)
            ASSERT_FALSE(bring(device, scene));
        expectSame(scene.picture(device), scene);
        EXPECT_TRUE(bring(device, scene, 0));
    }
}

TEST(Bring, takesEdgesInPiecesWhereTheDeviceHasNoLinesOfItsOwn) {
    FlatScene scene = largeSurface(-0.8F, 0.9F);
    scene.frame.draws.back().pipeline = Pipeline::surface;
    scene.frame.draws.back().fill = FillMode::lines;
    QRhi& rhi = GoldenDevice::current().rhi();
    RhiScene lists(rhi, {.lineLists = true});
    EXPECT_GT(framesToBring(lists, scene), 11 + 9);
    const QImage inPieces = scene.picture(lists);
    RhiScene atOnce(rhi, {.lineLists = true});
    EXPECT_EQ(PictureDifference::between(inPieces, scene.picture(atOnce)).largest, 0);
    EXPECT_NE(inPieces.pixelColor(FlatScene::size / 2, FlatScene::size / 2 - 2), QColor());
}

} // namespace
} // namespace ostrella
