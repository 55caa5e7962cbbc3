// From the menu to the new version in the old one's place.

#include "InstalledApplication.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class ApplicationUpdateTest : public testing::Test {
protected:
    InstalledApplication application;
};

TEST_F(ApplicationUpdateTest, ComesWhenTheUserQuits) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.later();
    EXPECT_EQ(application.version(), "1.0") << "nothing is touched while it runs";
    EXPECT_EQ(application.quit(), 0);
    EXPECT_EQ(application.version(), "2.0");
    EXPECT_FALSE(application.successor());
    EXPECT_TRUE(application.hasPrevious()) << "until the new one has come up once";

    application.start();
    EXPECT_TRUE(waitUntil([this] { return !application.hasPrevious(); }));
    EXPECT_EQ(application.quit(), 0);
    EXPECT_EQ(application.version(), "2.0");
}

TEST_F(ApplicationUpdateTest, ComesAtOnceByARestart) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.restart();
    EXPECT_EQ(application.process().finish(), 0);
    EXPECT_EQ(application.version(), "2.0");
    EXPECT_THAT(application.process().errors(), Not(HasSubstr("refused")));
    EXPECT_TRUE(application.successor()) << "it has come up before the old one went";
    EXPECT_TRUE(waitUntil([this] { return !application.hasPrevious(); }));
    EXPECT_TRUE(application.closeSuccessor());
}

TEST_F(ApplicationUpdateTest, GoesAgainWhereItDoesNotComeUp) {
    // It ends at once, except when it is asked for its version.
    application.releaseScript("2.0", "#!/bin/sh\n[ \"$1\" = --version ]\n");
    application.start();
    application.fetchUpdate();
    application.restart();
    EXPECT_EQ(application.process().finish(), 0);
    EXPECT_THAT(application.process().errors(),
        HasSubstr("Update refused · The new version did not start."));
    EXPECT_EQ(application.version(), "1.0");
    EXPECT_FALSE(application.hasPrevious());
    EXPECT_TRUE(application.closeSuccessor()) << "the old one serves the user again";
}

TEST_F(ApplicationUpdateTest, GoesAgainWhereItCameUpNeitherAtItsFirstStartNorAtItsSecond) {
    application.release("2.0");
    application.start();
    application.fetchUpdate();
    application.later();
    EXPECT_EQ(application.quit(), 0);
    ASSERT_EQ(application.version(), "2.0");
    application.startInVain();
    EXPECT_EQ(application.version(), "2.0") << "it may have been the machine's fault";
    application.start();
    EXPECT_EQ(application.version(), "1.0") << "the process has become the version before";
    EXPECT_FALSE(application.hasPrevious());
    EXPECT_EQ(application.quit(), 0);
}

} // namespace
} // namespace ostrella::test
