#include "resources/mesh/MeshCase.h"

#include "Samples.h"
#include "TestBodies.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace ostrella {

namespace {

using test::MeshCase;
using test::VolumeMesh;

generators::Body corpusBody(std::string_view name) {
    return generators::testBody(name)->make();
}

double quantile(const std::vector<double>& ascending, double fraction) {
    return ascending.at(static_cast<std::size_t>(fraction * double(ascending.size() - 1)));
}

/// The checks that every sound body must pass: all space between box and body is filled, the body
/// is meshed between the two sizes, and cells grow without a jump.
VolumeMesh expectSoundMesh(const generators::Body& body, double bodyVolume) {
    const MeshCase run(body, 60);
    EXPECT_EQ(run.status(), 0) << run.output();
    EXPECT_EQ(run.firstError(), "");
    VolumeMesh mesh = VolumeMesh::read(run.meshFile());
    EXPECT_FALSE(mesh.cells.empty());
    EXPECT_FALSE(mesh.farField.empty());
    if (mesh.cells.empty() || mesh.body.empty()) {
        return mesh;
    }
    // 3 % of the body: a surface made anew cuts curves off. The box's corners carry six decimals.
    const double expected = run.boxVolume() - bodyVolume;
    EXPECT_NEAR(mesh.volume(), expected, 0.03 * bodyVolume + 1e-3 * expected);

    const double least = std::min(run.lcMin(), run.lcMax());
    const auto edges = mesh.bodyEdges();
    EXPECT_GT(quantile(edges, 0.5), 0.24 * least);
    EXPECT_LT(quantile(edges, 0.5), 2.0 * least);
    EXPECT_LT(edges.back(), 1.01 * std::sqrt(2.0) * run.lcMax());
    const auto ratios = mesh.neighbourRatios();
    EXPECT_LT(quantile(ratios, 0.99), 1.7);
    EXPECT_LT(ratios.back(), 8.0);
    return mesh;
}

TEST(MeshTemplate, ACubeOfTwelveFacetsGetsASurfaceOfTheLeastSize) {
    const VolumeMesh mesh = expectSoundMesh(corpusBody("cube12"), 1.0);
    const auto edges = mesh.bodyEdges();
    EXPECT_NEAR(quantile(edges, 0.5), 0.05, 0.01);
    EXPECT_LT(edges.back(), 0.15);
    EXPECT_GT(edges.front(), 0.02);
}

TEST(MeshTemplate, ABoxOfTwelveLongFacetsGetsASurfaceOfTheLeastSize) {
    const VolumeMesh mesh = expectSoundMesh(corpusBody("slab"), 2.0);
    EXPECT_NEAR(quantile(mesh.bodyEdges(), 0.5), 0.2, 0.04);
}

TEST(MeshTemplate, FacetsFarTooFineAreMadeAnew) {
    const VolumeMesh mesh = expectSoundMesh(corpusBody("cubeFine"), 1.0);
    EXPECT_LT(mesh.body.size(), 12000U);
    EXPECT_NEAR(quantile(mesh.bodyEdges(), 0.5), 0.05, 0.01);
}

TEST(MeshTemplate, NeedlesOfAClosedBodyAreMadeAnew) {
    const VolumeMesh mesh = expectSoundMesh(corpusBody("slivers"), 1.0);
    EXPECT_NEAR(quantile(mesh.bodyEdges(), 0.5), 0.05, 0.01);
}

struct KeptBody {
    const char* name;
    double volume;
    std::size_t facets;
    friend std::ostream& operator<<(std::ostream& out, const KeptBody& body) {
        return out << body.name;
    }
};

class KeptFacets : public testing::TestWithParam<KeptBody> {};

TEST_P(KeptFacets, BecomeTheSurfaceOfTheMesh) {
    const VolumeMesh mesh = expectSoundMesh(corpusBody(GetParam().name), GetParam().volume);
    EXPECT_EQ(mesh.body.size(), GetParam().facets);
}

constexpr double ball = 4.18879;
INSTANTIATE_TEST_SUITE_P(All, KeptFacets,
    testing::Values(KeptBody{"twoSpheres", 2 * ball / 8, 10240}, KeptBody{"farSphere", ball, 5120},
        KeptBody{"tinySphere", ball * 1.25e-7, 5120}, KeptBody{"hugeSphere", ball * 1.25e8, 5120}),
    [](const auto& body) { return std::string(body.param.name); });

class CoarseBody : public testing::TestWithParam<KeptBody> {};

TEST_P(CoarseBody, IsMeshedWhereverAndHoweverLargeItIs) {
    const VolumeMesh mesh = expectSoundMesh(corpusBody(GetParam().name), GetParam().volume);
    EXPECT_GE(mesh.body.size(), GetParam().facets);
}

INSTANTIATE_TEST_SUITE_P(All, CoarseBody,
    testing::Values(KeptBody{"twoCubes", 2.0, 500}, KeptBody{"farCube", 1.0, 5000},
        KeptBody{"tinyCube", 1e-6, 1000}, KeptBody{"hugeCube", 1e9, 5000},
        KeptBody{"underMillimetreCube", 5.12e-10, 12}),
    [](const auto& body) { return std::string(body.param.name); });

class SampleMesh : public testing::TestWithParam<std::string_view> {};

TEST_P(SampleMesh, HasAsManyCellsAsTwoCoresCanSolveFineAtTheWallAndInTheWake) {
    for (const generators::Sample& sample : generators::samples()) {
        if (sample.id != GetParam()) {
            continue;
        }
        const generators::Body body = sample.make();
        const VolumeMesh mesh = expectSoundMesh(body, body.signedVolume());
        EXPECT_EQ(mesh.body.size(), body.triangles.size());
        EXPECT_GE(mesh.cells.size(), 50000U);
        EXPECT_LE(mesh.cells.size(), 400000U);
        const double rear = sample.id == "simple_wing" ? 0.5 : 1.0;
        const double wall = quantile(mesh.bodyEdges(), 0.5);
        const double wake = mesh.cellSizeNear({2.0 * rear, 0.0, 0.0});
        const double ahead = mesh.cellSizeNear({-8.0 * rear, 0.0, 0.0});
        const double far = mesh.cellSizeNear({25.0 * rear, 0.0, 2.0 * rear});
        EXPECT_LT(wake, 4.0 * wall);
        EXPECT_GT(ahead, 2.0 * wake);
        EXPECT_GT(far, 5.0 * wake);
    }
}

INSTANTIATE_TEST_SUITE_P(All, SampleMesh, testing::Values("sphere", "rounded_box", "simple_wing"),
    [](const auto& name) { return std::string(name.param); });

class FaultyBody : public testing::TestWithParam<const char*> {};

TEST_P(FaultyBody, EndsTheMesherSoonAndWithFewLines) {
    const MeshCase run(corpusBody(GetParam()), 30);
    EXPECT_FALSE(run.timedOut());
    EXPECT_LT(run.outputSize(), 100000U);
}

INSTANTIATE_TEST_SUITE_P(All, FaultyBody,
    testing::Values(
        "holes", "duplicates", "flipped", "insideOut", "selfIntersecting", "nonManifold", "plate"),
    [](const auto& name) { return std::string(name.param); });

TEST(FaultyBody, DuplicatedFacetsAreNamedInTheError) {
    const MeshCase run(corpusBody("duplicates"), 30);
    EXPECT_EQ(run.status(), 1);
    EXPECT_NE(run.firstError().find("overlapping facets"), std::string::npos) << run.firstError();
    EXPECT_TRUE(VolumeMesh::read(run.meshFile()).cells.empty());
}

TEST(FaultyBody, FacetsThatCrossAreNamedInTheError) {
    const MeshCase run(corpusBody("selfIntersecting"), 30);
    EXPECT_EQ(run.status(), 1);
    EXPECT_NE(run.firstError().find("intersect"), std::string::npos) << run.firstError();
    EXPECT_TRUE(VolumeMesh::read(run.meshFile()).cells.empty());
}

TEST(FaultyBody, NeedlesOnAnOpenSurfaceEndAtOnceWithoutAMesh) {
    generators::Body body = corpusBody("slivers");
    body.triangles.pop_back();
    const MeshCase run(body, 30);
    EXPECT_FALSE(run.timedOut());
    EXPECT_NE(run.firstError().find("too thin to mesh around"), std::string::npos) << run.output();
    EXPECT_FALSE(std::filesystem::exists(run.meshFile()));
}

} // namespace

} // namespace ostrella
