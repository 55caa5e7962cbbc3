// The way of the keyboard through the whole window, stop by stop.

#include "WholeWindow.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using testing::ElementsAreArray;
using Names = std::vector<std::string>;

class TabOrder : public WholeWindow {
protected:
    /// The names of what has the keyboard after each press, from the one called `first` on until it
    /// comes round.
    Names walk(const char* first, Qt::KeyboardModifiers modifiers = {}) {
        Names names;
        for (int i = 0; i < 200; ++i) {
            user->type(Qt::Key_Tab, modifiers);
            const std::string name = focus() ? spoken(focus()) : "nothing";
            if (!names.empty() && name == names.front()) {
                return names;
            }
            if (!names.empty() || name == first) {
                names.push_back(name);
            }
        }
        return names;
    }
    static Names joined(std::initializer_list<Names> parts) {
        Names all;
        for (const Names& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }

    const Names sidebar{"Load STL…", "X rotation", "Y rotation", "Z rotation", "Orient…", "Regime",
        "Velocity", "Angle of attack", "Sideslip", "Density", "Turbulence model",
        "Rotation correction (SA-R)", "Transition (BCM)", "Run Simulation"};
    const Names toolbar{"Open STL", "Reset View", "Grid", "Wireframe", "Hide log panel", "Help"};
    const Names panel{"Log", "all", "info", "warn", "err", "su2", "Log"};
};

TEST_F(TabOrder, OfTheEmptyWindow) {
    const Names emptySidebar{"Load STL…", "Regime", "Velocity", "Angle of attack", "Sideslip",
        "Density", "Turbulence model", "Rotation correction (SA-R)", "Transition (BCM)"};
    const Names welcome{"Load sample Sphere", "Load sample Rounded Box", "Load sample Simple Wing",
        "Run the NACA0012 demo", "or Load your own STL…"};
    EXPECT_THAT(walk("Load STL…"),
        ElementsAreArray(joined({emptySidebar, toolbar, {"Viewport"}, welcome, panel})));
}

TEST_F(TabOrder, OfTheWindowWithAModel) {
    placeModel();
    settle();
    const Names cards{"Viewport", "Geometry", "Iso view", "Front view", "Side view", "Top view",
        "Fit to view", "Orient model", "Save image"};
    const Names expected = joined({sidebar, toolbar, cards, panel});
    EXPECT_THAT(walk("Load STL…"), ElementsAreArray(expected));
    Names back{expected.front()};
    back.insert(back.end(), expected.rbegin(), expected.rend() - 1);
    EXPECT_THAT(walk("Load STL…", Qt::ShiftModifier), ElementsAreArray(back)) << "and backwards";
}

} // namespace
} // namespace ostrella::test
