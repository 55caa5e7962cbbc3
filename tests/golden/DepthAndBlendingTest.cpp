#include "golden/BrightPixels.h"
#include "golden/FlatScene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {
namespace {

constexpr int middle = FlatScene::size / 2;

/// The share of white in the picture's middle, from the ground's red of 20.
double white(const QImage& picture) {
    return shareOf(picture.pixelColor(middle, middle), flatGround, Qt::white);
}

void addLine(FlatScene& scene, float z) {
    scene.fill<Vec4>(SceneBuffer::featureEdges, {{-0.9F, 0, z, 1}, {0.9F, 0, z, 1}});
}

TEST(DepthStates, nearerBodiesHideFartherOnesWhateverTheOrder) {
    for (const bool nearFirst : {true, false}) {
        FlatScene scene;
        scene.addQuad(SceneBuffer::vortexVertices, {-0.5F, -0.5F}, {0.5F, 0.5F}, 0.5F);
        scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0);
        // The vortex's geometry, drawn as a body of another colour.
        const auto nearQuad = [&] {
            DrawCommand& draw = scene.draw(Pipeline::mesh);
            draw.vertices = SceneBuffer::vortexVertices;
            draw.indices = SceneBuffer::vortexIndices;
            draw.uniforms = 1;
        };
        scene.frame.uniforms.push_back(scene.frame.uniforms[0]);
        scene.frame.uniforms[1].baseColor = Vec4(1, 0, 0, 1);
        if (nearFirst)
            nearQuad();
        scene.draw(Pipeline::mesh);
        if (!nearFirst)
            nearQuad();
        const QImage picture = scene.picture();
        const QColor inside = picture.pixelColor(middle, middle);
        EXPECT_GT(inside.red(), inside.green() + 100) << nearFirst;
        const QColor outside = picture.pixelColor(6, middle);
        EXPECT_GT(outside.blue(), outside.red()) << nearFirst;
    }
}

TEST(DepthStates, lessWritesAndTheOthersDoNot) {
    struct Case {
        DepthState first;
        bool hides;
    };
    for (const Case& c : {Case{DepthState::less, true}, Case{DepthState::readOnly, false},
             Case{DepthState::overlay, false}, Case{DepthState::lessEqualReadOnly, false}}) {
        FlatScene scene;
        scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0.2F);
        addLine(scene, -0.8F); // behind it, by more than lines are pulled forward
        scene.pointScale = 6;
        scene.draw(Pipeline::mesh, c.first);
        const double without = white(scene.picture());
        scene.draw(Pipeline::featureLine, DepthState::lessEqualReadOnly);
        const double with = white(scene.picture());
        EXPECT_EQ(std::abs(with - without) < 0.02, c.hides) << int(c.first);
    }
}

TEST(DepthStates, overlaysShowThroughEverything) {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0.9F);
    scene.draw(Pipeline::mesh);
    const QColor body = scene.picture().pixelColor(middle, middle);
    addLine(scene, -0.9F);
    scene.pointScale = 6;
    scene.draw(Pipeline::featureLine, DepthState::overlay);
    const QColor line = scene.picture().pixelColor(middle, middle);
    EXPECT_NEAR(line.red(), (body.red() + 255) / 2, 2);
}

TEST(DepthStates, equalDepthsPassWhereEqualIsSaid) {
    for (const DepthState depth : {DepthState::lessEqualReadOnly, DepthState::readOnly}) {
        FlatScene scene;
        scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0);
        scene.draw(Pipeline::preRunDepth);
        EXPECT_NEAR(white(scene.picture()), 0, 0.005) << "depth alone has no colour";
        scene.draw(Pipeline::preRunFill, depth);
        EXPECT_EQ(white(scene.picture()) > 0.3, depth == DepthState::lessEqualReadOnly);
    }
}

TEST(DepthStates, linesInAFaceLieInFrontOfIt) {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0);
    addLine(scene, 0);
    scene.draw(Pipeline::mesh);
    const int body = scene.picture().pixelColor(middle, middle).red();
    scene.pointScale = 6;
    scene.draw(Pipeline::featureLine, DepthState::lessEqualReadOnly);
    const QImage picture = scene.picture();
    for (int x = 8; x < 56; ++x)
        EXPECT_NEAR(picture.pixelColor(x, middle).red(), (body + 255) / 2, 2) << x;
}

TEST(Blending, alphaMixesAndThePictureStaysOpaque) {
    FlatScene scene;
    addLine(scene, 0);
    scene.pointScale = 6;
    scene.draw(Pipeline::featureLine, DepthState::overlay);
    const QImage picture = scene.picture();
    EXPECT_TRUE(isNear(picture.pixelColor(middle, middle),
        QColor((20 + 255) / 2, (40 + 255) / 2, (60 + 255) / 2), 1));
    EXPECT_EQ(picture.pixelColor(middle, middle).alpha(), 255);
    EXPECT_EQ(picture.pixelColor(middle, 4), flatGround);
}

TEST(Blending, theVortexIsNearlyNothingFaceOnAndPaleAtItsRim) {
    const auto share = [](float nx) {
        FlatScene scene;
        scene.addQuad(SceneBuffer::vortexVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0);
        std::vector<Vec4> vertices;
        for (const Vec2 corner : {Vec2(-1, -1), Vec2(1, -1), Vec2(-1, 1), Vec2(1, 1)}) {
            vertices.emplace_back(corner * 0.9F, 0, 0);
            vertices.emplace_back(nx, 0, std::sqrt(1 - nx * nx), 0);
        }
        scene.fill(SceneBuffer::vortexVertices, vertices);
        scene.draw(Pipeline::vortexDepth);
        scene.draw(Pipeline::vortex, DepthState::lessEqualReadOnly);
        return white(scene.picture());
    };
    EXPECT_NEAR(share(0), 0.08, 0.005);
    EXPECT_NEAR(share(1), 0.34, 0.01);
}

TEST(Blending, onlyTheNearestLayerOfGlassIsDrawn) {
    const auto drawn = [](bool twoLayers) {
        FlatScene scene;
        scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0.2F);
        if (twoLayers) {
            scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, -0.2F);
            scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, -0.4F);
        }
        scene.draw(Pipeline::preRunDepth);
        scene.draw(Pipeline::preRunFill, DepthState::lessEqualReadOnly);
        return scene.picture().pixelColor(middle, middle);
    };
    EXPECT_EQ(drawn(true), drawn(false));
}

TEST(Boxes, aDrawWithABoxStaysInItAndLeavesTheRestDrawn) {
    FlatScene scene;
    scene.addQuad(SceneBuffer::modelVertices, {-0.9F, -0.9F}, {0.9F, 0.9F}, 0);
    scene.draw(Pipeline::mesh);
    const QImage without = scene.picture();
    // From the box's left lower corner to its right upper one, as thick as the box.
    scene.fill<Vec4>(SceneBuffer::gizmoSegments, {{0, 0, 32, 32}, {1, 1, 1, 1}, {40, 1, 0, 0}});
    scene.draw(Pipeline::gizmo, DepthState::overlay);
    const QImage with = scene.picture();
    for (int y = 0; y < FlatScene::size; ++y) {
        for (int x = 0; x < FlatScene::size; ++x) {
            const bool inside =
                x >= 8 && x < 40 && y >= FlatScene::size - 36 && y < FlatScene::size - 4;
            EXPECT_EQ(with.pixelColor(x, y), inside ? QColor(Qt::white) : without.pixelColor(x, y))
                << x << ", " << y;
        }
    }
}

} // namespace
} // namespace ostrella
