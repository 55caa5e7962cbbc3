#include "Batch/ResultFigures.h"

#include "Solver/Flow/StreamlineRibbons.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

/// A line of three vertices, and one of two.
Streamlines twoLines() {
    Streamlines lines;
    lines.interleavedVertices = {0, 0, 0, 1, 1, 0, 0, 2, 2, 0, 0, 3, 0, 1, 0, 4, 1, 1, 0, 5};
    lines.indices = {0, 1, 1, 2, 3, 4};
    lines.vertexCount = 5;
    lines.indexCount = 6;
    lines.seedCount = 3;
    lines.magnitudeMin = 1;
    lines.magnitudeMax = 5;
    return lines;
}

IsoSurface oneTriangle() {
    IsoSurface surface;
    surface.positions = {Vec3(0), Vec3(1, 0, 0), Vec3(0, 1, 0)};
    surface.normals = {Vec3(0, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)};
    surface.indices = {0, 1, 2};
    surface.isoValue = 12.5F;
    return surface;
}

TEST(ResultFigures, OfAnEmptyResultAreAbsent) {
    const auto figures = ResultFigures::of({});
    EXPECT_FALSE(figures.surface || figures.volumePoints || figures.streamlines ||
                 figures.ribbons || figures.vortex || figures.harvest.yPlus);
}

TEST(ResultFigures, CountWhatIsThere) {
    SimulationResult result;
    result.surfaceField = SurfaceField({Vec3(0), Vec3(1, 0, 0), Vec3(0, 1, 0)}, {0.5F, -0.25F, 1},
        "Cp", {0, 1, 2, 0, 1, 2}, SurfaceField::Primitive::triangle);
    result.volumeField = VolumeField({Vec3(0), Vec3(1)}, {Vec3(0), Vec3(1)});
    result.streamlines = twoLines();
    result.vortex = oneTriangle();
    result.figures.volumeSeconds = 0.5;
    const auto figures = ResultFigures::of(result);
    EXPECT_EQ(figures.surface->points, 3U);
    EXPECT_EQ(figures.surface->primitives, 3U) << "half of the ids";
    EXPECT_EQ(figures.surface->primitive, SurfaceField::Primitive::triangle);
    EXPECT_EQ(figures.surface->pressureMin, -0.25F);
    EXPECT_EQ(figures.surface->pressureMax, 1);
    EXPECT_EQ(figures.volumePoints, 2U);
    EXPECT_EQ(figures.streamlines->seeds, 3U);
    EXPECT_EQ(figures.streamlines->vertices, 5U);
    EXPECT_EQ(figures.streamlines->segments, 3U);
    EXPECT_EQ(figures.streamlines->lines, 2U);
    EXPECT_EQ(figures.streamlines->speedMin, 1);
    EXPECT_EQ(figures.streamlines->speedMax, 5);
    EXPECT_EQ(figures.ribbons->points, 5U);
    EXPECT_EQ(figures.ribbons->triangles, 6U) << "two for each segment";
    EXPECT_EQ(figures.vortex->vertices, 3U);
    EXPECT_EQ(figures.vortex->triangles, 1U);
    EXPECT_EQ(figures.vortex->isoValue, 12.5F);
    EXPECT_EQ(figures.harvest.volumeSeconds, 0.5);
}

TEST(ResultFigures, FingerprintsAreThoseOfTheBytesInTheirOrder) {
    SimulationResult result;
    result.streamlines = twoLines();
    result.vortex = oneTriangle();
    const auto figures = ResultFigures::of(result);
    // Python: sha256(struct.pack("<20f", *vertices) + struct.pack("<6I", *indices)) and the like.
    EXPECT_EQ(figures.streamlines->sha256,
        "dba93bce21a5a5f8b5b54f1dc88d20eef7f96ca62fd23544f58deb528f2e33f4");
    EXPECT_EQ(
        figures.vortex->sha256, "754bbf6a4e2b9e9f1e311a31d508337c560177fb20fbde81348dcc93527d8508");
}

TEST(ResultFigures, AFingerprintTellsOfOneBit) {
    SimulationResult result;
    result.streamlines = twoLines();
    result.vortex = oneTriangle();
    const auto before = ResultFigures::of(result);
    EXPECT_EQ(ResultFigures::of(result).ribbons->sha256, before.ribbons->sha256);
    result.streamlines->interleavedVertices = {
        -0.0F, 0, 0, 1, 1, 0, 0, 2, 2, 0, 0, 3, 0, 1, 0, 4, 1, 1, 0, 5};
    result.vortex->normals = {Vec3(-0.0F, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)};
    const auto after = ResultFigures::of(result);
    EXPECT_NE(after.streamlines->sha256, before.streamlines->sha256);
    EXPECT_NE(after.ribbons->sha256, before.ribbons->sha256);
    EXPECT_NE(after.vortex->sha256, before.vortex->sha256);
}

} // namespace
} // namespace ostrella
