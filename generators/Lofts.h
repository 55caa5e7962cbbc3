#pragma once

#include <functional>
#include <span>
#include <vector>

#include <glm/vec2.hpp>

#include "Body.h"

namespace ostrella::generators {

/// One of a body's sections: a closed line through these points.
using Section = std::vector<glm::dvec3>;

/// What becomes of a loft's first and last section: left open, or closed by a fan of facets from
/// the mean of its points.
enum class Ends { open, closed };

/// The skin over sections of equal counts of points, which run counter-clockwise seen from behind
/// the last one, so that it faces outward. Points that coincide are merged, and facets without
/// corners of their own dropped, so that a section may shrink to a point.
[[nodiscard]] Body loft(std::span<const Section> sections, Ends ends);

/// A sheet over a grid of u and v, both from 0 to 1 in the given numbers of steps. Points that
/// coincide are merged, so that the map decides whether the sheet closes on itself. Facets run
/// counter-clockwise in (u, v).
[[nodiscard]] Body sheet(
    int uSteps, int vSteps, const std::function<glm::dvec3(double u, double v)>& map);

/// A body of revolution about the x axis over the profile (x, radius) of ascending x. It is closed
/// where the profile ends on the axis, or by `ends`.
[[nodiscard]] Body revolution(std::span<const glm::dvec2> profile, int around, Ends ends);

/// A round bar from `a` to `b`.
[[nodiscard]] Body bar(
    const glm::dvec3& a, const glm::dvec3& b, double radius, int around, Ends ends);

/// A round tube about a path. A closed path joins its end to its beginning.
[[nodiscard]] Body tube(std::span<const glm::dvec3> path, double radius, int around, Ends ends);
[[nodiscard]] Body closedTube(std::span<const glm::dvec3> path, double radius, int around);

/// A prism along z about z = 0 over an outline in x and y, counter-clockwise, that sees its own
/// middle; its sides are fans from there.
[[nodiscard]] Body prism(std::span<const glm::dvec2> outline, double depth);

/// A sharp box of 12 facets between two corners.
[[nodiscard]] Body boxBetween(const glm::dvec3& low, const glm::dvec3& high);

} // namespace ostrella::generators
