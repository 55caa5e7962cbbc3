// The grid, the search and the streamlines, beside the same written as plainly as it can be.

#include "Cloud.h"
#include "RecordedWing.h"

#include "Solver/Flow/CubeRoot.h"
#include "Solver/Flow/NearestSearch.h"
#include "Solver/Flow/Spatial3DGrid.h"
#include "Solver/Flow/StreamlineGenerator.h"
#include "Solver/Flow/tracing/PlainStreamlines.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrella::bench {

namespace {

using benchmark::kMillisecond;

/// About one point in a cell.
int cellsFor(std::int64_t points) {
    return static_cast<int>(truncatedCubeRoot(points));
}

/// Positions all over the cloud, one far from the next.
const std::vector<Vec3>& positions() {
    static const auto result = cloud(4096, 0.95F);
    return result;
}

void buildGrid(benchmark::State& state) {
    const auto points = cloud(static_cast<std::size_t>(state.range(0)), 1.0F);
    for (auto _ : state)
        benchmark::DoNotOptimize(Spatial3DGrid(points, cellsFor(state.range(0))));
    state.counters["time/point"] = benchmark::Counter(static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void plainBuildGrid(benchmark::State& state) {
    const auto points = cloud(static_cast<std::size_t>(state.range(0)), 1.0F);
    for (auto _ : state)
        benchmark::DoNotOptimize(plain::Grid(points, cellsFor(state.range(0))));
}

/// One search after the other, each somewhere else.
void findEightNearest(benchmark::State& state) {
    const auto points = cloud(static_cast<std::size_t>(state.range(0)), 1.0F);
    const Spatial3DGrid grid(points, cellsFor(state.range(0)));
    std::size_t at = 0;
    for (auto _ : state) {
        at = (at + 1) % positions().size();
        benchmark::DoNotOptimize(grid.findKNearest(positions()[at], points, 8));
    }
}

void plainFindEightNearest(benchmark::State& state) {
    const auto points = cloud(static_cast<std::size_t>(state.range(0)), 1.0F);
    const plain::Grid grid(points, cellsFor(state.range(0)));
    std::size_t at = 0;
    for (auto _ : state) {
        at = (at + 1) % positions().size();
        benchmark::DoNotOptimize(grid.findKNearest(positions()[at], points, 8));
    }
}

/// Along a line, as streamlines are traced: two hundred searches to the cloud's width.
void findEightNearestOnALine(benchmark::State& state) {
    const auto points = cloud(static_cast<std::size_t>(state.range(0)), 1.0F);
    const Spatial3DGrid grid(points, cellsFor(state.range(0)));
    NearestSearch search(grid, 8);
    NearestPoints found;
    int step = 0;
    for (auto _ : state) {
        step = (step + 1) % (200 * 64);
        const auto line = static_cast<float>(step / 200);
        const auto along = static_cast<float>(step % 200);
        search.find({along * 0.009F - 0.9F, line * 0.028F - 0.9F, 0.3F - line * 0.01F}, found);
        benchmark::DoNotOptimize(found);
    }
}

void traceWing(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            StreamlineGenerator::generate(RecordedWing::volume(), RecordedWing::freeStreamVelocity,
                RecordedWing::focus(), RecordedWing::seeds, RecordedWing::steps));
    state.counters["points"] = static_cast<double>(RecordedWing::streamlines().vertexCount);
}

void plainTraceWing(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            plain::streamlines(RecordedWing::volume(), RecordedWing::freeStreamVelocity,
                RecordedWing::focus(), RecordedWing::seeds, RecordedWing::steps));
}

/// The most seeds that the settings take, in a large cloud.
void traceCloud(benchmark::State& state) {
    const auto volume = cloudFlow(1000000);
    std::size_t points = 0;
    for (auto _ : state)
        points = StreamlineGenerator::generate(volume, 50.0F, cloudBody(), 500, 400).vertexCount;
    state.counters["points"] = static_cast<double>(points);
}

BENCHMARK(buildGrid)->Arg(50000)->Arg(1000000)->Unit(kMillisecond);
BENCHMARK(plainBuildGrid)->Arg(50000)->Arg(1000000)->Unit(kMillisecond);
BENCHMARK(findEightNearest)->Arg(50000)->Arg(1000000);
BENCHMARK(plainFindEightNearest)->Arg(50000)->Arg(1000000);
BENCHMARK(findEightNearestOnALine)->Arg(50000)->Arg(1000000);
BENCHMARK(traceWing)->Unit(kMillisecond);
BENCHMARK(plainTraceWing)->Unit(kMillisecond);
BENCHMARK(traceCloud)->Unit(kMillisecond);

} // namespace

} // namespace ostrella::bench
