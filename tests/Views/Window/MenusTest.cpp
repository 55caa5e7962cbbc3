#include "WholeWindow.h"

#include <map>

namespace ostrella::test {
namespace {

class Menus : public WholeWindow {
protected:
    Menus() {
        for (const std::string_view name :
            {Notifications::openSTLRequested, Notifications::runSimulationRequested,
                Notifications::cancelSimulationRequested, Notifications::runDemoRequested,
                Notifications::viewPresetRequested, Notifications::fitToViewRequested}) {
            tokens.push_back(app.notifications.observe(
                name, [this, name = std::string(name)](const std::any& object) {
                    const auto* text = std::any_cast<std::string>(&object);
                    calls.push_back(name + (text != nullptr ? " " + *text : ""));
                }));
        }
    }

    /// What follows on a key combination.
    std::vector<std::string> press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        calls.clear();
        user->type(key, modifiers);
        return calls;
    }
    void openMenu(const char* title) {
        for (QQuickItem* item : shownItems()) {
            if (item->inherits("QQuickMenuBarItem") && spoken(item) == title) {
                user->click(frame(item).center());
            }
        }
        settle();
    }
    QQuickItem* item(const char* text) const {
        for (QQuickItem* item : shownItems()) {
            if (isA(item, "BrandMenuItem") && item->property("text") == QVariant(q(text))) {
                return item;
            }
        }
        return nullptr;
    }
    /// Text and key combination of each item of the open menu.
    std::vector<std::string> openItems() const {
        std::vector<std::string> items;
        for (const QQuickItem* item : shownItems()) {
            if (isA(item, "BrandMenuItem")) {
                items.push_back(item->property("text").toString().toStdString() + " | " +
                                item->property("shortcutText").toString().toStdString());
            }
        }
        return items;
    }

