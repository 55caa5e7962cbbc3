#include "Rendering/ClipRange.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

ArcBallCamera from(float distance) {
    ArcBallCamera camera;
    camera.distance = distance;
    return camera;
}

BoundingBox ofSize(float size) {
    return {Vec3(-size / 2), Vec3(size / 2)};
}

TEST(ClipRange, isTheCamerasOwnForBodiesFromCentimetresToTensOfMetres) {
    for (const float distance : {0.03F, 0.1F, 1.0F, 10.0F, 100.0F, 160.0F})
        EXPECT_EQ(
            ClipRange::forScene(from(distance), ofSize(distance / 3)), (ClipRange{0.01F, 10000}))
            << distance;
}

TEST(ClipRange, doesNotCutAwayWhatIsLookedAtFromNearby) {
    EXPECT_FLOAT_EQ(ClipRange::forScene(from(0.001F), ofSize(1e-6F)).nearZ, 0.0005F);
    EXPECT_FLOAT_EQ(ClipRange::forScene(from(0.019F), ofSize(1e-6F)).nearZ, 0.0095F);
}

TEST(ClipRange, keepsDepthsApartFarAway) {
    // A thousandth of the distance is a step of the depth, 2⁻²⁴, or more.
    for (const float distance : {200.0F, 3e3F, 3e6F}) {
        const ClipRange range = ClipRange::forScene(from(distance), ofSize(distance / 3));
        const double depthStep = 1.0 / (1 << 24);
        EXPECT_LT(double(distance) * distance / range.nearZ * depthStep, 1.01e-3 * distance);
        EXPECT_LT(range.nearZ, 1e-4F * distance);
    }
}

TEST(ClipRange, reachesBehindWhatIsFarAway) {
    // Ten times half the diagonal of a cube of 10⁶ m behind its middle.
    const ClipRange range = ClipRange::forScene(from(3e6F), ofSize(1e6F));
    EXPECT_NEAR(range.farZ, 3e6F + 8660254.0F, 10);
    // Far off to the side of what the camera looks at, too.
    ArcBallCamera aside = from(10);
    aside.target = {50000, 0, 0};
    EXPECT_GT(ClipRange::forScene(aside, ofSize(1)).farZ, 49000);
}

} // namespace
} // namespace ostrella
