// The peer's side: VTK's filters and its locator on the same bodies, with one thread.

#include "Bodies.h"
#include "VTKBody.h"

#include <benchmark/benchmark.h>

#include <vtkFeatureEdges.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataConnectivityFilter.h>
#include <vtkSmartPointer.h>
#include <vtkStaticCellLocator.h>
#include <vtkStaticCleanPolyData.h>

#include <array>
#include <cstddef>

namespace ostrella::bench {

namespace {

/// Vertices, open and non-manifold edges and shells; VTK has nothing for facets that cut each other
/// within one surface, nor for the other things that are judged.
void vtkJudge(benchmark::State& state) {
    const auto input = vtkBodyOf(sphere(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        vtkNew<vtkStaticCleanPolyData> clean;
        clean->SetInputData(input);
        clean->ToleranceIsAbsoluteOn();
        clean->SetAbsoluteTolerance(2e-5);
        vtkNew<vtkFeatureEdges> edges;
        edges->SetInputConnection(clean->GetOutputPort());
        edges->FeatureEdgesOff();
        edges->ManifoldEdgesOff();
        edges->Update();
        vtkNew<vtkPolyDataConnectivityFilter> shells;
        shells->SetInputConnection(clean->GetOutputPort());
        shells->SetExtractionModeToAllRegions();
        shells->Update();
        benchmark::DoNotOptimize(edges->GetOutput());
        benchmark::DoNotOptimize(shells->GetNumberOfExtractedRegions());
    }
}

vtkSmartPointer<vtkStaticCellLocator> locatorOf(vtkPolyData* data) {
    auto locator = vtkSmartPointer<vtkStaticCellLocator>::New();
    locator->SetDataSet(data);
    locator->BuildLocator();
    return locator;
}

void vtkBuildTree(benchmark::State& state) {
    const auto data = vtkBodyOf(sphere(static_cast<int>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(locatorOf(data));
}

/// Points as ours takes them, `step` corners on each time.
void findNearest(benchmark::State& state, std::size_t step) {
    const auto& positions = sphere(static_cast<int>(state.range(0))).positions();
    const auto data = vtkBodyOf(sphere(static_cast<int>(state.range(0))));
    const auto locator = locatorOf(data);
    vtkNew<vtkGenericCell> cell;
    std::size_t at = 0;
    for (auto _ : state) {
        const std::array<double, 3> point{static_cast<double>(positions[at].x) * 1.003,
            static_cast<double>(positions[at].y) * 1.003,
            static_cast<double>(positions[at].z) * 1.003};
        std::array<double, 3> nearest{};
        vtkIdType id = 0;
        int part = 0;
        double square = 0;
        locator->FindClosestPoint(point.data(), nearest.data(), cell, id, part, square);
        benchmark::DoNotOptimize(square);
        at = (at + step) % positions.size();
    }
}

void vtkFindNearest(benchmark::State& state) {
    findNearest(state, 3);
}

void vtkFindNearestAnywhere(benchmark::State& state) {
    findNearest(state, 1'000'003);
}

BENCHMARK(vtkJudge)->Arg(usualDivisions)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(vtkBuildTree)->Arg(6)->Arg(usualDivisions)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(vtkFindNearest)->Arg(6)->Arg(usualDivisions);
BENCHMARK(vtkFindNearestAnywhere)->Arg(6)->Arg(usualDivisions);

} // namespace

} // namespace ostrella::bench
