#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/Welding.h"
#include "generators/SurfaceCheck.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>
#include <string>
#include <vector>

namespace ostrella {

namespace {

std::string fileOf(const std::string& id) {
    const auto path =
        std::filesystem::path(OSTRELLA_STAGE_DIR) / "share/ostrella/samples" / (id + ".stl");
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TriangleMesh meshOf(const std::string& id) {
    const std::string text = fileOf(id);
    std::vector<std::byte> bytes(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes[i] = static_cast<std::byte>(text[i]);
    }
    return STLParser::parse(bytes);
}

test::SurfaceMeasures measuresOf(const std::string& id) {
    const TriangleMesh mesh = meshOf(id);
    return test::measure({mesh.positions().data(), mesh.positions().size()});
}

void expectBox(const test::SurfaceMeasures& m, const glm::dvec3& half) {
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(m.low[axis], -half[axis], 1e-4) << "axis " << axis;
        EXPECT_NEAR(m.high[axis], half[axis], 1e-4) << "axis " << axis;
    }
}

class SampleBody : public testing::TestWithParam<const char*> {};

TEST_P(SampleBody, IsABinaryFileWhoseSizeFitsItsCountAndWhoseHeaderIsNoKeyword) {
    const std::string bytes = fileOf(GetParam());
    ASSERT_GT(bytes.size(), 84U);
    EXPECT_NE(bytes.substr(0, 5), "solid");
    EXPECT_EQ((bytes.size() - 84) % 50, 0U);
    EXPECT_EQ(meshOf(GetParam()).facetCount(), (bytes.size() - 84) / 50);
}

TEST_P(SampleBody, IsClosedWithOneSkinThatFacesOutward) {
    const test::SurfaceMeasures m = measuresOf(GetParam());
    EXPECT_EQ(m.loneEdges, 0U);
    EXPECT_GT(m.volume, 0.0);
    // Euler: corners - edges + facets = 2 for one skin without handles.
    EXPECT_EQ(2 * m.corners, m.facets + 4);
}

TEST_P(SampleBody, HasFacetsOfEvenSizeWithoutSlivers) {
    const test::SurfaceMeasures m = measuresOf(GetParam());
    EXPECT_GT(m.worstShape, 0.55);
    EXPECT_LT(m.longestEdge / m.shortestEdge, 4.0);
    EXPECT_LT(m.largestFacet / m.smallestFacet, 8.0);
}

TEST_P(SampleBody, KeepsItsFacetNormalsSquareToItsFacets) {
    const TriangleMesh mesh = meshOf(GetParam());
    for (std::size_t i = 0; i < mesh.positions().size(); i += 3) {
        const glm::dvec3 a(mesh.positions()[i]);
        const glm::dvec3 cross = glm::cross(
            glm::dvec3(mesh.positions()[i + 1]) - a, glm::dvec3(mesh.positions()[i + 2]) - a);
        const glm::dvec3 normal = glm::normalize(cross);
        ASSERT_GT(glm::dot(normal, glm::dvec3(mesh.normals()[i])), 1.0 - 1e-6) << "facet " << i / 3;
    }
}

INSTANTIATE_TEST_SUITE_P(All, SampleBody, testing::Values("sphere", "rounded_box", "simple_wing"),
    [](const auto& body) { return std::string(body.param); });

TEST(SphereSample, HasARadiusOfOneMetreAndAtLeast5000Facets) {
    const TriangleMesh mesh = meshOf("sphere");
    EXPECT_GE(mesh.facetCount(), 5000U);
    for (std::size_t i = 0; i < mesh.positions().size(); ++i) {
        ASSERT_NEAR(glm::length(glm::dvec3(mesh.positions()[i])), 1.0, 1e-6);
    }
    expectBox(measuresOf("sphere"), {1.0, 1.0, 1.0});
}

TEST(RoundedBoxSample, MeasuresTwoByOneByOneMetreWithFilletsOf12Centimetres) {
    const test::SurfaceMeasures m = measuresOf("rounded_box");
    expectBox(m, {1.0, 0.5, 0.5});
    // Steiner's formula for a box of sides a, b, c swept by a ball of radius r; the facets cut a
    // little of the fillets off.
    const double a = 1.76;
    const double b = 0.76;
    const double r = 0.12;
    const double volume = a * b * b + 2 * r * (2 * a * b + b * b) +
                          std::numbers::pi * r * r * (a + 2 * b) +
                          4.0 / 3.0 * std::numbers::pi * r * r * r;
    EXPECT_LT(m.volume, volume);
    EXPECT_GT(m.volume, 0.997 * volume);
}

TEST(RoundedBoxSample, HasEveryCornerOnTheSweptBox) {
    const TriangleMesh mesh = meshOf("rounded_box");
    const glm::dvec3 core(0.88, 0.38, 0.38);
    for (std::size_t i = 0; i < mesh.positions().size(); ++i) {
        const glm::dvec3 p(mesh.positions()[i]);
        const glm::dvec3 inner = glm::clamp(p, -core, core);
        ASSERT_NEAR(glm::length(p - inner), 0.12, 1e-6);
    }
}

TEST(RoundedBoxSample, HasNoCrease) {
    const WeldedMesh mesh = welded(meshOf("rounded_box"));
    EXPECT_EQ(FeatureEdges::extract(mesh, 30).creaseCount, 0U);
    EXPECT_EQ(FeatureEdges::extract(mesh, 25).creaseCount, 0U);
}

TEST(SimpleWingSample, HasAChordOfOneMetreASpanOfTwoAndAnEllipticSection) {
    const test::SurfaceMeasures m = measuresOf("simple_wing");
    expectBox(m, {0.5, 0.06, 1.0});
    const TriangleMesh mesh = meshOf("simple_wing");
    for (std::size_t i = 0; i < mesh.positions().size(); ++i) {
        const glm::dvec3 p(mesh.positions()[i]);
        const double ellipse = std::pow(p.x / 0.5, 2) + std::pow(p.y / 0.06, 2);
        if (std::abs(p.z) < 0.9999) {
            ASSERT_NEAR(ellipse, 1.0, 1e-5);
        } else {
            ASSERT_LE(ellipse, 1.0 + 1e-5);
        }
    }
}

} // namespace

} // namespace ostrella
