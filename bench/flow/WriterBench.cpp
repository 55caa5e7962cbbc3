// What is drawn and written of the recorded wing, beside VTK's writers of the same arrays.

#include "RecordedWing.h"

#include "Models/Precondition.h"
#include "Solver/Flow/FlowFiles.h"
#include "Solver/Flow/LineChains.h"
#include "Solver/Flow/StreamlineRibbons.h"
#include "Solver/Flow/VortexExtractor.h"
#include "VTKThreads.h"

#include <benchmark/benchmark.h>

#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPLYWriter.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataWriter.h>
#include <vtkRibbonFilter.h>
#include <vtkSmartPointer.h>

namespace ostrella::bench {

namespace {

using benchmark::kMicrosecond;
using benchmark::kMillisecond;

vtkSmartPointer<vtkPolyData> linesOfVTK() {
    useOneVTKThread();
    const auto& lines = RecordedWing::streamlines();
    vtkNew<vtkPoints> points;
    vtkNew<vtkFloatArray> speed;
    speed->SetName("Speed");
    for (std::size_t i = 0; i < lines.vertexCount; ++i) {
        const float* vertex = lines.interleavedVertices.data() + 4 * i;
        points->InsertNextPoint(vertex);
        speed->InsertNextValue(vertex[3]);
    }
    const auto chains = LineChains::of(lines);
    vtkNew<vtkCellArray> cells;
    for (std::size_t line = 0; line < chains.lineCount(); ++line) {
        cells->InsertNextCell(static_cast<int>(chains.line(line).size()));
        for (const std::uint32_t vertex : chains.line(line))
            cells->InsertCellPoint(vertex);
    }
    auto result = vtkSmartPointer<vtkPolyData>::New();
    result->SetPoints(points);
    result->SetLines(cells);
    result->GetPointData()->SetScalars(speed);
    return result;
}

/// A level low enough for a surface of some size.
const IsoSurface& largeSurface() {
    static const auto surface = VortexExtractor::extract(
        RecordedWing::volume(), RecordedWing::focus(), RecordedWing::resolution, 50.0F);
    precondition(surface.has_value(), "the recorded wing has no vortex surface");
    return *surface;
}

vtkSmartPointer<vtkPolyData> surfaceOfVTK() {
    const auto& surface = largeSurface();
    vtkNew<vtkPoints> points;
    vtkNew<vtkFloatArray> normals;
    normals->SetNumberOfComponents(3);
    for (std::size_t i = 0; i < surface.positions.size(); ++i) {
        points->InsertNextPoint(&surface.positions[i].x);
        normals->InsertNextTuple(&surface.normals[i].x);
    }
    vtkNew<vtkCellArray> cells;
    for (std::size_t i = 0; i + 2 < surface.indices.size(); i += 3)
        cells->InsertNextCell({surface.indices[i], surface.indices[i + 1], surface.indices[i + 2]});
    auto result = vtkSmartPointer<vtkPolyData>::New();
    result->SetPoints(points);
    result->SetPolys(cells);
    result->GetPointData()->SetNormals(normals);
    return result;
}

void buildRibbons(benchmark::State& state) {
    const auto& lines = RecordedWing::streamlines();
    for (auto _ : state)
        benchmark::DoNotOptimize(StreamlineRibbons::build(lines));
    state.counters["points"] = static_cast<double>(lines.vertexCount);
}

/// Its bands have a width in metres and normals, and no arc lengths.
void vtkRibbons(benchmark::State& state) {
    vtkNew<vtkRibbonFilter> filter;
    filter->SetInputData(linesOfVTK());
    for (auto _ : state) {
        filter->Modified();
        filter->Update();
        benchmark::DoNotOptimize(filter->GetOutput());
    }
}

void writeStreamlines(benchmark::State& state) {
    const auto& lines = RecordedWing::streamlines();
    std::size_t size = 0;
    for (auto _ : state)
        size = FlowFiles::streamlinesVTK(lines).size();
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void vtkWriteStreamlines(benchmark::State& state) {
    vtkNew<vtkPolyDataWriter> writer;
    writer->SetInputData(linesOfVTK());
    writer->SetFileTypeToASCII();
    writer->WriteToOutputStringOn();
    for (auto _ : state)
        writer->Write();
    state.SetBytesProcessed(
        static_cast<std::int64_t>(writer->GetOutputStringLength()) * state.iterations());
}

void writeVortex(benchmark::State& state) {
    const auto& surface = largeSurface();
    std::size_t size = 0;
    for (auto _ : state)
        size = FlowFiles::isoSurfacePLY(surface).size();
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

/// Without normals, though given them, and up to 17 digits a number. Its text in memory stays
/// empty.
void vtkWriteVortex(benchmark::State& state) {
    vtkNew<vtkPLYWriter> writer;
    writer->SetInputData(surfaceOfVTK());
    writer->SetFileTypeToASCII();
    writer->SetFileName("/dev/null");
    for (auto _ : state)
        writer->Write();
}

BENCHMARK(buildRibbons)->Unit(kMicrosecond);
BENCHMARK(vtkRibbons)->Unit(kMicrosecond);
BENCHMARK(writeStreamlines)->Unit(kMillisecond);
BENCHMARK(vtkWriteStreamlines)->Unit(kMillisecond);
BENCHMARK(writeVortex)->Unit(kMillisecond);
BENCHMARK(vtkWriteVortex)->Unit(kMillisecond);

} // namespace

} // namespace ostrella::bench
