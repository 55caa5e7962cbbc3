#include "Solver/Tools/GMSHRunner.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using FarField = GMSHRunner::FarField;

TEST(FarField, isMeasuredInChordsOfTheBody) {
    const FarField field = GMSHRunner::farField({0, 0, 0}, {1, 1, 1});
    EXPECT_EQ(field.min, Vec3(-5, -4, -4));
    EXPECT_EQ(field.max, Vec3(16, 5, 5));
    EXPECT_EQ(field.padUpstream, 5.0F);
    EXPECT_EQ(field.padDownstream, 15.0F);
    EXPECT_EQ(field.padSide, 4.0F);
    EXPECT_EQ(field.lcMin, 0.05F);
    EXPECT_EQ(field.lcMax, 1.0F);
}

TEST(FarField, leavesRoomAtTheSidesOfAWideBody) {
    const FarField field = GMSHRunner::farField({0, -5, -5}, {1, 5, 5});
    EXPECT_EQ(field.padSide, 25.0F);
    EXPECT_EQ(field.min, Vec3(-5, -30, -30));
    EXPECT_EQ(field.max, Vec3(16, 30, 30));
    EXPECT_EQ(field.lcMin, 0.5F);
    EXPECT_EQ(field.lcMax, 10.0F);
}

TEST(FarField, takesTheWiderOfTheLateralSizes) {
    EXPECT_EQ(GMSHRunner::farField({0, 0, 0}, {1, 2, 0.5F}).padSide, 5.0F);
    EXPECT_EQ(GMSHRunner::farField({0, 0, 0}, {1, 0.5F, 2}).padSide, 5.0F);
}

TEST(FarField, followsABodyAwayFromTheOrigin) {
    const FarField field = GMSHRunner::farField({100, -40, 7}, {102, -39, 8});
    EXPECT_EQ(field.min, Vec3(90, -48, -1));
    EXPECT_EQ(field.max, Vec3(132, -31, 16));
}

TEST(FarField, hasHeightAroundAFlatSheet) {
    const FarField field = GMSHRunner::farField({0, 0, 0}, {2, 1, 0});
    EXPECT_EQ(field.padSide, 8.0F);
    EXPECT_EQ(field.min.z, -8.0F);
    EXPECT_EQ(field.max.z, 8.0F);
}

TEST(FarField, limitsTheSmallestMeshSize) {
    const FarField field = GMSHRunner::farField({0, 0, 0}, {0.01F, 0.01F, 0.01F});
    EXPECT_EQ(field.lcMin, 0.001F);
    EXPECT_EQ(field.lcMax, 0.01F);
    EXPECT_EQ(GMSHRunner::farField({0, 0, 0}, {0.02F, 0, 0}).lcMin, 0.001F);
    EXPECT_EQ(GMSHRunner::farField({0, 0, 0}, {0.04F, 0, 0}).lcMin, 0.05F * 0.04F);
}

TEST(FarField, mayHaveItsSmallestMeshSizeAboveTheLargest) {
    const FarField field = GMSHRunner::farField({0, 0, 0}, {0.0005F, 0, 0});
    EXPECT_EQ(field.lcMin, 0.001F);
    EXPECT_EQ(field.lcMax, 0.0005F);
}

TEST(FarField, surroundsASinglePoint) {
    const FarField field = GMSHRunner::farField({0, 0, 0}, {0, 0, 0});
    EXPECT_EQ(field.padUpstream, 5 * 1e-6F);
    EXPECT_EQ(field.padDownstream, 15 * 1e-6F);
    EXPECT_EQ(field.padSide, 4 * 1e-6F);
    EXPECT_EQ(field.min, Vec3(-5 * 1e-6F, -4 * 1e-6F, -4 * 1e-6F));
    EXPECT_EQ(field.lcMin, 0.001F);
    EXPECT_EQ(field.lcMax, 0.0F);
}

TEST(GMSHError, tellsTheUserWhatHappened) {
    EXPECT_STREQ(GMSHError::meshNotProduced(0, std::nullopt).what(),
        "gmsh exited with code 0 and produced no usable mesh");
    EXPECT_STREQ(GMSHError::meshNotProduced(1, "Error   : foo").what(),
        "gmsh exited with code 1 and produced no usable mesh (Error   : foo)");
    EXPECT_STREQ(GMSHError::binaryNotFound(PlatformWords::mac()).what(),
        "gmsh is missing from Ostrella.app (Contents/MacOS). The app is incomplete; download and "
        "install Ostrella again.");
    EXPECT_STREQ(GMSHError::binaryNotFound(PlatformWords::freedesktop()).what(),
        "gmsh is missing from Ostrella (libexec/ostrella). The app is incomplete; download and "
        "install Ostrella again.");
    EXPECT_STREQ(
        GMSHError::templateNotFound().what(), "STL meshing template missing from app bundle.");
    EXPECT_STREQ(GMSHError::emptyVolumeMesh().what(),
        "gmsh produced a mesh with no volume cells; the surface is probably not closed");
}

TEST(OpenSurfaceLine, countsTheEdges) {
    EXPECT_EQ(GMSHRunner::openSurfaceLine(1),
        "Open surface · 1 open edge · the inside may be meshed too, so the figures are not to be "
        "trusted. Close the surface and run again.");
    EXPECT_EQ(GMSHRunner::openSurfaceLine(1234),
        "Open surface · 1 234 open edges · the inside may be meshed too, so the figures are not to "
        "be trusted. Close the surface and run again.");
}

} // namespace
} // namespace ostrella
