#include "Views/Controls/ControlsWindow.h"

#include "support/Wait.h"

namespace ostrella::test {

class KeyboardTest : public ControlsWindow {};

TEST_F(KeyboardTest, tabComesToEveryControlInOrder) {
    show("Column { spacing: 6\n"
         "BrandButton { objectName: \"a\"; text: \"A\" }\n"
         "HeroButton { objectName: \"b\"; text: \"B\" }\n"
         "LinkButton { objectName: \"c\"; text: \"C\" }\n"
         "ToolbarToggle { objectName: \"d\"; text: \"D\" }\n"
         "FilterChip { objectName: \"e\"; text: \"E\" }\n"
         "BrandSegmentedControl { objectName: \"f\"; selection: 2; "
         "options: [{ value: 1, title: \"1\" }, { value: 2, title: \"2\" }] }\n"
         "SidebarNumberField { objectName: \"g\" }\n"
         "SidebarSelect { objectName: \"h\"; options: [\"x\"] }\n"
         "SidebarSwitch { objectName: \"i\" }\n"
         "BrandButton { enabled: false; text: \"off\" }\n"
         "}");
    for (const char* name : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "a"}) {
        key(Qt::Key_Tab);
        EXPECT_TRUE(hasKeyboard(name)) << name;
    }
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(hasKeyboard("i"));
}

TEST_F(KeyboardTest, spacePresses) {
    show("property int presses: 0\n"
         "BrandButton { objectName: \"it\"; text: \"A\"; onClicked: ++parent.presses }");
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_EQ(root->property("presses").toInt(), 1);
}

TEST_F(KeyboardTest, arrowsChooseAmongSegments) {
    show("BrandSegmentedControl { objectName: \"it\"; selection: \"log\"; "
         "onSelected: value => selection = value; options: [{ value: \"log\", title: \"Log\" }, "
         "{ value: \"plot\", title: \"Convergence\" }] }");
    key(Qt::Key_Tab);
    key(Qt::Key_Right);
    EXPECT_EQ(property("it", "selection").toString(), QStringLiteral("plot"));
    key(Qt::Key_Right);
    EXPECT_EQ(property("it", "selection").toString(), QStringLiteral("plot"));
    key(Qt::Key_Left);
    EXPECT_EQ(property("it", "selection").toString(), QStringLiteral("log"));
}

TEST_F(KeyboardTest, selectsOpenWithArrowsAndChooseWithReturn) {
    show("SidebarSelect { objectName: \"it\"; x: 20; y: 100; options: [\"a\", \"b\", \"c\"]; "
         "property int answers: 0; onChosen: row => { index = row; ++answers; } }");
    key(Qt::Key_Tab);
    key(Qt::Key_Down);
    ASSERT_TRUE(waitUntil([&] { return property("it", "down").toBool(); }));
    EXPECT_EQ(property("it", "index").toInt(), 0);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(property("it", "index").toInt(), 1);
    EXPECT_EQ(property("it", "answers").toInt(), 1);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Escape);
    EXPECT_EQ(property("it", "index").toInt(), 1);
    EXPECT_EQ(property("it", "displayText").toString(), QStringLiteral("b"));
}

TEST_F(KeyboardTest, selectsShowWhatIsSetAndIgnoreTheWheel) {
    show("SidebarSelect { objectName: \"it\"; x: 20; y: 100; options: [\"a\", \"b\", \"c\"] }");
    turnWheel("it");
    EXPECT_EQ(property("it", "displayText").toString(), QStringLiteral("a"));
    item("it")->setProperty("index", 2);
    EXPECT_EQ(property("it", "displayText").toString(), QStringLiteral("c"));
}

/// Whether an item or one within it shows this text.
bool shows(const QQuickItem& item, const QString& text) {
    if (!item.isVisible())
        return false;
    if (item.inherits("QQuickText") && item.property("text").toString() == text)
        return true;
    const auto children = item.childItems();
    return std::any_of(children.begin(), children.end(),
        [&](const QQuickItem* child) { return shows(*child, text); });
}

class Help : public ControlsWindow {
protected:
    bool shows(const QString& text) const { return test::shows(*window->contentItem(), text); }
};

TEST_F(Help, comesUpWhileThePointerRestsAndNotForTheKeyboard) {
    show("BrandButton { objectName: \"it\"; x: 20; y: 20; text: \"A\"; help: \"Does A\" }");
    key(Qt::Key_Tab);
    EXPECT_FALSE(shows(QStringLiteral("Does A")));
    moveTo("it");
    EXPECT_FALSE(shows(QStringLiteral("Does A")));
    EXPECT_TRUE(waitUntil([&] { return shows(QStringLiteral("Does A")); }));
    moveTo({599, 399});
    EXPECT_TRUE(waitUntil([&] { return !shows(QStringLiteral("Does A")); }));
}

class Cards : public ControlsWindow {};

TEST_F(Cards, keepClicksWheelAndPointerFromWhatLiesBelow) {
    show("property int clicks: 0; property int turns: 0\n"
         "MouseArea { objectName: \"below\"; anchors.fill: parent; hoverEnabled: true; "
         "acceptedButtons: Qt.AllButtons; onClicked: ++parent.clicks; onWheel: ++parent.turns }\n"
         "FloatingCard { objectName: \"card\"; x: 100; y: 100; width: 200; height: 100 }");
    moveTo({50, 50});
    ASSERT_TRUE(property("below", "containsMouse").toBool());
    moveTo("card");
    EXPECT_FALSE(property("below", "containsMouse").toBool());
    click("card");
    QTest::mouseClick(window.get(), Qt::RightButton, Qt::NoModifier, middle("card"));
    turnWheel("card");
    EXPECT_EQ(root->property("clicks").toInt(), 0);
    EXPECT_EQ(root->property("turns").toInt(), 0);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, {50, 50});
    EXPECT_EQ(root->property("clicks").toInt(), 1);
}

} // namespace ostrella::test
