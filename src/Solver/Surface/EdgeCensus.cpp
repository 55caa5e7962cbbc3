#include "Solver/Surface/EdgeCensus.h"

#include "Solver/Geometry/EdgeBuckets.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

constexpr std::size_t between = 1 << 15;

/// A use of an edge: its larger vertex above, 3 × facet + side below.
using Use = std::uint64_t;

std::uint32_t edgeOf(Use use) {
    return static_cast<std::uint32_t>(use);
}

std::uint32_t largerOf(Use use) {
    return static_cast<std::uint32_t>(use >> 32);
}

void sortUses(std::span<Use> uses) {
    constexpr std::size_t few = 24;
    if (uses.size() > few) {
        std::sort(uses.begin(), uses.end());
        return;
    }
    for (std::size_t i = 1; i < uses.size(); ++i) {
        const Use use = uses[i];
        std::size_t place = i;
        for (; place > 0 && uses[place - 1] > use; --place)
            uses[place] = uses[place - 1];
        uses[place] = use;
    }
}

/// Calls visit(uses) for each edge of a sorted bucket.
template <class Visit>
void forEachEdge(std::span<const Use> uses, Visit&& visit) {
    for (std::size_t first = 0; first < uses.size();) {
        std::size_t end = first + 1;
        while (end < uses.size() && largerOf(uses[end]) == largerOf(uses[first]))
            ++end;
        visit(uses.subspan(first, end - first));
        first = end;
    }
}

/// Sets of facets: each points to one before it, or to itself.
class Sets {
public:
    explicit Sets(std::size_t count) : parents_(count) {
        for (std::size_t i = 0; i < count; ++i)
            parents_[i] = static_cast<std::uint32_t>(i);
    }

    void unite(std::uint32_t a, std::uint32_t b) {
        a = rootOf(a);
        b = rootOf(b);
        parents_[std::max(a, b)] = std::min(a, b);
    }

    std::uint32_t rootOf(std::uint32_t i) {
        while (parents_[i] != i)
            i = parents_[i] = parents_[parents_[i]];
        return i;
    }

private:
    LargeBuffer<std::uint32_t> parents_;
};

class Counting {
public:
    Counting(JudgedFacets& facets, const CancellationToken& token)
        : facets_(facets),
          token_(token),
          edges_({facets.indices.data(), facets.indices.size()}, facets.vertices.size(),
              [&](std::uint32_t larger, std::uint32_t edge) {
                  if (edge % between == 0)
                      token.throwIfCancelled();
                  return Use{larger} << 32 | edge;
              }),
          sets_(facets.count()) {}

    EdgeCensus count() {
        for (std::size_t vertex = 0; vertex < edges_.bucketCount(); ++vertex) {
            if (vertex % between == 0)
                token_.throwIfCancelled();
            sortUses(edges_.bucket(vertex));
            forEachEdge(edges_.bucket(vertex),
                [&](std::span<const Use> uses) { leaveDuplicatesOut(uses); });
        }
        lengths_.reserve(facets_.count() * 3 / 2 + 16);
        for (std::size_t vertex = 0; vertex < edges_.bucketCount(); ++vertex) {
            if (vertex % between == 0)
                token_.throwIfCancelled();
            forEachEdge(
                edges_.bucket(vertex), [&](std::span<const Use> uses) { countEdge(vertex, uses); });
        }
        measure();
        numberShells();
        return std::move(census_);
    }

private:
    bool isIn(Use use) const { return !facets_.is(edgeOf(use) / 3, JudgedFacets::leftOut); }

    /// The corner of a use's facet that is not on its edge.
    std::uint32_t oppositeOf(Use use) const {
        const std::uint32_t edge = edgeOf(use);
        return facets_.indices[edge % 3 == 0 ? edge + 2 : edge - 1];
    }

