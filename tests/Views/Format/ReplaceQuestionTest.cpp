#include "Views/Format/ReplaceQuestion.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

namespace ostrella::test {
namespace {

class ReplaceQuestionTest : public testing::Test {
protected:
    std::filesystem::path folder() const { return directory_.path() / "pictures"; }
    std::filesystem::path existing() const {
        std::filesystem::create_directory(folder());
        writeFile(folder() / "Flügel.png", "a picture");
        return folder() / "Flügel.png";
    }

private:
    TemporaryDirectory directory_;
};

TEST_F(ReplaceQuestionTest, NamesTheFileThatIsThere) {
    const ReplaceQuestion expected{"“Flügel.png” already exists. Do you want to replace it?",
        "It is in the folder “pictures”. Its present content will be lost.", "Replace", "Cancel"};
    EXPECT_EQ(ReplaceQuestion::make(existing(), false), expected);
}

TEST_F(ReplaceQuestionTest, IsNotAskedTwice) {
    EXPECT_FALSE(ReplaceQuestion::make(existing(), true));
}

TEST_F(ReplaceQuestionTest, IsNotAskedOfANewFileOrAFolder) {
    EXPECT_FALSE(ReplaceQuestion::make(existing().parent_path() / "new.png", false));
    EXPECT_FALSE(ReplaceQuestion::make(folder() / "none" / "new.png", false));
    EXPECT_FALSE(ReplaceQuestion::make(folder(), false));
}

TEST_F(ReplaceQuestionTest, IsAskedOfALinkToAFile) {
    std::filesystem::create_symlink(existing(), folder() / "link.png");
    EXPECT_TRUE(ReplaceQuestion::make(folder() / "link.png", false));
}

} // namespace
} // namespace ostrella::test
