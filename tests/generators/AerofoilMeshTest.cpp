#include "AerofoilMesh.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <glm/geometric.hpp>

namespace ostrella {

using namespace generators;

namespace {

/// The staged mesh file, read with nothing but streams.
struct MeshFile {
    int dimensions = 0;
    std::vector<std::array<int, 4>> quads;
    std::vector<glm::dvec2> points;
    std::map<std::string, std::vector<std::array<int, 2>>> markers;
};

int valueAfter(std::istream& in, const std::string& key) {
    std::string word;
    int value = -1;
    in >> word >> value;
    EXPECT_EQ(word, key);
    return value;
}

MeshFile readMesh() {
    std::ifstream in(std::filesystem::path(OSTRELLA_STAGE_DIR) /
                     "share/ostrella/su2/fixtures/n0012_897-257.su2");
    MeshFile mesh;
    mesh.dimensions = valueAfter(in, "NDIME=");
    mesh.quads.resize(static_cast<std::size_t>(valueAfter(in, "NELEM=")));
    for (auto& q : mesh.quads) {
        int kind = 0;
        int number = 0;
        in >> kind >> q[0] >> q[1] >> q[2] >> q[3] >> number;
        EXPECT_EQ(kind, 9);
    }
    mesh.points.resize(static_cast<std::size_t>(valueAfter(in, "NPOIN=")));
    for (auto& p : mesh.points) {
        int number = 0;
        in >> p.x >> p.y >> number;
    }
    const int markers = valueAfter(in, "NMARK=");
    for (int m = 0; m < markers; ++m) {
        std::string key;
        std::string name;
        in >> key >> name;
        auto& edges = mesh.markers[name];
        edges.resize(static_cast<std::size_t>(valueAfter(in, "MARKER_ELEMS=")));
        for (auto& e : edges) {
            int kind = 0;
            in >> kind >> e[0] >> e[1];
            EXPECT_EQ(kind, 3);
        }
    }
    EXPECT_TRUE(in) << "the file ends early";
    return mesh;
}

class AerofoilFile : public testing::Test {
protected:
    static void SetUpTestSuite() { mesh = readMesh(); }
    static MeshFile mesh;

    static const glm::dvec2& point(int number) {
        return mesh.points.at(static_cast<std::size_t>(number));
    }
};

MeshFile AerofoilFile::mesh;

TEST_F(AerofoilFile, HoldsA897By257GridWithTheWakeMerged) {
    EXPECT_EQ(mesh.dimensions, 2);
    EXPECT_EQ(mesh.quads.size(), 896U * 256U);
    // 192 wake points and the trailing edge occur once, not twice.
    EXPECT_EQ(mesh.points.size(), 897U * 257U - 193U);
}

TEST_F(AerofoilFile, HasNoInvertedOrFlatCell) {
    for (const auto& q : mesh.quads) {
        for (std::size_t k = 0; k < 4; ++k) {
            const glm::dvec2 a = point(q[(k + 1) % 4]) - point(q[k]);
            const glm::dvec2 b = point(q[(k + 3) % 4]) - point(q[k]);
            ASSERT_GT(a.x * b.y - a.y * b.x, 0.0);
        }
    }
}

TEST_F(AerofoilFile, HasMarkersThatTogetherMakeItsWholeOutline) {
    ASSERT_EQ(mesh.markers.size(), 2U);
    EXPECT_EQ(mesh.markers.at("body").size(), 512U);
    EXPECT_EQ(mesh.markers.at("farfield").size(), 896U + 2U * 256U);
    std::map<std::pair<int, int>, int> used;
    for (const auto& q : mesh.quads) {
        for (std::size_t k = 0; k < 4; ++k) {
            ++used[std::minmax(q[k], q[(k + 1) % 4])];
        }
    }
    std::set<std::pair<int, int>> outline;
    for (const auto& [edge, count] : used) {
        if (count == 1) {
            outline.insert(edge);
        }
    }
    std::set<std::pair<int, int>> marked;
    for (const auto& [name, edges] : mesh.markers) {
        for (const auto& e : edges) {
            marked.insert(std::minmax(e[0], e[1]));
        }
    }
    EXPECT_EQ(marked, outline);
}

TEST_F(AerofoilFile, FollowsTheSectionAndClosesAtASharpTrailingEdge) {
    double least = 1.0;
    double most = 0.0;
    for (const auto& e : mesh.markers.at("body")) {
        const glm::dvec2& p = point(e[0]);
        const double x = p.x;
        const double half = 0.6 * (0.2969 * std::sqrt(x) - 0.1260 * x - 0.3516 * x * x +
                                      0.2843 * x * x * x - 0.1036 * x * x * x * x);
        ASSERT_NEAR(std::abs(p.y), half, 1e-9);
        least = std::min(least, x);
        most = std::max(most, x);
    }
    EXPECT_NEAR(least, 0.0, 1e-12);
    EXPECT_NEAR(most, 1.0, 1e-12);
    EXPECT_NEAR(naca0012(1.0), 0.0, 1e-12);
    EXPECT_NEAR(naca0012(0.3), 0.06, 1e-4);
}

TEST_F(AerofoilFile, KeepsTheFarFieldTwentyChordsAway) {
    double nearest = 1e9;
    for (const auto& e : mesh.markers.at("farfield")) {
        for (const int number : e) {
            for (const double x : {0.0, 0.5, 1.0}) {
                nearest = std::min(nearest, glm::length(point(number) - glm::dvec2(x, 0.0)));
            }
        }
    }
    EXPECT_GT(nearest, 20.0);
}

class AerofoilGrid : public testing::Test {
protected:
    static void SetUpTestSuite() { mesh = AerofoilMesh::make(); }
    static AerofoilMesh mesh;

