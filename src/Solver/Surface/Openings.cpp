#include "Solver/Surface/Openings.h"

#include "Solver/Surface/BorderLoops.h"
#include "Solver/Surface/FreeBorder.h"
#include "Solver/Surface/LoopLid.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <span>

namespace ostrella {

namespace {

/// The greatest share of its shell's area that a lid has.
constexpr double mostLidShare = 1.0 / 3.0;

std::vector<double> shellAreas(const IndexedSurface& surface, const FreeBorder& border) {
    std::vector<double> areas(border.shellCount, 0.0);
    for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
        const Triangle& t = surface.triangles[i];
        const DVec3& a = surface.vertices[t[0]];
        areas[border.shellOf[i]] +=
            0.5 * glm::length(glm::cross(surface.vertices[t[1]] - a, surface.vertices[t[2]] - a));
    }
    return areas;
}

/// The shells on a loop, ascending.
void shellsAt(std::span<const std::uint32_t> triangles, const FreeBorder& border,
    std::vector<std::uint32_t>& shells) {
    shells.clear();
    for (const std::uint32_t triangle : triangles)
        shells.push_back(border.shellOf[triangle]);
    std::sort(shells.begin(), shells.end());
    shells.erase(std::unique(shells.begin(), shells.end()), shells.end());
}

} // namespace

OpeningLids lidsFor(
    const IndexedSurface& surface, const OpeningLimits& limits, const CancellationToken& token) {
    FreeBorder border = freeBorderOf(surface, limits.seam, token);
    OpeningLids lids;
    lids.isSheet.assign(border.shellCount, false);
    const std::vector<double> areas = shellAreas(surface, border);
    const BorderLoops loops = borderLoops(surface, border.pieces, token);
    std::vector<std::uint32_t> shells;
    for (std::size_t i = 0; i < loops.count(); ++i) {
        token.throwIfCancelled();
        const std::span<const std::uint32_t> loop = loops.vertices(i);
        const LoopLid lid = lidOn(surface.vertices, loop);
        shellsAt(loops.triangles(i), border, shells);
        double area = 0;
        for (const std::uint32_t shell : shells)
            area += areas[shell];
        const bool isSeam = loop.size() > 2 && lid.width <= limits.seam;
        const bool isOpening =
            loop.size() > 2 && lid.width <= limits.widest && lid.area <= mostLidShare * area;
        if (isSeam || isOpening) {
            lids.triangles.insert(lids.triangles.end(), lid.triangles.begin(), lid.triangles.end());
            lids.count += isSeam ? 0 : 1;
        } else {
            for (const std::uint32_t shell : shells)
                lids.isSheet[shell] = true;
        }
    }
    lids.shellOf = std::move(border.shellOf);
    return lids;
}

} // namespace ostrella
