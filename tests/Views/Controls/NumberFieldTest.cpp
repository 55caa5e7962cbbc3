#include "Views/Controls/ControlsWindow.h"

#include "support/Wait.h"

#include <QGuiApplication>

namespace ostrella::test {

/// A field for a speed from 0.01 to 500 whose value is kept beside it, and another field.
class NumberFieldTest : public ControlsWindow {
protected:
    void showField() {
        show("property real kept: 50; property int writes: 0; objectName: \"all\"\n"
             "SidebarNumberField { objectName: \"speed\"; x: 20; y: 20; label: \"Velocity\"; "
             "value: parent.kept; from: 0.01; to: 500; unit: \"m/s\"; "
             "onEdited: value => { parent.kept = value; ++parent.writes; } }\n"
             "SidebarNumberField { objectName: \"other\"; x: 20; y: 60 }");
    }
    QString text() const { return property("speed", "text").toString(); }
    double kept() const { return root->property("kept").toDouble(); }
    int writes() const { return root->property("writes").toInt(); }
};

TEST_F(NumberFieldTest, takesWhatIsTypedOnReturnAndNotBefore) {
    showField();
    key(Qt::Key_Tab);
    ASSERT_TRUE(hasKeyboard("speed"));
    type("12.5");
    EXPECT_EQ(kept(), 50);
    key(Qt::Key_Return);
    EXPECT_EQ(kept(), 12.5);
    EXPECT_EQ(text(), QStringLiteral("12.5"));
    EXPECT_TRUE(hasKeyboard("speed"));
}

TEST_F(NumberFieldTest, takesWhatIsTypedOnTab) {
    showField();
    key(Qt::Key_Tab);
    type("7");
    key(Qt::Key_Tab);
    EXPECT_EQ(kept(), 7);
    EXPECT_EQ(text(), QStringLiteral("7.0"));
    EXPECT_TRUE(hasKeyboard("other"));
}

TEST_F(NumberFieldTest, takesWhatIsTypedWhenTheKeyboardGoesElsewhere) {
    showField();
    key(Qt::Key_Tab);
    type("8");
    click("other");
    EXPECT_EQ(kept(), 8);
}

TEST_F(NumberFieldTest, givesTheOldValueBackOnEscape) {
    showField();
    key(Qt::Key_Tab);
    type("99");
    key(Qt::Key_Escape);
    EXPECT_EQ(text(), QStringLiteral("50.0"));
    key(Qt::Key_Tab);
    EXPECT_EQ(kept(), 50);
    EXPECT_EQ(writes(), 0);
}

TEST_F(NumberFieldTest, bringsWhatIsTypedIntoTheRange) {
    showField();
    key(Qt::Key_Tab);
    type("600");
    key(Qt::Key_Return);
    EXPECT_EQ(kept(), 500);
    EXPECT_EQ(text(), QStringLiteral("500.0"));
    type("-3");
    key(Qt::Key_Return);
    EXPECT_EQ(kept(), 0.01);
}

TEST_F(NumberFieldTest, keepsItsValueAgainstWhatIsNoNumber) {
    for (const char* typed : {"abc", "1,5", "--3", "1e"}) {
        showField();
        key(Qt::Key_Tab);
        type(typed);
        EXPECT_TRUE(property("speed", "invalid").toBool()) << typed;
        expectColor(colorAt("speed", {60, 0.5}), theme.statusError());
        key(Qt::Key_Return);
        EXPECT_FALSE(property("speed", "invalid").toBool());
        EXPECT_EQ(text(), QStringLiteral("50.0")) << typed;
        EXPECT_EQ(writes(), 0) << typed;
        delete std::exchange(root, nullptr);
    }
}

TEST_F(NumberFieldTest, takesAnEmptyTextForNoNumber) {
    showField();
    key(Qt::Key_Tab);
    key(Qt::Key_Delete);
    EXPECT_TRUE(property("speed", "invalid").toBool());
    key(Qt::Key_Tab);
    EXPECT_EQ(text(), QStringLiteral("50.0"));
    EXPECT_EQ(writes(), 0);
}

TEST_F(NumberFieldTest, showsTheLowerBoundForAValueThatIsNoNumber) {
    showField();
    root->setProperty("kept", std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(text(), QStringLiteral("0.01"));
    EXPECT_TRUE(waitUntil([&] { return kept() == 0.01; }));
    EXPECT_EQ(text(), QStringLiteral("0.01"));
    EXPECT_EQ(writes(), 1);
}

TEST_F(NumberFieldTest, writesAValueOnlyWhereItDiffers) {
    showField();
    EXPECT_EQ(writes(), 0);
    root->setProperty("kept", 80);
    EXPECT_EQ(writes(), 0);
    EXPECT_EQ(text(), QStringLiteral("80.0"));
    root->setProperty("kept", 1000);
    EXPECT_TRUE(waitUntil([&] { return kept() == 500; }));
    EXPECT_EQ(writes(), 1);
}

TEST_F(NumberFieldTest, losesNoDigitsThatItDoesNotShow) {
    showField();
    root->setProperty("kept", 12.3456789);
    key(Qt::Key_Tab);
    EXPECT_EQ(text(), QStringLiteral("12.3457"));
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    EXPECT_EQ(kept(), 12.3456789);
}

TEST_F(NumberFieldTest, isNotChangedByWheelAndArrows) {
    showField();
    key(Qt::Key_Tab);
    turnWheel("speed");
    key(Qt::Key_Up);
    key(Qt::Key_Down);
    key(Qt::Key_PageUp);
    EXPECT_EQ(text(), QStringLiteral("50.0"));
    EXPECT_EQ(writes(), 0);
}

TEST_F(NumberFieldTest, selectsAllWhenAKeyBringsTheKeyboard) {
    showField();
    key(Qt::Key_Tab);
    EXPECT_EQ(property("speed", "selectedText").toString(), QStringLiteral("50.0"));
    key(Qt::Key_Tab);
    EXPECT_EQ(property("speed", "selectedText").toString(), QString());
    click("speed");
    EXPECT_EQ(property("speed", "selectedText").toString(), QString());
}

TEST_F(NumberFieldTest, keepsReturnAndEscapeToItselfOnlyWhileATextWaits) {
    show("id: window; property int ends: 0\nShortcut { sequences: [\"Escape\", \"Return\"]; "
         "onActivated: ++window.ends }\n"
         "SidebarNumberField { objectName: \"speed\"; focus: true; to: 500; value: 50 }");
    item("speed")->forceActiveFocus(Qt::TabFocusReason);
    type("4");
    key(Qt::Key_Escape);
    EXPECT_EQ(root->property("ends").toInt(), 0);
    key(Qt::Key_Escape);
    EXPECT_EQ(root->property("ends").toInt(), 1);
    key(Qt::Key_Return);
    EXPECT_EQ(root->property("ends").toInt(), 2);
}

} // namespace ostrella::test