    static double height(int i, int j) { return glm::length(mesh.at(i, j + 1) - mesh.at(i, j)); }
};

AerofoilMesh AerofoilGrid::mesh;

TEST_F(AerofoilGrid, HasAFirstCellForYPlusOneAllAlongTheWall) {
    // y+ = y · u_tau / nu with u_tau near 2 m/s at 50 m/s and nu = 1.48e-5 m²/s.
    for (int i = AerofoilMesh::wake; i < AerofoilMesh::around - AerofoilMesh::wake; ++i) {
        const double yPlus = height(i, 0) * 2.0 / 1.48e-5;
        ASSERT_GT(yPlus, 0.8) << i;
        ASSERT_LT(yPlus, 1.1) << i;
    }
}

TEST_F(AerofoilGrid, GrowsGentlyInBothDirections) {
    for (int i = 0; i < AerofoilMesh::around; ++i) {
        for (int j = 0; j + 2 < AerofoilMesh::outward; ++j) {
            ASSERT_LT(height(i, j + 1) / height(i, j), 1.15) << i << ' ' << j;
        }
    }
    for (int j = 0; j < AerofoilMesh::outward; ++j) {
        for (int i = 0; i + 2 < AerofoilMesh::around; ++i) {
            const double a = glm::length(mesh.at(i + 1, j) - mesh.at(i, j));
            const double b = glm::length(mesh.at(i + 2, j) - mesh.at(i + 1, j));
            ASSERT_LT(std::max(a / b, b / a), 1.15) << i << ' ' << j;
        }
    }
}

TEST_F(AerofoilGrid, StandsNearlySquareOnTheWallAndStaysUnskewed) {
    for (int j = 0; j + 1 < AerofoilMesh::outward; ++j) {
        for (int i = 0; i + 1 < AerofoilMesh::around; ++i) {
            const glm::dvec2 along = glm::normalize(mesh.at(i + 1, j) - mesh.at(i, j));
            const glm::dvec2 outward = glm::normalize(mesh.at(i, j + 1) - mesh.at(i, j));
            // 10 degrees off the right angle near the wall, 15 anywhere.
            const double limit = j < 50 ? std::sin(0.1745) : std::sin(0.2618);
            ASSERT_LT(std::abs(glm::dot(along, outward)), limit) << i << ' ' << j;
        }
    }
}

TEST_F(AerofoilGrid, IsSymmetricAboutTheChord) {
    for (int j = 0; j < AerofoilMesh::outward; ++j) {
        for (int i = 0; i < AerofoilMesh::around; ++i) {
            const glm::dvec2& p = mesh.at(i, j);
            const glm::dvec2& q = mesh.at(AerofoilMesh::around - 1 - i, j);
            ASSERT_EQ(p.x, q.x);
            ASSERT_EQ(p.y, -q.y);
        }
    }
}

} // namespace

} // namespace ostrella
