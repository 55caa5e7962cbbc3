// What a frame costs the processor ahead of any device: all layers on, a body of 1 310 720 facets;
// and what it takes to bring such a body into the scene.

#include "Bodies.h"
#include "Rendering/MetalRenderer.h"
#include "Rendering/PreparedModel.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace ostrella::bench {

namespace {

const TriangleMesh& body() {
    static const TriangleMesh mesh = sphere(usualDivisions);
    return mesh;
}

SurfaceField coloured() {
    const auto& positions = body().positions();
    std::vector<float> scalars;
    std::vector<std::uint32_t> indices;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        scalars.push_back(positions[i].x);
        indices.push_back(static_cast<std::uint32_t>(i));
    }
    return {positions, scalars, "Pressure_Coefficient", indices, SurfaceField::Primitive::triangle};
}

Streamlines flow() {
    constexpr std::uint32_t lineCount = 400;
    constexpr std::uint32_t pointCount = 500;
    std::vector<float> vertices;
    std::vector<std::uint32_t> indices;
    for (std::uint32_t line = 0; line < lineCount; ++line) {
        for (std::uint32_t point = 0; point < pointCount; ++point) {
            const float x = static_cast<float>(point) / 100 - 2;
            const float y = static_cast<float>(line % 20) / 10 - 1;
            const float z = static_cast<float>(line / 20) / 10 - 1;
            vertices.insert(vertices.end(), {x, y + 0.1F * std::sin(x), z, 50 + x});
            if (point > 0)
                indices.insert(
                    indices.end(), {line * pointCount + point - 1, line * pointCount + point});
        }
    }
    Streamlines lines;
    lines.vertexCount = vertices.size() / 4;
    lines.indexCount = indices.size();
    lines.interleavedVertices = std::move(vertices);
    lines.indices = std::move(indices);
    lines.magnitudeMin = 48;
    lines.magnitudeMax = 53;
    lines.boundingMin = {-2, -1.1F, -1};
    lines.boundingMax = {3, 1.1F, 1};
    return lines;
}

IsoSurface vortex() {
    IsoSurface surface;
    surface.positions = body().positions();
    surface.normals = body().normals();
    std::vector<std::uint32_t> indices;
    for (std::size_t i = 0; i < body().positions().size(); ++i)
        indices.push_back(static_cast<std::uint32_t>(i));
    surface.indices = std::move(indices);
    return surface;
}

/// The camera turns from frame to frame, so that nothing can be kept of the frame before.
void encodeAllLayers(benchmark::State& state) {
    double now = 0;
    MetalRenderer renderer([&] { return now; });
    renderer.drawableSizeWillChange({2400, 1600}, {1200, 800});
    renderer.upload(body());
    renderer.uploadSurface(coloured());
    renderer.uploadStreamlines(flow());
    renderer.uploadVortex(vortex());
    renderer.colormapEnabled = true;
    renderer.streamlinesEnabled = true;
    renderer.vortexEnabled = true;
    renderer.orientMode = true;
    std::size_t draws = 0;
    for (auto _ : state) {
        now += 1.0 / 60;
        renderer.camera.azimuth += 0.01F;
        const FrameEncoding frame = renderer.draw();
        draws = frame.draws.size();
        benchmark::DoNotOptimize(frame.draws.data());
    }
    state.counters["draws"] = static_cast<double>(draws);
}

void prepareModel(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            PreparedModel::of(body(), PreparedModel::Picking::walk).indexCount);
}

void prepareModelForThePointer(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(PreparedModel::of(body()).indexCount);
}

BENCHMARK(encodeAllLayers)->Unit(benchmark::kMicrosecond);
BENCHMARK(prepareModel)->Unit(benchmark::kMillisecond);
BENCHMARK(prepareModelForThePointer)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
