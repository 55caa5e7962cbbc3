#include "Batch/ResultFiles.h"

#include "Solver/Flow/FlowFiles.h"
#include "Solver/Geometry/ModelFile.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <limits>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ResultFilesTest : public testing::Test {
protected:
    ResultFilesTest() {
        report_.options.streamlinesFile = place_ / "lines.vtk";
        report_.options.vortexFile = place_ / "vortex.ply";
    }

    /// A result with a line, a triangle, and what they were made of.
    static SimulationResult whole() {
        SimulationResult result;
        result.surfaceField =
            SurfaceField({Vec3(0), Vec3(1)}, {0, 1}, "Cp", {0, 1}, SurfaceField::Primitive::line);
        result.volumeField = VolumeField({Vec3(0)}, {Vec3(1)});
        result.streamlines.emplace();
        result.streamlines->interleavedVertices = {0, 0, 0, 1, 1, 0, 0, 2};
        result.streamlines->indices = {0, 1};
        result.streamlines->vertexCount = 2;
        result.streamlines->indexCount = 2;
        result.vortex.emplace();
        result.vortex->positions = {Vec3(0), Vec3(1, 0, 0), Vec3(0, 1, 0)};
        result.vortex->normals = {Vec3(0, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)};
        result.vortex->indices = {0, 1, 2};
        return result;
    }
    bool write(const SimulationResult& result) {
        return ResultFiles::write(report_, result, RunLog(log_));
    }
    std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const auto& line : log_.lines()) {
            all.push_back(line.text);
        }
        return all;
    }

    test::TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    LogStore log_;
    BatchReport report_;
};

TEST_F(ResultFilesTest, WritesWhatWasAskedForAndSaysWhere) {
    const SimulationResult result = whole();
    EXPECT_TRUE(write(result));
    EXPECT_EQ(test::readFile(place_ / "lines.vtk"), FlowFiles::streamlinesVTK(*result.streamlines));
    EXPECT_EQ(test::readFile(place_ / "vortex.ply"), FlowFiles::isoSurfacePLY(*result.vortex));
    EXPECT_EQ(report_.streamlinesFile, place_ / "lines.vtk");
    EXPECT_EQ(report_.vortexFile, place_ / "vortex.ply");
    EXPECT_THAT(texts(), ElementsAre("Streamlines written to " + (place_ / "lines.vtk").string(),
                             "Vortex surface written to " + (place_ / "vortex.ply").string()));
    EXPECT_EQ(log_.lines()[0].level, LogStore::Level::ok);
}

TEST_F(ResultFilesTest, WritesNothingThatWasNotAskedFor) {
    report_.options.streamlinesFile.reset();
    report_.options.vortexFile.reset();
    EXPECT_TRUE(write(whole()));
    EXPECT_TRUE(fs::is_empty(place_));
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(ResultFilesTest, WhatIsMissingCostsALineWithTheReasonAndNoFile) {
    EXPECT_TRUE(write({}));
    EXPECT_THAT(texts(), ElementsAre("Streamlines not written · flow.vtk gave no volume",
                             "Vortex surface not written · flow.vtk gave no volume"));
    EXPECT_EQ(log_.lines()[0].level, LogStore::Level::warn);
    EXPECT_EQ(log_.lines()[1].level, LogStore::Level::warn);
    EXPECT_TRUE(fs::is_empty(place_));
    EXPECT_FALSE(report_.streamlinesFile || report_.vortexFile);
}

TEST_F(ResultFilesTest, TheReasonIsTheNearestOne) {
    SimulationResult result = whole();
    result.streamlines.reset();
    result.vortex.reset();
    EXPECT_EQ(ResultFiles::whyNoStreamlines(result), "they could not be traced");
    EXPECT_EQ(ResultFiles::whyNoVortex(result), "there is none in the wake");
    result.surfaceField =
        SurfaceField({Vec3(0), Vec3(1, 1, 0)}, {0, 1}, "Cp", {}, SurfaceField::Primitive::line);
    EXPECT_EQ(ResultFiles::whyNoVortex(result), "the body is flat in z");
    result.surfaceField.reset();
    EXPECT_EQ(ResultFiles::whyNoVortex(result), "surface_flow.vtk gave no surface to look behind");
    result.volumeField =
        VolumeField({Vec3(0)}, {Vec3(std::numeric_limits<float>::quiet_NaN(), 0, 0)});
    EXPECT_EQ(ResultFiles::whyNoStreamlines(result), "the volume's numbers are not finite");
    EXPECT_EQ(ResultFiles::whyNoVortex(result), "the volume's numbers are not finite");
}

TEST_F(ResultFilesTest, OfTheBuiltInCaseTheVortexWasSpokenOfAhead) {
    report_.options.demo = true;
    SimulationResult result = whole();
    result.vortex.reset();
    EXPECT_TRUE(write(result));
    EXPECT_THAT(texts(), ElementsAre(StartsWith("Streamlines written to ")));
}

TEST_F(ResultFilesTest, AFileThatCannotBeWrittenIsToldAndTheOtherWritten) {
    report_.options.streamlinesFile = place_ / "gone" / "lines.vtk";
    EXPECT_FALSE(write(whole()));
    EXPECT_THAT(texts(),
        ElementsAre("Streamlines not written · Cannot write " +
                        (place_ / "gone/lines.vtk").string() +
                        ": No such file or directory. Name another file with --write-streamlines.",
            StartsWith("Vortex surface written to ")));
    EXPECT_EQ(log_.lines()[0].level, LogStore::Level::error);
    EXPECT_FALSE(report_.streamlinesFile);
    EXPECT_TRUE(report_.vortexFile);
}

TEST_F(ResultFilesTest, AFullDeviceIsTold) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    report_.options.vortexFile = "/dev/full";
    EXPECT_FALSE(write(whole()));
    EXPECT_THAT(texts()[1], HasSubstr("No space left on device. Name another file with "
                                      "--write-vortex."));
}

