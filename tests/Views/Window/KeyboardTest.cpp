#include "WholeWindow.h"

#include <algorithm>
#include <set>

namespace ostrella::test {
namespace {

class Keyboard : public WholeWindow {
protected:
    /// What has the keyboard after each press of Tab, until it comes round.
    std::vector<QQuickItem*> tabOrder() {
        std::vector<QQuickItem*> stops;
        for (int i = 0; i < 120; ++i) {
            user->type(Qt::Key_Tab);
            QQuickItem* stop = focus();
            if (!stop || (!stops.empty() && stop == stops.front())) {
                break;
            }
            stops.push_back(stop);
        }
        return stops;
    }
    static std::vector<std::string> names(const std::vector<QQuickItem*>& items) {
        std::vector<std::string> names;
        for (const QQuickItem* item : items) {
            names.push_back(spoken(item));
        }
        return names;
    }
    bool hasRing(const QQuickItem* item) const {
        const auto shown = shownItems();
        return std::any_of(shown.begin(), shown.end(), [item](const QQuickItem* ring) {
            return isA(ring, "FocusRing") && (item == ring || item->isAncestorOf(ring));
        });
    }
    /// Each control that can be used is a stop of the keyboard.
    void expectAllReached() {
        const auto stops = tabOrder();
        const std::set<QQuickItem*> reached(stops.begin(), stops.end());
        EXPECT_EQ(reached.size(), stops.size());
        for (QQuickItem* item : focusable()) {
            if (isA(item, "QQuickMenuBarItem") || item->inherits("QQuickMenuBarItem")) {
                continue; // by Alt and its letter
            }
            if (isA(item->parentItem()->parentItem(), "BrandSegmentedControl")) {
                continue; // by the arrow keys, from the segment that is a stop
            }
            EXPECT_TRUE(reached.contains(item))
                << spoken(item) << ", " << item->metaObject()->className();
        }
    }
};

TEST_F(Keyboard, ReachesEverythingOfTheEmptyWindow) {
    expectAllReached();
}

TEST_F(Keyboard, ReachesEverythingWithAllCardsUp) {
    showAllCards();
    expectAllReached();
}

TEST_F(Keyboard, ReachesTheWayToTheLog) {
    placeModel();
    Probe::setPhase(app.simulation, RunPhase::failed("Solver", "It broke."));
    settle();
    expectAllReached();
}

TEST_F(Keyboard, GoesFromTheSidebarOverTheToolbarToViewportAndPanel) {
    placeModel();
    settle();
    const auto order = names(tabOrder());
    const auto place = [&order](const char* name) {
        return std::find(order.begin(), order.end(), name) - order.begin();
    };
    const std::vector<const char*> expected{"Load STL…", "Velocity", "Run Simulation", "Open STL",
        "Grid", "Hide log panel", "Help", "Geometry", "Iso view", "Save image", "Log", "err"};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_LT(place(expected[i]), static_cast<std::ptrdiff_t>(order.size())) << expected[i];
        if (i > 0) {
            EXPECT_LT(place(expected[i - 1]), place(expected[i]))
                << expected[i - 1] << " before " << expected[i];
        }
    }
    if (HasFailure()) {
        for (const std::string& name : order) {
            ADD_FAILURE() << name;
        }
    }
}

TEST_F(Keyboard, ShowsWhereItIs) {
    showAllCards();
    for (QQuickItem* stop : tabOrder()) {
        stop->forceActiveFocus(Qt::TabFocusReason);
        turn();
        const bool ownRing = stop->property("showsFocus").toBool();
        EXPECT_TRUE(hasRing(stop) || ownRing)
            << spoken(stop) << ", " << stop->metaObject()->className();
    }
}

TEST_F(Keyboard, ReturnTakesTheFieldsTextFirstAndThenEndsOrienting) {
    placeModel();
    settle();
    app.renderSettings.setOrientMode(true);
    settle();
    enter("Velocity");
    type("63");
    user->type(Qt::Key_Return);
    EXPECT_EQ(app.parameters.velocity(), 63);
    EXPECT_TRUE(app.renderSettings.orientMode());
    user->type(Qt::Key_Return);
    EXPECT_FALSE(app.renderSettings.orientMode());
}

TEST_F(Keyboard, EscapePutsTheFieldBackFirstAndThenEndsOrienting) {
    placeModel();
    settle();
    app.renderSettings.setOrientMode(true);
    settle();
    const double before = app.parameters.velocity();
    enter("Velocity");
    type("63");
    user->type(Qt::Key_Escape);
    EXPECT_EQ(app.parameters.velocity(), before);
    EXPECT_TRUE(app.renderSettings.orientMode());
    user->type(Qt::Key_Escape);
    EXPECT_FALSE(app.renderSettings.orientMode());
}

} // namespace
} // namespace ostrella::test
