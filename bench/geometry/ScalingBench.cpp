// Cost over size, up to 5 242 880 facets: the time per facet must stay level.

#include "Bodies.h"
#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/Welding.h"

#include <benchmark/benchmark.h>

#include <utility>

namespace ostrella::bench {

namespace {

template <class Work>
void perFacet(benchmark::State& state, Work&& work) {
    for (auto _ : state)
        benchmark::DoNotOptimize(work());
    const auto facets = sphere(static_cast<int>(state.range(0))).facetCount();
    state.counters["facets"] = static_cast<double>(facets);
    state.counters["timePerFacet"] = benchmark::Counter(static_cast<double>(facets),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

const TriangleMesh& body(const benchmark::State& state) {
    return sphere(static_cast<int>(state.range(0)));
}

void parseBinaryBySize(benchmark::State& state) {
    const auto bytes = binarySTL(body(state));
    perFacet(state, [&] { return STLParser::parse(bytes); });
}

void weldBySize(benchmark::State& state) {
    perFacet(state, [&] { return welded(body(state)); });
}

void countOpenEdgesBySize(benchmark::State& state) {
    perFacet(state, [&] { return openEdgeCount(body(state)); });
}

void extractFeatureEdgesBySize(benchmark::State& state) {
    const auto mesh = welded(body(state));
    perFacet(state, [&] { return FeatureEdges::extract(mesh, 30.0F); });
}

BENCHMARK(parseBinaryBySize)->DenseRange(6, 9)->Unit(benchmark::kMillisecond);
BENCHMARK(weldBySize)->DenseRange(6, 9)->Unit(benchmark::kMillisecond);
BENCHMARK(countOpenEdgesBySize)->DenseRange(6, 9)->Unit(benchmark::kMillisecond);
BENCHMARK(extractFeatureEdgesBySize)->DenseRange(6, 9)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