class SurfaceFileTest : public ResultFilesTest {
protected:
    SurfaceFileTest() {
        report_.options.surfaceFile = place_ / "surface.stl";
        const SharedArray<Vec3> corners{Vec3(0), Vec3(1, 0, 0), Vec3(0.1F, 1, 0)};
        const SharedArray<Vec3> normals{Vec3(0, 0, 1), Vec3(0, 0, 1), Vec3(0, 0, 1)};
        surface_ = {TriangleMesh(corners, normals), std::nullopt, 0};
    }
    bool writeSurface() { return ResultFiles::writeSurface(report_, RunLog(log_)); }

    MeshedSurface surface_;
};

TEST_F(SurfaceFileTest, HoldsWhatTheMesherWasGiven) {
    report_.surface = SurfaceFacts{std::nullopt, surface_, std::nullopt};
    EXPECT_TRUE(writeSurface());
    EXPECT_EQ(loadModelFile(place_ / "surface.stl"), surface_.mesh);
    EXPECT_TRUE(test::readFile(place_ / "surface.stl").starts_with("Ostrella surface, metres"));
    EXPECT_EQ(report_.surface->file, place_ / "surface.stl");
    EXPECT_THAT(texts(), ElementsAre("Surface written to " + (place_ / "surface.stl").string()));
}

TEST_F(SurfaceFileTest, IsNotWrittenUnasked) {
    report_.options.surfaceFile.reset();
    report_.surface = SurfaceFacts{std::nullopt, surface_, std::nullopt};
    EXPECT_TRUE(writeSurface());
    EXPECT_TRUE(fs::is_empty(place_));
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(SurfaceFileTest, CostsALineIfTheMesherWasGivenNone) {
    report_.surface = SurfaceFacts();
    EXPECT_TRUE(writeSurface());
    EXPECT_THAT(texts(), ElementsAre("Surface not written · the mesher was given none"));
    EXPECT_EQ(log_.lines()[0].level, LogStore::Level::warn);
}

TEST_F(SurfaceFileTest, SaysNothingWhereThereIsNoModelToMesh) {
    EXPECT_TRUE(writeSurface());
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(SurfaceFileTest, ThatCannotBeWrittenIsToldWithItsOption) {
    report_.surface = SurfaceFacts{std::nullopt, surface_, std::nullopt};
    report_.options.surfaceFile = place_ / "gone" / "surface.stl";
    EXPECT_FALSE(writeSurface());
    EXPECT_THAT(texts(),
        ElementsAre("Surface not written · Cannot write " + (place_ / "gone/surface.stl").string() +
                    ": No such file or directory. Name another file with --write-surface."));
    EXPECT_FALSE(report_.surface->file);
}

} // namespace
} // namespace ostrella
