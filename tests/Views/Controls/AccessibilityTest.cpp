#include "Views/Controls/ControlsWindow.h"

#include <QAccessible>

namespace ostrella::test {

class AccessibilityTest : public ControlsWindow {
protected:
    AccessibilityTest() { QAccessible::setActive(true); }

    QAccessibleInterface& of(const char* name) const {
        return *QAccessible::queryAccessibleInterface(item(name));
    }
    QString name(const char* item) const { return of(item).text(QAccessible::Name); }
};

TEST_F(AccessibilityTest, buttonsTellNameHelpAndState) {
    show("BrandButton { objectName: \"a\"; text: \"Orient…\"; help: \"Turns the model\" }\n"
         "ToolbarToggle { objectName: \"b\"; text: \"Grid\"; checked: true }\n"
         "HeroButton { objectName: \"c\"; text: \"Run Simulation\"; enabled: false }\n"
         "LinkButton { objectName: \"d\"; text: \"Reset\"; Accessible.name: \"Reset all\" }");
    EXPECT_EQ(of("a").role(), QAccessible::Button);
    EXPECT_EQ(name("a"), QStringLiteral("Orient…"));
    EXPECT_EQ(of("a").text(QAccessible::Description), QStringLiteral("Turns the model"));
    EXPECT_TRUE(of("a").state().focusable);
    EXPECT_TRUE(of("b").state().checkable);
    EXPECT_TRUE(of("b").state().checked);
    EXPECT_EQ(name("c"), QStringLiteral("Run Simulation"));
    EXPECT_EQ(name("d"), QStringLiteral("Reset all"));
}

TEST_F(AccessibilityTest, fieldsTellLabelAndValue) {
    show(
        "SidebarNumberField { objectName: \"a\"; label: \"Velocity\"; value: 50; to: 500 }\n"
        "SidebarSelect { objectName: \"b\"; label: \"Model\"; options: [\"x\", \"y\"]; index: 1 }\n"
        "SidebarSwitch { objectName: \"c\"; label: \"Transition (BCM)\"; isOn: true }");
    EXPECT_EQ(of("a").role(), QAccessible::EditableText);
    EXPECT_EQ(name("a"), QStringLiteral("Velocity"));
    EXPECT_EQ(of("a").text(QAccessible::Value), QStringLiteral("50.0"));
    EXPECT_EQ(of("b").role(), QAccessible::ComboBox);
    EXPECT_EQ(name("b"), QStringLiteral("Model"));
    EXPECT_EQ(property("b", "displayText").toString(), QStringLiteral("y"));
    EXPECT_EQ(name("c"), QStringLiteral("Transition (BCM)"));
    EXPECT_TRUE(of("c").state().checked);
}

TEST_F(AccessibilityTest, aButtonCanBePressedThroughIt) {
    show("property int presses: 0\n"
         "BrandButton { objectName: \"a\"; text: \"A\"; onClicked: ++parent.presses }");
    of("a").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(root->property("presses").toInt(), 1);
}

TEST_F(AccessibilityTest, aSwitchCanBeTurnedThroughIt) {
    show("SidebarSwitch { objectName: \"a\"; label: \"A\"; onToggledByUser: on => isOn = on }\n"
         "ToolbarToggle { objectName: \"b\"; text: \"Grid\" }");
    of("a").actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(of("a").state().checked);
    of("b").actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(of("b").state().checked);
}

TEST_F(AccessibilityTest, rowsAndLabelsAreReadAsTheyAreWritten) {
    show("CardRow { objectName: \"a\"; label: \"Facets\"; value: \"1 828\" }\n"
         "SectionLabel { objectName: \"b\"; text: \"Free Stream\" }\n"
         "FilterChip { objectName: \"c\"; text: \"err\"; selected: true }");
    EXPECT_EQ(name("a"), QStringLiteral("Facets 1 828"));
    EXPECT_EQ(of("b").role(), QAccessible::Heading);
    EXPECT_EQ(name("b"), QStringLiteral("Free Stream"));
    EXPECT_TRUE(of("c").state().checked);
}

} // namespace ostrella::test
