#pragma once

#include <functional>

#include "Body.h"
#include "Random.h"

namespace ostrella::generators {

/// What is done to a sound body to spoil it, and what moves one.
[[nodiscard]] Body turnedAbout(const Body& body, const glm::dvec3& axis, double degrees);

[[nodiscard]] Body stretched(const Body& body, const glm::dvec3& factors);

/// Each facet turned over.
[[nodiscard]] Body insideOut(const Body& body);

/// Less the facets whose middle satisfies `isGone`.
[[nodiscard]] Body without(
    const Body& body, const std::function<bool(const glm::dvec3& middle)>& isGone);

/// Each vertex moved by up to `reach` in a random direction.
[[nodiscard]] Body withNoise(const Body& body, double reach, Random& random);

/// Corners of each facet made its own, so that nothing is shared.
[[nodiscard]] Body unshared(const Body& body);

} // namespace ostrella::generators