    std::vector<NotificationCenter::Token> tokens;
};

using Calls = std::vector<std::string>;

TEST_F(Menus, OpenByClickAndTellTheirItems) {
    openMenu("Simulation");
    EXPECT_EQ(openItems(), (Calls{"Run Simulation | Ctrl+R", "Cancel Simulation | Ctrl+.",
                               "Run NACA0012 Demo | Ctrl+Shift+D"}));
    user->click(frame(item("Run Simulation")).center());
    EXPECT_EQ(calls, Calls{"Ostrella.runSimulationRequested"});
    settle();
    EXPECT_FALSE(item("Run Simulation"));
}

TEST_F(Menus, EachOpensWhole) {
    const std::map<const char*, std::size_t> counts{{"File", 3}, {"Edit", 7}, {"View", 8},
        {"Samples", 3}, {"Simulation", 3}, {"Window", 2}, {"Help", 3}};
    for (const auto& [title, count] : counts) {
        openMenu(title);
        EXPECT_EQ(openItems().size(), count) << title;
        for (const QQuickItem* item : shownItems()) {
            if (isA(item, "BrandMenuItem")) {
                EXPECT_TRUE(QRectF(0, 0, window->width(), window->height()).contains(frame(item)));
            }
        }
        // A pointer that stays on the title keeps the bar ready to open the next one.
        user->moveTo({700, 600});
        user->type(Qt::Key_Escape);
        settle();
        EXPECT_TRUE(openItems().empty()) << title;
    }
}

TEST_F(Menus, OpenByAltAndTheirLetter) {
    user->type(Qt::Key_F, Qt::AltModifier);
    settle();
    EXPECT_EQ(openItems().size(), 3U);
    user->type(Qt::Key_Right);
    settle();
    EXPECT_EQ(openItems().size(), 7U);
    user->type(Qt::Key_Escape);
    settle();
    EXPECT_TRUE(openItems().empty());
}

TEST_F(Menus, AnItemIsChosenByArrowsAndReturn) {
    user->type(Qt::Key_F, Qt::AltModifier);
    settle();
    user->type(Qt::Key_Down);
    user->type(Qt::Key_Return);
    settle();
    EXPECT_EQ(calls, Calls{"Ostrella.openSTLRequested"});
}

TEST_F(Menus, ASeparatorCannotBeChosenNorAnItemThatIsOff) {
    openMenu("Simulation");
    ASSERT_TRUE(item("Cancel Simulation"));
    EXPECT_FALSE(item("Cancel Simulation")->isEnabled());
    user->click(frame(item("Cancel Simulation")).center());
    EXPECT_TRUE(calls.empty());
}

TEST_F(Menus, KeysOfTheCommands) {
    EXPECT_EQ(press(Qt::Key_R, Qt::ControlModifier), Calls{"Ostrella.runSimulationRequested"});
    EXPECT_EQ(press(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier).front(),
        "Ostrella.runDemoRequested");
    ASSERT_TRUE(waitUntil([this] { return !app.simulation.phase().isActive(); }));
    EXPECT_EQ(press(Qt::Key_Q, Qt::ControlModifier), Calls{"quit"});
    EXPECT_EQ(press(Qt::Key_F1, {}), Calls{"help"});
}

TEST_F(Menus, KeysOfTheViewsInBothForms) {
    EXPECT_TRUE(press(Qt::Key_1, Qt::ControlModifier).empty());
    placeModel();
    settle();
    const std::vector<std::pair<Qt::Key, std::string>> views{
        {Qt::Key_1, "iso"}, {Qt::Key_2, "front"}, {Qt::Key_3, "side"}, {Qt::Key_4, "top"}};
    for (const auto& [key, view] : views) {
        const Calls expected{"Ostrella.viewPresetRequested " + view};
        EXPECT_EQ(press(key, Qt::ControlModifier), expected);
        EXPECT_EQ(press(key, Qt::ControlModifier | Qt::AltModifier), expected);
    }
    EXPECT_EQ(app.renderSettings.viewPreset(), ViewPreset::top);
    EXPECT_EQ(press(Qt::Key_0, Qt::ControlModifier), Calls{"Ostrella.fitToViewRequested"});
    EXPECT_EQ(press(Qt::Key_0, Qt::ControlModifier | Qt::AltModifier),
        Calls{"Ostrella.fitToViewRequested"});
    press(Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(app.renderSettings.orientMode());
    press(Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(app.renderSettings.orientMode());
}

TEST_F(Menus, KeysWorkWhileAFieldHasTheKeyboard) {
    placeModel();
    settle();
    enter("Velocity");
    EXPECT_EQ(press(Qt::Key_2, Qt::ControlModifier), Calls{"Ostrella.viewPresetRequested front"});
    EXPECT_EQ(textOf("Velocity"), "50.0");
}

TEST_F(Menus, EditReachesTheFieldThatHadTheKeyboard) {
    user->click(frame(field("Velocity")).center());
    openMenu("Edit");
    user->click(frame(item("Select All")).center());
    settle();
    EXPECT_EQ(field("Velocity")->property("selectedText").toString(), QStringLiteral("50.0"));
}

TEST_F(Menus, TheSecondPressOfRunAndOfCancelDoesNothing) {
    const auto run = app.notifications.observe(Notifications::runSimulationRequested,
        [this](const std::any&) { Probe::setPhase(app.simulation, RunPhase::meshing()); });
    const auto cancel = app.notifications.observe(Notifications::cancelSimulationRequested,
        [this](const std::any&) { Probe::setPhase(app.simulation, RunPhase::cancelled()); });
    user->type(Qt::Key_R, Qt::ControlModifier);
    user->type(Qt::Key_R, Qt::ControlModifier);
    user->type(Qt::Key_Period, Qt::ControlModifier);
    user->type(Qt::Key_Period, Qt::ControlModifier);
    EXPECT_EQ(
        calls, (Calls{"Ostrella.runSimulationRequested", "Ostrella.cancelSimulationRequested"}));
}

TEST_F(Menus, ADoublePressOfTheRunButtonLeavesNothingHalfDone) {
    placeModel();
    settle();
    user->doubleClick(middleOf(q("Run Simulation"), QAccessible::Button));
    ASSERT_TRUE(waitUntil([this] { return !app.simulation.phase().isActive(); }));
    settle();
    EXPECT_TRUE(accessible(q("Run Simulation"), QAccessible::Button));
    EXPECT_FALSE(accessible(q("Cancel simulation"), QAccessible::Button));
}

} // namespace
} // namespace ostrella::test
