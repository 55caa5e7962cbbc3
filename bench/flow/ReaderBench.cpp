// The readers of the solver's files, and VTK's own reader of the same files.

#include "RecordedWing.h"

#include "Solver/Flow/FlowScreen.h"
#include "VTKThreads.h"

#include <benchmark/benchmark.h>

#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridReader.h>

#include <cstdint>
#include <filesystem>

namespace ostrella::bench {

namespace {

/// Counts the whole file for each iteration, with what is passed over in it.
void countBytes(benchmark::State& state, const std::filesystem::path& file) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file_size(file)));
}

void readVolume(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(FlowScreen::parseVolume(RecordedWing::volumeFile(), "Velocity"));
    countBytes(state, RecordedWing::volumeFile());
}

void readSurface(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            FlowScreen::parseSurface(RecordedWing::surfaceFile(), "Pressure_Coefficient"));
    countBytes(state, RecordedWing::surfaceFile());
}

void readScalarStats(benchmark::State& state, const std::filesystem::path& file) {
    for (auto _ : state)
        benchmark::DoNotOptimize(FlowScreen::extractScalarStats(file, "Y_Plus"));
    countBytes(state, file);
}

void readVolumeStats(benchmark::State& state) {
    readScalarStats(state, RecordedWing::volumeFile());
}

void readSurfaceStats(benchmark::State& state) {
    readScalarStats(state, RecordedWing::surfaceFile());
}

void screenVolume(benchmark::State& state) {
    const auto& volume = RecordedWing::volume();
    for (auto _ : state)
        FlowScreen::requireFinite(volume);
}

/// The peer: all sections, of the fields the named scalar and vector.
void vtkRead(benchmark::State& state, const std::filesystem::path& file) {
    useOneVTKThread();
    vtkNew<vtkUnstructuredGridReader> reader;
    reader->SetFileName(file.c_str());
    reader->SetScalarsName("Pressure_Coefficient");
    reader->SetVectorsName("Velocity");
    for (auto _ : state) {
        reader->Modified();
        reader->Update();
        benchmark::DoNotOptimize(reader->GetOutput());
    }
    state.counters["points"] = static_cast<double>(reader->GetOutput()->GetNumberOfPoints());
    countBytes(state, file);
}

void vtkReadVolume(benchmark::State& state) {
    vtkRead(state, RecordedWing::volumeFile());
}

void vtkReadSurface(benchmark::State& state) {
    vtkRead(state, RecordedWing::surfaceFile());
}

BENCHMARK(readVolume)->Unit(benchmark::kMillisecond);
BENCHMARK(vtkReadVolume)->Unit(benchmark::kMillisecond);
BENCHMARK(readSurface)->Unit(benchmark::kMillisecond);
BENCHMARK(vtkReadSurface)->Unit(benchmark::kMillisecond);
BENCHMARK(readVolumeStats)->Unit(benchmark::kMillisecond);
BENCHMARK(readSurfaceStats)->Unit(benchmark::kMillisecond);
BENCHMARK(screenVolume)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
