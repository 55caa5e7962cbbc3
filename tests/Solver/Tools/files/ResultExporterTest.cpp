#include "Solver/Tools/ResultExporter.h"

#include "Models/FileError.h"
#include "Platform/ExclusiveCopy.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <string>

#include <sys/resource.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class ResultExporterTest : public testing::Test {
protected:
    /// A result whose files hold their own names.
    SimulationResult completeResult() {
        for (const char* name : {"surface_flow.vtk", "flow.vtk", "history.csv", "run.cfg"}) {
            test::writeFile(run / name, name);
        }
        SimulationResult result;
        result.runDirectory = run;
        result.surfaceVTK = run / "surface_flow.vtk";
        result.flowVTK = run / "flow.vtk";
        result.historyCSV = run / "history.csv";
        result.configFile = run / "run.cfg";
        return result;
    }

    std::map<std::string, std::string> folderContents() const {
        std::map<std::string, std::string> contents;
        for (const fs::directory_entry& item : fs::directory_iterator(folder)) {
            contents[item.path().filename().string()] = test::readFile(item.path());
        }
        return contents;
    }

    const test::TemporaryDirectory directory;
    const fs::path run = directory.path() / "Ostrella-1A2B3C4D";
    const fs::path folder = directory.path() / "my results" / "süd";
};

TEST_F(ResultExporterTest, copiesTheFourFilesInTheirOrder) {
    const auto copies = ResultExporter::exportResult(completeResult(), folder);
    EXPECT_THAT(copies, ElementsAre(folder / "surface_flow.vtk", folder / "flow.vtk",
                            folder / "history.csv", folder / "run.cfg"));
    EXPECT_EQ(folderContents(), (std::map<std::string, std::string>{
                                    {"surface_flow.vtk", "surface_flow.vtk"},
                                    {"flow.vtk", "flow.vtk"},
                                    {"history.csv", "history.csv"},
                                    {"run.cfg", "run.cfg"},
                                }));
}

TEST_F(ResultExporterTest, neverOverwrites) {
    const SimulationResult result = completeResult();
    ResultExporter::exportResult(result, folder);
    test::writeFile(result.flowVTK, "second");
    EXPECT_THAT(ResultExporter::exportResult(result, folder),
        ElementsAre(folder / "surface_flow 2.vtk", folder / "flow 2.vtk", folder / "history 2.csv",
            folder / "run 2.cfg"));
    EXPECT_THAT(ResultExporter::exportResult(result, folder),
        ElementsAre(folder / "surface_flow 3.vtk", folder / "flow 3.vtk", folder / "history 3.csv",
            folder / "run 3.cfg"));
    const auto contents = folderContents();
    EXPECT_THAT(contents, SizeIs(12));
    EXPECT_EQ(contents.at("flow.vtk"), "flow.vtk");
    EXPECT_EQ(contents.at("flow 2.vtk"), "second");
}

TEST_F(ResultExporterTest, skipsWhatHasGone) {
    const SimulationResult result = completeResult();
    fs::remove(result.flowVTK);
    fs::remove(*result.historyCSV);
    EXPECT_THAT(ResultExporter::exportResult(result, folder),
        ElementsAre(folder / "surface_flow.vtk", folder / "run.cfg"));
}

TEST_F(ResultExporterTest, takesTheConfigurationOfTheRunDirectoryIfTheResultNamesNone) {
    SimulationResult result = completeResult();
    result.historyCSV = std::nullopt;
    result.configFile = std::nullopt;
    EXPECT_THAT(ResultExporter::exportResult(result, folder),
        ElementsAre(folder / "surface_flow.vtk", folder / "flow.vtk", folder / "run.cfg"));
}

TEST_F(ResultExporterTest, makesOnlyTheFolderForAPrunedRun) {
    const SimulationResult result = completeResult();
    fs::remove_all(run);
    EXPECT_THAT(ResultExporter::exportResult(result, folder), IsEmpty());
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_THAT(folderContents(), IsEmpty());
}

TEST_F(ResultExporterTest, saysWhyTheFolderCannotBeMade) {
    test::writeFile(directory.path() / "my results", "a file in the way");
    try {
        ResultExporter::exportResult(completeResult(), folder);
        ADD_FAILURE() << "exported below a file";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.what(), "Cannot make the folder " + folder.string() + ": Not a directory");
    }
    EXPECT_EQ(test::readFile(directory.path() / "my results"), "a file in the way");
}

TEST_F(ResultExporterTest, leavesWhatWasCopiedBeforeAFailure) {
    const SimulationResult result = completeResult();
    fs::remove(result.flowVTK);
    fs::create_directory(result.flowVTK);
    try {
        ResultExporter::exportResult(result, folder);
        ADD_FAILURE() << "exported a directory as a file";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.what(), "Cannot read " + result.flowVTK.string() + ": Is a directory");
    }
    EXPECT_EQ(folderContents(),
        (std::map<std::string, std::string>{{"surface_flow.vtk", "surface_flow.vtk"}}));
}

