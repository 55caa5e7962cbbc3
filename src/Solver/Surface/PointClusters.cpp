#include "Solver/Surface/PointClusters.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace ostrella {

namespace {

constexpr std::uint32_t noPoint = std::numeric_limits<std::uint32_t>::max();
/// Edge of the cells in widths: what is near to a point lies mostly in its own cell.
constexpr double cellWidths = 4;

using Place = std::array<std::int64_t, 3>;

std::int64_t cellOf(double scaled) {
    constexpr double bound = 9e18;
    return static_cast<std::int64_t>(std::clamp(std::floor(scaled), -bound, bound));
}

/// The leaders found so far, by the cell that they lie in. Cells share a list now and then, which
/// only makes it longer.
class Leaders {
public:
    Leaders(const std::vector<DVec3>& points, std::span<const std::uint32_t> chosen, double width)
        : points_(points),
          chosen_(chosen),
          width_(width),
          scale_(1 / (cellWidths * width)),
          firsts_(std::bit_ceil(chosen.size() + 1), noPoint),
          nexts_(chosen.size(), noPoint) {}

    /// The first leader near enough to point i of those chosen; the point itself, which then is
    /// one, if there is none.
    std::uint32_t leaderOf(std::uint32_t i) {
        const DVec3 scaled = points_[chosen_[i]] * scale_;
        Place home;
        Place side{};
        for (int axis = 0; axis < 3; ++axis) {
            const auto a = static_cast<std::size_t>(axis);
            home[a] = cellOf(scaled[axis]);
            const double within = scaled[axis] - std::floor(scaled[axis]);
            // A little more than a width, for the rounding.
            if (within < 1.01 / cellWidths)
                side[a] = -1;
            else if (within > 1 - 1.01 / cellWidths)
                side[a] = 1;
        }
        std::uint32_t leader = noPoint;
        for (unsigned neighbour = 0; neighbour < 8; ++neighbour) {
            Place place = home;
            bool isReached = true;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (neighbour >> axis & 1) {
                    place[axis] += side[axis];
                    isReached = isReached && side[axis] != 0;
                }
            }
            if (isReached)
                leader = std::min(leader, firstNear(firsts_[listOf(place)], i));
        }
        if (leader != noPoint)
            return leader;
        std::uint32_t& first = firsts_[listOf(home)];
        nexts_[i] = std::exchange(first, i);
        return i;
    }

private:
    std::size_t listOf(const Place& place) const {
        std::uint64_t hash = 0;
        for (const std::int64_t part : place) {
            hash = (hash ^ static_cast<std::uint64_t>(part)) * 0x9E3779B97F4A7C15u;
            hash ^= hash >> 29;
        }
        return hash & (firsts_.size() - 1);
    }

    /// The first one of a list that is near enough to point i.
    std::uint32_t firstNear(std::uint32_t other, std::uint32_t i) const {
        std::uint32_t leader = noPoint;
        for (; other != noPoint; other = nexts_[other]) {
            if (other < leader &&
                glm::distance(points_[chosen_[other]], points_[chosen_[i]]) <= width_)
                leader = other;
        }
        return leader;
    }

    const std::vector<DVec3>& points_;
    std::span<const std::uint32_t> chosen_;
    double width_;
    double scale_;
    std::vector<std::uint32_t> firsts_;
    std::vector<std::uint32_t> nexts_;
};

} // namespace

std::vector<std::uint32_t> clusterPoints(
    const std::vector<DVec3>& points, std::span<const std::uint32_t> chosen, double width) {
    Leaders leaders(points, chosen, width);
    std::vector<std::uint32_t> result;
    result.reserve(chosen.size());
    for (std::uint32_t i = 0; i < chosen.size(); ++i)
        result.push_back(chosen[leaders.leaderOf(i)]);
    return result;
}

} // namespace ostrella
