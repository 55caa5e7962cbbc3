#pragma once

#include "Views/Controls/Theme.h"
#include "Views/Updates/UpdateWindow.h"
#include "Views/Updates/UpdateWindowModel.h"
#include "support/RealInput.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ostrella::test {

/// A main window, and the update window over sessions that a test tells.
class UpdateBench : public testing::Test {
protected:
    using Answer = UpdateFormat::Answer;
    using Stage = UpdateSession::Stage;

    using ToFront = std::function<void(QWindow& window)>;

    /// `toFront` brings the main window to the front at first.
    explicit UpdateBench(
        const ToFront& toFront = [](QWindow& window) { window.requestActivate(); });
    ~UpdateBench() override;

    /// Tells of a stage, and waits for the window where one is expected.
    void tell(Stage stage);
    /// The same as of a session that the user has asked for.
    void ask(Stage stage);
    QQuickWindow& window() const { return *shown->window(); }
    bool isOpen() const { return shown->window() && shown->window()->isVisible(); }
    /// Everything that has been asked for is laid out and drawn.
    void settle();

    /// What is to be seen and has this name; null for none.
    QQuickItem* find(const std::string& name, QAccessible::Role role = QAccessible::NoRole) const;
    /// A failed expectation where there is none.
    QQuickItem& item(const std::string& name, QAccessible::Role role = QAccessible::NoRole) const;
    /// Names of all that is to be seen and has the role, from the left to the right.
    std::vector<std::string> names(QAccessible::Role role) const;
    static std::string spoken(const QObject* object);
    std::string focus() const;
    static QRectF frame(const QQuickItem& item);
    void click(const std::string& name);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    /// A key that is to close the window; a failed expectation if it does not.
    void closeBy(Qt::Key key, Qt::KeyboardModifiers modifiers = {});

    UpdateSession session;
    std::vector<Answer> answers;
    std::vector<std::string> opened;
    std::unique_ptr<UpdateWindowModel> model;
    QQmlEngine engine;
    QQuickWindow mainWindow;
    std::unique_ptr<UpdateWindow> shown;
    std::unique_ptr<RealInput> user;
};

} // namespace ostrella::test
