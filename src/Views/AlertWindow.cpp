#include "Views/AlertWindow.h"

#include <QCloseEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>

#include <utility>

namespace ostrella {

namespace {

// Points.
constexpr int textWidth = 380;
constexpr int tallest = 100000;
constexpr int margin = 24;
constexpr int gap = 12;
constexpr QSize buttonSize(96, 32);
constexpr int cornerRadius = 6;

QFont strong() {
    QFont font = QGuiApplication::font();
    font.setBold(true);
    return font;
}

/// Room for a text that is broken into lines.
QRect roomFor(const QString& text, const QFont& font, int top) {
    if (text.isEmpty())
        return {margin, top, textWidth, 0};
    const QRect needed =
        QFontMetrics(font).boundingRect(QRect(0, 0, textWidth, tallest), Qt::TextWordWrap, text);
    return {margin, top, textWidth, needed.height()};
}

} // namespace

void AlertWindow::present(const std::string& message, const std::string& informativeText,
    std::function<void()> onClosed) {
    auto* window = new AlertWindow(message, informativeText, std::move(onClosed));
    const QSize size = window->layOut();
    window->setMinimumSize(size);
    window->setMaximumSize(size);
    window->resize(size);
    window->show();
    window->requestActivate();
}

AlertWindow::AlertWindow(
    const std::string& message, const std::string& informativeText, std::function<void()> onClosed)
    : message_(QString::fromStdString(message)),
      informativeText_(QString::fromStdString(informativeText)),
      onClosed_(std::move(onClosed)) {
    setFlags(Qt::Dialog);
    setModality(Qt::ApplicationModal);
    setTitle(QStringLiteral("Ostrella"));
}

QSize AlertWindow::layOut() {
    messageBox_ = roomFor(message_, strong(), margin);
    int bottom = messageBox_.top() + messageBox_.height();
    informativeBox_ = roomFor(informativeText_, QGuiApplication::font(), bottom + gap);
    if (!informativeText_.isEmpty())
        bottom = informativeBox_.top() + informativeBox_.height();
    button_ = {QPoint(margin + textWidth - buttonSize.width(), bottom + 2 * gap), buttonSize};
    return {textWidth + 2 * margin, button_.top() + button_.height() + margin};
}

bool AlertWindow::event(QEvent* event) {
    const bool wasHandled = QRasterWindow::event(event);
    if (event->type() == QEvent::Close && event->isAccepted()) {
        deleteLater();
        if (const auto onClosed = std::exchange(onClosed_, {}))
            onClosed();
    }
    return wasHandled;
}

void AlertWindow::paintEvent(QPaintEvent*) {
    const QPalette palette = QGuiApplication::palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRect(QPoint(), size()), palette.window());
    painter.setPen(palette.windowText().color());
    painter.setFont(strong());
    painter.drawText(messageBox_, Qt::TextWordWrap, message_);
    painter.setFont(QGuiApplication::font());
    painter.drawText(informativeBox_, Qt::TextWordWrap, informativeText_);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isButtonDown_ ? palette.highlight().color().darker(120) : palette.highlight());
    painter.drawRoundedRect(button_, cornerRadius, cornerRadius);
    painter.setPen(palette.highlightedText().color());
    painter.drawText(button_, Qt::AlignCenter, QStringLiteral("OK"));
}

void AlertWindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Escape:
        close();
        break;
    default:
        event->ignore();
    }
}

void AlertWindow::setButtonDown(bool isDown) {
    isButtonDown_ = isDown;
    update();
}

void AlertWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && button_.contains(event->position().toPoint()))
        setButtonDown(true);
}

void AlertWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isButtonDown_)
        return;
    setButtonDown(false);
    if (button_.contains(event->position().toPoint()))
        close();
}

} // namespace ostrella
