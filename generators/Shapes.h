#pragma once

#include "Body.h"

namespace ostrella::generators {

/// A sphere about the origin from an icosahedron whose edges are halved `levels` times, each new
/// vertex moved onto the sphere: 20 · 4^levels facets, edges within 20 % of each other. The
/// icosahedron has edge midpoints on the axes, so that from one level on the extents are exact.
[[nodiscard]] Body subdividedSphere(double radius, int levels);

/// A sphere about the origin from an icosahedron with each edge cut into `frequency` parts: 20 ·
/// frequency² facets, for the counts between the powers of four.
[[nodiscard]] Body geodesicSphere(double radius, int frequency);

/// A box about the origin with fillets of `radius` along its edges and spherical corners.
/// `flatEdge` is the wanted facet edge on the flat sides, `arcSegments` the even number of facets
/// across a fillet's quarter circle.
[[nodiscard]] Body roundedBox(
    const glm::dvec3& size, double radius, double flatEdge, int arcSegments);

/// A sharp box about the origin, each edge cut into the given number of parts.
[[nodiscard]] Body box(const glm::dvec3& size, const std::array<int, 3>& parts);

/// A wing about the origin with an elliptic section of the given chord (x) and thickness (y),
/// constant along the span (z), and flat closed tips. `around` facets follow the section, a
/// multiple of 4; `along` follow the span.
[[nodiscard]] Body ellipticWing(double chord, double thickness, double span, int around, int along);

} // namespace ostrella::generators
