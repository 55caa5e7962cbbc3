// A picture that is there already, chosen in the panel that the toolkit draws itself.

#include "ui/support/AppUnderTest.h"

#include <QImage>

namespace ostrella::test {
namespace {

class Replace : public AppUnderTest {
protected:
    Replace() { writeFile(file_, former_); }

    /// Up to the question.
    void saveOverIt() {
        click("Load sample Sphere");
        ASSERT_NO_FATAL_FAILURE(waitForModel("sphere.stl"));
        click("Save image");
        ASSERT_TRUE(waitFor([this] { return isUp(); }));
        user->settle();
        user->type(Qt::Key_L, Qt::ControlModifier);
        user->type(Qt::Key_A, Qt::ControlModifier);
        type(file_.parent_path().string());
        user->type(Qt::Key_Return);
        user->settle();
        click("there.png");
        click("Save");
        ASSERT_TRUE(waitFor([this] { return shows(question_); }));
        user->settle();
        EXPECT_EQ(readFile(file_), former_);
    }
    bool isUp() { return model().files()->kind() == FilePanels::Kind::Picture; }
    bool isGone() {
        return waitFor([this] { return !shows(question_); });
    }
    bool isReplaced() {
        return waitFor([this] { return logs("Saved image there.png", LogStore::Level::ok); }) &&
               !QImage(QString::fromStdString(file_.string())).isNull();
    }

    const std::string question_ = "“there.png” already exists. Do you want to replace it?";
    const std::string former_ = "what was there";

private:
    TemporaryDirectory files_;

protected:
    const std::filesystem::path file_ = files_.path() / "there.png";
};

TEST_F(Replace, isDoneOnTheUsersWord) {
    ASSERT_NO_FATAL_FAILURE(saveOverIt());
    click("Replace");
    EXPECT_TRUE(isReplaced());
    EXPECT_TRUE(isGone());
}

TEST_F(Replace, isLeftByTheSecondButtonAndThePanelComesAgain) {
    ASSERT_NO_FATAL_FAILURE(saveOverIt());
    click("Cancel");
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(isUp());
    EXPECT_TRUE(waitFor([this] { return find("Save") != nullptr; }));
    click("Save");
    EXPECT_TRUE(waitFor([this] { return shows(question_); })) << "it stands for the same file";
    EXPECT_EQ(readFile(file_), former_);
    click("Replace");
    EXPECT_TRUE(isReplaced());
}

TEST_F(Replace, isLeftByEscapeAndByReturn) {
    ASSERT_NO_FATAL_FAILURE(saveOverIt());
    user->type(Qt::Key_Escape);
    EXPECT_TRUE(isGone());
    click("Save");
    ASSERT_TRUE(waitFor([this] { return shows(question_); }));
    user->settle();
    user->type(Qt::Key_Return);
    EXPECT_TRUE(isGone());
    EXPECT_EQ(readFile(file_), former_);
    EXPECT_TRUE(isUp());
}

} // namespace
} // namespace ostrella::test
