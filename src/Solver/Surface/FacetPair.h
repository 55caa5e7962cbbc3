#pragma once

#include "Models/Vector.h"
#include "Solver/Surface/IndexedSurface.h"

#include <array>
#include <cstdint>

namespace ostrella {

/// How two facets stand to one another.
enum class FacetMeeting {
    none,    ///< apart, or together at the corner or the edge that they share only
    cut,     ///< they cut or touch each other away from what they share
    overlap, ///< they lie on one another in one plane
};

/// A facet with its corners at hand.
struct CorneredFacet {
    std::array<Vec3, 3> points;
    std::array<std::uint32_t, 3> vertices;
    std::uint32_t facet;
};

/// How two facets that share at most two vertices, and have an area, stand to one another. Cuts are
/// exact; "in one plane" is within `tolerance`, m, or a ten-thousandth of a radian for facets that
/// share an edge.
FacetMeeting meetingOf(const CorneredFacet& a, const CorneredFacet& b, double tolerance);

/// A point that two facets which meet have in common, up to rounding.
DVec3 meetingPoint(const std::array<DVec3, 3>& a, const std::array<DVec3, 3>& b);

} // namespace ostrella
