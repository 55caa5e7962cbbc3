#include "Views/About/AppIcon.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>

#include <cmath>

namespace ostrella {

AppIcon::AppIcon(QQuickItem* parent)
    : QQuickPaintedItem(parent), drawing_(QStringLiteral(":/app/app-icon.svg")) {
    setAntialiasing(true);
}

void AppIcon::paint(QPainter* painter) {
    const int side = static_cast<int>(std::lround(width() * window()->effectiveDevicePixelRatio()));
    if (side <= 0) {
        return;
    }
    // Drawn larger and brought down: the strokes' many short pieces leave no specks then.
    QImage larger(4 * side, 4 * side, QImage::Format_ARGB32_Premultiplied);
    larger.fill(Qt::transparent);
    QPainter pen(&larger);
    pen.setRenderHint(QPainter::Antialiasing);
    drawing_.render(&pen);
    pen.end();
    painter->drawImage(
        boundingRect(), larger.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace ostrella
