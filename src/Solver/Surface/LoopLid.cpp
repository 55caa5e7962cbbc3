#include "Solver/Surface/LoopLid.h"

#include "Solver/Surface/PlanarWidth.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <queue>
#include <tuple>

namespace ostrella {

namespace {

/// A corner turns if the sine of its angle is at least this.
constexpr double leastTurn = 1e-3;
/// How much longer the third edge of a straight corner, and of one that points into the hole,
/// counts.
constexpr double straightPenalty = 4;
constexpr double reflexPenalty = 64;
/// A triangle of a height below this part of its longest edge is a line.
constexpr double leastHeight = 1e-6;

/// Twice the area vector of the loop (Newell's formula), about its first point.
DVec3 areaVector(const std::vector<DVec3>& points, std::span<const std::uint32_t> loop) {
    const DVec3& middle = points[loop.front()];
    DVec3 sum(0);
    for (std::size_t i = 0; i < loop.size(); ++i)
        sum += glm::cross(points[loop[i]] - middle, points[loop[(i + 1) % loop.size()]] - middle);
    return sum;
}

DVec3 unitOrZero(const DVec3& vector) {
    const double length = glm::length(vector);
    return length > 0 ? vector / length : DVec3(0);
}

double widthAlong(
    const std::vector<DVec3>& points, std::span<const std::uint32_t> loop, const DVec3& normal) {
    const DVec3 magnitudes = glm::abs(normal);
    DVec3 across(0);
    across[magnitudes.x <= magnitudes.y && magnitudes.x <= magnitudes.z ? 0
           : magnitudes.y <= magnitudes.z                               ? 1
                                                                        : 2] = 1;
    const DVec3 first = glm::normalize(glm::cross(normal, across));
    const DVec3 second = glm::cross(normal, first);
    std::vector<glm::dvec2> flat;
    flat.reserve(loop.size());
    for (const std::uint32_t vertex : loop) {
        const DVec3 point = points[vertex] - points[loop.front()];
        flat.emplace_back(glm::dot(point, first), glm::dot(point, second));
    }
    return planarWidth(std::move(flat));
}

class EarClipping {
public:
    EarClipping(const std::vector<DVec3>& points, std::span<const std::uint32_t> loop)
        : points_(points),
          loop_(loop),
          normal_(unitOrZero(areaVector(points, loop))),
          before_(loop.size()),
          after_(loop.size()),
          versions_(loop.size()) {
        const auto size = static_cast<std::uint32_t>(loop.size());
        for (std::uint32_t i = 0; i < size; ++i) {
            before_[i] = i == 0 ? size - 1 : i - 1;
            after_[i] = i + 1 == size ? 0 : i + 1;
        }
    }

    LoopLid close() && {
        auto left = static_cast<std::uint32_t>(loop_.size());
        std::vector<Ear> first;
        first.reserve(loop_.size());
        for (std::uint32_t i = 0; i < left; ++i)
            first.push_back(earAt(i));
        ears_ = Ears({}, std::move(first));
        while (left > 3) {
            const Ear ear = ears_.top();
            ears_.pop();
            if (ear.version != versions_[ear.corner])
                continue;
            addTriangle(ear.corner);
            cut(ear.corner);
            --left;
            // What is left hangs on the two neighbours of the last corner that was cut off.
            last_ = after_[ear.corner];
        }
        addTriangle(last_);
        lid_.width = 2 * greatestHeight_;
        if (normal_ != DVec3(0))
            lid_.width = std::min(lid_.width, widthAlong(points_, loop_, normal_));
        return std::move(lid_);
    }

private:
    struct Ear {
        double cost;
        std::uint32_t corner;
        std::uint32_t version;
        bool operator>(const Ear& other) const {
            return std::tie(cost, corner, version) >
                   std::tie(other.cost, other.corner, other.version);
        }
    };
    using Ears = std::priority_queue<Ear, std::vector<Ear>, std::greater<>>;

    const DVec3& pointAt(std::uint32_t corner) const { return points_[loop_[corner]]; }

    Ear earAt(std::uint32_t corner) const {
        const DVec3& from = pointAt(before_[corner]);
        const DVec3& at = pointAt(corner);
        const DVec3& to = pointAt(after_[corner]);
        const double turn = glm::dot(glm::cross(at - from, to - at), normal_);
        const double least = leastTurn * glm::length(at - from) * glm::length(to - at);
        const double penalty = turn > least ? 1 : turn < -least ? reflexPenalty : straightPenalty;
        return {penalty * glm::distance(from, to), corner, versions_[corner]};
    }

    void cut(std::uint32_t corner) {
        ++versions_[corner];
        after_[before_[corner]] = after_[corner];
        before_[after_[corner]] = before_[corner];
        for (const std::uint32_t neighbour : {before_[corner], after_[corner]}) {
            ++versions_[neighbour];
            ears_.push(earAt(neighbour));
        }
    }

    void addTriangle(std::uint32_t corner) {
        const std::uint32_t from = before_[corner];
        const std::uint32_t to = after_[corner];
        const DVec3 a = pointAt(corner) - pointAt(from);
        const DVec3 b = pointAt(to) - pointAt(corner);
        const double longest =
            std::max({glm::length(a), glm::length(b), glm::distance(pointAt(to), pointAt(from))});
        const double twiceArea = glm::length(glm::cross(a, b));
        const double height = longest > 0 ? twiceArea / longest : 0;
        greatestHeight_ = std::max(greatestHeight_, height);
        lid_.area += 0.5 * twiceArea;
        if (height > leastHeight * longest)
            lid_.triangles.push_back({loop_[from], loop_[corner], loop_[to]});
    }

    const std::vector<DVec3>& points_;
    std::span<const std::uint32_t> loop_;
    DVec3 normal_; ///< of the loop as it runs; zero if it encloses nothing
    std::vector<std::uint32_t> before_;
    std::vector<std::uint32_t> after_;
    std::vector<std::uint32_t> versions_; ///< ears of another version are out of date
    std::uint32_t last_ = 1;
    Ears ears_;
    double greatestHeight_ = 0;
    LoopLid lid_;
};

} // namespace

LoopLid lidOn(const std::vector<DVec3>& points, std::span<const std::uint32_t> loop) {
    if (loop.size() < 3)
        return {};
    return EarClipping(points, loop).close();
}

} // namespace ostrella
