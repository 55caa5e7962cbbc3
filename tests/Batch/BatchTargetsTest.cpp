#include "Batch/BatchTargets.h"

#include "Batch/BatchReport.h"
#include "Batch/UsageError.h"
#include "Models/FileError.h"
#include "Solver/Flow/FlowFiles.h"
#include "Solver/Geometry/MeshOperations.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Optional;

class BatchTargetsTest : public testing::Test {
protected:
    std::optional<std::string> problemOfReport(const fs::path& file) {
        options_.jsonFile = file;
        return BatchTargets::problem(options_);
    }
    std::optional<std::string> problemOfExport(const fs::path& folder) {
        options_.exportFolder = folder;
        return BatchTargets::problem(options_);
    }
    std::optional<std::string> problemOfPreparation(const fs::path& folder) {
        options_.prepareFolder = folder;
        return BatchTargets::problem(options_);
    }

    test::TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    BatchOptions options_;
};

TEST_F(BatchTargetsTest, NothingAskedForIsNoProblem) {
    EXPECT_EQ(BatchTargets::problem(options_), std::nullopt);
}

TEST_F(BatchTargetsTest, ACaseWantsANewOrEmptyFolder) {
    EXPECT_EQ(problemOfPreparation(place_ / "new" / "deep"), std::nullopt);
    fs::create_directory(place_ / "empty");
    EXPECT_EQ(problemOfPreparation(place_ / "empty"), std::nullopt);
    test::writeFile(place_ / "full" / "notes.txt", "mine");
    EXPECT_THAT(problemOfPreparation(place_ / "full"),
        Optional("--prepare wants a new or empty folder: " + (place_ / "full").string() +
                 " holds something already."));
    EXPECT_THAT(problemOfPreparation(place_ / "full" / "notes.txt"),
        Optional(
            "--prepare wants a folder: " + (place_ / "full/notes.txt").string() + " is none."));
}

TEST_F(BatchTargetsTest, AnExportWantsAFolderThatCanBe) {
    EXPECT_EQ(problemOfExport(place_), std::nullopt);
    EXPECT_EQ(problemOfExport(place_ / "new"), std::nullopt);
    test::writeFile(place_ / "file", "");
    EXPECT_THAT(problemOfExport(place_ / "file" / "below"),
        Optional("--export wants a folder: " + (place_ / "file").string() + " is none."));
}

TEST_F(BatchTargetsTest, AReportWantsAFolderThatIsThere) {
    EXPECT_EQ(problemOfReport(place_ / "run.json"), std::nullopt);
    EXPECT_THAT(problemOfReport(place_ / "none" / "run.json"),
        Optional("--json " + (place_ / "none/run.json").string() + ": there is no folder " +
                 (place_ / "none").string() + ". Make it first."));
    EXPECT_THAT(problemOfReport(place_),
        Optional("--json wants a file: " + place_.string() + " is a folder."));
}

TEST_F(BatchTargetsTest, AReportReplacesAnEarlierOneButNoOtherFile) {
    test::writeFile(place_ / "old.json", toJSON({}));
    EXPECT_EQ(problemOfReport(place_ / "old.json"), std::nullopt);
    test::writeFile(place_ / "empty.json", "");
    EXPECT_EQ(problemOfReport(place_ / "empty.json"), std::nullopt);
    test::writeFile(place_ / "body.stl", "solid mine\nendsolid\n");
    EXPECT_THAT(problemOfReport(place_ / "body.stl"),
        Optional(HasSubstr("is no report of an earlier run. Name another file.")));
    EXPECT_EQ(test::readFile(place_ / "body.stl"), "solid mine\nendsolid\n");
}

TEST_F(BatchTargetsTest, AFileOfResultsReplacesAnEarlierOneOfItsKindButNoOther) {
    Streamlines lines;
    lines.magnitudeMax = 1;
    IsoSurface vortex;
    vortex.isoValue = 0.001F;
    test::writeFile(place_ / "lines.vtk", FlowFiles::streamlinesVTK(lines));
    test::writeFile(place_ / "vortex.ply", FlowFiles::isoSurfacePLY(vortex));
    test::writeFile(place_ / "run.json", toJSON({}));
    test::writeFile(place_ / "flow.vtk", "# vtk DataFile Version 3.0\nvtk output\nASCII\n");
    const auto problemOfLines = [this](const char* name) {
        options_ = {};
        options_.streamlinesFile = place_ / name;
        return BatchTargets::problem(options_);
    };
    const auto problemOfVortex = [this](const char* name) {
        options_ = {};
        options_.vortexFile = place_ / name;
        return BatchTargets::problem(options_);
    };
    EXPECT_EQ(problemOfLines("lines.vtk"), std::nullopt);
    EXPECT_EQ(problemOfLines("new.vtk"), std::nullopt);
    EXPECT_EQ(problemOfVortex("vortex.ply"), std::nullopt);
    EXPECT_EQ(problemOfVortex("new.ply"), std::nullopt);
    for (const char* other : {"flow.vtk", "vortex.ply", "run.json"}) {
        EXPECT_THAT(problemOfLines(other),
            Optional("--write-streamlines " + (place_ / other).string() +
                     ": the file is there already and is no streamlines file of an earlier run. "
                     "Name another file."));
    }
    for (const char* other : {"flow.vtk", "lines.vtk", "run.json"}) {
        EXPECT_THAT(problemOfVortex(other),
            Optional("--write-vortex " + (place_ / other).string() +
                     ": the file is there already and is no vortex file of an earlier run. Name "
                     "another file."));
    }
    EXPECT_THAT(problemOfVortex("none/vortex.ply"), Optional(HasSubstr("there is no folder")));
    EXPECT_THAT(problemOfLines("."), Optional(HasSubstr("--write-streamlines wants a file: ")));
}

