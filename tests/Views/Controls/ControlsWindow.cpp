#include "Views/Controls/ControlsWindow.h"

#include "support/Wait.h"

#include <QQmlComponent>
#include <QWheelEvent>

namespace ostrella {

void useControlsModule();

namespace test {

ControlsWindow::ControlsWindow() {
    useControlsModule();
    theme.setDark(true);
    theme.setTextScale(1);
    theme.setReducedMotion(true);
    engine->addImportPath(QStringLiteral(":/qt/qml"));
    window->resize(600, 400);
    window->setColor(theme.surfaceBase());
}

ControlsWindow::~ControlsWindow() {
    delete root;
    theme.setDark(true);
    theme.setTextScale(1);
    theme.setReducedMotion(false);
}

void ControlsWindow::show(const QByteArray& qml) {
    window->setColor(theme.surfaceBase());
    QQmlComponent component(engine.get());
    component.setData(
        "import QtQuick\nimport Ostrella.Controls\nItem {\nanchors.fill: parent\n" + qml + "\n}",
        QUrl(QStringLiteral("test.qml")));
    root = qobject_cast<QQuickItem*>(component.create());
    ASSERT_TRUE(root) << component.errorString().toStdString();
    root->setParentItem(window->contentItem());
    root->setSize(window->contentItem()->size());
    window->show();
    window->requestActivate();
    ASSERT_TRUE(waitUntil([&] { return window->isExposed() && window->isActive(); }));
    moveTo(QPoint(599, 399));
}

QQuickItem* ControlsWindow::item(const char* name) const {
    auto* found = root->findChild<QQuickItem*>(QString::fromLatin1(name));
    if (found == nullptr)
        ADD_FAILURE() << "There is no " << name;
    return found;
}

QVariant ControlsWindow::property(const char* name, const char* property) const {
    return item(name)->property(property);
}

QPoint ControlsWindow::middle(const char* name) const {
    const QQuickItem* found = item(name);
    return found->mapToScene({found->width() / 2, found->height() / 2}).toPoint();
}

bool ControlsWindow::hasKeyboard(const char* name) const {
    const QQuickItem* active = window->activeFocusItem();
    const QQuickItem* wanted = item(name);
    return active == wanted || (active != nullptr && wanted->isAncestorOf(active));
}

void ControlsWindow::moveTo(QPoint place) {
    QTest::mouseMove(window.get(), place);
    QCoreApplication::processEvents();
}

void ControlsWindow::click(const char* name) {
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, middle(name));
}

void ControlsWindow::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window.get(), key, modifiers);
}

void ControlsWindow::type(const char* text) {
    for (const char letter : std::string_view(text))
        QTest::keyClick(window.get(), letter);
}

void ControlsWindow::turnWheel(const char* name) {
    const QPointF place = middle(name);
    QWheelEvent event(place, window->mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window.get(), &event);
}

QColor ControlsWindow::colorAt(const char* name, QPointF place) {
    const QImage picture = window->grabWindow();
    const qreal ratio = window->effectiveDevicePixelRatio();
    const QPointF at = item(name)->mapToScene(place) * ratio;
    return picture.pixelColor(static_cast<int>(at.x()), static_cast<int>(at.y()));
}

void expectColor(const QColor& drawn, const QColor& expected) {
    const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
    EXPECT_TRUE(near(drawn.red(), expected.red()) && near(drawn.green(), expected.green()) &&
                near(drawn.blue(), expected.blue()))
        << "drawn " << drawn.name().toStdString() << ", expected " << expected.name().toStdString();
}

} // namespace test

} // namespace ostrella
