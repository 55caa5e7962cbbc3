#include "Views/Controls/ControlsWindow.h"

namespace ostrella::test {

class StatesTest : public ControlsWindow {
protected:
    QColor onBase(const QColor& top) const { return theme.over(theme.surfaceBase(), top); }
};

TEST_F(StatesTest, framedButtonsAnswerThePointer) {
    show("BrandButton { objectName: \"it\"; x: 20; y: 20; text: \"Orient…\" }");
    expectColor(colorAt("it", {6, 14}), onBase(theme.buttonFill()));
    expectColor(
        colorAt("it", {30, 0.5}), onBase(theme.over(theme.buttonFill(), theme.borderStrong())));
    moveTo("it");
    expectColor(colorAt("it", {6, 14}), onBase(theme.buttonHover()));
    QTest::mousePress(window.get(), Qt::LeftButton, Qt::NoModifier, middle("it"));
    expectColor(colorAt("it", {6, 14}), onBase(theme.buttonPressed()));
    QTest::mouseRelease(window.get(), Qt::LeftButton, Qt::NoModifier, middle("it"));
    item("it")->setEnabled(false);
    expectColor(colorAt("it", {6, 14}), onBase(theme.buttonFill()));
    expectColor(
        colorAt("it", {30, 0.5}), onBase(theme.over(theme.buttonFill(), theme.borderSubtle())));
}

TEST_F(StatesTest, accentButtonsAreTheAccentInBothAppearances) {
    show("BrandButton { objectName: \"it\"; x: 20; y: 20; kind: \"primary\"; text: \"Done\" }");
    expectColor(colorAt("it", {6, 14}), QColor(0xF5, 0xA5, 0x24));
    theme.setDark(false);
    expectColor(colorAt("it", {6, 14}), QColor(0xD8, 0x8A, 0x0A));
    QTest::mousePress(window.get(), Qt::LeftButton, Qt::NoModifier, middle("it"));
    expectColor(colorAt("it", {6, 14}), QColor(0xA3, 0x66, 0x08));
    QTest::mouseRelease(window.get(), Qt::LeftButton, Qt::NoModifier, middle("it"));
}

TEST_F(StatesTest, theRingIsThereForTheKeyboardOnly) {
    show("BrandButton { objectName: \"it\"; x: 20; y: 20; text: \"Orient…\" }\n"
         "BrandButton { objectName: \"other\"; x: 20; y: 80; text: \"Reset\" }");
    click("it");
    moveTo({599, 399});
    expectColor(colorAt("it", {30, -1.5}), theme.surfaceBase());
    key(Qt::Key_Tab);
    ASSERT_TRUE(hasKeyboard("other"));
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_TRUE(hasKeyboard("it"));
    expectColor(colorAt("it", {30, 0.5}), theme.accentPrimary());
    expectColor(colorAt("it", {30, -1.5}), onBase(theme.accentSubtle()));
}

TEST_F(StatesTest, theRingOfAccentButtonsStandsOff) {
    show("HeroButton { objectName: \"it\"; x: 20; y: 20; text: \"Run\" }");
    key(Qt::Key_Tab);
    expectColor(colorAt("it", {30, -1}), theme.surfaceBase());
    expectColor(colorAt("it", {30, -3}), theme.accentPrimary());
    expectColor(colorAt("it", {30, -5}), theme.surfaceBase());
}

TEST_F(StatesTest, togglesThatAreOnLieOnTheAccent) {
    show("ToolbarToggle { objectName: \"it\"; x: 20; y: 20; text: \"Grid\"; symbol: \"wind\" }\n"
         "ToolbarToggle { objectName: \"plain\"; x: 120; y: 20; text: \"Log\"; checked: true; "
         "marksChecked: false }");
    expectColor(colorAt("it", {4, 20}), theme.surfaceBase());
    click("it");
    EXPECT_TRUE(property("it", "checked").toBool());
    expectColor(colorAt("it", {4, 20}), onBase(theme.accentSubtle()));
    expectColor(colorAt("plain", {4, 20}), theme.surfaceBase());
}

TEST_F(StatesTest, switchesMoveTheirKnob) {
    show("SidebarSwitch { objectName: \"it\"; x: 20; y: 20; onToggledByUser: on => isOn = on }");
    expectColor(colorAt("it", {9, 9}), theme.textPrimary());
    expectColor(colorAt("it", {25, 9}), onBase(theme.borderStrong()));
    click("it");
    moveTo({599, 399});
    expectColor(colorAt("it", {9, 9}), theme.accentPrimary());
    expectColor(colorAt("it", {23, 9}), theme.accentOn());
}

TEST_F(StatesTest, aSwitchShowsWhatIsSetNotWhatWasAskedFor) {
    show("SidebarSwitch { objectName: \"it\"; x: 20; y: 20 }");
    click("it");
    EXPECT_FALSE(property("it", "checked").toBool());
    item("it")->setProperty("isOn", true);
    EXPECT_TRUE(property("it", "checked").toBool());
}

TEST_F(StatesTest, chosenChipsAreAccented) {
    show("FilterChip { objectName: \"it\"; x: 20; y: 20; text: \"all\" }");
    expectColor(colorAt("it", {5, 10}), theme.surfaceBase());
    item("it")->setProperty("selected", true);
    expectColor(colorAt("it", {5, 10}), onBase(theme.accentSubtle()));
}

TEST_F(StatesTest, cardsFollowTheAppearanceWhileShown) {
    show("FloatingCard { objectName: \"it\"; x: 100; y: 100; width: 200; height: 100 }");
    expectColor(colorAt("it", {100, 50}), theme.surfaceRaised());
    EXPECT_LT(colorAt("it", {100, 104}).lightness(), theme.surfaceBase().lightness());
    expectColor(colorAt("it", {-50, 50}), theme.surfaceBase());
    theme.setDark(false);
    expectColor(colorAt("it", {100, 50}), Qt::white);
}

} // namespace ostrella::test
