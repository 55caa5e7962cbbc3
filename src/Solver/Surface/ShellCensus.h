#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/FirstPlaces.h"
#include "Solver/Surface/SelfIntersections.h"

namespace ostrella {

/// How the shells of a body are turned and lie in one another. The keys of the places are the
/// shells' first facets; of cutting shells they are the pairs of SelfIntersections.
struct ShellCensus {
    /// What is searched is bounded: facets that lie in front of a shell, for all shells together.
    static constexpr std::int64_t mostFacetsInFront = 50'000'000;

    FirstPlaces insideOut;
    FirstPlaces inner;
    FirstPlaces cutting;
    /// A bound was hit: there may be more inner shells.
    bool isCutShort = false;

    static ShellCensus of(const JudgedFacets& facets, const FacetTree& tree,
        const EdgeCensus& edges, const SelfIntersections& intersections,
        const CancellationToken& token);
};

} // namespace ostrella
