// What is under the pointer on a body of 1 310 720 facets: one pick a call, over positions all over
// the view, the body's outline included.

#include "Bodies.h"
#include "Rendering/ArcBallCamera.h"
#include "Rendering/PickTree.h"
#include "Rendering/ViewportPicking.h"
#include "Solver/Geometry/Welding.h"
#include "VTKThreads.h"

#include <benchmark/benchmark.h>

#include <vtkCellArray.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkStaticCellLocator.h>

#include <algorithm>
#include <chrono>
#include <random>

namespace ostrella::bench {

namespace {

using ViewportPicking::Ray;

const WeldedMesh& body() {
    static const WeldedMesh mesh = welded(sphere(usualDivisions));
    return mesh;
}

/// The rays of a pointer that goes over the whole of a view of 1200 × 800 points.
const std::vector<Ray>& rays() {
    static const std::vector<Ray> made = [] {
        const Vec2 view(1200, 800);
        ArcBallCamera camera;
        camera.distance = 2.7F; // the body fills the height of the view
        std::vector<Ray> all;
        for (float y = 7; y < view.y; y += 23)
            for (float x = 5; x < view.x; x += 29)
                all.push_back(*ViewportPicking::ray({x, y}, view, camera, {0, 0}));
        return all;
    }();
    return made;
}

/// One pick an iteration, and the longest of all as a counter.
template <class Pick>
void measurePicks(benchmark::State& state, const Pick& pick) {
    std::size_t next = 0;
    std::size_t hits = 0;
    for (auto _ : state) {
        const auto hit = pick(rays()[next]);
        hits += hit ? 1 : 0;
        next = next + 1 < rays().size() ? next + 1 : 0;
    }
    benchmark::DoNotOptimize(hits);
    using Clock = std::chrono::steady_clock;
    Clock::duration slowest{};
    for (std::size_t i = 0; i < rays().size(); i += 7) {
        const auto start = Clock::now();
        benchmark::DoNotOptimize(pick(rays()[i]));
        slowest = std::max(slowest, Clock::now() - start);
    }
    state.counters["slowest_us"] = std::chrono::duration<double, std::micro>(slowest).count();
}

void pickByWalk(benchmark::State& state) {
    const WeldedMesh& mesh = body();
    measurePicks(state, [&](const Ray& ray) {
        return ViewportPicking::nearestHit(ray, mesh.positions.span(), 1, mesh.indices.span());
    });
}

void pickByTree(benchmark::State& state) {
    const PickTree tree(body().positions.span(), 1, body().indices.span());
    measurePicks(state, [&](const Ray& ray) { return tree.nearestHit(ray); });
}

void buildAndCount(benchmark::State& state, const WeldedMesh& mesh) {
    std::size_t bytes = 0;
    for (auto _ : state) {
        const PickTree tree(mesh.positions.span(), 1, mesh.indices.span());
        bytes = tree.byteCount();
    }
    state.counters["MiB"] = static_cast<double>(bytes) / (1 << 20);
}

void buildTree(benchmark::State& state) {
    buildAndCount(state, body());
}

/// Facets in no order at all, as after a careless conversion.
void buildTreeOfShuffledFacets(benchmark::State& state) {
    static const WeldedMesh shuffled = [] {
        std::vector<std::size_t> order(body().indices.size() / 3);
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        std::ranges::shuffle(order, std::mt19937(7));
        std::vector<std::uint32_t> indices;
        indices.reserve(body().indices.size());
        for (const std::size_t facet : order)
            indices.insert(indices.end(), body().indices.begin() + 3 * facet,
                body().indices.begin() + 3 * facet + 3);
        return WeldedMesh{body().positions, body().normals, std::move(indices)};
    }();
    buildAndCount(state, shuffled);
}

vtkPolyData* peerBody() {
    static const vtkNew<vtkPolyData> data;
    if (data->GetNumberOfCells() > 0)
        return data;
    useOneVTKThread();
    vtkNew<vtkPoints> points;
    for (const Vec3& p : body().positions)
        points->InsertNextPoint(p.x, p.y, p.z);
    vtkNew<vtkCellArray> cells;
    for (std::size_t i = 0; i + 3 <= body().indices.size(); i += 3) {
        cells->InsertNextCell(3);
        for (std::size_t corner = i; corner < i + 3; ++corner)
            cells->InsertCellPoint(body().indices[corner]);
    }
    data->SetPoints(points);
    data->SetPolys(cells);
    data->BuildCells();
    return data;
}

void vtkBuildLocator(benchmark::State& state) {
    vtkPolyData* data = peerBody();
    for (auto _ : state) {
        vtkNew<vtkStaticCellLocator> locator;
        locator->SetDataSet(data);
        locator->BuildLocator();
    }
}

void vtkPick(benchmark::State& state) {
    vtkNew<vtkStaticCellLocator> locator;
    locator->SetDataSet(peerBody());
    locator->BuildLocator();
    vtkNew<vtkGenericCell> cell;
    measurePicks(state, [&](const Ray& ray) {
        const glm::dvec3 from(ray.origin);
        const glm::dvec3 to = from + 20.0 * glm::dvec3(ray.direction);
        double t = 0;
        double place[3];
        double inCell[3];
        int subId = 0;
        vtkIdType cellId = 0;
        return locator->IntersectWithLine(
                   &from.x, &to.x, 0.0, t, place, inCell, subId, cellId, cell) != 0;
    });
}

BENCHMARK(pickByTree)->Unit(benchmark::kMicrosecond);
BENCHMARK(pickByWalk)->Unit(benchmark::kMicrosecond);
BENCHMARK(vtkPick)->Unit(benchmark::kMicrosecond);
BENCHMARK(buildTree)->Unit(benchmark::kMillisecond);
BENCHMARK(buildTreeOfShuffledFacets)->Unit(benchmark::kMillisecond);
BENCHMARK(vtkBuildLocator)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace ostrella::bench
