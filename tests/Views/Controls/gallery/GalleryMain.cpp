#include "Views/Controls/Theme.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QHoverEvent>
#include <QPainter>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

namespace ostrella {

void useControlsModule();

namespace {

/// The sheet with each item named "focus" as it looks while it has the keyboard.
QImage picture(QQuickView& view) {
    const qreal ratio = view.effectiveDevicePixelRatio();
    const auto items = view.rootObject()->findChildren<QQuickItem*>();
    QImage sheet = view.grabWindow();
    for (QQuickItem* item : items) {
        const QString name = item->objectName();
        if (name != QStringLiteral("focus") && name != QStringLiteral("invalid"))
            continue;
        item->forceActiveFocus(Qt::TabFocusReason);
        if (name == QStringLiteral("invalid"))
            item->setProperty("text", QStringLiteral("5oo"));
        const QRectF around = item->mapRectToScene(QRectF({}, item->size())).adjusted(-5, -5, 5, 5);
        const QRect pixels = QRectF(around.topLeft() * ratio, around.size() * ratio).toRect();
        const QImage focused = view.grabWindow();
        QPainter(&sheet).drawImage(
            QRectF(pixels.topLeft() / ratio, QSizeF(pixels.size()) / ratio), focused, pixels);
    }
    return sheet;
}

} // namespace

} // namespace ostrella

/// Shows the sheet of controls; with --picture it saves it and ends.
int main(int argc, char** argv) {
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    QGuiApplication application(argc, argv);
    ostrella::useControlsModule();

    QCommandLineParser options;
    options.addOptions({{QStringLiteral("light"), QStringLiteral("In the light appearance")},
        {QStringLiteral("text-scale"), QStringLiteral("Size of text"), QStringLiteral("factor"),
            QStringLiteral("1")},
        {QStringLiteral("sheet"), QStringLiteral("Which sheet"), QStringLiteral("name"),
            QStringLiteral("Gallery")},
        {QStringLiteral("picture"), QStringLiteral("Save the sheet and end"),
            QStringLiteral("file")}});
    options.addHelpOption();
    options.process(application);

    ostrella::Theme& theme = ostrella::Theme::shared();
    theme.setDark(!options.isSet(QStringLiteral("light")));
    theme.setTextScale(options.value(QStringLiteral("text-scale")).toDouble());
    const QString file = options.value(QStringLiteral("picture"));
    theme.setReducedMotion(!file.isEmpty());

    QQuickView view;
    view.engine()->addImportPath(QStringLiteral(":/qt/qml"));
    view.setSource(
        QUrl(QStringLiteral("qrc:/gallery/%1.qml").arg(options.value(QStringLiteral("sheet")))));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.show();
    for (QQuickItem* item : view.rootObject()->findChildren<QQuickItem*>()) {
        if (item->objectName() == QStringLiteral("hover")) {
            QHoverEvent enter(QEvent::HoverEnter, {2, 2}, {2, 2}, {-1, -1});
            QCoreApplication::sendEvent(item, &enter);
        }
    }
    if (!file.isEmpty()) {
        int frames = 0;
        QObject::connect(&view, &QQuickWindow::frameSwapped, &view, [&] {
            if (++frames < 3) {
                view.update();
            } else if (frames == 3) {
                QMetaObject::invokeMethod(
                    &view,
                    [&] { QCoreApplication::exit(ostrella::picture(view).save(file) ? 0 : 1); },
                    Qt::QueuedConnection);
            }
        });
    }
    return QGuiApplication::exec();
}
