#include "support/MeshQuality.h"
#include "support/Wait.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

namespace ostrella::test {
namespace {

/// Every second corner of a cube of edge 2: a regular tetrahedron of volume 8/3.
constexpr Tetrahedron regular{glm::dvec3{1, 1, 1}, {-1, 1, -1}, {1, -1, -1}, {-1, -1, 1}};

/// The origin and a step along each axis.
constexpr Tetrahedron corner{glm::dvec3{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

TEST(Gamma, IsOneForTheRegularTetrahedronWhereverAndHoweverLargeItIs) {
    EXPECT_NEAR(gammaOf(regular), 1.0, 1e-12);
    Tetrahedron moved = regular;
    for (glm::dvec3& p : moved) {
        p = p * 0.003 + glm::dvec3(5, -2, 1);
    }
    EXPECT_NEAR(gammaOf(moved), 1.0, 1e-9);
}

TEST(Gamma, OfACubesCorner) {
    // Volume 1/6, surface (3 + √3)/2, so the inscribed radius is 1/(3 + √3); the circumscribed
    // sphere is the cube's, of radius √3/2.
    EXPECT_NEAR(gammaOf(corner), 6.0 / ((3.0 + std::sqrt(3.0)) * std::sqrt(3.0)), 1e-12);
    EXPECT_NEAR(gammaOf(corner), std::sqrt(3.0) - 1.0, 1e-12);
}

TEST(Gamma, IsNothingWithoutVolumeAndLittleForASliver) {
    EXPECT_EQ(gammaOf({glm::dvec3{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}), 0.0);
    EXPECT_EQ(gammaOf({glm::dvec3{0, 0, 0}, {0, 0, 0}, {0, 1, 0}, {1, 1, 0}}), 0.0);
    // A square with its diagonals h = 0.001 apart: volume h / 3, surface near 2, so that the
    // inscribed radius is near h / 2; the circle round it has a radius of √2 / 2.
    const Tetrahedron sliver{glm::dvec3{0, 0, 0}, {1, 0, 1e-3}, {1, 1, 0}, {0, 1, 1e-3}};
    EXPECT_NEAR(gammaOf(sliver), 3.0 * 0.5e-3 * std::sqrt(2.0), 1e-6);
}

TEST(SignedVolume, IsPositiveInTheSolversOrderOfCorners) {
    EXPECT_NEAR(signedVolume(corner), 1.0 / 6.0, 1e-15);
    EXPECT_NEAR(signedVolume(regular), 8.0 / 3.0, 1e-12);
    Tetrahedron turned = corner;
    std::swap(turned[1], turned[2]);
    EXPECT_NEAR(signedVolume(turned), -1.0 / 6.0, 1e-15);
}

class MeshQualityTest : public testing::Test {
protected:
    /// A mesh of these tetrahedra, none of which shares a corner.
    MeshQuality qualityOf(const std::vector<Tetrahedron>& cells) {
        std::string text = fmt::format("NDIME= 3\nNELEM= {}\n", cells.size());
        std::string points = fmt::format("NPOIN= {}\n", 4 * cells.size());
        for (std::size_t c = 0; c < cells.size(); ++c) {
            text += fmt::format("10 {} {} {} {} {}\n", 4 * c, 4 * c + 1, 4 * c + 2, 4 * c + 3, c);
            for (std::size_t k = 0; k < 4; ++k) {
                const glm::dvec3& p = cells[c][k];
                points += fmt::format("{} {} {} {}\n", p.x, p.y, p.z, 4 * c + k);
            }
        }
        return read(text + points);
    }
    MeshQuality read(const std::string& text) {
        const auto file = directory_.path() / "mesh.su2";
        writeFile(file, text);
        return MeshQuality::read(file);
    }

    TemporaryDirectory directory_;
};

TEST_F(MeshQualityTest, CountsCellsMarkersAndVolume) {
    const MeshQuality q = read("NDIME= 3\n"
                               "NELEM= 2\n10 0 1 2 3 0\n10 1 2 3 4 1\n"
                               "NPOIN= 5\n0 0 0 0\n1 0 0 1\n0 1 0 2\n0 0 1 3\n1 1 1 4\n"
                               "NMARK= 2\n"
                               "MARKER_TAG= body\nMARKER_ELEMS= 2\n5 0 1 2\n5 0 1 3\n"
                               "MARKER_TAG= farfield\nMARKER_ELEMS= 1\n5 1 2 4\n");
    EXPECT_EQ(q.points, 5U);
    EXPECT_EQ(q.cells, 2U);
    EXPECT_EQ(q.inverted, 0U);
    // The cube's corner cut off, and the regular tetrahedron of edge √2 that is its middle.
    EXPECT_NEAR(q.volume, 1.0 / 6.0 + 1.0 / 3.0, 1e-12);
    EXPECT_NEAR(q.leastGamma, std::sqrt(3.0) - 1.0, 1e-12);
    EXPECT_NEAR(q.medianGamma, 1.0, 1e-12);
    EXPECT_EQ(q.markers, (std::map<std::string, std::size_t>{{"body", 2}, {"farfield", 1}}));
}

TEST_F(MeshQualityTest, CountsCellsThatAreTurnedInsideOutOrFlat) {
    Tetrahedron turned = corner;
    std::swap(turned[0], turned[3]);
    Tetrahedron flat = corner;
    flat[3] = {1, 1, 0};
    const MeshQuality q = qualityOf({corner, turned, corner, flat});
    EXPECT_EQ(q.inverted, 2U);
    EXPECT_NEAR(q.volume, 1.0 / 6.0, 1e-12);
    EXPECT_EQ(q.leastGamma, 0.0);
}

TEST_F(MeshQualityTest, TheFirstPercentileLeavesOutAHundredthOfTheCells) {
    Tetrahedron flat = corner;
    flat[3] = {1, 1, 0};
    std::vector<Tetrahedron> cells(200, regular);
    cells[17] = cells[60] = flat;
    EXPECT_NEAR(qualityOf(cells).firstPercentileGamma, 1.0, 1e-12);
    EXPECT_EQ(qualityOf(cells).leastGamma, 0.0);
    cells[99] = flat;
    EXPECT_EQ(qualityOf(cells).firstPercentileGamma, 0.0);
    EXPECT_NEAR(qualityOf(cells).medianGamma, 1.0, 1e-12);
}

TEST_F(MeshQualityTest, RefusesWhatIsNoWholeMeshOfTetrahedra) {
    for (const char* text : {"", "NDIME= 2\nNELEM= 0\nNPOIN= 0\n", "NDIME= 3\nNPOIN= 0\n",
             "NDIME= 3\nNELEM= 1\n12 0 1 2 3 4 5 6 7 0\nNPOIN= 0\n", "NDIME= 3\nNELEM= 1\n10 0 1 2",
             "NDIME= 3\nNELEM= 0\nNPOIN= 2\n0 0 0 0\n1 0"}) {
        EXPECT_THROW(read(text), std::runtime_error) << text;
    }
    EXPECT_THROW(MeshQuality::read(directory_.path() / "none.su2"), std::runtime_error);
    // A corner that there is no point for.
    EXPECT_ANY_THROW(read("NDIME= 3\nNELEM= 1\n10 0 1 2 9 0\nNPOIN= 1\n0 0 0 0\n"));
}

TEST_F(MeshQualityTest, AMeshWithoutCellsHasNoQuality) {
    const MeshQuality q = read("NDIME= 3\nNELEM= 0\nNPOIN= 1\n0 0 0 0\n");
    EXPECT_EQ(q.cells, 0U);
    EXPECT_EQ(q.firstPercentileGamma, 0.0);
}

} // namespace
} // namespace ostrella::test
