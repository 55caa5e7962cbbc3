#include "Solver/Surface/PointClusters.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

namespace ostrella {

namespace {

constexpr std::uint32_t noPoint = std::numeric_limits<std::uint32_t>::max();

using Place = std::array<std::int64_t, 3>;

struct PlaceHash {
    std::size_t operator()(const Place& place) const {
        std::uint64_t hash = 0;
        for (const std::int64_t part : place) {
            hash = (hash ^ static_cast<std::uint64_t>(part)) * 0x9E3779B97F4A7C15u;
            hash ^= hash >> 29;
        }
        return hash;
    }
};

std::int64_t cellOf(double scaled) {
    constexpr double bound = 9e18;
    return static_cast<std::int64_t>(std::clamp(std::floor(scaled), -bound, bound));
}

} // namespace

std::vector<std::uint32_t> clusterPoints(
    const std::vector<DVec3>& points, std::span<const std::uint32_t> chosen, double width) {
    // Cells of twice the width: what is near to a point lies in its cell or in one of the seven on
    // the sides that the point is nearer to.
    const double scale = 0.5 / width;
    std::unordered_map<Place, std::uint32_t, PlaceHash> firstIn;
    firstIn.reserve(chosen.size());
    std::vector<std::uint32_t> nextIn(chosen.size(), noPoint);

    std::vector<std::uint32_t> leaders;
    leaders.reserve(chosen.size());
    for (std::uint32_t i = 0; i < chosen.size(); ++i) {
        const DVec3& point = points[chosen[i]];
        const DVec3 scaled = point * scale;
        Place home;
        Place side;
        for (int axis = 0; axis < 3; ++axis) {
            const auto a = static_cast<std::size_t>(axis);
            home[a] = cellOf(scaled[axis]);
            side[a] = scaled[axis] - std::floor(scaled[axis]) < 0.5 ? -1 : 1;
        }
        std::uint32_t leader = noPoint;
        for (unsigned neighbour = 0; neighbour < 8; ++neighbour) {
            Place place = home;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (neighbour >> axis & 1)
                    place[axis] += side[axis];
            }
            const auto found = firstIn.find(place);
            if (found == firstIn.end())
                continue;
            for (std::uint32_t other = found->second; other != noPoint; other = nextIn[other]) {
                if (other < leader && glm::distance(points[chosen[other]], point) <= width)
                    leader = other;
            }
        }
        if (leader == noPoint) {
            leader = i;
            const auto [place, isNew] = firstIn.try_emplace(home, i);
            if (!isNew)
                nextIn[i] = std::exchange(place->second, i);
        }
        leaders.push_back(chosen[leader]);
    }
    return leaders;
}

} // namespace ostrella
