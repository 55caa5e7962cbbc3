// A second start hands its files to the window that is open.

#include "StartedApplication.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using testing::HasSubstr;

class SecondStartTest : public testing::Test {
protected:
    /// Performs a whole second start in the same session.
    int startAgain(const std::vector<std::string>& arguments) {
        second_.setVariable("XDG_RUNTIME_DIR", application_.session().string());
        return second_.run(arguments);
    }

    StartedApplication application_;
    BatchProcess second_{application_.program()};
};

TEST_F(SecondStartTest, ItsFileIsOpenedInTheOneWindow) {
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    EXPECT_EQ(startAgain({application_.package().sample("simple_wing").string()}), 0);
    const auto title = [this] { return application_.window().title(); };
    EXPECT_TRUE(waitUntil([&] { return title().find("simple_wing.stl") != std::string::npos; }))
        << title();
}

TEST_F(SecondStartTest, RelativeNamesAreThoseOfItsOwnFolder) {
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    second_.setWorkingDirectory(application_.package().sample("simple_wing").parent_path());
    EXPECT_EQ(startAgain({"simple_wing.stl"}), 0);
    const auto title = [this] { return application_.window().title(); };
    EXPECT_TRUE(waitUntil([&] { return title().find("simple_wing.stl") != std::string::npos; }))
        << title();
}

TEST_F(SecondStartTest, WhatIsNoModelChangesNothing) {
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    EXPECT_EQ(startAgain({"/models/wing.obj"}), 0);
    EXPECT_THAT(application_.window().title(), HasSubstr("sphere.stl"));
    EXPECT_TRUE(application_.window().isShown());
}

TEST_F(SecondStartTest, WrongOptionsComeToNobody) {
    EXPECT_EQ(second_.run({"--velocity", "50"}), 2);
    EXPECT_THAT(second_.errors(), HasSubstr("there is no option --velocity"));
}

TEST_F(SecondStartTest, WithoutADisplayThereIsAWord) {
    for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        second_.setVariable(name, "");
    }
    EXPECT_EQ(second_.run({}), 1);
    EXPECT_THAT(second_.errors(), HasSubstr("there is no display"));
    EXPECT_EQ(second_.run({"--has-display"}), 2);
}

TEST_F(SecondStartTest, WithADisplay) {
    EXPECT_EQ(second_.run({"--has-display"}), 0);
}

} // namespace
} // namespace ostrella::test
