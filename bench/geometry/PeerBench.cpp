// The peer's side: VTK's filters on the same body, with one thread.

#include "Bodies.h"
#include "VTKThreads.h"

#include <benchmark/benchmark.h>

#include <vtkCleanPolyData.h>
#include <vtkFeatureEdges.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSTLReader.h>
#include <vtkSmartPointer.h>
#include <vtkStaticCleanPolyData.h>

#include <algorithm>

namespace ostrella::bench {

namespace {

vtkSmartPointer<vtkPolyData> soup() {
    useOneVTKThread();
    vtkNew<vtkSTLReader> reader;
    reader->SetFileName(sphereFile().c_str());
    reader->MergingOff();
    reader->Update();
    return reader->GetOutput();
}

/// The step of our weld grid for this body.
double tolerance() {
    const Vec3 size = sphere(usualDivisions).size();
    return 1e-5 * static_cast<double>(std::max({size.x, size.y, size.z}));
}

template <class Filter>
void setTolerance(Filter& filter) {
    filter.ToleranceIsAbsoluteOn();
    filter.SetAbsoluteTolerance(tolerance());
}

/// Runs `filter` on `input` once an iteration.
template <class Filter>
void runFilter(benchmark::State& state, Filter& filter, vtkPolyData* input) {
    filter.SetInputData(input);
    for (auto _ : state) {
        filter.Modified();
        filter.Update();
        benchmark::DoNotOptimize(filter.GetOutput());
    }
    state.counters["points"] = static_cast<double>(filter.GetOutput()->GetNumberOfPoints());
}

void vtkReadSTL(benchmark::State& state) {
    useOneVTKThread();
    vtkNew<vtkSTLReader> reader;
    reader->SetFileName(sphereFile().c_str());
    reader->MergingOff();
    for (auto _ : state) {
        reader->Modified();
        reader->Update();
        benchmark::DoNotOptimize(reader->GetOutput());
    }
}

void vtkStaticClean(benchmark::State& state) {
    vtkNew<vtkStaticCleanPolyData> filter;
    setTolerance(*filter);
    runFilter(state, *filter, soup());
}

void vtkClean(benchmark::State& state) {
    vtkNew<vtkCleanPolyData> filter;
    setTolerance(*filter);
    runFilter(state, *filter, soup());
}

void vtkExtractFeatureEdges(benchmark::State& state) {
    vtkNew<vtkStaticCleanPolyData> cleaner;
    setTolerance(*cleaner);
    cleaner->SetInputData(soup());
    cleaner->Update();
    vtkNew<vtkFeatureEdges> filter;
    filter->SetFeatureAngle(30.0);
    filter->BoundaryEdgesOn();
    filter->FeatureEdgesOn();
    filter->NonManifoldEdgesOn();
    filter->ManifoldEdgesOff();
    filter->ColoringOff();
    runFilter(state, *filter, cleaner->GetOutput());
}

BENCHMARK(vtkReadSTL)->Unit(benchmark::kMillisecond);
BENCHMARK(vtkStaticClean)->Unit(benchmark::kMillisecond);
BENCHMARK(vtkClean)->Unit(benchmark::kMillisecond);
BENCHMARK(vtkExtractFeatureEdges)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
