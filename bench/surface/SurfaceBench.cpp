// Our side: a model's surface is judged, and searched for the nearest triangle.

#include "Bodies.h"
#include "MeasuredSurfaces.h"
#include "Solver/Surface/SurfaceJudge.h"
#include "Solver/Surface/TriangleTree.h"

#include <benchmark/benchmark.h>

#include <cstddef>

namespace ostrella::bench {

namespace {

/// On two threads: the processor's time is that of both.
void judge(benchmark::State& state) {
    const TriangleMesh& body = sphere(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(judgeSurface(body));
    state.counters["facets"] = static_cast<double>(body.facetCount());
}

void buildTree(benchmark::State& state) {
    const IndexedSurface surface = surfaceOf(sphere(static_cast<int>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(TriangleTree(surface));
}

/// Points a three-hundredth off the surface, in the order of its facets, as a preparation asks.
void findNearest(benchmark::State& state) {
    const TriangleMesh& body = sphere(static_cast<int>(state.range(0)));
    const TriangleTree tree(surfaceOf(body));
    std::size_t at = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tree.nearest(DVec3(body.positions()[at]) * 1.003));
        at = at + 3 < body.positions().size() ? at + 3 : 0;
    }
}

/// The same in an order without sense.
void findNearestAnywhere(benchmark::State& state) {
    const TriangleMesh& body = sphere(static_cast<int>(state.range(0)));
    const TriangleTree tree(surfaceOf(body));
    std::size_t at = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tree.nearest(DVec3(body.positions()[at]) * 1.003));
        at = (at + 1'000'003) % body.positions().size();
    }
}

BENCHMARK(judge)
    ->Arg(usualDivisions)
    ->Arg(9)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(buildTree)
    ->Arg(6)
    ->Arg(usualDivisions)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(findNearest)->Arg(6)->Arg(usualDivisions);
BENCHMARK(findNearestAnywhere)->Arg(6)->Arg(usualDivisions);

} // namespace

} // namespace ostrella::bench
