// The peer's side: a plain volumetric wrap by VTK's filters, with one thread. Distances on a
// lattice of the same cells, the outer surface at the same distance, and as many facets.

#include "MeasuredSurfaces.h"
#include "Solver/Surface/SurfacePreparer.h"
#include "VTKBody.h"

#include <benchmark/benchmark.h>

#include <vtkFlyingEdges3D.h>
#include <vtkIdList.h>
#include <vtkImplicitModeller.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataConnectivityFilter.h>
#include <vtkQuadricDecimation.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace ostrella::bench {

namespace {

/// As prepareSurface() has them.
constexpr double cellsPerFacet = 6;
constexpr double offsetCells = 1.1;
constexpr double marginCells = 5;
/// Distances are looked for no farther than this.
constexpr double reachCells = 3;

/// VTK's triangles face the shorter distances: ours face outward.
TriangleMesh meshOf(vtkPolyData* data) {
    std::vector<Vec3> corners;
    vtkNew<vtkIdList> ids;
    for (vtkIdType cell = 0; cell < data->GetNumberOfCells(); ++cell) {
        data->GetCellPoints(cell, ids);
        for (const vtkIdType i : {0, 2, 1}) {
            const double* point = data->GetPoint(ids->GetId(i));
            corners.emplace_back(point[0], point[1], point[2]);
        }
    }
    std::vector<Vec3> normals(corners.size(), Vec3(0, 0, 1));
    return {std::move(corners), std::move(normals)};
}

vtkSmartPointer<vtkPolyData> wrapOf(vtkPolyData* body, double spacing, double facets) {
    std::array<double, 6> bounds{};
    body->GetBounds(bounds.data());
    std::array<int, 3> samples{};
    double widest = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double& low = bounds[2 * axis];
        double& high = bounds[2 * axis + 1];
        const double cells = std::ceil((high - low) / spacing) + 2 * marginCells;
        const double middle = 0.5 * (low + high);
        low = middle - 0.5 * cells * spacing;
        high = middle + 0.5 * cells * spacing;
        samples[axis] = static_cast<int>(cells) + 1;
        widest = std::max(widest, high - low);
    }
    vtkNew<vtkImplicitModeller> distances;
    distances->SetInputData(body);
    distances->SetProcessModeToPerVoxel();
    distances->SetNumberOfThreads(1);
    distances->AdjustBoundsOff();
    distances->SetModelBounds(bounds.data());
    distances->SetSampleDimensions(samples.data());
    distances->SetMaximumDistance(reachCells * spacing / widest);
    vtkNew<vtkFlyingEdges3D> surface;
    surface->SetInputConnection(distances->GetOutputPort());
    surface->SetValue(0, offsetCells * spacing);
    surface->ComputeNormalsOff();
    surface->ComputeScalarsOff();
    // Distances have no sign, so there is a surface on each side of the body.
    vtkNew<vtkPolyDataConnectivityFilter> outside;
    outside->SetInputConnection(surface->GetOutputPort());
    outside->SetExtractionModeToClosestPointRegion();
    outside->SetClosestPoint(bounds[0], bounds[2], bounds[4]);
    outside->Update();
    const auto before = static_cast<double>(outside->GetOutput()->GetNumberOfCells());
    vtkNew<vtkQuadricDecimation> coarse;
    coarse->SetInputConnection(outside->GetOutputPort());
    coarse->SetTargetReduction(std::max(0.0, 1 - facets / before));
    coarse->Update();
    return coarse->GetOutput();
}

void wrap(benchmark::State& state, const MeasuredBody& body) {
    const auto facets = static_cast<double>(prepareSurface(body.mesh, body.facetEdge).facts.facets);
    const auto input = vtkBodyOf(body.mesh);
    const double spacing = static_cast<double>(body.facetEdge) / cellsPerFacet;
    vtkSmartPointer<vtkPolyData> surface;
    for (auto _ : state)
        surface = wrapOf(input, spacing, facets);
    tell(state, meshOf(surface), body);
}

void vtkWrapRing(benchmark::State& state) {
    wrap(state, rippledRing());
}

void vtkWrapSphere(benchmark::State& state) {
    wrap(state, soundSphere());
}

void vtkWrapBoxes(benchmark::State& state) {
    wrap(state, crossedBoxes());
}

BENCHMARK(vtkWrapRing)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(vtkWrapSphere)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(vtkWrapBoxes)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

} // namespace

} // namespace ostrella::bench
