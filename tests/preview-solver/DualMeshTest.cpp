#include "DualMesh.h"
#include "Failure.h"
#include "Gradients.h"
#include "MeshReader.h"
#include "SmallMeshes.h"
#include "WallDistance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

using namespace ostrella::preview;
using SmallMeshes::Filling;

namespace {

class DualMeshOf : public testing::TestWithParam<std::size_t> {};

const std::vector<std::string>& allMeshes() {
    static const std::vector<std::string> meshes{SmallMeshes::square(5),
        SmallMeshes::cube(3, Filling::tetrahedra), SmallMeshes::cube(3, Filling::hexahedra),
        SmallMeshes::cube(3, Filling::prisms), SmallMeshes::cube(3, Filling::pyramids)};
    return meshes;
}

} // namespace

TEST_P(DualMeshOf, facesOfEveryVolumeCloseAndVolumesSumToTheWhole) {
    const DualMesh dual = DualMesh::build(MeshReader::parse(allMeshes()[GetParam()]));
    EXPECT_NEAR(std::accumulate(dual.volumes.begin(), dual.volumes.end(), 0.0), 1.0, 1e-13);
    std::vector<Vec3> sums(dual.size(), Vec3{0.0});
    for (std::size_t e = 0; e < dual.edges.size(); ++e) {
        sums[dual.edges[e].from] += dual.normals[e];
        sums[dual.edges[e].to] -= dual.normals[e];
    }
    for (const auto& boundary : dual.boundaries)
        for (const auto& vertex : boundary.vertices)
            sums[vertex.point] += vertex.normal;
    for (const auto& sum : sums)
        EXPECT_LT(glm::length(sum), 1e-14);
}

TEST_P(DualMeshOf, facesPointFromTheirEdgesFirstPointToTheSecond) {
    const DualMesh dual = DualMesh::build(MeshReader::parse(allMeshes()[GetParam()]));
    double volume = 0;
    // The divergence theorem for the position: twice (or thrice) the volume.
    for (std::size_t e = 0; e < dual.edges.size(); ++e)
        volume += glm::dot(
            dual.normals[e], dual.points[dual.edges[e].to] - dual.points[dual.edges[e].from]);
    EXPECT_NEAR(volume, dual.dimensions, 1e-12);
}

TEST_P(DualMeshOf, leastSquaresAreExactForLinearFields) {
    const DualMesh dual = DualMesh::build(MeshReader::parse(allMeshes()[GetParam()]));
    const Vec3 slope(2, -3, dual.dimensions == 3 ? 0.5 : 0.0);
    std::vector<double> field(dual.size());
    for (std::size_t i = 0; i < dual.size(); ++i)
        field[i] = 7 + glm::dot(slope, dual.points[i]);
    const auto check = [&]<int D>(const Gradients<D>& gradients) {
        std::vector<double> result(dual.size() * D);
        gradients.template compute<1>(field.data(), result.data());
        for (std::size_t i = 0; i < dual.size(); ++i)
            for (int k = 0; k < D; ++k)
                EXPECT_NEAR(result[i * D + static_cast<std::size_t>(k)], slope[k], 1e-11);
    };
    if (dual.dimensions == 2)
        check(Gradients<2>(dual, GradientMethod::leastSquares));
    else
        check(Gradients<3>(dual, GradientMethod::leastSquares));
}

INSTANTIATE_TEST_SUITE_P(EveryCellType, DualMeshOf,
    testing::Range(std::size_t{0}, allMeshes().size()),
    [](const auto& each) { return std::to_string(each.index); });

TEST(DualMesh, refusesABoundaryWithoutMarker) {
    std::string text = SmallMeshes::square(3);
    text = text.substr(0, text.find("NMARK"));
    const Mesh mesh = MeshReader::parse(text);
    EXPECT_THROW(DualMesh::build(mesh), Failure);
}

TEST(DualMesh, refusesCrushedCells) {
    const Mesh mesh =
        MeshReader::parse("NDIME= 2\nNELEM= 1\n5 0 1 2\nNPOIN= 3\n0 0\n1 0\n2 0\n"
                          "NMARK= 1\nMARKER_TAG= rim\nMARKER_ELEMS= 3\n3 0 1\n3 1 2\n3 2 0\n");
    EXPECT_THROW(DualMesh::build(mesh), Failure);
}

TEST(GreenGauss, isExactForLinearFieldsAwayFromTheBoundary) {
    // Only on triangles and tetrahedra: elsewhere the dual faces' middles are off their edges'.
    const DualMesh dual =
        DualMesh::build(MeshReader::parse(SmallMeshes::cube(4, Filling::tetrahedra)));
    std::vector<double> field(dual.size());
    for (std::size_t i = 0; i < dual.size(); ++i)
        field[i] = 3 * dual.points[i].x - dual.points[i].z;
    std::vector<double> result(dual.size() * 3);
    Gradients<3>(dual, GradientMethod::greenGauss).compute<1>(field.data(), result.data());
    std::vector<char> onBoundary(dual.size(), 0);
    for (const auto& vertex : dual.boundaries[0].vertices)
        onBoundary[vertex.point] = 1;
    int checked = 0;
    for (std::size_t i = 0; i < dual.size(); ++i) {
        if (onBoundary[i])
            continue;
        ++checked;
        EXPECT_NEAR(result[3 * i], 3, 1e-12);
        EXPECT_NEAR(result[3 * i + 1], 0, 1e-12);
        EXPECT_NEAR(result[3 * i + 2], -1, 1e-12);
    }
    EXPECT_EQ(checked, 27);
}

TEST(WallDistance, isThatToTheNearestFacet) {
    const Mesh mesh = MeshReader::parse(SmallMeshes::ring(48, 8, 0.1));
    const DualMesh dual = DualMesh::build(mesh);
    const auto distances = wallDistances(mesh, dual, {"wall"});
    for (std::size_t i = 0; i < dual.size(); ++i) {
        // The points lie on rays through the corners of a regular polygon of 48 sides.
        EXPECT_NEAR(distances[i], glm::length(dual.points[i]) - 1, 1e-12);
    }
}

TEST(WallDistance, ofTheCubesPointsIsTheLeastCoordinate) {
    const Mesh mesh = MeshReader::parse(SmallMeshes::cube(5, Filling::tetrahedra));
    const DualMesh dual = DualMesh::build(mesh);
    const auto distances = wallDistances(mesh, dual, {"box"});
    for (std::size_t i = 0; i < dual.size(); ++i) {
        const Vec3 p = glm::min(dual.points[i], Vec3(1.0) - dual.points[i]);
        EXPECT_NEAR(distances[i], std::min({p.x, p.y, p.z}), 1e-13);
    }
}
