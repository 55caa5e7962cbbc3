#pragma once

#include "Models/LogStore.h"
#include "Update/UpdateController.h"
#include "Update/gate/ScriptedUpdater.h"
#include "Views/Controls/Theme.h"
#include "support/ManualTimers.h"
#include "support/RealInput.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ostrella::test {

/// A window beside the main one, alone on the screen and under a user's hands, with an updater that
/// does what the test says.
class SideBench : public testing::Test {
protected:
    SideBench();
    ~SideBench() override;

    /// Makes the window of a description with this model and shows it.
    void open(const char* description, QObject* model);
    /// Everything that was asked for is laid out and drawn.
    void settle();

    /// What is read out under this name in a role, and is to be seen; null for none.
    QAccessibleInterface* accessible(const char* name, QAccessible::Role role) const;
    QQuickItem* item(const char* name, QAccessible::Role role) const;
    QPointF middleOf(const char* name, QAccessible::Role role) const;
    void click(const char* name, QAccessible::Role role);
    /// A key that may close the window, after which nobody answers.
    static void keyToClose(
        QWindow& closing, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// What has the keyboard, as it is read out.
    std::string focus() const;
    /// Names of all that Tab comes to, in its order.
    std::vector<std::string> tabOrder();

    /// All items to be seen that are of a QML or C++ type.
    std::vector<QQuickItem*> items(const char* type) const;
    static std::vector<QQuickItem*> itemsOf(const QQuickWindow& window, const char* type);
    /// The item that shows this text; null for none.
    QQuickItem* shown(const char* text) const;
    static QRectF frame(const QQuickItem* item);
    /// Texts that are cut, or that lie outside of the window and of what can be scrolled into it.
    std::vector<std::string> cutTexts() const { return cutTexts(*window); }
    static std::vector<std::string> cutTexts(const QQuickWindow& window);
    QColor colorAt(QPointF place);

    ManualTimers timers;
    ScriptedUpdater* updater = nullptr;
    std::unique_ptr<UpdateController> updates;
    Theme& theme = Theme::shared();
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QQuickWindow> window;
    std::unique_ptr<RealInput> user;
};

/// The colours differ by no more than a step or two of rounding.
void expectNear(const QColor& drawn, const QColor& expected);

} // namespace ostrella::test