    /// Facets of the same corners meet at the edge of the two lesser ones, among others.
    void leaveDuplicatesOut(std::span<const Use> uses) {
        if (uses.size() < 2)
            return;
        if (uses.size() == 2) {
            if (oppositeOf(uses[0]) == oppositeOf(uses[1]) && isIn(uses[0]) && isIn(uses[1]) &&
                oppositeOf(uses[0]) > largerOf(uses[0])) {
                leaveOut(edgeOf(uses[1]) / 3);
            }
            return;
        }
        same_.clear();
        for (const Use use : uses) {
            if (isIn(use) && oppositeOf(use) > largerOf(use))
                same_.push_back(Use{oppositeOf(use)} << 32 | edgeOf(use));
        }
        std::sort(same_.begin(), same_.end());
        for (std::size_t i = 1; i < same_.size(); ++i) {
            if (largerOf(same_[i]) == largerOf(same_[i - 1]))
                leaveOut(edgeOf(same_[i]) / 3);
        }
    }

    void leaveOut(std::uint32_t facet) {
        facets_.mark(facet, JudgedFacets::leftOut);
        census_.duplicated.add(facet);
    }

    void countEdge(std::size_t vertex, std::span<const Use> uses) {
        std::size_t count = 0;
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        for (const Use use : uses) {
            if (!isIn(use))
                continue;
            last = edgeOf(use);
            if (count++ == 0)
                first = last;
            else
                sets_.unite(first / 3, last / 3);
        }
        if (count == 0)
            return;
        lengths_.push_back(static_cast<float>(glm::distance(
            facets_.at(static_cast<std::uint32_t>(vertex)), facets_.at(largerOf(uses[0])))));
        if (count % 2 != 0)
            facets_.mark(first / 3, JudgedFacets::oddEdge);
        if (count == 1) {
            census_.open.add(first);
        } else if (count > 2) {
            census_.nonManifold.add(first);
        } else if (facets_.indices[first] == facets_.indices[last]) {
            census_.inconsistent.add(first);
            facets_.mark(first / 3, JudgedFacets::disagreeing);
        }
    }

    void measure() {
        if (lengths_.empty())
            return;
        token_.throwIfCancelled();
        const auto [least, greatest] = std::minmax_element(lengths_.begin(), lengths_.end());
        census_.shortest = *least;
        census_.longest = *greatest;
        const auto middle =
            lengths_.begin() + static_cast<std::ptrdiff_t>((lengths_.size() - 1) / 2);
        std::nth_element(lengths_.begin(), middle, lengths_.end());
        census_.median = *middle;
    }

    void numberShells() {
        census_.shellOf = LargeBuffer<std::uint32_t>(facets_.count());
        for (std::uint32_t facet = 0; facet < facets_.count(); ++facet) {
            if (facet % between == 0)
                token_.throwIfCancelled();
            if (facets_.is(facet, JudgedFacets::leftOut)) {
                census_.shellOf[facet] = EdgeCensus::noShell;
                continue;
            }
            const std::uint32_t root = sets_.rootOf(facet);
            census_.shellOf[facet] = root == facet ? census_.shells++ : census_.shellOf[root];
        }
    }

    JudgedFacets& facets_;
    const CancellationToken& token_;
    EdgeBuckets<Use> edges_;
    Sets sets_;
    EdgeCensus census_;
    std::vector<float> lengths_;
    std::vector<Use> same_;
};

} // namespace

EdgeCensus EdgeCensus::of(JudgedFacets& facets, const CancellationToken& token) {
    // A facet that is left out so far has two equal corners: its three are made one, so that it has
    // no edges.
    for (std::size_t facet = 0; facet < facets.count(); ++facet) {
        if (facets.is(facet, JudgedFacets::leftOut)) {
            facets.indices[3 * facet + 1] = facets.indices[3 * facet];
            facets.indices[3 * facet + 2] = facets.indices[3 * facet];
        }
    }
    return Counting(facets, token).count();
}

Vec3 EdgeCensus::placeOf(const JudgedFacets& facets, std::uint64_t edge) {
    const std::uint64_t next = edge % 3 == 2 ? edge - 2 : edge + 1;
    return Vec3(0.5 * (facets.at(facets.indices[edge]) + facets.at(facets.indices[next])));
}

} // namespace ostrella
