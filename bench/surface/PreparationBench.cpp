// Our side: a surface for meshing is made of a body.

#include "MeasuredSurfaces.h"
#include "Solver/Surface/SurfacePreparer.h"

#include <benchmark/benchmark.h>

namespace ostrella::bench {

namespace {

/// On two threads in part: the processor's time is that of both.
void prepare(benchmark::State& state, const MeasuredBody& body) {
    PreparedSurface prepared;
    for (auto _ : state)
        prepared = prepareSurface(body.mesh, body.facetEdge);
    tell(state, prepared.mesh, body);
}

void prepareRing(benchmark::State& state) {
    prepare(state, rippledRing());
}

void prepareSphere(benchmark::State& state) {
    prepare(state, soundSphere());
}

void prepareBoxes(benchmark::State& state) {
    prepare(state, crossedBoxes());
}

BENCHMARK(prepareRing)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(prepareSphere)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(prepareBoxes)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

} // namespace

} // namespace ostrella::bench
