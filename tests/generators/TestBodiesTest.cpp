#include "TestBodies.h"
#include "generators/SurfaceCheck.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace ostrella {

namespace {

using generators::Body;

test::SurfaceMeasures measuresOf(std::string_view name) {
    const generators::TestBody* entry = generators::testBody(name);
    if (entry == nullptr) {
        ADD_FAILURE() << "no body " << name;
        return {};
    }
    const Body body = entry->make();
    std::vector<glm::vec3> positions;
    for (const Body::Triangle& triangle : body.triangles) {
        for (const auto corner : triangle) {
            positions.emplace_back(body.vertices[corner]);
        }
    }
    return test::measure(positions);
}

TEST(TestBodies, TheSoundOnesAreClosedAndFaceOutward) {
    for (const char* name : {"cube12", "cubeFine", "slab", "sphere", "fineSphere", "twoSpheres",
             "twoCubes", "farSphere", "tinySphere", "tinyCube", "hugeSphere", "slivers"}) {
        const test::SurfaceMeasures m = measuresOf(name);
        EXPECT_EQ(m.loneEdges, 0U) << name;
        EXPECT_GT(m.volume, 0.0) << name;
    }
}

TEST(TestBodies, TheCountsAreThoseOfTheirDescriptions) {
    EXPECT_EQ(measuresOf("cube12").facets, 12U);
    EXPECT_EQ(measuresOf("cubeFine").facets, 120000U);
    EXPECT_EQ(measuresOf("sphere").facets, 5120U);
    EXPECT_EQ(measuresOf("fineSphere").facets, 307520U);
    EXPECT_NEAR(measuresOf("cube12").volume, 1.0, 1e-12);
    EXPECT_NEAR(measuresOf("twoSpheres").volume, 2 * 0.5236, 5e-3);
}

TEST(TestBodies, TheFaultyOnesHaveTheirFaults) {
    // Three facets taken out of a sphere, none beside another: nine edges lose their partner.
    EXPECT_EQ(measuresOf("holes").loneEdges, 9U);
    EXPECT_EQ(measuresOf("duplicates").facets, 1285U);
    EXPECT_GT(measuresOf("duplicates").loneEdges, 0U);
    EXPECT_GT(measuresOf("flipped").loneEdges, 0U);
    EXPECT_EQ(measuresOf("insideOut").loneEdges, 0U);
    EXPECT_LT(measuresOf("insideOut").volume, 0.0);
    EXPECT_EQ(measuresOf("selfIntersecting").loneEdges, 0U);
    EXPECT_NEAR(measuresOf("selfIntersecting").volume, 2.0, 1e-6);
    // The shared edge is walked twice in each direction.
    EXPECT_EQ(measuresOf("nonManifold").loneEdges, 2U);
    EXPECT_EQ(measuresOf("plate").loneEdges, 40U);
    EXPECT_LT(measuresOf("slivers").worstShape, 0.01);
}

TEST(TestBodies, AnUnknownNameIsNoBody) {
    EXPECT_EQ(generators::testBody("teapot"), nullptr);
}

} // namespace

} // namespace ostrella