TEST_F(BatchTargetsTest, ASurfaceReplacesOnlyAnEarlierOneAndNeverTheModel) {
    const SharedArray<Vec3> corners{Vec3(0), Vec3(1, 0, 0), Vec3(0, 1, 0)};
    const TriangleMesh mesh(corners, corners);
    test::writeFile(place_ / "ours.stl", binarySTL(mesh, BatchTargets::surfaceBeginning));
    writeBinarySTL(mesh, place_ / "binary.stl");
    test::writeFile(place_ / "text.stl", "solid mine\nendsolid\n");
    const auto problemOfSurface = [this](const char* name) {
        options_.surfaceFile = place_ / name;
        return BatchTargets::problem(options_);
    };
    EXPECT_EQ(problemOfSurface("ours.stl"), std::nullopt);
    EXPECT_EQ(problemOfSurface("new.stl"), std::nullopt);
    for (const char* other : {"binary.stl", "text.stl"}) {
        EXPECT_THAT(problemOfSurface(other),
            Optional("--write-surface " + (place_ / other).string() +
                     ": the file is there already and is no surface of an earlier run. Name "
                     "another file."));
    }
    options_.model = place_ / "ours.stl";
    EXPECT_EQ(problemOfSurface("new.stl"), std::nullopt);
    EXPECT_THAT(problemOfSurface("ours.stl"),
        Optional("--write-surface names the model itself, " + (place_ / "ours.stl").string() +
                 ". Name another file."));
    EXPECT_THAT(problemOfSurface("../nowhere/ours.stl"), Optional(HasSubstr("there is no folder")));
}

TEST_F(BatchTargetsTest, APictureReplacesOnlyAnEarlierOne) {
    const std::string png("\x89PNG\r\n\x1a\n");
    const std::string mark("tEXtSoftware\0Ostrella", 21);
    test::writeFile(place_ / "ours.png", png + std::string(600, 'i') + mark);
    test::writeFile(place_ / "photo.png", png + std::string(600, 'i') + "tEXtSoftware");
    test::writeFile(place_ / "letter.png", "Dear Ostrella" + mark);
    test::writeFile(place_ / "empty.png", "");
    const auto problemOfImage = [this](const char* name) {
        options_ = {};
        options_.imageFile = place_ / name;
        return BatchTargets::problem(options_);
    };
    EXPECT_EQ(problemOfImage("ours.png"), std::nullopt);
    EXPECT_EQ(problemOfImage("empty.png"), std::nullopt);
    EXPECT_EQ(problemOfImage("new.png"), std::nullopt);
    for (const char* other : {"photo.png", "letter.png"}) {
        EXPECT_THAT(problemOfImage(other),
            Optional("--image " + (place_ / other).string() +
                     ": the file is there already and is no picture of an earlier run. Name "
                     "another file."));
    }
    EXPECT_THAT(problemOfImage("none/wing.png"), Optional(HasSubstr("there is no folder")));
    EXPECT_THAT(problemOfImage("."), Optional(HasSubstr("--image wants a file: ")));
}

TEST_F(BatchTargetsTest, TwoFilesOfOneNameAreRefused) {
    options_.jsonFile = place_ / "out";
    options_.vortexFile = place_ / "." / "out";
    EXPECT_THAT(
        BatchTargets::problem(options_), Optional("--json and --write-vortex name one file, " +
                                                  (place_ / "./out").string() + ". Name two."));
    options_.vortexFile = place_ / "other";
    options_.streamlinesFile = place_ / "other";
    EXPECT_THAT(BatchTargets::problem(options_),
        Optional(HasSubstr("--write-streamlines and --write-vortex name one file, ")));
    options_.jsonFile = "/dev/null";
    options_.streamlinesFile = "/dev/null";
    options_.vortexFile = "/dev/null";
    EXPECT_EQ(BatchTargets::problem(options_), std::nullopt);
}

