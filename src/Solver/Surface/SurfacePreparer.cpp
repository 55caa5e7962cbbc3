#include "Solver/Surface/SurfacePreparer.h"

#include "Models/Precondition.h"
#include "Solver/Geometry/WeldGrid.h"
#include "Solver/Geometry/Welding.h"
#include "Solver/Surface/Coarsening.h"
#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/DisjointSets.h"
#include "Solver/Surface/EmbeddedMesh.h"
#include "Solver/Surface/FitnessTexts.h"
#include "Solver/Surface/Openings.h"
#include "Solver/Surface/TriangleTree.h"
#include "Solver/Surface/WrapFit.h"
#include "Solver/Surface/WrapLattice.h"

#include <fmt/format.h>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

/// Lengths here are parts of the body's largest extent.
///
/// Facets are at most this large.
constexpr double mostFacetShare = 0.2;
/// Cells along the edge of a facet.
constexpr double cellsPerFacet = 6;
constexpr double leastCellsPerFacet = 3.5;
/// Triangles of a wrap at most: some ten seconds of work.
constexpr double mostWrapTriangles = 400'000;
/// Cells along the body's extent at most.
constexpr double mostCellsAlong = 300;
/// Distance of the wrap from the model, in cells.
constexpr double offsetCells = 1.1;
/// Edge of the bins that a wrap's triangles are found by, and the distance that parts of the
/// surface keep from each other at least, in cells; least angle between neighbouring facets, rad.
constexpr double cellsPerBin = 3;
constexpr double clearance = 1e-3;
constexpr double leastFold = 0.035;
/// The rest is in edges of a facet.
constexpr double widestOpening = 3;
constexpr double seamWidth = 0.01;
constexpr double sheetThickness = 0.25;
constexpr double tolerance = 0.05;
constexpr double longestEdge = 2;
constexpr int eveningRounds = 4;
/// Edges shorter than these are taken together with a larger tolerance.
constexpr std::array smallDetails{0.25, 0.4};
constexpr double looseTolerance = 0.05;
/// Bodies up to this size keep little of their shape.
constexpr double smallBody = 2;
constexpr double thinnestWire = 0.15;
constexpr int wireRounds = 4;

/// The model about its middle, in units of its largest extent, without facets that collapse or are
/// there twice.
struct Soup {
    DVec3 middle{0}; ///< m
    double unit = 0; ///< m
    DVec3 half{0};
    IndexedSurface surface;
};

Soup soupOf(const TriangleMesh& model, const CancellationToken& token) {
    Soup soup;
    const DVec3 low(model.boundingMin());
    const DVec3 high(model.boundingMax());
    soup.middle = (low + high) * 0.5;
    soup.unit = std::max({high.x - low.x, high.y - low.y, high.z - low.z});
    if (!(soup.unit > 0)) {
        return soup;
    }
    if (!WeldGrid(model.boundingBox()).covers(model.boundingBox())) {
        throw PreparationError(
            fmt::format("The model is too far from the origin for its size: its corners cannot be "
                        "told apart there, about {} m. Move it to the origin, and export it again.",
                placeText(Vec3(soup.middle), static_cast<float>(soup.unit))));
    }
    soup.half = (high - low) * (0.5 / soup.unit);
    token.throwIfCancelled();
    const WeldedMesh shared = welded(model);
    token.throwIfCancelled();
    for (const Vec3& position : shared.positions) {
        soup.surface.vertices.push_back((DVec3(position) - soup.middle) / soup.unit);
    }
    struct Facet {
        Triangle sorted;
        std::uint32_t number;
    };
    std::vector<Facet> facets;
    for (std::uint32_t i = 0; i + 2 < shared.indices.size(); i += 3) {
        Triangle corners{shared.indices[i], shared.indices[i + 1], shared.indices[i + 2]};
        std::ranges::sort(corners);
        if (corners[0] != corners[1] && corners[1] != corners[2]) {
            facets.push_back({corners, i / 3});
        }
    }
    token.throwIfCancelled();
    std::ranges::sort(
        facets, {}, [](const Facet& facet) { return std::pair(facet.sorted, facet.number); });
    token.throwIfCancelled();
    const auto rest =
        std::ranges::unique(facets, {}, [](const Facet& facet) { return facet.sorted; });
    facets.erase(rest.begin(), rest.end());
    std::ranges::sort(facets, {}, &Facet::number);
    for (const Facet& facet : facets) {
        const std::uint32_t i = 3 * facet.number;
        soup.surface.triangles.push_back(
            {shared.indices[i], shared.indices[i + 1], shared.indices[i + 2]});
    }
    return soup;
}

