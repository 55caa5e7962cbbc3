#include "Solver/Surface/FacetCensus.h"

#include "Solver/Surface/Halves.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

constexpr double leastQuality = 0.1;
constexpr std::size_t between = 1 << 16;

void judge(JudgedFacets& facets, std::size_t facet, FacetCensus& census) {
    const auto [i, j, k] = facets.cornersOf(facet);
    if (i == j || j == k || k == i) {
        facets.mark(facet, JudgedFacets::collapsed);
        facets.mark(facet, JudgedFacets::leftOut);
        census.degenerate.add(facet);
        return;
    }
    const DVec3 a = facets.at(i) - facets.middle;
    const DVec3 b = facets.at(j) - facets.middle;
    const DVec3 c = facets.at(k) - facets.middle;
    const DVec3 ab = b - a;
    const DVec3 ac = c - a;
    const DVec3 bc = c - b;
    const DVec3 normal = glm::cross(ab, ac);
    const double doubleArea = glm::length(normal);
    const double abSquare = glm::dot(ab, ab);
    const double acSquare = glm::dot(ac, ac);
    const double bcSquare = glm::dot(bc, bc);
    census.area += 0.5 * doubleArea;
    census.volume += glm::dot(a, glm::cross(b, c)) / 6.0;
    const double longest = std::max({abSquare, acSquare, bcSquare});
    // The least height is no more than the rounding of the corners.
    if (!(doubleArea > facets.tolerance * std::sqrt(longest))) {
        facets.mark(facet, JudgedFacets::collapsed);
        census.degenerate.add(facet);
    } else if (2 * std::sqrt(3.0) * doubleArea < leastQuality * (abSquare + acSquare + bcSquare)) {
        census.slivers.add(facet);
    }
}

} // namespace

FacetCensus FacetCensus::of(JudgedFacets& facets, const CancellationToken& token) {
    std::array<FacetCensus, 2> halves;
    inHalves(facets.count(), 50'000, [&](std::size_t first, std::size_t end, int half) {
        // Sums of its own: two threads that write to one line of the cache wait for each other.
        FacetCensus census;
        for (std::size_t facet = first; facet < end; ++facet) {
            if (facet % between == 0)
                token.throwIfCancelled();
            judge(facets, facet, census);
        }
        halves[static_cast<std::size_t>(half)] = census;
    });
    FacetCensus census = halves[0];
    census.degenerate.add(halves[1].degenerate);
    census.slivers.add(halves[1].slivers);
    census.area += halves[1].area;
    census.volume += halves[1].volume;
    return census;
}

} // namespace ostrella
