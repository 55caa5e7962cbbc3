#include "Solver/Tools/FilesAside.h"

#include "Models/FileError.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <array>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

class FilesAsideTest : public testing::Test {
protected:
    FilesAsideTest() {
        write("a", "one");
        write("b", "two");
    }
    const fs::path& folder() const { return directory_.path(); }
    void write(const std::string& name, const std::string& text) const {
        test::writeFile(folder() / name, text);
    }
    std::string read(const std::string& name) const { return test::readFile(folder() / name); }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder()), fs::directory_iterator()));
    }

    static constexpr std::array names{"a"sv, "b"sv, "none"sv};

private:
    test::TemporaryDirectory directory_;
};

TEST_F(FilesAsideTest, ComeBackInThePlaceOfWhatCameMeanwhile) {
    {
        const FilesAside aside(folder(), names);
        EXPECT_FALSE(fs::exists(folder() / "a"));
        write("a", "another");
    }
    EXPECT_EQ(read("a"), "one");
    EXPECT_EQ(read("b"), "two");
    EXPECT_EQ(entries(), 2U);
}

TEST_F(FilesAsideTest, ComeBackWhenAsked) {
    FilesAside aside(folder(), names);
    aside.putBack();
    EXPECT_EQ(read("a"), "one");
    write("a", "changed");
    aside.putBack();
    EXPECT_EQ(read("a"), "changed") << "once";
    EXPECT_EQ(entries(), 2U);
}

TEST_F(FilesAsideTest, GoForGoodIfTheyAreDropped) {
    {
        FilesAside aside(folder(), names);
        write("a", "another");
        aside.drop();
        EXPECT_EQ(entries(), 1U);
    }
    EXPECT_EQ(read("a"), "another");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(FilesAsideTest, StayWhereOneOfThemCannotBeMoved) {
    // A folder that is not empty takes no other file's name.
    fs::create_directories(folder() / "b.aside/full");
    try {
        const FilesAside aside(folder(), names);
        FAIL() << "two files of one name";
    } catch (const FileError& error) {
        EXPECT_EQ(error.path1(), folder() / "b");
    }
    EXPECT_EQ(read("a"), "one");
    EXPECT_EQ(read("b"), "two");
}

} // namespace
} // namespace ostrella
