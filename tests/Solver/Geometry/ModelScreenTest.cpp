#include "Solver/Geometry/ModelScreen.h"

#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/TestMeshes.h"
#include "Solver/Geometry/Welding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace ostrella {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

std::string refusal(const TriangleMesh& mesh) {
    try {
        screenModel(mesh);
    } catch (const ModelLoadError& error) {
        return error.what();
    }
    return "";
}

const std::string tooFar =
    "The model is too far from the origin for its size: its corners cannot be told apart there. "
    "Move it to the origin, and export it again.";

TEST(ModelScreen, SoundBodiesPass) {
    EXPECT_EQ(refusal(test::unitCube()), "");
    EXPECT_EQ(refusal(test::moved(test::unitCube(), Vec3(1000, -1000, 1000))), "");
}

TEST(ModelScreen, NoFacets) {
    EXPECT_EQ(refusal(TriangleMesh()),
        "The model has no facets. Export it again as a triangulated surface.");
}

TEST(ModelScreen, ACornerThatIsNotFinite) {
    for (const float bad : {nan, infinity, -infinity})
        for (std::size_t place : {0U, 4U, 5U}) {
            std::vector<Vec3> corners = {
                {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
            corners[place].z = bad;
            EXPECT_EQ(refusal(test::soup(corners)),
                "Facet " + std::to_string(place / 3 + 1) +
                    " of 2 has a corner that is not a finite number. Export the model again, or "
                    "repair it.");
        }
}

TEST(ModelScreen, NormalsMayBeAnything) {
    const auto cube = test::unitCube();
    EXPECT_EQ(refusal(TriangleMesh(cube.positions(), std::vector<Vec3>(36, Vec3(nan)))), "");
}

TEST(ModelScreen, ExtentsBeyondAllNumbers) {
    EXPECT_EQ(refusal(test::soup({{-3e38F, 0, 0}, {3e38F, 0, 0}, {0, 1, 0}})),
        "The model is too large: its extents are beyond all numbers. Scale it to metres, and "
        "export "
        "it again.");
}

TEST(ModelScreen, ABodyTooFarFromTheOriginForItsSize) {
    // A key of a body of size 1 ends at 2³¹ × 1e-5, about 21 475 from the origin.
    EXPECT_EQ(refusal(test::moved(test::unitCube(), Vec3(0, 21000, 0))), "");
    EXPECT_EQ(refusal(test::moved(test::unitCube(), Vec3(0, 22000, 0))), tooFar);
    EXPECT_EQ(refusal(test::moved(test::unitCube(), Vec3(0, 0, -22000))), tooFar);
    EXPECT_EQ(refusal(test::soup({{3, 3, 3}, {3, 3, 3}, {3, 3, 3}})), tooFar);
}

TEST(ModelScreen, WhatPassesCanBeWelded) {
    // Bodies at distances about the limit, on both sides of it: none may end the process.
    int passed = 0;
    int refused = 0;
    for (float distance = 21400; distance < 21550; distance += 0.5F)
        for (const Vec3& way : {Vec3(1, 0, 0), Vec3(0, -1, 0), Vec3(0, 1, 0), Vec3(-1, -1, -1)}) {
            const auto body = test::moved(test::tetrahedron(), distance * way);
            if (!refusal(body).empty()) {
                ++refused;
                continue;
            }
            ++passed;
            EXPECT_LE(openEdgeCount(body), 12U);
            EXPECT_LE(FeatureEdges::extract(welded(body), 30).creaseCount, 6U);
        }
    EXPECT_GT(passed, 0);
    EXPECT_GT(refused, 0);
}

} // namespace

} // namespace ostrella
