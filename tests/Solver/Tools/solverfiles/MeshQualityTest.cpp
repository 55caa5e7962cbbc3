#include "Solver/Tools/MeshQuality.h"

#include "support/MeshQuality.h"
#include "support/Wait.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {
namespace {

using test::Tetrahedron;

/// Every second corner of a cube of edge 2.
constexpr Tetrahedron regular{glm::dvec3{1, 1, 1}, {-1, 1, -1}, {1, -1, -1}, {-1, -1, 1}};

/// The origin and a step along each axis: a surface of (3 + √3)/2 around a volume of 1/6, in the
/// sphere of the unit cube.
constexpr Tetrahedron corner{glm::dvec3{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
const double cornerGamma = std::sqrt(3.0) - 1.0;

class MeshQualityOf : public testing::Test {
protected:
    std::optional<MeshQuality> text(const std::string& contents) {
        test::writeFile(file(), contents);
        return readMeshQuality(file());
    }
    /// Of tetrahedra none of which shares a corner.
    std::optional<MeshQuality> cells(const std::vector<Tetrahedron>& cells) {
        std::string elements;
        std::string points;
        for (std::size_t c = 0; c < cells.size(); ++c) {
            elements +=
                fmt::format("10 {} {} {} {} {}\n", 4 * c, 4 * c + 1, 4 * c + 2, 4 * c + 3, c);
            for (std::size_t k = 0; k < 4; ++k) {
                const glm::dvec3& p = cells[c][k];
                points += fmt::format("{:.17g} {:.17g} {:.17g} {}\n", p.x, p.y, p.z, 4 * c + k);
            }
        }
        return text(fmt::format("NDIME= 3\nNELEM= {}\n{}NPOIN= {}\n{}NMARK= 0\n", cells.size(),
            elements, 4 * cells.size(), points));
    }
    std::filesystem::path file() const { return directory_.path() / "mesh.su2"; }

private:
    test::TemporaryDirectory directory_;
};

TEST_F(MeshQualityOf, TwoCellsThatShareAFace) {
    // The cube's corner cut off, and the regular tetrahedron of edge √2 that is its middle.
    const auto quality = text("NDIME= 3\n"
                              "NELEM= 2\n10 0 1 2 3 0\n10 1 2 3 4 1\n"
                              "NPOIN= 5\n0 0 0 0\n1 0 0 1\n0 1 0 2\n0 0 1 3\n1 1 1 4\n"
                              "NMARK= 1\nMARKER_TAG= body\nMARKER_ELEMS= 1\n5 0 1 2\n");
    ASSERT_TRUE(quality);
    EXPECT_EQ(quality->cells, 2);
    EXPECT_EQ(quality->inverted, 0);
    EXPECT_NEAR(quality->leastGamma, cornerGamma, 1e-12);
    EXPECT_NEAR(quality->firstPercentileGamma, cornerGamma, 1e-7) << "of two, the first";
    EXPECT_TRUE(quality->isSound());
}

TEST_F(MeshQualityOf, RegularCellsOfAnySizeAnywhere) {
    Tetrahedron small = regular;
    Tetrahedron large = regular;
    for (std::size_t k = 0; k < 4; ++k) {
        small[k] = small[k] * 1e-6 + glm::dvec3(5, -2, 1);
        large[k] *= 1e9;
    }
    EXPECT_NEAR(cells({large})->leastGamma, 1, 1e-12);
    EXPECT_NEAR(cells({small})->leastGamma, 1, 1e-6);
}

TEST_F(MeshQualityOf, InvertedAndFlatCells) {
    Tetrahedron turned = corner;
    std::swap(turned[0], turned[3]);
    Tetrahedron flat = corner;
    flat[3] = {1, 1, 0};
    EXPECT_EQ(cells({corner, turned, corner})->inverted, 1);
    EXPECT_NEAR(cells({corner, turned, corner})->leastGamma, cornerGamma, 1e-12);
    EXPECT_FALSE(cells({corner, turned, corner})->isSound());
    EXPECT_EQ(cells({corner, flat})->inverted, 1);
    EXPECT_EQ(cells({corner, flat})->leastGamma, 0);
}

TEST_F(MeshQualityOf, HundredsOfCellsLeavesOutAHundredthOfThem) {
    Tetrahedron flat = corner;
    flat[3] = {1, 1, 0};
    std::vector<Tetrahedron> some(200, regular);
    some[17] = some[60] = flat;
    EXPECT_NEAR(cells(some)->firstPercentileGamma, 1, 1e-7);
    some[99] = flat;
    EXPECT_EQ(cells(some)->firstPercentileGamma, 0);
}

TEST_F(MeshQualityOf, AnyCellsIsThatOfTheTestsOwnMeasure) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> part(-1, 1);
    std::vector<Tetrahedron> some(3000);
    for (std::size_t c = 0; c < some.size(); ++c) {
        for (glm::dvec3& p : some[c]) {
            // Ever flatter ones.
            p = {part(random), part(random), part(random) * std::pow(10, -1e-3 * double(c))};
        }
    }
    const auto quality = cells(some);
    const auto expected = test::MeshQuality::read(file());
    ASSERT_TRUE(quality);
    EXPECT_EQ(quality->cells, 3000);
    EXPECT_GT(expected.inverted, 1000U);
    EXPECT_EQ(quality->inverted, expected.inverted);
    EXPECT_NEAR(quality->leastGamma / expected.leastGamma, 1, 1e-6);
    EXPECT_NEAR(quality->firstPercentileGamma / expected.firstPercentileGamma, 1, 1e-6);
}

TEST_F(MeshQualityOf, LinesAsOthersWriteThem) {
    // Windows' line ends, more blanks, the points first, no numbers of their own.
    EXPECT_NEAR(text("NDIME=3\r\nNPOIN=\t4\r\n0 0 0\r\n 1.0e0  0 0\r\n0\t1 0\r\n0 0 1\r\n"
                     "NELEM=   1\r\n 10 0  1 2\t3\r\n")
                    ->leastGamma,
        cornerGamma, 1e-12);
}

TEST_F(MeshQualityOf, WhatIsNoWholeMeshOfTetrahedraIsNotKnown) {
    const std::string points = "NPOIN= 4\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n";
    ASSERT_TRUE(text("NDIME= 3\nNELEM= 1\n10 0 1 2 3\n" + points));
    for (const std::string& contents : {std::string(), std::string("NDIME= 3\nNELEM= 1234\n"),
             "NDIME= 2\nNELEM= 1\n10 0 1 2 3\n" + points, "NELEM= 1\n10 0 1 2 3\n" + points,
             "NDIME= 3\nNELEM= 0\n" + points, "NDIME= 3\nNELEM= 1\n12 0 1 2 3 0 1 2 3\n" + points,
             "NDIME= 3\nNELEM= 1\n10 0 1 2\n" + points, "NDIME= 3\nNELEM= 1\n10 0 1 2 4\n" + points,
             "NDIME= 3\nNELEM= 1\n10 0 1 2 -1\n" + points,
             "NDIME= 3\nNELEM= 2\n10 0 1 2 3\n" + points,
             std::string("NDIME= 3\nNELEM= 1\n10 0 1 2 3\nNPOIN= 4\n0 0 0\n1 0"),
             std::string("NDIME= 3\nNELEM= 99999999999999999999\n10 0 1 2 3\n")}) {
        EXPECT_FALSE(text(contents)) << contents;
    }
    EXPECT_FALSE(readMeshQuality(file().parent_path() / "none.su2"));
    EXPECT_FALSE(readMeshQuality(file().parent_path()));
}

TEST_F(MeshQualityOf, ManyMoreCellsThanThereAreCostsNothing) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(text("NDIME= 3\nNELEM= 16000000\n10 0 1 2 3\n"));
    EXPECT_FALSE(text("NDIME= 3\n" + std::string(3'000'000, 'x')));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST_F(MeshQualityOf, ALargeMeshIsSoonKnown) {
    constexpr int count = 400'000;
    std::string contents = fmt::format("NDIME= 3\nNELEM= {}\n", count);
    for (int c = 0; c < count; ++c) {
        contents += fmt::format("10 {} {} {} {} {}\n", c % 9, 9 + c % 7, 16 + c % 5, 21, c);
    }
    contents += "NPOIN= 22\n";
    for (int p = 0; p < 22; ++p) {
        contents += fmt::format("{:.16f} {:.16f} {:.16f} {}\n", std::sin(1.0 * p),
            std::cos(2.0 * p), std::sin(5.0 * p + 1), p);
    }
    test::writeFile(file(), contents);
    const auto start = std::chrono::steady_clock::now();
    const auto quality = readMeshQuality(file());
    // A quarter of a second is due on an idle core.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    ASSERT_TRUE(quality);
    EXPECT_EQ(quality->cells, count);
}

TEST_F(MeshQualityOf, ACancelledReadIsCancelled) {
    cells({corner});
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(readMeshQuality(file(), source.token()), CancellationError);
}

TEST(MeshQualities, AreComparedByInvertedCellsAndThenByTheFlattest) {
    const MeshQuality flat{.cells = 9, .inverted = 0, .leastGamma = 0.01};
    const MeshQuality flatter{.cells = 5, .inverted = 0, .leastGamma = 0.005};
    const MeshQuality inverted{.cells = 9, .inverted = 1, .leastGamma = 0.2};
    EXPECT_TRUE(flat.isBetterThan(flatter));
    EXPECT_FALSE(flatter.isBetterThan(flat));
    EXPECT_FALSE(flat.isBetterThan(flat));
    EXPECT_TRUE(flatter.isBetterThan(inverted));
    EXPECT_FALSE(inverted.isBetterThan(flatter));
    EXPECT_FALSE(flat.isSound());
    EXPECT_FALSE(inverted.isSound());
    EXPECT_TRUE((MeshQuality{.cells = 9, .inverted = 0, .leastGamma = 0.02}.isSound()));
}

} // namespace
} // namespace ostrella
