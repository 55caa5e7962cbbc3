#pragma once

#include <QQuickPaintedItem>
#include <QSvgRenderer>

namespace ostrella {

/// The application's icon in its own colours, square, drawn for the screen's own pixels.
class AppIcon : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit AppIcon(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

private:
    QSvgRenderer drawing_;
};

} // namespace ostrella
