#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/FirstPlaces.h"
#include "Solver/Surface/JudgedFacets.h"

namespace ostrella {

/// What single facets tell. The keys of the places are facets.
struct FacetCensus {
    FirstPlaces degenerate;
    FirstPlaces slivers;
    double area = 0;   ///< m²
    double volume = 0; ///< m³, about the body's middle

    /// Marks what has collapsed, and leaves out what has so on the weld grid.
    static FacetCensus of(JudgedFacets& facets, const CancellationToken& token);
};

} // namespace ostrella
