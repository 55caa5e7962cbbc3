#include "Models/Precondition.h"
#include "Solver/Flow/ShellWalk.h"
#include "Solver/Flow/Spatial3DGrid.h"

#include <algorithm>

namespace ostrella {

namespace {

/// The points that one search looks at, in the order of visit. A grid's coordinates have room for
/// two vectors behind the last.
class Candidates {
public:
    Candidates(const Spatial3DGrid& grid, const Vec3& to, std::size_t k)
        : x_(grid.x()),
          y_(grid.y()),
          z_(grid.z()),
          indices_(grid.cellPoints().data()),
          to_{allLanes(to.x), allLanes(to.y), allLanes(to.z)},
          k_(k) {}

    void look(const PointRun& run) {
        // The result's indices come last and would each wait for memory then.
        __builtin_prefetch(indices_ + run.begin);
        // Most runs are short: two vectors without a look at the length cost less than a branch
        // that is foreseen wrongly.
        four(run.begin, count_);
        four(run.begin + 4, count_ + 4);
        const auto length = static_cast<std::size_t>(run.end - run.begin);
        if (length <= 8) {
            count_ += length;
        } else {
            std::size_t out = count_ + 8;
            std::int32_t at = run.begin + 8;
            for (; at < run.end; at += 4, out += 4) {
                if (out > capacity - 4) {
                    count_ = out;
                    keepNearest();
                    out = count_;
                }
                four(at, out);
            }
            count_ = out - static_cast<std::size_t>(at - run.end);
        }
        if (count_ > capacity - 8)
            keepNearest();
    }

    /// All points looked at, which are no more than k.
    void takeAll(NearestPoints& found) const {
        found.count = count_;
        std::copy_n(places_, count_, found.places.begin());
        std::copy_n(dist2_, count_, found.dist2.begin());
    }

    /// The nearest of more than k points.
    void takeNearest(NearestPoints& found) {
        chooseNearest(dist2_, count_, k_, found);
        for (std::size_t i = 0; i < k_; ++i)
            found.places[i] = places_[found.places[i]];
    }

private:
    static constexpr std::size_t capacity = 1024;

    void four(std::int32_t at, std::size_t out) {
        storeVector(dist2_ + out, squaredDistances(x_ + at, y_ + at, z_ + at, to_));
        storeVector(places_ + out, Int4{0, 1, 2, 3} + at);
    }

    /// Drops all but the nearest. Sorted as they are, equal ones stay in the order of visit.
    void keepNearest() {
        NearestPoints found;
        takeNearest(found);
        count_ = k_;
        std::copy_n(found.places.begin(), k_, places_);
        std::copy_n(found.dist2.begin(), k_, dist2_);
    }

    const float* x_;
    const float* y_;
    const float* z_;
    const std::int32_t* indices_;
    Float4 to_[3];
    std::size_t k_;
    std::size_t count_ = 0;
    alignas(16) float dist2_[capacity + distanceSlack];
    alignas(16) std::int32_t places_[capacity + 8];
};

} // namespace

void Spatial3DGrid::findKNearest(const Vec3& to, int k, NearestPoints& found) const {
    precondition(k >= 1 && k <= static_cast<int>(NearestPoints::most),
        "a search was asked for too few or too many points");
    Candidates candidates(*this, to, static_cast<std::size_t>(k));
    const std::size_t visited = walkShells(cellStart_.data(), cellsPerAxis_, cellAt(to), k,
        [&](const PointRun& run) { candidates.look(run); });
    if (visited <= static_cast<std::size_t>(k))
        candidates.takeAll(found);
    else
        candidates.takeNearest(found);
}

std::vector<int> Spatial3DGrid::findKNearest(
    const Vec3& to, std::span<const Vec3> in, int k) const {
    precondition(in.size() == cellPoints_.size(), "a grid was searched with another array");
    if (k < 1)
        return {};
    if (k > static_cast<int>(NearestPoints::most))
        return findMany(to, static_cast<std::size_t>(k));
    NearestPoints found;
    findKNearest(to, k, found);
    std::vector<int> result(found.count);
    for (std::size_t i = 0; i < found.count; ++i)
        result[i] = cellPoints_[static_cast<std::size_t>(found.places[i])];
    return result;
}

std::vector<int> Spatial3DGrid::findMany(const Vec3& to, std::size_t k) const {
    struct Neighbor {
        float dist2;
        std::int32_t index;
    };
    std::vector<Neighbor> seen;
    walkShells(cellStart_.data(), cellsPerAxis_, cellAt(to), static_cast<int>(k),
        [&](const PointRun& run) {
            for (std::int32_t i = run.begin; i < run.end; ++i) {
                const Vec3 d = Vec3(x()[i], y()[i], z()[i]) - to;
                seen.push_back({squaredLength(d), cellPoints_[static_cast<std::size_t>(i)]});
            }
        });
    if (seen.size() > k) {
        std::stable_sort(seen.begin(), seen.end(),
            [](const Neighbor& a, const Neighbor& b) { return a.dist2 < b.dist2; });
        seen.resize(k);
    }
    std::vector<int> result(seen.size());
    std::transform(seen.begin(), seen.end(), result.begin(),
        [](const Neighbor& neighbor) { return neighbor.index; });
    return result;
}

} // namespace ostrella
