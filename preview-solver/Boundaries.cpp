#include "Boundaries.h"

#include "Failure.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostrella::preview {

namespace {

void checkNames(const std::set<std::string>& names, const char* option, const DualMesh& dual) {
    for (const auto& name : names) {
        const bool known = std::any_of(dual.boundaries.begin(), dual.boundaries.end(),
            [&](const auto& boundary) { return boundary.name == name; });
        if (!known)
            throw Failure(
                fmt::format("{} names marker {}, which the mesh does not have.", option, name));
    }
}

} // namespace

Boundaries Boundaries::of(const Config& config, const DualMesh& dual) {
    checkNames(config.wallMarkers, "MARKER_HEATFLUX", dual);
    checkNames(config.slipMarkers, "MARKER_EULER or MARKER_SYM", dual);
    checkNames(config.farMarkers, "MARKER_FAR", dual);
    checkNames(config.plottingMarkers, "MARKER_PLOTTING", dual);
    checkNames(config.monitoringMarkers, "MARKER_MONITORING", dual);
    Boundaries result;
    result.onWall.assign(dual.size(), 0);
    result.outer.assign(dual.size(), Vec3{0.0});
    for (const auto& boundary : dual.boundaries) {
        const bool wall = config.wallMarkers.contains(boundary.name);
        const bool slip = config.slipMarkers.contains(boundary.name);
        const bool far = config.farMarkers.contains(boundary.name);
        if (wall + slip + far == 0)
            throw Failure(fmt::format(
                "The configuration doesn't have any definition for marker {}.", boundary.name));
        if (wall + slip + far > 1)
            throw Failure(
                fmt::format("The configuration gives marker {} two conditions.", boundary.name));
        const BoundaryKind kind = far                        ? BoundaryKind::far
                                  : wall && config.viscous() ? BoundaryKind::wall
                                                             : BoundaryKind::slip;
        result.kinds.push_back(kind);
        for (const auto& vertex : boundary.vertices) {
            if (kind == BoundaryKind::wall)
                result.onWall[vertex.point] = 1;
            else
                result.outer[vertex.point] += vertex.normal;
        }
    }
    return result;
}

} // namespace ostrella::preview