std::vector<DVec3> unitNormals(const IndexedSurface& surface) {
    std::vector<DVec3> normals;
    normals.reserve(surface.triangles.size());
    for (const Triangle& t : surface.triangles) {
        const DVec3& a = surface.vertices[t[0]];
        const DVec3 normal = glm::cross(surface.vertices[t[1]] - a, surface.vertices[t[2]] - a);
        const double length = glm::length(normal);
        normals.push_back(length > 0 ? normal / length : DVec3(0));
    }
    return normals;
}

TriangleMesh meshOf(const IndexedSurface& surface, const Soup& soup) {
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    positions.reserve(3 * surface.triangles.size());
    normals.reserve(3 * surface.triangles.size());
    const std::vector<DVec3> units = unitNormals(surface);
    for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
        for (const std::uint32_t corner : surface.triangles[i]) {
            positions.emplace_back(surface.vertices[corner] * soup.unit + soup.middle);
            normals.emplace_back(units[i]);
        }
    }
    return {std::move(positions), std::move(normals)};
}

/// In metres.
void measureEdges(const IndexedSurface& surface, double unit, SurfacePreparation& facts) {
    std::vector<double> lengths;
    for (const Triangle& t : surface.triangles) {
        for (int i = 0; i < 3; ++i) {
            lengths.push_back(
                glm::distance(surface.vertices[t[i]], surface.vertices[t[(i + 1) % 3]]));
        }
    }
    if (lengths.empty()) {
        return;
    }
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::ranges::nth_element(lengths, middle);
    facts.medianEdge = *middle * unit;
    facts.shortestEdge = std::ranges::min(lengths) * unit;
    facts.longestEdge = std::ranges::max(lengths) * unit;
}

/// Counts the pieces that hang together, and those that are no larger than `small`.
void countBodies(const IndexedSurface& surface, double small, SurfacePreparation& facts) {
    DisjointSets pieces(surface.vertices.size());
    for (const Triangle& t : surface.triangles) {
        pieces.unite(t[0], t[1]);
        pieces.unite(t[0], t[2]);
    }
    std::vector<DVec3> low = surface.vertices;
    std::vector<DVec3> high = surface.vertices;
    for (std::uint32_t i = 0; i < surface.vertices.size(); ++i) {
        const std::uint32_t first = pieces.find(i);
        low[first] = glm::min(low[first], surface.vertices[i]);
        high[first] = glm::max(high[first], surface.vertices[i]);
    }
    for (std::uint32_t i = 0; i < surface.vertices.size(); ++i) {
        if (pieces.find(i) == i) {
            const DVec3 size = high[i] - low[i];
            ++facts.bodies;
            facts.smallBodies += std::max({size.x, size.y, size.z}) <= small ? 1 : 0;
        }
    }
}

/// A wrap around the model, and the facets that it is fine enough for.
struct FittedWrap {
    IndexedSurface wrap;
    double spacing = 0;
    double edge = 0;
};

/// Lays a wrap for facets of `wantedEdge`; a coarser one where it would be too large to be worked
/// on in seconds, as around a cloud of thousands of loose facets.
FittedWrap wrapOf(const TriangleTree& tree, const DVec3& half, double wantedEdge,
    const CancellationToken& token) {
    FittedWrap result;
    result.spacing = std::max(wantedEdge / cellsPerFacet, 1 / mostCellsAlong);
    while (true) {
        result.wrap = wrapped(tree, -half, half,
            {.spacing = result.spacing, .offset = offsetCells * result.spacing}, token);
        const double surplus =
            static_cast<double>(result.wrap.triangles.size()) / mostWrapTriangles;
        if (surplus <= 1) {
            break;
        }
        result.spacing *= 1.1 * std::sqrt(surplus);
    }
    result.edge = std::max(wantedEdge, leastCellsPerFacet * result.spacing);
    return result;
}

