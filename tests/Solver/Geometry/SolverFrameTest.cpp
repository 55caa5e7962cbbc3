#include "Solver/Geometry/SolverFrame.h"

#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/TestMeshes.h"
#include "Solver/Geometry/Welding.h"

#include <gtest/gtest.h>

namespace ostrella {

namespace {

TEST(SolverFrame, TheApplicationsYIsTheSolversZ) {
    EXPECT_EQ(SolverFrame::toSolver(Vec3(1, 2, 3)), Vec3(1, -3, 2));
    EXPECT_EQ(SolverFrame::toApp(Vec3(1, -3, 2)), Vec3(1, 2, 3));
}

TEST(SolverFrame, AMeshTurnsWithItsNormalsAndBox) {
    const TriangleMesh mesh({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}});
    const auto turned = SolverFrame::toSolver(mesh);
    EXPECT_EQ(turned.positions(), SharedArray<Vec3>({{1, -3, 2}, {4, -6, 5}, {7, -9, 8}}));
    EXPECT_EQ(turned.normals(), SharedArray<Vec3>({{0, 0, 1}, {0, -1, 0}, {1, 0, 0}}));
    EXPECT_EQ(turned.boundingMin(), Vec3(1, -9, 2));
    EXPECT_EQ(turned.boundingMax(), Vec3(7, -3, 8));
}

TEST(SolverFrame, AMeshComesBackAsItWas) {
    const TriangleMesh mesh({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}});
    EXPECT_EQ(SolverFrame::toApp(SolverFrame::toSolver(mesh)), mesh);
    EXPECT_EQ(SolverFrame::toApp(mesh).positions(),
        SharedArray<Vec3>({{1, 3, -2}, {4, 6, -5}, {7, 9, -8}}));
}

TEST(SolverFrame, ABodyOnTheGroundStaysAboveIt) {
    EXPECT_EQ(SolverFrame::toSolver(test::unitCube()).boundingMin().z, 0.0F);
}

TEST(SolverFrame, OrientationAndOpenEdgesSurvive) {
    const auto turned = SolverFrame::toSolver(test::tetrahedron());
    EXPECT_EQ(openEdgeCount(turned), 0U);
    EXPECT_EQ(
        openEdgeCount(SolverFrame::toSolver(test::soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}))), 3U);
    double volume = 0.0; // six times the enclosed volume, positive for outward facets
    for (std::size_t i = 0; i < turned.positions().size(); i += 3)
        volume += static_cast<double>(dot(
            turned.positions()[i], cross(turned.positions()[i + 1], turned.positions()[i + 2])));
    EXPECT_EQ(volume, 1.0);
}

TEST(SolverFrame, ThePlanformIsSeenAlongTheSolversZ) {
    EXPECT_EQ(projectedArea(SolverFrame::toSolver(test::unitCube()), {0, 0, 1}), 1.0F);
    const auto lying = test::soup({{0, 0, 0}, {0, 0, 2}, {3, 0, 0}});
    EXPECT_EQ(projectedArea(SolverFrame::toSolver(lying), {0, 0, 1}), 3.0F);
    const auto standing = test::soup({{0, 0, 0}, {0, 2, 0}, {3, 0, 0}});
    EXPECT_EQ(projectedArea(SolverFrame::toSolver(standing), {0, 0, 1}), 0.0F);
}

TEST(SolverFrame, ASurfaceFieldTurnsAndKeepsTheRest) {
    const SurfaceField field({{1, -3, 2}, {0, 0, 0}, {4, 5, 6}}, {3, 1, 2}, "Cp", {0, 1, 2},
        SurfaceField::Primitive::triangle);
    const auto app = SolverFrame::toApp(field);
    EXPECT_EQ(app.positions, SharedArray<Vec3>({{1, 2, 3}, {0, 0, 0}, {4, 6, -5}}));
    EXPECT_TRUE(app.scalar.sharesBufferWith(field.scalar));
    EXPECT_TRUE(app.indices.sharesBufferWith(field.indices));
    EXPECT_EQ(app.scalarName, "Cp");
    EXPECT_EQ(app.primitive, SurfaceField::Primitive::triangle);
    EXPECT_EQ(app.scalarMin, 1.0F);
    EXPECT_EQ(app.scalarMax, 3.0F);
    EXPECT_EQ(app.boundingMin, Vec3(0, 0, -5));
    EXPECT_EQ(app.boundingMax, Vec3(4, 6, 3));
}

TEST(SolverFrame, AnEmptySurfaceFieldHasTheRangeZeroToOne) {
    const auto app = SolverFrame::toApp(SurfaceField());
    EXPECT_EQ(app.scalarMin, 0.0F);
    EXPECT_EQ(app.scalarMax, 1.0F);
    EXPECT_EQ(app.boundingMax, Vec3(0, 0, 0));
}

TEST(SolverFrame, AVolumeFieldTurnsItsVelocitiesToo) {
    const auto app = SolverFrame::toApp(VolumeField({{1, -3, 2}}, {{10, 20, 30}}));
    EXPECT_EQ(app.positions[0], Vec3(1, 2, 3));
    EXPECT_EQ(app.velocity[0], Vec3(10, 30, -20));
    EXPECT_EQ(app.boundingMin, Vec3(1, 2, 3));
}

TEST(SolverFrameDeathTest, AScalarOfAnotherLengthEndsTheProcess) {
    SurfaceField field({Vec3(0)}, {1.0F}, "x", {}, SurfaceField::Primitive::line);
    field.scalar = {1.0F, 2.0F};
    EXPECT_DEATH(SolverFrame::toApp(field), "one scalar for each position");
}

} // namespace

} // namespace ostrella
