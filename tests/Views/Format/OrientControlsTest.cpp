#include "Views/Format/OrientControls.h"

#include "Models/SimulationParameters.h"

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella {
namespace {

using namespace OrientControls;

TEST(OrientControls, AnglesHaveAtMostOneDecimal) {
    EXPECT_EQ(angleText({0, 12.54, -90}), "X 0° · Y 12.5° · Z -90°");
    EXPECT_EQ(angleText({-0.04, 12.96, 179.95}), "X 0° · Y 13° · Z 180°");
    EXPECT_EQ(angleText({12.25, -12.25, 0.05}), "X 12.3° · Y -12.3° · Z 0.1°");
}

TEST(OrientControls, CompactAngles) {
    EXPECT_EQ(compactAngles({0, 0, 0}), "0 · 0 · 0°");
    EXPECT_EQ(compactAngles({0, 12.5, 0}), "0 · 12.5 · 0°");
    EXPECT_EQ(compactAngles({-90, -0.01, 45.55}), "-90 · 0 · 45.6°");
}

TEST(OrientControls, TheFlowMeetsTheAxisThatPointsUpstream) {
    EXPECT_EQ(facing({0, 0, 0}), FacingAxis::minusX);
    EXPECT_EQ(facing({45, 0, 0}), FacingAxis::minusX); // about the flow's own axis
    EXPECT_EQ(facing({0, 0, 45}), std::nullopt);
}

TEST(OrientControls, FacingHasATolerance) {
    // cos 0.81° = 0.99990, cos 0.82° = 0.999898.
    EXPECT_EQ(facing({0, 0, 0.8}), FacingAxis::minusX);
    EXPECT_EQ(facing({0, 0, 0.82}), std::nullopt);
    EXPECT_EQ(facing({0, 0, 10}, 0.02), FacingAxis::minusX); // cos 10° = 0.9848
}

struct Facing {
    FacingAxis axis;
    glm::dvec3 rotation;
    const char* label;
};

const Facing facings[] = {
    {FacingAxis::plusX, {0, 180, 0}, "+X"},
    {FacingAxis::minusX, {0, 0, 0}, "-X"},
    {FacingAxis::plusY, {0, 0, 90}, "+Y"},
    {FacingAxis::minusY, {0, 0, -90}, "-Y"},
    {FacingAxis::plusZ, {0, -90, 0}, "+Z"},
    {FacingAxis::minusZ, {0, 90, 0}, "-Z"},
};

TEST(OrientControls, EachButtonOfFacingDoesWhatItSays) {
    for (const Facing& button : facings) {
        EXPECT_EQ(facingRotation(button.axis), button.rotation) << button.label;
        EXPECT_EQ(facing(button.rotation), button.axis) << button.label;
        EXPECT_EQ(label(button.axis), button.label);
        EXPECT_EQ(facingHelp(button.axis),
            std::string("Point the model's ") + button.label + " axis into the flow");
        EXPECT_EQ(facingName(button.axis), std::string("Face the flow with ") + button.label);
    }
}

TEST(OrientControls, HelpOfTheTurns) {
    EXPECT_EQ(turnHelp(OrientationAxis::x, 1), "Turn +90° about X");
    EXPECT_EQ(turnHelp(OrientationAxis::y, -1), "Turn -90° about Y");
    EXPECT_EQ(turnHelp(OrientationAxis::z, 1), "Turn +90° about Z");
    EXPECT_EQ(turnSymbol(1), "arrow.counterclockwise");
    EXPECT_EQ(turnSymbol(-1), "arrow.clockwise");
}

TEST(OrientControls, AQuarterTurnIsAboutTheWorldsAxes) {
    EXPECT_EQ(turned({0, 0, 0}, OrientationAxis::x, 1), glm::dvec3(90, 0, 0));
    EXPECT_EQ(turned({0, 0, 0}, OrientationAxis::z, -1), glm::dvec3(0, 0, -90));
    EXPECT_EQ(turned({90, 0, 0}, OrientationAxis::z, 1), glm::dvec3(90, 0, 90));
    // The model's z axis lies along -y by now. About itself it would stay there; the turn about the
    // world's z takes it to -x, into the flow.
    EXPECT_EQ(facing(turned({90, 0, 0}, OrientationAxis::z, -1)), FacingAxis::plusZ);
}

TEST(OrientControls, FourQuarterTurnsAreNone) {
    for (const OrientationAxis axis : allOrientationAxes) {
        glm::dvec3 rotation(10, 20, 30);
        for (int i = 0; i < 4; ++i) {
            rotation = turned(rotation, axis, 1);
        }
        EXPECT_NEAR(rotation.x, 10, 1e-5);
        EXPECT_NEAR(rotation.y, 20, 1e-5);
        EXPECT_NEAR(rotation.z, 30, 1e-5);
    }
}

TEST(OrientControls, AnglesAreReducedTo180) {
    EXPECT_EQ(reduced({190, -190, 180}), glm::dvec3(-170, 170, 180));
    EXPECT_EQ(reduced({-180, 540, 725}), glm::dvec3(-180, 180, 5));
    EXPECT_EQ(reduced({1.23456789, -0.0000001, 360}), glm::dvec3(1.234568, 0, 0));
    EXPECT_FALSE(std::signbit(reduced({-0.0000001, 0, 0}).x));
}

TEST(OrientControls, ApplyTurnsTheModel) {
    SimulationParameters parameters;
    apply({190, 45.5, -0.25}, parameters);
    EXPECT_EQ(parameters.rotationX(), -170);
    EXPECT_EQ(parameters.rotationY(), 45.5);
    EXPECT_EQ(parameters.rotationZ(), -0.25);
}

} // namespace
} // namespace ostrella