/// Which shells the wrap has found, and which of them as sheets.
void countShells(const OpeningLids& lids, const WrapTargets& targets, SurfacePreparation& facts) {
    std::vector<bool> isSeen(lids.isSheet.size(), false);
    std::vector<bool> isThickened(lids.isSheet.size(), false);
    for (std::size_t i = 0; i < targets.nearest.size(); ++i) {
        if (targets.nearest[i] < lids.shellOf.size()) {
            const std::uint32_t shell = lids.shellOf[targets.nearest[i]];
            isSeen[shell] = true;
            isThickened[shell] = isThickened[shell] || targets.isOnSheet[i] != 0;
        }
    }
    facts.shellsRemoved = std::ranges::count(isSeen, false);
    facts.sheetsThickened = std::ranges::count(isThickened, true);
}

} // namespace

PreparationError::PreparationError(std::string text) : text_(std::move(text)) {}

PreparedSurface prepareSurface(
    const TriangleMesh& model, float facetEdge, const CancellationToken& token) {
    precondition(facetEdge > 0, "facets have a size");
    Soup soup = soupOf(model, token);
    const auto hasArea = [](const DVec3& normal) { return normal != DVec3(0); };
    std::vector<DVec3> normals = unitNormals(soup.surface);
    if (std::ranges::none_of(normals, hasArea)) {
        throw PreparationError(
            fmt::format("The model has no surface: all of its facets collapse to lines or points, "
                        "about {} m.",
                placeText(Vec3(soup.middle), static_cast<float>(soup.unit))));
    }
    const double wantedEdge = std::min(facetEdge / soup.unit, mostFacetShare);

    PreparedSurface result;
    SurfacePreparation& facts = result.facts;
    const OpeningLids lids = lidsFor(soup.surface,
        {.widest = widestOpening * wantedEdge, .seam = seamWidth * wantedEdge}, token);
    facts.openingsClosed = lids.count;
    std::vector<bool> isOpen;
    for (const std::uint32_t shell : lids.shellOf) {
        isOpen.push_back(lids.isSheet[shell]);
    }
    soup.surface.triangles.insert(
        soup.surface.triangles.end(), lids.triangles.begin(), lids.triangles.end());
    isOpen.resize(soup.surface.triangles.size(), false);
    normals = unitNormals(soup.surface);
    token.throwIfCancelled();

    const TriangleTree tree(soup.surface, token);
    const FittedWrap laid = wrapOf(tree, soup.half, wantedEdge, token);
    const double edge = laid.edge;
    const double spacing = laid.spacing;
    const double thickness = sheetThickness * edge;
    facts.gapWidth = 2 * offsetCells * spacing * soup.unit;
    facts.sheetThickness = thickness * soup.unit;
    const FitModel fit{tree, normals, isOpen, thickness};
    const WrapTargets targets = fitWrap(laid.wrap, fit, offsetCells * spacing, spacing, token);
    EmbeddedMesh mesh(laid.wrap, cellsPerBin * spacing,
        {.distance = clearance * spacing, .angleCosine = std::cos(leastFold)});
    pullIn(mesh, targets, token);
    countShells(lids, targets, facts);

    std::vector<double> lifts;
    for (const std::uint8_t isOnSheet : targets.isOnSheet) {
        lifts.push_back(isOnSheet != 0 ? thickness / 2 : 0);
    }
    Coarsening coarsening(mesh, tree, targets.points, lifts,
        {.leastEdge = edge, .mostEdge = longestEdge * edge, .tolerance = tolerance * edge});
    coarsening.collapse(token);
    for (int round = 0; round < eveningRounds; ++round) {
        coarsening.settle(token);
        coarsening.flip(token);
        coarsening.relax(token);
        coarsening.collapse(token);
    }
    for (const double part : smallDetails) {
        coarsening.collapseLoosely(part * edge, looseTolerance * edge, token);
        coarsening.flip(token);
        coarsening.relax(token);
    }
    coarsening.balance(token);
    // What one triangle of a wire has no room for yet, it has when its neighbours have grown.
    for (int round = 0; round < wireRounds; ++round) {
        coarsening.roundWires(thinnestWire * edge, token);
    }

    const IndexedSurface surface = mesh.surface();
    facts.facets = static_cast<std::int64_t>(surface.triangles.size());
    facts.deviation = greatestDistance(surface, tree, edge / 8, token) * soup.unit;
    countBodies(surface, smallBody * edge, facts);
    measureEdges(surface, soup.unit, facts);
    result.mesh = meshOf(surface, soup);
    return result;
}

} // namespace ostrella
