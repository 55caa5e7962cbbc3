#pragma once

#include "Views/Controls/Theme.h"

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>

namespace ostrella::test {

/// A window of 600 by 400 with controls in it, on the dark or the light ground.
class ControlsWindow : public testing::Test {
protected:
    ControlsWindow();
    ~ControlsWindow() override;

    /// Fills the window with what a piece of QML says and shows it, with the pointer in a corner.
    void show(const QByteArray& qml);

    /// The item of an objectName; a failed test where there is none.
    QQuickItem* item(const char* name) const;
    QVariant property(const char* name, const char* property) const;
    /// The middle of an item in the window.
    QPoint middle(const char* name) const;
    /// Whether the keyboard is with the item or within it.
    bool hasKeyboard(const char* name) const;

    void moveTo(QPoint place);
    void moveTo(const char* name) { moveTo(middle(name)); }
    void click(const char* name);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const char* text);
    /// Turns the wheel by a notch, down, over an item.
    void turnWheel(const char* name);

    /// The colour that is drawn at a place within an item, in points from its corner.
    QColor colorAt(const char* name, QPointF place);

    Theme& theme = Theme::shared();
    std::unique_ptr<QQmlEngine> engine = std::make_unique<QQmlEngine>();
    std::unique_ptr<QQuickWindow> window = std::make_unique<QQuickWindow>();
    QQuickItem* root = nullptr;
};

/// The colours differ by no more than a step or two of rounding.
void expectColor(const QColor& drawn, const QColor& expected);

} // namespace ostrella::test
