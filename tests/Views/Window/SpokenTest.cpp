#include "WholeWindow.h"

namespace ostrella::test {
namespace {

class Spoken : public WholeWindow {
protected:
    void expectButtons(const std::vector<const char*>& names) const {
        for (const char* name : names) {
            EXPECT_TRUE(accessible(q(name), QAccessible::Button) ||
                        accessible(q(name), QAccessible::CheckBox))
                << name;
        }
    }
};

TEST_F(Spoken, TheWelcomesTilesAndLinks) {
    expectButtons({"Load sample Sphere", "Load sample Rounded Box", "Load sample Simple Wing",
        "Run the NACA0012 demo", "or Load your own STL…"});
}

TEST_F(Spoken, TheToolbar) {
    expectButtons({"Open STL", "Reset View", "Grid", "Wireframe", "Cp", "Streams", "Vortex",
        "Export Results", "Hide log panel", "Settings", "Help"});
    click(q("Hide log panel"));
    expectButtons({"Show log panel"});
}

TEST_F(Spoken, TheCardsOfTheViewport) {
    showAllCards();
    expectButtons({"Iso view", "Front view", "Side view", "Top view", "Fit to view", "Orient model",
        "Animate flow", "Save image", "Reset orientation", "Done", "Turn +90° about X",
        "Turn -90° about Z", "Face the flow with +X", "Face the flow with -Z"});
    QAccessibleInterface* legend = accessible(q("Cp legend"));
    ASSERT_TRUE(legend);
    EXPECT_EQ(legend->text(QAccessible::Description), q("[-1.50, 1.00]"));
}

TEST_F(Spoken, TheHeadOfACard) {
    placeModel();
    settle();
    QAccessibleInterface* head = accessible(q("Geometry"), QAccessible::Button);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->text(QAccessible::Description), q("Expanded"));
    click(q("Geometry"));
    EXPECT_TRUE(model->viewport()->card()->isCollapsed());
    EXPECT_EQ(accessible(q("Geometry"), QAccessible::Button)->text(QAccessible::Description),
        q("Collapsed"));
}

TEST_F(Spoken, ACardThatAnotherLeavesNoRoomIsCollapsed) {
    placeModel();
    settle();
    for (QQuickItem* item : shownItems()) {
        if (item->property("squeezed").isValid()) {
            item->setProperty("squeezed", true);
        }
    }
    QAccessibleInterface* head = accessible(q("Geometry"), QAccessible::Button);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->text(QAccessible::Description), q("Collapsed"));
    EXPECT_TRUE(head->state().disabled) << "it cannot be opened now";
    EXPECT_FALSE(model->viewport()->card()->isCollapsed()) << "what the user chose stays";
}

TEST_F(Spoken, EachControlCanBePressedOrToggled) {
    showAllCards();
    for (QQuickItem* item : focusable()) {
        QAccessibleInterface* said = QAccessible::queryAccessibleInterface(item);
        QAccessibleActionInterface* actions = said->actionInterface();
        ASSERT_TRUE(actions) << spoken(item);
        const bool isField = said->role() == QAccessible::EditableText;
        EXPECT_TRUE(
            isField || actions->actionNames().contains(QAccessibleActionInterface::pressAction()))
            << spoken(item) << ", " << item->metaObject()->className();
    }
}

TEST_F(Spoken, PressesDoWhatClicksDo) {
    placeModel();
    settle();
    const auto press = [this](const char* name) {
        QAccessibleInterface* found = accessible(q(name), QAccessible::Button);
        for (const auto role : {QAccessible::CheckBox, QAccessible::RadioButton}) {
            found = found ? found : accessible(q(name), role);
        }
        ASSERT_TRUE(found) << name;
        found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    };
    press("Geometry");
    EXPECT_TRUE(model->viewport()->card()->isCollapsed());
    press("Orient model");
    EXPECT_TRUE(app.renderSettings.orientMode());
    press("Turn +90° about X");
    EXPECT_EQ(app.parameters.rotationX(), 90);
    press("Wireframe");
    EXPECT_TRUE(app.renderSettings.wireframe());
    press("Transition (BCM)");
    EXPECT_TRUE(app.parameters.saTransition());
    press("err");
    EXPECT_EQ(model->panel()->filter(), LogFilter::err);
    press("Hide log panel");
    EXPECT_FALSE(model->panel()->isVisible());
}

TEST_F(Spoken, MenusOpenAndTheirItemsAreChosen) {
    placeModel();
    settle();
    const auto item = [this](
                          const char* name) { return accessible(q(name), QAccessible::MenuItem); };
    const auto press = [&](const char* name) {
        ASSERT_TRUE(item(name)) << name;
        item(name)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    };
    ASSERT_FALSE(item("Orient Model")) << "the menu is closed";
    ASSERT_NO_FATAL_FAILURE(press("View"));
    ASSERT_TRUE(item("Orient Model"));
    EXPECT_FALSE(item("Orient Model")->state().checked);
    ASSERT_NO_FATAL_FAILURE(press("Orient Model"));
    EXPECT_TRUE(app.renderSettings.orientMode());
    EXPECT_FALSE(item("Orient Model")) << "the menu closes";
    ASSERT_NO_FATAL_FAILURE(press("View"));
    ASSERT_TRUE(item("Orient Model"));
    EXPECT_TRUE(item("Orient Model")->state().checked);
    ASSERT_NO_FATAL_FAILURE(press("Orient Model"));
    EXPECT_FALSE(app.renderSettings.orientMode());
}

TEST_F(Spoken, TheSidebarsFields) {
    for (const char* label : {"X rotation", "Y rotation", "Z rotation", "Velocity",
             "Angle of attack", "Sideslip", "Density"}) {
        EXPECT_TRUE(accessible(q(label), QAccessible::EditableText)) << label;
    }
    EXPECT_EQ(
        accessible(q("Velocity"), QAccessible::EditableText)->text(QAccessible::Value), q("50.0"));
    EXPECT_TRUE(accessible(q("Regime"), QAccessible::ComboBox));
    EXPECT_TRUE(accessible(q("Turbulence model"), QAccessible::ComboBox));
}

} // namespace
} // namespace ostrella::test