TEST_F(ResultExporterTest, findsAFreeName) {
    fs::create_directories(folder);
    const auto taken = [this](const std::string& name) { test::writeFile(folder / name, ""); };
    const auto free = [this](const std::string& name) {
        return ResultExporter::freeDestination(name, folder).filename().string();
    };
    EXPECT_EQ(free("flow.vtk"), "flow.vtk");
    for (const char* name : {"flow.vtk", "a.b.cfg", "Makefile", "Makefile 2", ".hidden", "end."}) {
        taken(name);
    }
    EXPECT_EQ(free("flow.vtk"), "flow 2.vtk");
    EXPECT_EQ(free("a.b.cfg"), "a.b 2.cfg");
    EXPECT_EQ(free("Makefile"), "Makefile 3");
    EXPECT_EQ(free(".hidden"), ".hidden 2");
    EXPECT_EQ(free("end."), "end. 2");
}

TEST_F(ResultExporterTest, takesABrokenLinkAndAFolderForOccupied) {
    fs::create_directories(folder / "flow.vtk");
    fs::create_symlink(folder / "nowhere", folder / "flow 2.vtk");
    EXPECT_EQ(ResultExporter::freeDestination("flow.vtk", folder), folder / "flow 3.vtk");
}

TEST(ResultExporter, saysWhatItDid) {
    EXPECT_EQ(ResultExporter::successMessage(0, "/a/b"),
        "Nothing exported · the run folder had no result files");
    EXPECT_EQ(ResultExporter::successMessage(1, "/a/b"), "Exported 1 file to /a/b");
    EXPECT_EQ(ResultExporter::successMessage(4, "/a/b c"), "Exported 4 files to /a/b c");
    EXPECT_EQ(ResultExporter::successMessage(1234, "/a"), "Exported 1\u00A0234 files to /a");
}

TEST(ExclusiveCopy, copiesEveryByteOfALargeFile) {
    const test::TemporaryDirectory directory;
    std::string content;
    for (int i = 0; content.size() < (std::size_t{3} << 20); ++i) {
        content += std::to_string(i) + std::string("\0\n", 2);
    }
    test::writeFile(directory.path() / "from", content);
    copyExclusively(directory.path() / "from", directory.path() / "to");
    EXPECT_EQ(test::readFile(directory.path() / "to"), content);
}

TEST(ExclusiveCopy, failsWhereSomethingIs) {
    const test::TemporaryDirectory directory;
    test::writeFile(directory.path() / "from", "new");
    test::writeFile(directory.path() / "to", "old");
    fs::create_symlink(directory.path() / "elsewhere", directory.path() / "link");
    EXPECT_THROW(copyExclusively(directory.path() / "from", directory.path() / "to"), FileError);
    EXPECT_THROW(copyExclusively(directory.path() / "from", directory.path() / "link"), FileError);
    EXPECT_EQ(test::readFile(directory.path() / "to"), "old");
    EXPECT_FALSE(fs::exists(directory.path() / "elsewhere"));
}

TEST(ExclusiveCopy, leavesNothingWhenTheSpaceEnds) {
    const test::TemporaryDirectory directory;
    test::writeFile(directory.path() / "from", std::string(10000, 'x'));
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{4096, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    try {
        copyExclusively(directory.path() / "from", directory.path() / "to");
        ADD_FAILURE() << "copied beyond the limit";
    } catch (const FileError& error) {
        EXPECT_EQ(error.code(), std::errc::file_too_large);
        EXPECT_THAT(error.what(), StartsWith("Cannot write " + (directory.path() / "to").string()));
    }
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(fs::exists(directory.path() / "to"));
    EXPECT_TRUE(fs::exists(directory.path() / "from"));
}

TEST(FileError, saysWhatToDo) {
    const auto text = [](std::errc reason, std::string_view elsewhere) {
        return std::string(
            FileError("Cannot write /a/b", "/a/b", std::make_error_code(reason), elsewhere).what());
    };
    EXPECT_EQ(text(std::errc::no_space_on_device, "choose another folder"),
        "Cannot write /a/b: No space left on device. Free some space there or choose another "
        "folder.");
    EXPECT_EQ(text(std::errc::read_only_file_system, "choose another folder"),
        "Cannot write /a/b: Read-only file system. Make it writable or choose another folder.");
    EXPECT_EQ(text(std::errc::permission_denied, "choose another folder"),
        "Cannot write /a/b: Permission denied. Make it writable or choose another folder.");
    EXPECT_EQ(text(std::errc::permission_denied, ""), "Cannot write /a/b: Permission denied");
    EXPECT_EQ(text(std::errc::io_error, "choose another folder"),
        "Cannot write /a/b: Input/output error");
}

} // namespace
} // namespace ostrella
