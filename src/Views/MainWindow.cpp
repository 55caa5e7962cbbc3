#include "Views/MainWindow.h"

#include "Brand/ViewportStyle.h"
#include "Ostrella/OstrellaApp.h"
#include "Views/Viewport/ViewportItem.h"

#include <QCloseEvent>
#include <QColor>

namespace ostrella {

namespace {

constexpr QSize firstSize(1200, 800);

} // namespace

MainWindow::MainWindow(OstrellaApp& app) : viewport_(new ViewportItem(contentItem())) {
    setTitle(QStringLiteral("Ostrella"));
    const Vec3& ground = ViewportStyle::background;
    setColor(QColor::fromRgbF(ground.r, ground.g, ground.b));
    viewport_->setModel(app.parameters, app.renderSettings);
    viewport_->setFocus(true);
    const auto fill = [this] { viewport_->setSize(contentItem()->size()); };
    connect(contentItem(), &QQuickItem::widthChanged, viewport_, fill);
    connect(contentItem(), &QQuickItem::heightChanged, viewport_, fill);
    resize(firstSize);
}

bool MainWindow::event(QEvent* event) {
    const bool wasHandled = QQuickWindow::event(event);
    if (event->type() == QEvent::Close && event->isAccepted())
        Q_EMIT closed();
    return wasHandled;
}

} // namespace ostrella
