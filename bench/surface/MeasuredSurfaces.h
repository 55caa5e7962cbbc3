#pragma once

#include "Models/TriangleMesh.h"
#include "Solver/Surface/IndexedSurface.h"

#include <benchmark/benchmark.h>

namespace ostrella::bench {

/// Three corners a facet, shared with no other one.
IndexedSurface surfaceOf(const TriangleMesh& mesh);

struct MeasuredBody {
    TriangleMesh mesh;
    /// Of what is inside of any of its shells, m³.
    double volume = 0;
    /// Five hundredths of the largest extent, m: as facets of a run are.
    float facetEdge = 0;
};

/// A closed body of 200 704 facets: a ring whose tube is thicker and thinner twelve times around.
const MeasuredBody& rippledRing();

/// A sound sphere of 5 120 facets.
const MeasuredBody& soundSphere();

/// Three long boxes stuck through one another in the middle: 36 facets.
const MeasuredBody& crossedBoxes();

/// Tells in the counters what came of a body: facets; edges with one facet (`open`) and with more
/// than two (`branching`); pairs of facets that cut or cover each other (`cuts`); slivers; in facet
/// edges, the greatest distance of the surface from the body (`deviation`) and the `shortest` and
/// `longest` edge; and the `volume`, where the body's is 1.
void tell(benchmark::State& state, const TriangleMesh& surface, const MeasuredBody& body);

} // namespace ostrella::bench
