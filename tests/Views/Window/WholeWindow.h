#pragma once

#include "Views/Chrome/WindowModel.h"
#include "Views/Controls/Theme.h"
#include "support/RealInput.h"
#include "support/ViewBench.h"

#include <QAccessible>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ostrella::test {

/// The main window at its least size over shared objects without tools, under a user's hands.
class WholeWindow : public testing::Test, protected ViewBench {
protected:
    WholeWindow();
    ~WholeWindow() override;

    /// Everything that has been asked for is laid out and drawn.
    void settle();
    /// A result whose surface is coloured and whose streamlines are on show.
    void showResult();
    /// A model, a result and orient mode: as many cards as there can be at once.
    void showAllCards();

    /// The one that is on the screen and has this name; null for none.
    QAccessibleInterface* accessible(const QString& name) const;
    QAccessibleInterface* accessible(const QString& name, QAccessible::Role role) const;
    /// All that can have the keyboard now.
    std::vector<QQuickItem*> focusable() const;
    /// Name and role as they are read out.
    static std::string spoken(const QObject* object);
    QPointF middleOf(const QString& name, QAccessible::Role role) const;
    void click(const QString& name, QAccessible::Role role = QAccessible::Button);

    QQuickItem* field(const char* label) const;
    /// Gives the keyboard to a number field and selects its text.
    void enter(const char* label);
    void type(const std::string& text);
    std::string textOf(const char* label) const;

    QQuickItem* focus() const { return window->activeFocusItem(); }
    /// All items of the window, from the back to the front, that are to be seen.
    std::vector<QQuickItem*> shownItems() const;
    /// Whether the item's type is or derives from this QML type.
    static bool isA(const QObject* object, const char* type);
    static QRectF frame(const QQuickItem* item);

    MemoryPreferences preferences;
    std::vector<std::string> calls;
    std::unique_ptr<WindowModel> model;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;
    std::unique_ptr<RealInput> user;
};

inline QString q(const char* text) {
    return QString::fromUtf8(text);
}

} // namespace ostrella::test
