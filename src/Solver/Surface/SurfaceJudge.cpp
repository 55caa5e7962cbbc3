#include "Solver/Surface/SurfaceJudge.h"

#include "Solver/Surface/EdgeCensus.h"
#include "Solver/Surface/FacetCensus.h"
#include "Solver/Surface/JudgedFacets.h"
#include "Solver/Surface/SelfIntersections.h"
#include "Solver/Surface/ShellCensus.h"

namespace ostrella {

SurfaceFitness judgeSurface(const TriangleMesh& mesh, const CancellationToken& token) {
    SurfaceFitness fitness;
    fitness.facets = static_cast<std::int64_t>(mesh.facetCount());
    token.throwIfCancelled();
    if (mesh.empty())
        return fitness;
    JudgedFacets facets = JudgedFacets::of(mesh, token);
    fitness.extent = facets.extent;
    const auto ofFacet = [&](std::uint64_t facet) {
        return facets.middleOf(static_cast<std::size_t>(facet));
    };
    const auto ofEdge = [&](std::uint64_t edge) { return EdgeCensus::placeOf(facets, edge); };
    const auto ofPair = [&](std::uint64_t pair) {
        return SelfIntersections::placeOf(facets, pair);
    };

    const FacetCensus alone = FacetCensus::of(facets, token);
    fitness.area = alone.area;
    fitness.volume = alone.volume;
    fitness.degenerateFacets = alone.degenerate.defect(ofFacet);
    fitness.slivers = alone.slivers.defect(ofFacet);

    const EdgeCensus edges = EdgeCensus::of(facets, token);
    fitness.shells = edges.shells;
    fitness.openEdges = edges.open.defect(ofEdge);
    fitness.nonManifoldEdges = edges.nonManifold.defect(ofEdge);
    fitness.inconsistentEdges = edges.inconsistent.defect(ofEdge);
    fitness.duplicatedFacets = edges.duplicated.defect(ofFacet);
    fitness.shortestEdge = edges.shortest;
    fitness.medianEdge = edges.median;
    fitness.longestEdge = edges.longest;

    const FacetTree tree = FacetTree::of(facets, token);
    const SelfIntersections intersections = SelfIntersections::of(facets, tree, edges, token);
    fitness.selfIntersections = intersections.cuts.defect(ofPair);
    fitness.overlaps = intersections.overlaps.defect(ofPair);

    const ShellCensus shells = ShellCensus::of(facets, tree, edges, intersections, token);
    fitness.insideOutShells = shells.insideOut.defect(ofFacet);
    fitness.innerShells = shells.inner.defect(ofFacet);
    fitness.cuttingShells = shells.cutting.defect(ofPair);
    fitness.isCutShort = intersections.isCutShort || shells.isCutShort;
    return fitness;
}

} // namespace ostrella
