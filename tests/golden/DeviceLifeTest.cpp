#include "Rendering/OffscreenPicture.h"
#include "Rendering/RhiError.h"
#include "golden/FlatScene.h"
#include "golden/GoldenDevice.h"
#include "golden/PictureCompare.h"

#include <gtest/gtest.h>

#include <array>

namespace ostrella {
namespace {

constexpr int middle = FlatScene::size / 2;

FlatScene glass() {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.7F, -0.5F}, {0.7F, 0.5F}, 0, 20);
    scene.fill<Vec4>(SceneBuffer::featureEdges, {{-0.7F, -0.5F, 0.3F, 1}, {0.7F, 0.5F, 0.3F, 1}});
    scene.draw(Pipeline::preRunDepth);
    scene.draw(Pipeline::preRunFill, DepthState::lessEqualReadOnly);
    scene.draw(Pipeline::featureLine, DepthState::lessEqualReadOnly);
    return scene;
}

TEST(Device, buildsEveryPipelineThatAFrameMayAskFor) {
    struct Use {
        Pipeline pipeline;
        DepthState depth;
        bool leavesColor = true;
    };
    const std::array uses{Use{Pipeline::grid, DepthState::overlay},
        Use{Pipeline::surface, DepthState::less}, Use{Pipeline::mesh, DepthState::less},
        Use{Pipeline::ribbon, DepthState::lessEqualReadOnly},
        Use{Pipeline::vortexDepth, DepthState::less, false},
        Use{Pipeline::vortex, DepthState::lessEqualReadOnly},
        Use{Pipeline::preRunDepth, DepthState::less, false},
        Use{Pipeline::preRunFill, DepthState::lessEqualReadOnly},
        Use{Pipeline::preRunWire, DepthState::readOnly},
        Use{Pipeline::featureLine, DepthState::lessEqualReadOnly},
        Use{Pipeline::gizmo, DepthState::overlay}, Use{Pipeline::ring, DepthState::overlay}};
    static_assert(uses.size() == pipelineCount);
    for (const Use& use : uses) {
        SCOPED_TRACE(int(use.pipeline));
        FlatScene scene;
        scene.addQuad(SceneBuffer::modelVertices, {-0.7F, -0.7F}, {0.7F, 0.7F}, 0);
        scene.addQuad(SceneBuffer::vortexVertices, {-0.7F, -0.7F}, {0.7F, 0.7F}, 0);
        scene.addScalarQuad({-0.7F, -0.7F}, {0.7F, 0.7F}, 0.5F);
        for (const SceneBuffer lines : {SceneBuffer::featureEdges, SceneBuffer::gridMinor})
            scene.fill<Vec4>(lines, {{-0.2F, 0, 0, 1}, {0.2F, 0, 0, 1}});
        scene.fill<Vec4>(SceneBuffer::ringX,
            {{-0.5F, -0.5F, 0, 1}, {0.5F, -0.5F, 0, 1}, {0.5F, 0.5F, 0, 1}, {-0.5F, 0.5F, 0, 1}});
        scene.fill<Vec4>(SceneBuffer::gizmoSegments, {{4, 4, 28, 28}, {1, 1, 1, 1}, {3, 1, 0, 0}});
        scene.fill<Vec4>(SceneBuffer::ribbonPoints,
            {{-0.5F, 0, 0, 0.5F}, {0, 1, 0, 1}, {0.5F, 0, 0, 0.5F}, {1, 1, 0, 2}});
        scene.fill<std::uint32_t>(SceneBuffer::ribbonIndices, {0, 1, 2, 1, 3, 2});
        scene.draw(use.pipeline, use.depth);
        for (const int samples : {1, 4}) {
            scene.samples = samples;
            QImage empty(FlatScene::size, FlatScene::size, QImage::Format_RGB32);
            empty.fill(flatGround);
            const auto difference = PictureDifference::between(scene.picture(), empty);
            EXPECT_EQ(difference.largest > 5, use.leavesColor) << samples << " samples";
        }
    }
}

TEST(Device, anEmptyFrameIsItsBackground) {
    FlatScene scene;
    const QImage picture = scene.picture();
    ASSERT_EQ(picture.size(), QSize(FlatScene::size, FlatScene::size));
    EXPECT_EQ(picture.pixelColor(0, 0), flatGround);
    EXPECT_EQ(picture.pixelColor(63, 63), flatGround);
}

TEST(Device, upIsUp) {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.9F, 0.2F}, {-0.2F, 0.9F}, 0);
    scene.draw(Pipeline::mesh);
    const QImage picture = scene.picture();
    EXPECT_NE(picture.pixelColor(16, 16), flatGround) << "above and to the left";
    EXPECT_EQ(picture.pixelColor(16, 48), flatGround);
    EXPECT_EQ(picture.pixelColor(48, 16), flatGround);
}

TEST(Device, buffersAreRenewedWhenTheyAreReplaced) {
    FlatScene scene;
    scene.addScalarQuad({-0.9F, -0.9F}, {0.9F, 0.9F}, 1);
    scene.draw(Pipeline::surface);
    RhiScene device(GoldenDevice::current().rhi());
    const QColor before = scene.picture(device).pixelColor(middle, middle);
    scene.fill<Vec4>(
        SceneBuffer::surfaceVertices, {{-1, -1, 0, 0}, {1, -1, 0, 0}, {-1, 1, 0, 0}, {1, 1, 0, 0}});
    const QColor after = scene.picture(device).pixelColor(middle, middle);
    EXPECT_FALSE(isNear(before, after, 40));
    scene.buffers.remove(SceneBuffer::surfaceVertices);
    EXPECT_EQ(scene.picture(device).pixelColor(middle, middle), flatGround);
}

