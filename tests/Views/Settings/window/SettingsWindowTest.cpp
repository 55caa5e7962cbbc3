#include "SettingsWindow.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(SettingsWindow, hasTheSolversTabAtFirst) {
    show();
    EXPECT_EQ(window->title(), QStringLiteral("Settings"));
    EXPECT_TRUE(accessible("Solver", tab)->state().selected);
    EXPECT_FALSE(accessible("Streamlines", tab)->state().selected);
    EXPECT_TRUE(shown("Max iterations"));
    EXPECT_TRUE(shown("200"));
    EXPECT_TRUE(shown("1.2.0"));
    EXPECT_FALSE(shown("Seed count"));
}

TEST_F(SettingsWindow, changesTabsByPointerAndKeepsItsSize) {
    show();
    const QSize size = window->size();
    click("Streamlines", tab);
    EXPECT_EQ(model->tab(), QStringLiteral("streamlines"));
    EXPECT_TRUE(accessible("Streamlines", tab)->state().selected);
    EXPECT_TRUE(shown("Seed count"));
    EXPECT_FALSE(shown("Max iterations"));
    EXPECT_EQ(window->size(), size);
}

TEST_F(SettingsWindow, comesBackToTheTabOfLastTime) {
    showStreamlines();
    EXPECT_TRUE(shown("Seed count"));
}

