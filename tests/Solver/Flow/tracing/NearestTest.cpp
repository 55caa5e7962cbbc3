// The search beside one that knows no grid: it sorts all points by the shell, the cell and the
// index, which is the order of visit, cuts behind the shell that gave enough, and sorts the rest by
// distance.

#include "Solver/Flow/NearestSearch.h"
#include "Solver/Flow/Spatial3DGrid.h"
#include "Solver/Flow/tracing/PlainGrid.h"
#include "Solver/Flow/tracing/TestClouds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <tuple>
#include <vector>

using namespace ostrella;
using ostrella::testing::Cloud;
using ostrella::testing::Dice;
using ostrella::testing::manyClouds;

namespace {

/// The cells' numbers of all points of a cloud, worked out anew.
class BruteForce {
public:
    explicit BruteForce(const Cloud& cloud) : cloud_(cloud) {
        for (int axis = 0; axis < 3; ++axis) {
            const auto less = [axis](const Vec3& a, const Vec3& b) { return a[axis] < b[axis]; };
            const auto [low, high] =
                std::minmax_element(cloud.points.begin(), cloud.points.end(), less);
            low_[axis] = (*low)[axis];
            size_[axis] = std::max((*high)[axis] - (*low)[axis], 1e-6F) /
                          static_cast<float>(cloud.cellsPerAxis);
        }
    }

    /// A point by its shell around a position, its cell along z, y and x, and its index: so points
    /// are sorted in the order of visit.
    using Visit = std::tuple<int, int, int, int, int>;

    std::vector<Visit> visitsFrom(const Vec3& to) const {
        std::vector<Visit> visits;
        const auto own = cellOf(to);
        for (std::size_t i = 0; i < cloud_.points.size(); ++i) {
            const auto cell = cellOf(cloud_.points[i]);
            int shell = 0;
            for (std::size_t axis = 0; axis < 3; ++axis)
                shell = std::max(shell, std::abs(cell[axis] - own[axis]));
            visits.emplace_back(shell, cell[2], cell[1], cell[0], static_cast<int>(i));
        }
        std::sort(visits.begin(), visits.end());
        return visits;
    }

    std::vector<int> nearest(const std::vector<Visit>& visits, const Vec3& to, int k) const {
        const auto enough = std::min(static_cast<std::size_t>(k), visits.size());
        const int lastShell = std::get<0>(visits[enough - 1]);
        std::vector<int> result;
        for (const Visit& visit : visits)
            if (std::get<0>(visit) <= lastShell)
                result.push_back(std::get<4>(visit));
        if (result.size() > static_cast<std::size_t>(k)) {
            std::stable_sort(result.begin(), result.end(),
                [&](int a, int b) { return dist2(a, to) < dist2(b, to); });
            result.resize(static_cast<std::size_t>(k));
        }
        return result;
    }

private:
    std::array<int, 3> cellOf(const Vec3& p) const {
        std::array<int, 3> cell{};
        for (int axis = 0; axis < 3; ++axis) {
            const float quotient = std::trunc((p[axis] - low_[axis]) / size_[axis]);
            const float last = static_cast<float>(cloud_.cellsPerAxis - 1);
            cell[static_cast<std::size_t>(axis)] = static_cast<int>(quotient < 0.0F   ? 0.0F
                                                                    : quotient > last ? last
                                                                                      : quotient);
        }
        return cell;
    }
    float dist2(int index, const Vec3& to) const {
        const Vec3 d = cloud_.points[static_cast<std::size_t>(index)] - to;
        const float inPlane = d.x * d.x + d.y * d.y;
        return inPlane + d.z * d.z;
    }

