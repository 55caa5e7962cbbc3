// Large models are prepared beside the main thread; what is seen comes in order all the same.
#include "Views/Viewport/ViewportBench.h"

#include "support/Wait.h"

#include <cmath>

namespace ostrella::test {
namespace {

class ViewportWithAWorker : public ViewportBench {
protected:
    ViewportWithAWorker() {
        turn();
        coordinator.mostFacetsAtOnce = 11;
    }

    bool waitForModel() {
        return waitUntil([this] { return renderer.hasModel(); });
    }
};

TEST_F(ViewportWithAWorker, aModelFromTheWorkerIsTheSameModel) {
    MetalRenderer other([] { return 0.0; });
    other.upload(boxMesh(Vec3(-1), Vec3(1)));
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    coordinator.update();
    EXPECT_FALSE(renderer.hasModel()) << "on its way";
    ASSERT_TRUE(waitForModel());
    EXPECT_EQ(renderer.buffers()[SceneBuffer::modelVertices].bytes,
        other.buffers()[SceneBuffer::modelVertices].bytes);
    EXPECT_EQ(renderer.contents().featureEdgeVertexCount, other.contents().featureEdgeVertexCount);
}

TEST_F(ViewportWithAWorker, whatWasSetMeanwhileComesWithTheModel) {
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    coordinator.update();
    parameters.setLastRunResult(resultAt("run-1", Vec3(-4), Vec3(4)));
    settings.setColormapEnabled(true);
    settings.setReframeRequestID(QUuid::createUuid());
    coordinator.update();
    EXPECT_FALSE(renderer.hasResult());
    EXPECT_FALSE(renderer.colormapEnabled);
    ASSERT_TRUE(waitForModel());
    EXPECT_TRUE(renderer.hasResult());
    EXPECT_NEAR(renderer.camera.distance, distanceFor(4 * std::sqrt(3.0F)), 1e-3);
}

TEST_F(ViewportWithAWorker, aModelThatWasReplacedOnItsWayIsNotShown) {
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    coordinator.update();
    parameters.setMesh(boxMesh(Vec3(-2), Vec3(2)));
    coordinator.update();
    ASSERT_TRUE(waitForModel());
    EXPECT_EQ(renderer.contents().meshBounds.max, Vec3(2));
}

TEST_F(ViewportWithAWorker, aModelThatWentOnItsWayIsNotShown) {
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    coordinator.update();
    parameters.setMesh(std::nullopt);
    coordinator.update();
    settings.setWireframe(true);
    coordinator.update();
    EXPECT_TRUE(renderer.wireframe) << "nothing is waited for any more";
    parameters.setMesh(boxMesh(Vec3(-2), Vec3(2)));
    ASSERT_TRUE(waitForModel());
    EXPECT_EQ(renderer.contents().meshBounds.max, Vec3(2));
}

TEST(ViewportCoordinator, mayGoWhileAModelIsOnItsWay) {
    SimulationParameters parameters;
    RenderSettings settings;
    parameters.setMesh(boxMesh(Vec3(-1), Vec3(1)));
    {
        ViewportCoordinator coordinator(parameters, settings, [] { return 0.0; });
        coordinator.mostFacetsAtOnce = 0;
        coordinator.update();
    }
    // The worker's answer to a second one comes after the first one's.
    ViewportCoordinator coordinator(parameters, settings, [] { return 0.0; });
    coordinator.mostFacetsAtOnce = 0;
    EXPECT_TRUE(waitUntil([&] { return coordinator.renderer().hasModel(); }));
}

} // namespace
} // namespace ostrella::test
