// The vortex surface of the recorded wing, whole and stage by stage, beside the same written as
// plainly as it can be; and how long a cancellation waits in a large cloud.

#include "Cloud.h"
#include "RecordedWing.h"

#include "Solver/Flow/BoxFilter.h"
#include "Solver/Flow/CroppedFlow.h"
#include "Solver/Flow/IsoLevel.h"
#include "Solver/Flow/IsoWeld.h"
#include "Solver/Flow/LatticeVelocities.h"
#include "Solver/Flow/MarchingCubes.h"
#include "Solver/Flow/QCriterion.h"
#include "Solver/Flow/VortexExtractor.h"
#include "Solver/Flow/vortex/PlainVortex.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace ostrella::bench {

namespace {

using benchmark::kMillisecond;

const Lattice& lattice() {
    static const auto result = Lattice::around(RecordedWing::focus(), RecordedWing::resolution);
    return result;
}

const CroppedFlow& flow() {
    static const CroppedFlow result(RecordedWing::volume(), RecordedWing::focus());
    return result;
}

const LatticeVelocities& velocities() {
    static const auto result = LatticeVelocities::sampled(flow(), lattice());
    return result;
}

const std::vector<float>& q() {
    static const auto result = qCriterion(velocities(), lattice());
    return result;
}

const std::vector<float>& smoothQ() {
    static const auto result = boxFilter(q(), lattice().points);
    return result;
}

std::vector<float> triangles(float percentile) {
    return marchingCubes(smoothQ(), lattice().points, lattice().origin, lattice().cellSize,
        *isoLevel(smoothQ(), percentile));
}

void extractVortex(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(VortexExtractor::extract(RecordedWing::volume(),
            RecordedWing::focus(), RecordedWing::resolution, RecordedWing::percentile));
}

void plainVortex(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(plain::Vortex::extract(
            RecordedWing::volume(), RecordedWing::focus(), lattice(), RecordedWing::percentile));
}

void cropAndGrid(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(CroppedFlow(RecordedWing::volume(), RecordedWing::focus()));
}

void sampleLattice(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(LatticeVelocities::sampled(flow(), lattice()));
}

void computeQ(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(qCriterion(velocities(), lattice()));
}

void smooth(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(boxFilter(q(), lattice().points));
}

void chooseLevel(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(isoLevel(smoothQ(), RecordedWing::percentile));
}

/// At the usual percentile, and at one of ten thousands of triangles.
void marchCubes(benchmark::State& state) {
    const auto percentile = static_cast<float>(state.range(0)) / 10.0F;
    const float level = *isoLevel(smoothQ(), percentile);
    for (auto _ : state)
        benchmark::DoNotOptimize(marchingCubes(
            smoothQ(), lattice().points, lattice().origin, lattice().cellSize, level));
    state.counters["triangles"] = static_cast<double>(triangles(percentile).size()) / 9;
}

void weldTriangles(benchmark::State& state) {
    const auto raw = triangles(static_cast<float>(state.range(0)) / 10.0F);
    for (auto _ : state)
        benchmark::DoNotOptimize(weld(raw, 1.0F));
    state.counters["triangles"] = static_cast<double>(raw.size()) / 9;
}

/// The longest time between two questions about cancellation, the start and the end included.
void longestWaitForCancellation(benchmark::State& state) {
    const auto volume = cloudFlow(static_cast<std::size_t>(state.range(0)));
    using Clock = std::chrono::steady_clock;
    double longest = 0.0;
    for (auto _ : state) {
        auto last = Clock::now();
        const auto asked = [&] {
            const auto now = Clock::now();
            longest = std::max(longest, std::chrono::duration<double>(now - last).count());
            last = now;
            return false;
        };
        benchmark::DoNotOptimize(VortexExtractor::extract(
            volume, cloudBody(), RecordedWing::resolution, RecordedWing::percentile, asked));
        asked();
    }
    state.counters["wait_s"] = longest;
}

BENCHMARK(extractVortex)->Unit(kMillisecond);
BENCHMARK(plainVortex)->Unit(kMillisecond);
BENCHMARK(cropAndGrid)->Unit(kMillisecond);
BENCHMARK(sampleLattice)->Unit(kMillisecond);
BENCHMARK(computeQ)->Unit(kMillisecond);
BENCHMARK(smooth)->Unit(kMillisecond);
BENCHMARK(chooseLevel)->Unit(kMillisecond);
BENCHMARK(marchCubes)->Arg(995)->Arg(100)->Unit(kMillisecond);
BENCHMARK(weldTriangles)->Arg(995)->Arg(100)->Unit(kMillisecond);
BENCHMARK(longestWaitForCancellation)->Arg(1000000)->Arg(4000000)->Unit(kMillisecond);

} // namespace

} // namespace ostrella::bench
