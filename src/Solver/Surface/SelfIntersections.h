#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/BoxTree.h"
#include "Solver/Surface/EdgeCensus.h"
#include "Solver/Surface/FirstPlaces.h"
#include "Solver/Surface/JudgedFacets.h"

#include <cstdint>
#include <vector>

namespace ostrella {

/// The facets of a body that are not left out and have an area, for questions about places.
struct FacetTree {
    BoxFrame frame;
    BoxTree tree;
    /// The tree's order() counts in these.
    LargeBuffer<std::uint32_t> facets;

    static FacetTree of(const JudgedFacets& facets, const CancellationToken& token);

    std::uint32_t facetAt(std::uint32_t place) const { return facets[tree.order()[place]]; }
};

/// Pairs of facets that meet where they should not. The keys of the places are two facets, the
/// lesser one above.
struct SelfIntersections {
    /// What is searched is bounded, in each of two halves of the facets: found pairs, and pairs
    /// that are looked at because their boxes meet.
    static constexpr std::int64_t mostPairs = 50'000;
    static constexpr std::int64_t mostCandidates = 60'000'000;

    FirstPlaces cuts;
    FirstPlaces overlaps;
    /// A bound was hit: the counts are least numbers.
    bool isCutShort = false;
    /// Pairs of shells with a pair of facets of theirs that meet, each once, sorted; with the least
    /// such pair of facets as key.
    struct ShellPair {
        std::uint64_t shells;
        std::uint64_t facets;
        auto operator<=>(const ShellPair&) const = default;
    };
    std::vector<ShellPair> shells;

    static SelfIntersections of(const JudgedFacets& facets, const FacetTree& tree,
        const EdgeCensus& edges, const CancellationToken& token);

    static Vec3 placeOf(const JudgedFacets& facets, std::uint64_t pair);
};

} // namespace ostrella
