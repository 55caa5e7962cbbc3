// The peer's side: VTK's filters on the same file, with one thread.

#include "Cloud.h"
#include "RecordedWing.h"

#include "Solver/Flow/SeedRake.h"
#include "VTKThreads.h"

#include <benchmark/benchmark.h>

#include <vtkDataArray.h>
#include <vtkFlyingEdges3D.h>
#include <vtkGradientFilter.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkResampleToImage.h>
#include <vtkSmartPointer.h>
#include <vtkStaticPointLocator.h>
#include <vtkStreamTracer.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridReader.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace ostrella::bench {

namespace {

using benchmark::kMillisecond;

vtkSmartPointer<vtkUnstructuredGrid> grid() {
    useOneVTKThread();
    vtkNew<vtkUnstructuredGridReader> reader;
    reader->SetFileName(RecordedWing::volumeFile().c_str());
    reader->SetVectorsName("Velocity");
    reader->Update();
    // Into the frame of axes that our fields are in, ahead of what is measured.
    const auto& volume = RecordedWing::volume();
    auto* points = reader->GetOutput()->GetPoints();
    auto* velocity = reader->GetOutput()->GetPointData()->GetArray("Velocity");
    for (std::size_t i = 0; i < volume.positions.size(); ++i) {
        points->SetPoint(static_cast<vtkIdType>(i), &volume.positions[i].x);
        velocity->SetTuple(static_cast<vtkIdType>(i), &volume.velocity[i].x);
    }
    return reader->GetOutput();
}

/// The points that our lines begin at.
vtkSmartPointer<vtkPolyData> seeds() {
    const SeedRake rake(RecordedWing::seeds, RecordedWing::focus());
    vtkNew<vtkPoints> points;
    for (std::int64_t i = 0; i < rake.size(); ++i)
        points->InsertNextPoint(rake[i].x, rake[i].y, rake[i].z);
    auto result = vtkSmartPointer<vtkPolyData>::New();
    result->SetPoints(points);
    return result;
}

/// As many steps as ours; theirs are of one length, ours of one time. What a particle at the speed
/// of the free stream does in our step is their length.
void vtkTrace(benchmark::State& state) {
    const double path = RecordedWing::focus().pathLength();
    vtkNew<vtkStreamTracer> tracer;
    tracer->SetInputData(grid());
    tracer->SetSourceData(seeds());
    tracer->SetIntegratorTypeToRungeKutta4();
    tracer->SetIntegrationDirectionToForward();
    tracer->SetIntegrationStepUnit(vtkStreamTracer::LENGTH_UNIT);
    tracer->SetInitialIntegrationStep(path / RecordedWing::steps);
    tracer->SetMaximumPropagation(path);
    tracer->SetMaximumNumberOfSteps(RecordedWing::steps);
    tracer->SetComputeVorticity(false);
    for (auto _ : state) {
        tracer->Modified();
        tracer->Update();
        benchmark::DoNotOptimize(tracer->GetOutput());
    }
    state.counters["points"] = static_cast<double>(tracer->GetOutput()->GetNumberOfPoints());
}

/// The level that the percentile of the positive values gives.
double levelOf(vtkDataArray& q) {
    std::vector<double> positive;
    for (vtkIdType i = 0; i < q.GetNumberOfTuples(); ++i) {
        const double value = q.GetComponent(i, 0);
        if (value > 0.0)
            positive.push_back(value);
    }
    const double place = RecordedWing::percentile * static_cast<double>(positive.size() - 1) / 100;
    const auto level = positive.begin() + static_cast<std::ptrdiff_t>(place);
    std::nth_element(positive.begin(), level, positive.end());
    return *level;
}

/// The box that our lattice fills, as VTK names boxes.
std::array<double, 6> vortexBox() {
    const auto& focus = RecordedWing::focus();
    const double length = focus.bodyLength();
    const double halfWidth = std::max(focus.size.y, focus.size.z) + 0.5 * focus.largestExtent();
    return {focus.center.x - 0.5 * focus.size.x - focus.upstreamFactor * length,
        focus.center.x + 0.5 * focus.size.x + focus.downstreamFactor * length,
        focus.center.y - halfWidth, focus.center.y + halfWidth, focus.center.z - halfWidth,
        focus.center.z + halfWidth};
}

/// Velocities on a lattice of the same box and size, Q of their gradient, the surface of the same
/// percentile with normals. It smoothes nothing and drops no fragment.
void vtkVortex(benchmark::State& state) {
    const auto box = vortexBox();
    vtkNew<vtkResampleToImage> resample;
    resample->SetInputDataObject(grid());
    resample->SetUseInputBounds(false);
    resample->SetSamplingBounds(box.data());
    resample->SetSamplingDimensions(
        RecordedWing::resolution, RecordedWing::resolution, RecordedWing::resolution);
    vtkNew<vtkGradientFilter> gradient;
    gradient->SetInputConnection(resample->GetOutputPort());
    gradient->SetInputArrayToProcess(0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_POINTS, "Velocity");
    gradient->SetComputeGradient(false);
    gradient->SetComputeQCriterion(true);
    gradient->SetQCriterionArrayName("Q");
    vtkNew<vtkFlyingEdges3D> surface;
    surface->SetInputConnection(gradient->GetOutputPort());
    surface->SetInputArrayToProcess(0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_POINTS, "Q");
    surface->SetComputeNormals(true);
    for (auto _ : state) {
        resample->Modified();
        gradient->Update();
        auto* image = vtkDataSet::SafeDownCast(gradient->GetOutputDataObject(0));
        surface->SetValue(0, levelOf(*image->GetPointData()->GetArray("Q")));
        surface->Update();
        benchmark::DoNotOptimize(surface->GetOutput());
    }
    state.counters["triangles"] = static_cast<double>(surface->GetOutput()->GetNumberOfPolys());
}

/// A cloud as VTK holds it.
vtkSmartPointer<vtkPolyData> cloudOfVTK(std::size_t count, float half) {
    vtkNew<vtkPoints> points;
    points->SetDataTypeToFloat();
    for (const Vec3& point : cloud(count, half))
        points->InsertNextPoint(&point.x);
    auto result = vtkSmartPointer<vtkPolyData>::New();
    result->SetPoints(points);
    return result;
}

void vtkBuildLocator(benchmark::State& state) {
    useOneVTKThread();
    const auto points = cloudOfVTK(static_cast<std::size_t>(state.range(0)), 1.0F);
    vtkNew<vtkStaticPointLocator> locator;
    locator->SetDataSet(points);
    for (auto _ : state) {
        locator->Initialize();
        locator->BuildLocator();
    }
    state.counters["time/point"] = benchmark::Counter(static_cast<double>(state.range(0)),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void vtkFindEightNearest(benchmark::State& state) {
    useOneVTKThread();
    const auto points = cloudOfVTK(static_cast<std::size_t>(state.range(0)), 1.0F);
    const auto queries = cloudOfVTK(4096, 0.95F);
    vtkNew<vtkStaticPointLocator> locator;
    locator->SetDataSet(points);
    locator->BuildLocator();
    vtkNew<vtkIdList> found;
    vtkIdType query = 0;
    for (auto _ : state) {
        query = (query + 1) % 4096;
        locator->FindClosestNPoints(8, queries->GetPoint(query), found);
        benchmark::DoNotOptimize(found->GetNumberOfIds());
    }
}

BENCHMARK(vtkTrace)->Unit(kMillisecond);
BENCHMARK(vtkVortex)->Unit(kMillisecond);
BENCHMARK(vtkBuildLocator)->Arg(50000)->Arg(1000000)->Unit(kMillisecond);
BENCHMARK(vtkFindEightNearest)->Arg(50000)->Arg(1000000);

} // namespace

} // namespace ostrella::bench
