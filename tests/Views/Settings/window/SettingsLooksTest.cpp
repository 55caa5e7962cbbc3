#include "SettingsWindow.h"

#include "Views/Controls/Theme.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using testing::IsEmpty;

class SettingsLooks : public SettingsWindow, public testing::WithParamInterface<bool> {};

TEST_P(SettingsLooks, haveTheDesignsColoursAndMeasures) {
    theme.setDark(GetParam());
    show();
    EXPECT_EQ(window->width(), 488);
    expectNear(colorAt({4, 100}), theme.surfaceBase());
    const auto groups = items("BrandGroup");
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(frame(groups[0]), QRectF(20, 99, 448, 38));
    EXPECT_EQ(groups[1]->height(), 76);
    expectNear(colorAt({24, 118}), theme.surfaceRaised());
    const QRectF number = frame(item("Max iterations", stepper));
    EXPECT_EQ(number, QRectF(338, 106, 116, 24));
    // The number lies in a field, the signs on buttons.
    const QColor ground = theme.surfaceRaised();
    expectNear(colorAt({370, 110}), Theme::shared().fieldFill());
    expectNear(colorAt({342, 110}), theme.over(ground, theme.buttonFill()));
    expectNear(colorAt({450, 110}), theme.over(ground, theme.buttonFill()));
    // The chosen tab lies on the accent.
    const QRectF chosen = frame(item("Solver", tab));
    EXPECT_EQ(chosen.size(), QSizeF(72, 40));
    EXPECT_EQ(chosen.top(), 8);
    expectNear(colorAt(chosen.topLeft() + QPointF(10, 4)),
        theme.over(theme.surfaceBase(), theme.accentSubtle()));
}

TEST_P(SettingsLooks, sliderFillsUpToItsHandle) {
    theme.setDark(GetParam());
    showStreamlines();
    const QRectF track = frame(item("Inlet offset", slider));
    EXPECT_EQ(track.width(), 152);
    expectNear(colorAt({track.left() + 8, track.center().y()}), theme.accentPrimary());
    expectNear(colorAt({track.right() - 8, track.center().y()}),
        theme.over(theme.surfaceRaised(), theme.borderStrong()));
    expectNear(colorAt({track.left() + 26, track.center().y()}),
        GetParam() ? theme.textPrimary() : QColor(Qt::white));
}

TEST_P(SettingsLooks, aControlWithTheKeyboardHasARing) {
    theme.setDark(GetParam());
    show();
    const QRectF number = frame(item("Max iterations", stepper));
    const QPointF ring(number.center().x(), number.top() - 2);
    expectNear(colorAt(ring), theme.surfaceRaised());
    user->type(Qt::Key_Tab);
    user->type(Qt::Key_Tab);
    settle();
    expectNear(colorAt(ring), theme.over(theme.surfaceRaised(), theme.accentSubtle()));
}

INSTANTIATE_TEST_SUITE_P(InBothAppearances, SettingsLooks, testing::Bool());

TEST_F(SettingsWindow, cutsNothingWithLargeTexts) {
    for (const double scale : {1.0, 1.5, 0.8}) {
        theme.setTextScale(scale);
        for (const char* name : {"solver", "streamlines"}) {
            preferences.set(SettingsModel::tabKey, std::string(name));
            show();
            EXPECT_THAT(cutTexts(), IsEmpty()) << name << " at " << scale;
            for (const QQuickItem* row : items("SettingsRow")) {
                EXPECT_GE(row->width(), row->property("neededWidth").toReal());
            }
            user.reset();
            window.reset();
        }
    }
}

TEST_F(SettingsWindow, bringsWhatHasTheKeyboardIntoSightWhereThereIsLittleRoom) {
    theme.setTextScale(3);
    show();
    ASSERT_LE(window->height(), 900);
    for (const std::string& name : tabOrder()) {
        settle();
        const QRectF place = frame(window->activeFocusItem());
        EXPECT_TRUE(QRectF(QPointF(), window->size()).contains(place)) << name;
    }
}

} // namespace
} // namespace ostrella::test
