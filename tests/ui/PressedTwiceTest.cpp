// Buttons pressed once more than needed.

#include "ui/support/AppUnderTest.h"

namespace ostrella::test {
namespace {

class PressedTwice : public AppUnderTest {
protected:
    PressedTwice() {
        click("Load sample Sphere");
        waitForModel("sphere.stl");
    }
    void doubleClick(const std::string& name) {
        const QPointF place = middleOf(item(name, QAccessible::Button));
        drawFrame();
        user->doubleClick(place);
        user->settle();
    }
};

TEST_F(PressedTwice, runBeginsOneRunAndDoesNotEndIt) {
    doubleClick("Run Simulation");
    EXPECT_EQ(app->simulation.runID(), 1);
    EXPECT_FALSE(app->simulation.isCancelling());
    EXPECT_TRUE(waitForPhase(RunPhase::Kind::solving));
}

TEST_F(PressedTwice, cancelEndsTheRunOnceAndBeginsNone) {
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::solving));
    doubleClick("Cancel simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::cancelled));
    drawFrame();
    EXPECT_EQ(app->simulation.runID(), 1);
    EXPECT_EQ(phase(), RunPhase::Kind::cancelled);
    EXPECT_THAT(log(LogStore::Level::warn),
        testing::Contains(testing::StartsWith("Cancelled by user after ")).Times(1));
}

} // namespace
} // namespace ostrella::test
