// Everything between the solver's exit and the first picture, on the recorded wing.

#include "RecordedWing.h"

#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/StreamlineRibbons.h"
#include "Solver/Geometry/SolverFrame.h"

#include <benchmark/benchmark.h>

namespace ostrella::bench {

namespace {

void harvest(benchmark::State& state) {
    for (auto _ : state) {
        const auto surface = SolverFrame::toApp(
            FlowScreen::parseSurface(RecordedWing::surfaceFile(), "Pressure_Coefficient"));
        benchmark::DoNotOptimize(
            FlowScreen::extractScalarStats(RecordedWing::surfaceFile(), "Y_Plus"));
        const auto volume =
            SolverFrame::toApp(FlowScreen::parseVolume(RecordedWing::volumeFile(), "Velocity"));
        const auto focus =
            StreamlineFocus::around(surface.boundingMin, surface.boundingMax, 0.5F, 2.0F);
        const auto lines = FlowScreen::generate(volume, RecordedWing::freeStreamVelocity, focus,
            RecordedWing::seeds, RecordedWing::steps);
        benchmark::DoNotOptimize(StreamlineRibbons::build(lines));
        benchmark::DoNotOptimize(
            FlowScreen::extract(volume, focus, RecordedWing::resolution, RecordedWing::percentile));
    }
}

BENCHMARK(harvest)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
