#include "Solver/Tools/TextFile.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

#include <sys/stat.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class TextFileTest : public testing::Test {
protected:
    const fs::path& folder() const { return directory_.path(); }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder()), fs::directory_iterator()));
    }

private:
    test::TemporaryDirectory directory_;
};

template <class Work>
std::string errorOf(const Work& work) {
    try {
        work();
    } catch (const FileError& error) {
        return error.what();
    }
    return "no error";
}

TEST_F(TextFileTest, isReadAsItWasWritten) {
    const std::string text = "Ω · × ⁺\r\n\n\tlast";
    writeTextAtomically(folder() / "a.txt", text);
    EXPECT_EQ(test::readFile(folder() / "a.txt"), text);
    EXPECT_EQ(readText(folder() / "a.txt"), text);
    EXPECT_EQ(entries(), 1U) << "nothing else is left";
}

TEST_F(TextFileTest, mayBeEmptyOrLarge) {
    writeTextAtomically(folder() / "empty", "");
    EXPECT_EQ(readText(folder() / "empty"), "");
    const std::string large(5'000'001, 'x');
    writeTextAtomically(folder() / "large", large);
    EXPECT_EQ(readText(folder() / "large"), large);
}

TEST_F(TextFileTest, isNoPipeAndNoFolder) {
    const fs::path pipe = folder() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { readText(pipe); }),
        "Cannot read " + pipe.string() + ": Operation not supported");
    EXPECT_EQ(errorOf([&] { readText(folder()); }),
        "Cannot read " + folder().string() + ": Is a directory");
}

TEST_F(TextFileTest, isReplacedWhole) {
    writeTextAtomically(folder() / "a", "a long first text");
    writeTextAtomically(folder() / "a", "short");
    EXPECT_EQ(readText(folder() / "a"), "short");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(TextFileTest, doesNotReachThroughALinkToAnotherFile) {
    test::writeFile(folder() / "precious", "kept");
    fs::create_symlink(folder() / "precious", folder() / "a");
    writeTextAtomically(folder() / "a", "new");
    EXPECT_EQ(readText(folder() / "precious"), "kept");
    EXPECT_EQ(readText(folder() / "a"), "new");
}

TEST_F(TextFileTest, tellsWhatCouldNotBeWritten) {
    const fs::path place = folder() / "no such folder" / "run.cfg";
    EXPECT_EQ(errorOf([&] { writeTextAtomically(place, "x"); }),
        "Cannot write " + place.string() + ": No such file or directory");
}

TEST_F(TextFileTest, leavesNothingBehindAfterAFailure) {
    fs::create_directories(folder() / "a" / "b");
    EXPECT_EQ(errorOf([&] { writeTextAtomically(folder() / "a", "x"); }),
        "Cannot write " + (folder() / "a").string() + ": Is a directory");
    EXPECT_EQ(entries(), 1U);
    EXPECT_TRUE(fs::is_directory(folder() / "a" / "b"));
}

TEST(TextFile, saysWhatHelpsOnAFullDevice) {
    // The device that is always full takes no file beside it, so this is seen from its own words.
    const FileError error("Cannot write /a/mesh.geo", "/a/mesh.geo",
        std::make_error_code(std::errc::no_space_on_device), elsewhereForRuns);
    EXPECT_THAT(
        error.what(), AllOf(StartsWith("Cannot write /a/mesh.geo: No space left on device."),
                          HasSubstr("set another temporary directory (TMPDIR).")));
}

TEST_F(TextFileTest, tellsWhatCouldNotBeRead) {
    const fs::path place = folder() / "missing.geo";
    EXPECT_EQ(errorOf([&] { readText(place); }),
        "Cannot read " + place.string() + ": No such file or directory");
    EXPECT_EQ(errorOf([&] { readText(folder()); }),
        "Cannot read " + folder().string() + ": Is a directory");
}

TEST_F(TextFileTest, refusesTextThatIsNoUTF8) {
    test::writeFile(folder() / "latin1", "caf\xE9\n");
    EXPECT_THAT(errorOf([&] { readText(folder() / "latin1"); }),
        StartsWith("Cannot read " + (folder() / "latin1").string() + ": "));
}

TEST_F(TextFileTest, isRemovedIfItIsThere) {
    test::writeFile(folder() / "a", "x");
    removeFile(folder() / "a");
    EXPECT_FALSE(fs::exists(folder() / "a"));
    EXPECT_NO_THROW(removeFile(folder() / "a"));
}

TEST_F(TextFileTest, tellsWhatCouldNotBeRemoved) {
    fs::create_directories(folder() / "full" / "folder");
    EXPECT_EQ(errorOf([&] { removeFile(folder() / "full"); }),
        "Cannot remove " + (folder() / "full").string() + ": Directory not empty");
}

} // namespace
} // namespace ostrella
