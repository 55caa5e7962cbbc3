#include "Solver/Geometry/SolverFrame.h"

#include "Models/LargeBuffer.h"

#include <algorithm>

namespace ostrella::SolverFrame {

namespace {

SharedArray<Vec3> mapped(const SharedArray<Vec3>& vectors, Vec3 (*turn)(const Vec3&)) {
    LargeBuffer<Vec3> result(vectors.size());
    std::transform(vectors.begin(), vectors.end(), result.begin(), turn);
    return result;
}

} // namespace

Vec3 toSolver(const Vec3& app) {
    return {app.x, -app.z, app.y};
}
Vec3 toApp(const Vec3& solver) {
    return {solver.x, solver.z, -solver.y};
}

TriangleMesh toSolver(const TriangleMesh& mesh) {
    return {mapped(mesh.positions(), toSolver), mapped(mesh.normals(), toSolver)};
}

TriangleMesh toApp(const TriangleMesh& mesh) {
    return {mapped(mesh.positions(), toApp), mapped(mesh.normals(), toApp)};
}

SurfaceField toApp(const SurfaceField& field) {
    return {mapped(field.positions, toApp), field.scalar, field.scalarName, field.indices,
        field.primitive};
}

VolumeField toApp(const VolumeField& field) {
    return {mapped(field.positions, toApp), mapped(field.velocity, toApp)};
}

} // namespace ostrella::SolverFrame
