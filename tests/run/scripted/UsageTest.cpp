// What ostrella-batch says of a command line, ahead of any run.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

class UsageTest : public testing::Test {
protected:
    /// The complaint about a command line that ends with status 2 and without a run.
    std::string complaint(const std::vector<std::string>& arguments) {
        EXPECT_EQ(batch_.run(arguments), 2);
        EXPECT_EQ(batch_.output(), "");
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        return batch_.errors();
    }

    TemporaryDirectory directory_;
    BatchProcess batch_{stagedProgram()};
};

TEST_F(UsageTest, HelpAndVersionGoToTheStandardOutput) {
    EXPECT_EQ(batch_.run({"--help"}), 0);
    EXPECT_THAT(batch_.output(), HasSubstr("0.01 to 500 m/s, default 50."));
    EXPECT_EQ(batch_.errors(), "");
    EXPECT_EQ(batch_.run({"--version"}), 0);
    EXPECT_THAT(batch_.output(), testing::StartsWith("Ostrella "));
}

TEST_F(UsageTest, WhatIsWrongIsNamedAndTheHelpPointedTo) {
    EXPECT_EQ(complaint({}), "Name a model: an STL file, --sample NAME or --demo.\n"
                             "See ostrella-batch --help.\n");
    EXPECT_THAT(complaint({"--demo", "--speed", "3"}), HasSubstr("There is no option --speed."));
    EXPECT_THAT(complaint({"--demo", "--velocity", "501"}), HasSubstr("0.01 to 500 m/s"));
    EXPECT_THAT(complaint({"--demo", "--velocity", "fast"}), HasSubstr("wants a number"));
    EXPECT_THAT(complaint({"--sample", "cube"}), HasSubstr("sphere, rounded_box, simple_wing"));
    EXPECT_THAT(complaint({"a.stl", "b.stl"}), HasSubstr("Name one model only"));
}

TEST_F(UsageTest, ANumberHasAPointInEveryLanguage) {
    batch_.setVariable("LC_ALL", "de_DE.UTF-8");
    EXPECT_THAT(complaint({"--demo", "--velocity", "2,5"}), HasSubstr("wants a number"));
    EXPECT_THAT(complaint({"--velocity", "2.5"}), HasSubstr("Name a model"));
}

TEST_F(UsageTest, OutputsThatCannotBeAreToldAheadOfTheRun) {
    const std::string place = directory_.path().string();
    writeFile(directory_.path() / "notes.txt", "mine");
    EXPECT_EQ(complaint({"--demo", "--prepare", place}),
        "--prepare wants a new or empty folder: " + place + " holds something already.\n");
    EXPECT_EQ(complaint({"--demo", "--export", place + "/notes.txt"}),
        "--export wants a folder: " + place + "/notes.txt is none.\n");
    EXPECT_EQ(complaint({"--demo", "--json", place + "/no/run.json"}),
        "--json " + place + "/no/run.json: there is no folder " + place + "/no. Make it first.\n");
    EXPECT_THAT(
        complaint({"--demo", "--json", place + "/notes.txt"}), HasSubstr("Name another file."));
    EXPECT_EQ(readFile(directory_.path() / "notes.txt"), "mine");
}

TEST_F(UsageTest, ATemporaryDirectoryThatIsMissingIsTold) {
    batch_.setVariable("TMPDIR", (directory_.path() / "gone").string());
    EXPECT_EQ(complaint({"--demo"}), "The temporary directory " +
                                         (directory_.path() / "gone").string() +
                                         " is no folder. Make it, or set TMPDIR to another one.\n");
    EXPECT_FALSE(fs::exists(directory_.path() / "gone"));
}

} // namespace
} // namespace ostrella::test
