#pragma once

#include "Models/Cancellation.h"
#include "Models/LargeBuffer.h"
#include "Solver/Surface/FirstPlaces.h"
#include "Solver/Surface/JudgedFacets.h"

#include <cstdint>

namespace ostrella {

/// What the facets' common edges tell, without facets that are left out. The keys of edges are
/// 3 × facet + side, of the first facet at it.
struct EdgeCensus {
    static constexpr std::uint32_t noShell = 0xFFFFFFFFU;

    FirstPlaces open;
    FirstPlaces nonManifold;
    FirstPlaces inconsistent;
    FirstPlaces duplicated; ///< keys are facets
    float shortest = 0;
    float median = 0; ///< the lower one of two
    float longest = 0;
    /// Of each facet: the pieces that hang together by edges, numbered by their first facets.
    LargeBuffer<std::uint32_t> shellOf;
    std::uint32_t shells = 0;

    /// Leaves duplicated facets out, and marks odd edges and disagreeing facets.
    static EdgeCensus of(JudgedFacets& facets, const CancellationToken& token);

    /// Where an edge is: its middle.
    static Vec3 placeOf(const JudgedFacets& facets, std::uint64_t edge);
};

} // namespace ostrella