TEST(Device, buffersOfMegabytesArriveWhole) {
    const std::vector<Vec4> quad{
        {-0.8F, -0.7F, 0, 1}, {0.9F, -0.7F, 0, 1}, {-0.8F, 0.6F, 0, 1}, {0.9F, 0.6F, 0, 1}};
    const std::vector<std::uint32_t> corners{0, 1, 2, 1, 3, 2};
    const auto picture = [&](std::uint32_t vertices, std::size_t indices) {
        // The quad at the very end, behind points and triangles of no size.
        std::vector<Vec4> points(vertices - quad.size(), Vec4(0, 0, 0, 0));
        points.insert(points.end(), quad.begin(), quad.end());
        std::vector<std::uint32_t> order(indices - corners.size(), 0);
        for (const std::uint32_t corner : corners)
            order.push_back(vertices - static_cast<std::uint32_t>(quad.size()) + corner);
        FlatScene scene;
        scene.fill(SceneBuffer::surfaceVertices, points);
        scene.fill(SceneBuffer::surfaceIndices, order);
        scene.draw(Pipeline::surface);
        return scene.picture();
    };
    const QImage small = picture(4, 6);
    EXPECT_NE(small.pixelColor(middle, middle), flatGround);
    EXPECT_LE(PictureDifference::between(picture(200'000, 600'000), small).largest, 0);
}

TEST(Device, aModelIsRenewedWhenOnlyItsVerticesAre) {
    FlatScene scene = glass();
    RhiScene device(GoldenDevice::current().rhi());
    const QImage before = scene.picture(device);
    std::vector<Vec4> moved;
    for (const Vec2 corner : {Vec2(-1, -1), Vec2(1, -1), Vec2(-1, 1), Vec2(1, 1)}) {
        moved.emplace_back(corner, 0, 0);
        moved.emplace_back(0, 0, 1, 0);
    }
    scene.fill(SceneBuffer::modelVertices, moved);
    const QImage after = scene.picture(device);
    EXPECT_EQ(before.pixelColor(2, 2), flatGround);
    EXPECT_NE(after.pixelColor(2, 2), flatGround);
    EXPECT_LE(PictureDifference::between(after, scene.picture()).largest, 0);
}

TEST(Device, aLostOneIsReplacedByAnotherThatDrawsTheSame) {
    const FlatScene scene = glass();
    const QImage expected = scene.picture();
    for (int loss = 0; loss < 3; ++loss) {
        const auto another = OffscreenDevice::create(GoldenDevice::current().backend);
        ASSERT_TRUE(another);
        RhiScene fresh(another->rhi());
        const auto picture = OffscreenPicture::render(another->rhi(), fresh,
            {FlatScene::size, FlatScene::size}, scene.frame, scene.buffers, scene.pointScale);
        ASSERT_TRUE(picture);
        EXPECT_EQ(PictureDifference::between(*picture, expected).largest, 0);
    }
}

TEST(Device, aStormOfSizesIsSurvived) {
    const FlatScene scene = glass();
    RhiScene device(GoldenDevice::current().rhi());
    const QImage before = scene.picture(device);
    for (int i = 0; i < 120; ++i) {
        const QSize size(1 + (i * 37) % 300, 1 + (i * 53) % 200);
        const auto picture = OffscreenPicture::render(GoldenDevice::current().rhi(), device, size,
            scene.frame, scene.buffers, 1, i % 3 == 0 ? 1 : 4);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->size(), size);
    }
    EXPECT_EQ(PictureDifference::between(scene.picture(device), before).largest, 0);
}

TEST(Device, drawsOnePixelAndFortyMillion) {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0);
    scene.draw(Pipeline::mesh);
    RhiScene device(GoldenDevice::current().rhi());
    for (const QSize size : {QSize(1, 1), QSize(8000, 5000)}) {
        const auto picture = OffscreenPicture::render(
            GoldenDevice::current().rhi(), device, size, scene.frame, scene.buffers, 1);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->size(), size);
        EXPECT_NE(picture->pixelColor(size.width() / 2, size.height() / 2), flatGround);
    }
}

TEST(Device, refusesMoreThanItHasRoomFor) {
    QRhi& rhi = GoldenDevice::current().rhi();
    const FlatScene scene = glass();
    RhiScene device(rhi);
    const int most = rhi.resourceLimit(QRhi::TextureSizeMax);
    EXPECT_THROW(
        OffscreenPicture::render(rhi, device, {most + 1, 8}, scene.frame, scene.buffers, 1),
        RhiError);
    EXPECT_FALSE(rhi.isRecordingFrame());
    EXPECT_FALSE(scene.picture(device).isNull()) << "and goes on";
}

TEST(Device, whatIsNotThereIsNotDrawn) {
    FlatScene scene;
    for (const Pipeline pipeline : {Pipeline::mesh, Pipeline::surface, Pipeline::ribbon,
             Pipeline::vortex, Pipeline::featureLine, Pipeline::ring, Pipeline::gizmo}) {
        DrawCommand& draw = scene.draw(pipeline);
        draw.count = std::max(draw.count, 3U);
        draw.instances = 5;
    }
    QImage empty(FlatScene::size, FlatScene::size, QImage::Format_RGB32);
    empty.fill(flatGround);
    EXPECT_EQ(PictureDifference::between(scene.picture(), empty).largest, 0);
}

} // namespace
} // namespace ostrella