TEST_F(BatchTargetsTest, AnEarlierRunIsAFolderThatIsNotItsOwnExport) {
    options_.resultsFolder = place_;
    EXPECT_EQ(BatchTargets::problem(options_), std::nullopt);
    options_.exportFolder = place_ / "copies";
    EXPECT_EQ(BatchTargets::problem(options_), std::nullopt);
    fs::create_directory_symlink(place_, place_ / "link");
    options_.exportFolder = place_ / "link";
    EXPECT_THAT(BatchTargets::problem(options_),
        Optional("--export names the folder of --results, " + place_.string() +
                 ", which is only read. Choose another folder."));
    options_.resultsFolder = place_ / "gone";
    EXPECT_THAT(BatchTargets::problem(options_),
        Optional("--results wants a folder: " + (place_ / "gone").string() + " is none."));
    test::writeFile(place_ / "flow.vtk", "");
    options_.resultsFolder = place_ / "flow.vtk";
    EXPECT_THAT(BatchTargets::problem(options_), Optional(HasSubstr(" is none.")));
}

/// Prints the problem and ends the process, as somebody to whom the permissions apply.
[[noreturn]] void printProblemAsNobody(const BatchOptions& options) {
    constexpr uid_t nobody = 65534;
    const bool isOrdinaryUser = geteuid() != 0 || setuid(nobody) == 0;
    std::fputs(BatchTargets::problem(options).value_or("none").c_str(), stderr);
    std::exit(isOrdinaryUser ? 0 : 1);
}

TEST_F(BatchTargetsTest, AReadOnlyFolderIsTold) {
    // A copy of this process, not a second start of the test, which would leave a folder of its
    // own.
    testing::GTEST_FLAG(death_test_style) = "fast";
    fs::permissions(place_, fs::perms(0555));
    options_.exportFolder = place_ / "new";
    EXPECT_EXIT(printProblemAsNobody(options_), testing::ExitedWithCode(0), "may not be written");
    options_.exportFolder.reset();
    options_.jsonFile = place_ / "run.json";
    EXPECT_EXIT(printProblemAsNobody(options_), testing::ExitedWithCode(0), "may not be written");
    options_ = {};
    options_.vortexFile = place_ / "vortex.ply";
    EXPECT_EXIT(printProblemAsNobody(options_), testing::ExitedWithCode(0), "may not be written");
    fs::permissions(place_, fs::perms(0111));
    options_ = {};
    options_.resultsFolder = place_;
    EXPECT_EXIT(printProblemAsNobody(options_), testing::ExitedWithCode(0), "may not be read");
    fs::permissions(place_, fs::perms::owner_all);
}

TEST_F(BatchTargetsTest, AReportFollowsALinkAndLeavesIt) {
    test::writeFile(place_ / "real.json", "");
    fs::create_symlink("real.json", place_ / "link.json");
    BatchTargets::writeFile(place_ / "link.json", "{}\n");
    EXPECT_TRUE(fs::is_symlink(place_ / "link.json"));
    EXPECT_EQ(test::readFile(place_ / "real.json"), "{}\n");
}

TEST_F(BatchTargetsTest, ADeviceOrAPipeTakesTheReportAndStaysWhatItIs) {
    EXPECT_EQ(problemOfReport("/dev/null"), std::nullopt);
    BatchTargets::writeFile("/dev/null", "{}\n");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));

    const fs::path pipe = place_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string received;
    std::thread reader([&] { received = test::readFile(pipe); });
    BatchTargets::writeFile(pipe, "{\"a\": 1}\n");
    reader.join();
    EXPECT_EQ(received, "{\"a\": 1}\n");
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(BatchTargetsTest, AFullDeviceFailsWithTheSystemsWords) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    EXPECT_THROW(BatchTargets::writeFile("/dev/full", "{}\n"), FileError);
}

class TemporaryDirectoryVariable : public testing::Test {
protected:
    TemporaryDirectoryVariable() {
        if (const char* value = std::getenv("TMPDIR")) {
            before_ = value;
        }
    }
    ~TemporaryDirectoryVariable() override {
        if (before_) {
            setenv("TMPDIR", before_->c_str(), 1);
        } else {
            unsetenv("TMPDIR");
        }
    }

    std::optional<std::string> before_;
};

TEST_F(TemporaryDirectoryVariable, NamesTheFolderForRuns) {
    const test::TemporaryDirectory directory;
    setenv("TMPDIR", directory.path().c_str(), 1);
    EXPECT_EQ(BatchTargets::temporaryDirectory(), directory.path());
}

TEST_F(TemporaryDirectoryVariable, OfAFolderThatIsNotThereIsRefused) {
    const test::TemporaryDirectory directory;
    setenv("TMPDIR", (directory.path() / "gone").c_str(), 1);
    try {
        BatchTargets::temporaryDirectory();
        FAIL() << "taken";
    } catch (const UsageError& error) {
        EXPECT_EQ(std::string(error.what()),
            "The temporary directory " + (directory.path() / "gone").string() +
                " is no folder. Make it, or set TMPDIR to another one.");
    }
}

} // namespace
} // namespace ostrella
