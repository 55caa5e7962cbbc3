// Our side of the comparison, on the body of 1 310 720 facets.

#include "Bodies.h"
#include "Models/LargeBuffer.h"
#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/ModelFile.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/Welding.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>

namespace ostrella::bench {

namespace {

const TriangleMesh& body() {
    return sphere(usualDivisions);
}

/// The measure for reading: the result's bytes, copied to memory fresh from the system.
void copyOfTheResult(benchmark::State& state) {
    const std::size_t size = body().positions().size() * sizeof(Vec3);
    for (auto _ : state) {
        for (const Vec3* from : {body().positions().data(), body().normals().data()}) {
            void* memory = std::malloc(size);
            std::memcpy(memory, from, size);
            benchmark::DoNotOptimize(memory);
            benchmark::ClobberMemory();
            std::free(memory);
        }
    }
}

void copyOfTheResultInHugePages(benchmark::State& state) {
    const std::size_t count = body().positions().size();
    for (auto _ : state) {
        LargeBuffer<Vec3> positions(count);
        LargeBuffer<Vec3> normals(count);
        std::memcpy(positions.data(), body().positions().data(), count * sizeof(Vec3));
        std::memcpy(normals.data(), body().normals().data(), count * sizeof(Vec3));
        benchmark::DoNotOptimize(positions.data());
        benchmark::ClobberMemory();
    }
}

void parseBinary(benchmark::State& state) {
    const auto bytes = binarySTL(body());
    for (auto _ : state)
        benchmark::DoNotOptimize(STLParser::parse(bytes));
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
}

void loadBinaryFile(benchmark::State& state) {
    const auto& path = sphereFile();
    for (auto _ : state)
        benchmark::DoNotOptimize(loadModelFile(path));
}

void parseASCII(benchmark::State& state) {
    const auto text = asciiSTL(sphere(7));
    for (auto _ : state)
        benchmark::DoNotOptimize(STLParser::parse(std::as_bytes(std::span(text))));
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

void weld(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(welded(body()));
}

void countOpenEdges(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(openEdgeCount(body()));
}

void extractFeatureEdges(benchmark::State& state) {
    const auto mesh = welded(body());
    for (auto _ : state)
        benchmark::DoNotOptimize(FeatureEdges::extract(mesh, 30.0F));
}

BENCHMARK(copyOfTheResult)->Unit(benchmark::kMillisecond);
BENCHMARK(copyOfTheResultInHugePages)->Unit(benchmark::kMillisecond);
BENCHMARK(parseBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(loadBinaryFile)->Unit(benchmark::kMillisecond);
BENCHMARK(parseASCII)->Unit(benchmark::kMillisecond);
BENCHMARK(weld)->Unit(benchmark::kMillisecond);
BENCHMARK(countOpenEdges)->Unit(benchmark::kMillisecond);
BENCHMARK(extractFeatureEdges)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