    const Cloud& cloud_;
    Vec3 low_;
    Vec3 size_;
};

/// Positions in and around a cloud: its own points, between them, beside them, far away, and the
/// origin, which is the middle of some.
std::vector<Vec3> positionsAround(const Cloud& cloud) {
    Dice dice(11);
    std::vector<Vec3> positions;
    const auto point = [&] {
        return cloud
            .points[static_cast<std::size_t>(dice.below(static_cast<int>(cloud.points.size())))];
    };
    for (int i = 0; i < 12; ++i) {
        const Vec3 a = point();
        const Vec3 b = point();
        positions.push_back(a);
        positions.push_back((a + b) * 0.5F);
        positions.push_back(a + dice.inCube(-0.3F, 0.3F));
        positions.push_back(a + (a - b) * 3.0F);
    }
    positions.emplace_back(1e6F, -1e6F, 0.0F);
    positions.emplace_back(0.0F);
    return positions;
}

TEST(NearestPoints, areThoseOfBruteForceWithTheSameShells) {
    for (const Cloud& cloud : manyClouds()) {
        const Spatial3DGrid grid(cloud.points, cloud.cellsPerAxis);
        const BruteForce bruteForce(cloud);
        for (const Vec3& to : positionsAround(cloud)) {
            const auto visits = bruteForce.visitsFrom(to);
            for (const int k : {1, 3, 6, 8, 9, 100, 6000})
                ASSERT_EQ(grid.findKNearest(to, cloud.points, k), bruteForce.nearest(visits, to, k))
                    << cloud.name << ", k " << k << " at " << to.x << ' ' << to.y << ' ' << to.z;
        }
    }
}

TEST(NearestPoints, areThoseOfTheGridWrittenPlainly) {
    for (const Cloud& cloud : manyClouds()) {
        const Spatial3DGrid grid(cloud.points, cloud.cellsPerAxis);
        const plain::Grid plainGrid(cloud.points, cloud.cellsPerAxis);
        for (const Vec3& to : positionsAround(cloud))
            for (const int k : {1, 2, 7, 8, 30})
                ASSERT_EQ(grid.findKNearest(to, cloud.points, k),
                    plainGrid.findKNearest(to, cloud.points, k))
                    << cloud.name << ", k " << k << " at " << to.x << ' ' << to.y << ' ' << to.z;
    }
}

/// A walk of small steps, which sometimes jumps.
std::vector<Vec3> walkThrough(const Cloud& cloud) {
    Dice dice(5);
    std::vector<Vec3> walk;
    for (const Vec3& from : positionsAround(cloud)) {
        Vec3 at = from;
        for (int step = 0; step < 6; ++step) {
            walk.push_back(at);
            at += dice.inCube(-0.1F, 0.1F);
        }
    }
    return walk;
}

void expectSameOnAWalk(const Cloud& cloud, int k) {
    const Spatial3DGrid grid(cloud.points, cloud.cellsPerAxis);
    NearestSearch search(grid, k);
    for (const Vec3& to : walkThrough(cloud)) {
        NearestPoints found;
        search.find(to, found);
        std::vector<int> indices;
        for (std::size_t i = 0; i < found.count; ++i) {
            const auto index = grid.cellPoints()[static_cast<std::size_t>(found.places[i])];
            indices.push_back(index);
            const Vec3 d = cloud.points[static_cast<std::size_t>(index)] - to;
            ASSERT_EQ(found.dist2[i], squaredLength(d)) << cloud.name;
        }
        ASSERT_EQ(indices, grid.findKNearest(to, cloud.points, k))
            << cloud.name << ", k " << k << " at " << to.x << ' ' << to.y << ' ' << to.z;
    }
}

TEST(NearestSearch, findsTheSameOnAWalk) {
    for (const Cloud& cloud : manyClouds())
        for (int k = 1; k <= 8; ++k)
            expectSameOnAWalk(cloud, k);
}

TEST(NearestSearchDeathTest, endsTheProcessAtMoreThanItCanHold) {
    const std::vector<Vec3> points{Vec3(1.0F)};
    const Spatial3DGrid grid(points, 8);
    NearestPoints found;
    EXPECT_DEATH(NearestSearch(grid, 9), "too many");
    EXPECT_DEATH(NearestSearch(grid, 0), "too few");
    EXPECT_DEATH(grid.findKNearest(Vec3(0.0F), 9, found), "too many");
    EXPECT_DEATH(grid.findKNearest(Vec3(0.0F), 0, found), "too few");
}

} // namespace
