// The letters that open menus, as the desktop marks them.

#include "WholeWindow.h"

#include <map>
#include <set>

namespace ostrella::test {
namespace {

class MenuLetters : public WholeWindow {
protected:
    /// What the menu bar shows.
    std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (const QQuickItem* item : shownItems()) {
            if (item->inherits("QQuickMenuBarItem")) {
                titles.push_back(item->property("contentItem")
                                     .value<QQuickItem*>()
                                     ->property("text")
                                     .toString()
                                     .toStdString());
            }
        }
        return titles;
    }
    /// The title of the one open menu, by its first item.
    std::string firstItem() const {
        for (const QQuickItem* item : shownItems()) {
            if (isA(item, "BrandMenuItem")) {
                return item->property("text").toString().toStdString();
            }
        }
        return {};
    }
};

using Titles = std::vector<std::string>;

TEST_F(MenuLetters, AreMarkedWhileAltIsHeld) {
    const Titles plain{"File", "Edit", "View", "Samples", "Simulation", "Window", "Help"};
    EXPECT_EQ(titles(), plain);
    user->hold(Qt::AltModifier);
    EXPECT_EQ(titles(), (Titles{"<u>F</u>ile", "<u>E</u>dit", "<u>V</u>iew", "<u>S</u>amples",
                            "Si<u>m</u>ulation", "<u>W</u>indow", "<u>H</u>elp"}));
    user->letGo(Qt::AltModifier);
    EXPECT_EQ(titles(), plain);
}

TEST_F(MenuLetters, MoveNothingWhenTheyAreMarked) {
    const auto widths = [this] {
        std::vector<qreal> all;
        for (const QQuickItem* item : shownItems()) {
            if (item->inherits("QQuickMenuBarItem")) {
                all.push_back(item->width());
            }
        }
        return all;
    };
    const auto before = widths();
    user->hold(Qt::AltModifier);
    settle();
    EXPECT_EQ(widths(), before);
}

TEST_F(MenuLetters, AreNotReadOut) {
    user->hold(Qt::AltModifier);
    EXPECT_TRUE(accessible(q("Simulation")));
    EXPECT_FALSE(accessible(q("Si<u>m</u>ulation")));
}

TEST_F(MenuLetters, OpenEachItsOwnMenu) {
    const std::map<Qt::Key, std::string> menus{{Qt::Key_F, "Open STL…"}, {Qt::Key_E, "Undo"},
        {Qt::Key_V, "Iso View"}, {Qt::Key_S, "Sphere"}, {Qt::Key_M, "Run Simulation"},
        {Qt::Key_W, "Minimize"}, {Qt::Key_H, "Ostrella Help"}};
    for (const auto& [key, first] : menus) {
        user->type(key, Qt::AltModifier);
        settle();
        EXPECT_EQ(firstItem(), first);
        user->type(Qt::Key_Escape);
        settle();
        EXPECT_EQ(firstItem(), "");
    }
}

} // namespace
} // namespace ostrella::test
