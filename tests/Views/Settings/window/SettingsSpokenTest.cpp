#include "SettingsWindow.h"

#include <gtest/gtest.h>

namespace ostrella::test {
namespace {

TEST_F(SettingsWindow, tellsASteppersNameValueAndRange) {
    show();
    QAccessibleInterface* found = accessible("Max iterations", stepper);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->state().focusable);
    ASSERT_TRUE(found->valueInterface());
    EXPECT_EQ(found->valueInterface()->currentValue().toInt(), 200);
    EXPECT_EQ(found->valueInterface()->minimumValue().toInt(), 50);
    EXPECT_EQ(found->valueInterface()->maximumValue().toInt(), 50'000);
    EXPECT_EQ(found->valueInterface()->minimumStepSize().toInt(), 50);
}

TEST_F(SettingsWindow, aStepperIsAdjustedByAReader) {
    show();
    auto* actions = accessible("Max iterations", stepper)->actionInterface();
    ASSERT_TRUE(actions);
    actions->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(settings->defaultMaxIterations(), 250);
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    actions->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(settings->defaultMaxIterations(), 150);
}

TEST_F(SettingsWindow, aSteppersValueIsSetByAReader) {
    show();
    auto* value = accessible("Max iterations", stepper)->valueInterface();
    value->setCurrentValue(1000);
    EXPECT_EQ(settings->defaultMaxIterations(), 1000);
    value->setCurrentValue(1);
    EXPECT_EQ(settings->defaultMaxIterations(), 50);
    settings->setDefaultMaxIterations(300);
    EXPECT_EQ(value->currentValue().toInt(), 300);
}

TEST_F(SettingsWindow, tellsAndAdjustsAFactor) {
    showStreamlines();
    QAccessibleInterface* found = accessible("Wake length", slider);
    ASSERT_TRUE(found);
    ASSERT_TRUE(found->valueInterface());
    EXPECT_EQ(found->valueInterface()->currentValue().toDouble(), 2.0);
    EXPECT_EQ(found->valueInterface()->minimumValue().toDouble(), 0.5);
    EXPECT_EQ(found->valueInterface()->maximumValue().toDouble(), 10.0);
    found->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 2.1);
    found->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 2.0);
    found->valueInterface()->setCurrentValue(7.04);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 7.0);
    settings->setStreamlineDownstreamFactor(3.0);
    EXPECT_EQ(found->valueInterface()->currentValue().toDouble(), 3.0);
}

TEST_F(SettingsWindow, readsHeadingsAndLabelsOnce) {
    show();
    EXPECT_TRUE(accessible("Iterations", QAccessible::Heading));
    EXPECT_TRUE(accessible("Updates", QAccessible::Heading));
    EXPECT_TRUE(accessible("1.2.0", QAccessible::StaticText));
    // The two buttons of a stepper are its adjustment.
    EXPECT_FALSE(accessible("", QAccessible::Button));
}

TEST_F(SettingsWindow, tabsArePressedByAReader) {
    show();
    accessible("Streamlines", tab)
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(model->tab(), QStringLiteral("streamlines"));
    EXPECT_TRUE(accessible("Streamlines", tab)->state().selected);
    EXPECT_FALSE(accessible("Solver", tab)->state().selected);
    EXPECT_TRUE(accessible("Settings", QAccessible::PageTabList));
}

} // namespace
} // namespace ostrella::test
