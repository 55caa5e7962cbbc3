#include "Views/Controls/ControlsWindow.h"

#include <QAccessible>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace ostrella::test {

class AccessibilityTest : public ControlsWindow {
protected:
    ~AccessibilityTest() override { platform().setActive(false); }

    /// As the platform does when a reader of the screen starts.
    static void startReader() { platform().setActive(true); }
    static QPlatformAccessibility& platform() {
        return *QGuiApplicationPrivate::platformIntegration()->accessibility();
    }
    /// What is anywhere in the window and has such a property.
    std::vector<QQuickItem*> having(const char* property) const {
        std::vector<QQuickItem*> items;
        const std::function<void(QQuickItem*)> gather = [&](QQuickItem* parent) {
            for (QQuickItem* child : parent->childItems()) {
                if (child->property(property).isValid()) {
                    items.push_back(child);
                }
                gather(child);
            }
        };
        gather(root);
        return items;
    }

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

TEST_F(AccessibilityTest, rolesAndStatesHoldWhenTheReaderStartsLate) {
    show("FilterChip { objectName: \"chip\"; text: \"err\"; selected: true }\n"
         "FilterChip { objectName: \"other\"; text: \"all\" }\n"
         "BrandSegmentedControl { name: \"Panel\"; selection: 1\n"
         "options: [{ value: 1, title: \"Log\" }, { value: 2, title: \"Charts\" }] }\n"
         "ToolbarToggle { objectName: \"toggle\"; text: \"Grid\"; checked: true }\n"
         "SidebarSwitch { objectName: \"switch\"; label: \"BCM\"; isOn: true }\n"
         "SidebarNumberField { objectName: \"field\"; label: \"Velocity\"; value: 5; to: 9 }\n"
         "CardRow { objectName: \"row\"; label: \"Facets\"; value: \"12\" }\n"
         "BrandMenuBar { BrandMenu { title: \"&View\" } }");
    startReader();
    EXPECT_EQ(of("chip").role(), QAccessible::RadioButton);
    EXPECT_TRUE(of("chip").state().checkable);
    EXPECT_TRUE(of("chip").state().checked);
    EXPECT_FALSE(of("other").state().checked);
    EXPECT_EQ(name("chip"), QStringLiteral("err"));
    const auto tabs = having("chosen");
    EXPECT_EQ(tabs.size(), 2U);
    for (QQuickItem* item : tabs) {
        QAccessibleInterface* tab = QAccessible::queryAccessibleInterface(item);
        EXPECT_EQ(tab->role(), QAccessible::PageTab);
        EXPECT_EQ(tab->state().selected, item->property("chosen").toBool());
    }
    EXPECT_EQ(of("toggle").role(), QAccessible::CheckBox);
    EXPECT_TRUE(of("toggle").state().checked);
    EXPECT_TRUE(of("switch").state().checked);
    EXPECT_EQ(of("field").role(), QAccessible::EditableText);
    EXPECT_EQ(name("field"), QStringLiteral("Velocity"));
    EXPECT_EQ(of("row").role(), QAccessible::StaticText);
    const auto menus = having("underlined");
    ASSERT_EQ(menus.size(), 1U);
    QAccessibleInterface* menu = QAccessible::queryAccessibleInterface(menus.front());
    EXPECT_EQ(menu->role(), QAccessible::MenuItem);
    EXPECT_EQ(menu->text(QAccessible::Name), QStringLiteral("View"));
}

TEST_F(AccessibilityTest, aChipShowsWhatIsSetAndNotWhatWasAskedFor) {
    show("property int presses: 0\n"
         "FilterChip { objectName: \"a\"; text: \"err\"; onClicked: ++parent.presses }");
    click("a");
    of("a").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(root->property("presses").toInt(), 2);
    EXPECT_FALSE(of("a").state().checked);
    item("a")->setProperty("selected", true);
    EXPECT_TRUE(of("a").state().checked);
}

TEST_F(AccessibilityTest, whatIsDisabledIsSaidToBe) {
    show("BrandButton { objectName: \"a\"; text: \"Orient…\"; enabled: false }\n"
         "Item { enabled: false\nSidebarNumberField { objectName: \"b\"; label: \"Velocity\" } }\n"
         "SidebarSwitch { objectName: \"c\"; label: \"BCM\" }");
    EXPECT_TRUE(of("a").state().disabled);
    EXPECT_TRUE(of("b").state().disabled) << "by what it lies in";
    EXPECT_FALSE(of("c").state().disabled);
}

TEST_F(AccessibilityTest, whatIsDisabledCannotBePressedThroughIt) {
    show("property int presses: 0\n"
         "BrandButton { objectName: \"a\"; text: \"A\"; enabled: false; onClicked: "
         "++parent.presses }\n"
         "SidebarSwitch { objectName: \"b\"; label: \"B\"; enabled: false\n"
         "onToggledByUser: ++parent.presses }");
    of("a").actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    of("b").actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(root->property("presses").toInt(), 0);
}

TEST_F(AccessibilityTest, aReaderHearsWhenSomethingIsDisabled) {
    static std::vector<QObject*> told;
    told.clear();
    show("SidebarSwitch { objectName: \"a\"; label: \"BCM\" }");
    startReader();
    ASSERT_FALSE(of("a").state().disabled);
    QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
        if (event->type() == QAccessible::StateChanged &&
            static_cast<QAccessibleStateChangeEvent*>(event)->changedStates().disabled) {
            told.push_back(event->object());
        }
    });
    item("a")->setEnabled(false);
    QAccessible::installUpdateHandler(nullptr);
    EXPECT_NE(std::find(told.begin(), told.end(), item("a")), told.end());
    EXPECT_TRUE(of("a").state().disabled);
}

} // namespace ostrella::test