TEST_F(SettingsWindow, changesTabsByKeys) {
    show();
    user->type(Qt::Key_Tab);
    ASSERT_EQ(focus(), "Solver");
    user->type(Qt::Key_Right);
    EXPECT_EQ(model->tab(), QStringLiteral("streamlines"));
    EXPECT_EQ(focus(), "Streamlines");
    user->type(Qt::Key_Right);
    EXPECT_EQ(model->tab(), QStringLiteral("streamlines"));
    user->type(Qt::Key_Left);
    EXPECT_EQ(model->tab(), QStringLiteral("solver"));
    user->type(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(model->tab(), QStringLiteral("streamlines"));
    user->type(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(model->tab(), QStringLiteral("solver"));
}

TEST_F(SettingsWindow, tabComesToEveryControlOfTheTabOnShow) {
    updates->checkForUpdates();
    show();
    EXPECT_THAT(
        tabOrder(), ElementsAre("Solver", "Max iterations", "Check for updates automatically",
                        "Check Now", "Restore defaults"));
    click("Streamlines", tab);
    EXPECT_THAT(tabOrder(), ElementsAre("Inlet offset", "Wake length", "Seed count",
                                "Restore defaults", "Streamlines"));
}

TEST_F(SettingsWindow, stepsByItsButtons) {
    show();
    user->click(moreOf("Max iterations"));
    EXPECT_EQ(settings->defaultMaxIterations(), 250);
    user->click(lessOf("Max iterations"));
    user->click(lessOf("Max iterations"));
    EXPECT_EQ(settings->defaultMaxIterations(), 150);
    settle();
    EXPECT_TRUE(shown("150"));
}

TEST_F(SettingsWindow, itsButtonsShowWhichWayTheyStep) {
    show();
    const auto symbolAt = [&](QPointF place) {
        for (const QQuickItem* symbol : items("ostrella::Symbol")) {
            if (frame(symbol).contains(place)) {
                return symbol->property("name").toString().toStdString();
            }
        }
        return std::string();
    };
    EXPECT_EQ(symbolAt(lessOf("Max iterations")), "minus");
    EXPECT_EQ(symbolAt(moreOf("Max iterations")), "plus");
}

TEST_F(SettingsWindow, tellsWhatItsGroupsMean) {
    show();
    for (const char* text : {"Iterations", "Updates",
             "How many inner iterations SU2 runs before stopping. Lower = faster preview, higher = "
             "better convergence for stiff cases. 200 is a good default for incompressible "
             "RANS-SA.",
             "Ostrella looks for a new version every 6 hours and asks before installing. An "
             "update never installs while a simulation is running.",
             "Max iterations", "Current version", "Check for updates automatically", "Check Now",
             "Restore defaults"}) {
        EXPECT_TRUE(shown(text)) << text;
    }
    click("Streamlines", tab);
    for (const char* text : {"Window around the body", "Density",
             "Where streamline seeds spawn upstream of the leading edge, and how far past the "
             "trailing edge they continue, both as a multiple of body length along the flow "
             "direction. Defaults: 0.5 × c upstream, 2.0 × c downstream.",
             "Number of streamlines released from the inlet seed rake. More seeds = denser "
             "visualization, slower generation.",
             "Inlet offset", "Wake length", "Seed count"}) {
        EXPECT_TRUE(shown(text)) << text;
    }
}

TEST_F(SettingsWindow, goesOnSteppingWhileAButtonIsHeld) {
    show();
    user->moveTo(moreOf("Max iterations"));
    user->press();
    EXPECT_TRUE(waitUntil([&] { return settings->defaultMaxIterations() >= 350; }));
    user->release();
}

TEST_F(SettingsWindow, hasNoStepThatWouldChangeNothing) {
    preferences.set(AppSettings::maxIterationsKey, std::int64_t{49'990});
    show();
    const auto enabled = [&](int index) {
        return items("StepButton").at(static_cast<std::size_t>(index))->isEnabled();
    };
    user->click(moreOf("Max iterations"));
    EXPECT_EQ(settings->defaultMaxIterations(), 50'000);
    settle();
    EXPECT_TRUE(shown("50 000"));
    EXPECT_TRUE(enabled(0));
    EXPECT_FALSE(enabled(1));
    user->click(moreOf("Max iterations"));
    EXPECT_EQ(settings->defaultMaxIterations(), 50'000);
    settings->setDefaultMaxIterations(50);
    settle();
    EXPECT_FALSE(enabled(0));
    EXPECT_TRUE(enabled(1));
}

TEST_F(SettingsWindow, namesItsStepsWhileThePointerRests) {
    show();
    user->moveTo(lessOf("Max iterations"));
    EXPECT_TRUE(waitUntil([&] { return shown("Decrease Max iterations"); }));
    user->moveTo(moreOf("Max iterations"));
    EXPECT_TRUE(waitUntil([&] { return shown("Increase Max iterations"); }));
}

TEST_F(SettingsWindow, stepsByKeys) {
    show();
    user->type(Qt::Key_Tab);
    user->type(Qt::Key_Tab);
    ASSERT_EQ(focus(), "Max iterations");
    user->type(Qt::Key_Up);
    EXPECT_EQ(settings->defaultMaxIterations(), 250);
    user->type(Qt::Key_Down);
    EXPECT_EQ(settings->defaultMaxIterations(), 200);
    user->type(Qt::Key_PageUp);
    EXPECT_EQ(settings->defaultMaxIterations(), 700);
    user->type(Qt::Key_PageDown);
    user->type(Qt::Key_PageDown);
    EXPECT_EQ(settings->defaultMaxIterations(), 50);
    user->type(Qt::Key_Down);
    EXPECT_EQ(settings->defaultMaxIterations(), 50);
}

TEST_F(SettingsWindow, showsAStoredValueOutOfItsRangeAndStepsIntoIt) {
    preferences.set(AppSettings::maxIterationsKey, std::int64_t{2'147'483'647});
    show();
    EXPECT_TRUE(shown("2 147 483 647"));
    EXPECT_THAT(cutTexts(), IsEmpty());
    user->click(lessOf("Max iterations"));
    EXPECT_EQ(settings->defaultMaxIterations(), 50'000);
}

TEST_F(SettingsWindow, slidesFactorsByTheirStep) {
    showStreamlines();
    EXPECT_TRUE(shown("0.50 ×c"));
    EXPECT_TRUE(shown("2.00 ×c"));
    const QRectF track = frame(item("Inlet offset", slider));
    const double start = track.left() + 8 + 0.4 / 2.9 * (track.width() - 16);
    user->drag({start, track.center().y()}, {track.right() + 40, track.center().y()});
    EXPECT_EQ(settings->streamlineUpstreamFactor(), 3.0);
    user->drag({track.right() - 8, track.center().y()}, {track.left() - 40, track.center().y()});
    EXPECT_EQ(settings->streamlineUpstreamFactor(), 0.1);
    // A third of the way is 1.0667: the nearest step to it.
    user->click({track.left() + 8 + (track.width() - 16) / 3, track.center().y()});
    EXPECT_EQ(settings->streamlineUpstreamFactor(), 1.05);
    settle();
    EXPECT_TRUE(shown("1.05 ×c"));
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 2.0);
}

TEST_F(SettingsWindow, movesFactorsByKeys) {
    showStreamlines();
    user->type(Qt::Key_Tab);
    user->type(Qt::Key_Tab);
    user->type(Qt::Key_Tab);
    ASSERT_EQ(focus(), "Wake length");
    user->type(Qt::Key_Right);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 2.1);
    user->type(Qt::Key_Left);
    user->type(Qt::Key_Down);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 1.9);
    user->type(Qt::Key_PageUp);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 2.9);
}

TEST_F(SettingsWindow, tellsAFactorOutOfItsRangeAndStepsIntoIt) {
    preferences.set(AppSettings::downstreamFactorKey, 25.0);
    preferences.set(AppSettings::upstreamFactorKey, 0.52);
    showStreamlines();
    EXPECT_TRUE(shown("25.00 ×c"));
    // Nothing is written before the user wants it.
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 25.0);
    EXPECT_EQ(settings->streamlineUpstreamFactor(), 0.52);
    item("Wake length", slider)->forceActiveFocus(Qt::TabFocusReason);
    user->type(Qt::Key_Right);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 10.0);
}

TEST_F(SettingsWindow, isCalmAboutAFactorThatIsNoNumber) {
    preferences.set(AppSettings::downstreamFactorKey, std::nan(""));
    showStreamlines();
    EXPECT_TRUE(shown("nan ×c"));
    item("Wake length", slider)->forceActiveFocus(Qt::TabFocusReason);
    user->type(Qt::Key_Left);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 0.5);
}

TEST_F(SettingsWindow, restoresTheDefaultsOfTheTab) {
    show();
    settings->setDefaultMaxIterations(1000);
    settings->setStreamlineSeedCount(300);
    click("Restore defaults", button);
    EXPECT_EQ(settings->defaultMaxIterations(), 200);
    EXPECT_EQ(settings->streamlineSeedCount(), 300);
    click("Streamlines", tab);
    click("Restore defaults", button);
    EXPECT_EQ(settings->streamlineSeedCount(), 100);
}

TEST_F(SettingsWindow, switchesChecksForUpdates) {
    show();
    EXPECT_TRUE(accessible("Check for updates automatically", check)->state().checked);
    click("Check for updates automatically", check);
    EXPECT_FALSE(updater->automaticallyChecksForUpdates());
    EXPECT_FALSE(accessible("Check for updates automatically", check)->state().checked);
}

TEST_F(SettingsWindow, checksNow) {
    show();
    click("Check Now", button);
    EXPECT_EQ(updater->starts, 1);
    EXPECT_TRUE(waitUntil([&] { return updater->checks == 1; }));
    updater->setCanCheck(false);
    ASSERT_TRUE(waitUntil([&] { return accessible("Check Now", button)->state().disabled; }));
    click("Check Now", button);
    EXPECT_EQ(updater->checks, 1);
}

TEST_F(SettingsWindow, closesOnEscapeAndOnControlW) {
    show();
    keyToClose(*window, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
    window->show();
    user = std::make_unique<RealInput>(*window);
    keyToClose(*window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

} // namespace
} // namespace ostrella::test
