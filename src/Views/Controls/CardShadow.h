#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QSize>

namespace ostrella {

/// The shadow of a card as large as this item, drawn around it: a wide soft one below, and a tight
/// one that keeps the edge crisp. One picture serves all cards of a radius that are large enough
/// for it; the middle of it is stretched.
class CardShadow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)

public:
    explicit CardShadow(QQuickItem* parent = nullptr);

    /// Of the card's corners, in points.
    qreal radius() const { return radius_; }
    void setRadius(qreal radius);

    /// How far the shadow reaches beyond each edge, in points.
    static constexpr int reach = 36;

    /// The shadow of a card of this size in points, with the card itself in the middle of it and
    /// `reach` around, premultiplied.
    static QImage picture(QSizeF card, qreal radius, qreal devicePixelRatio);

Q_SIGNALS:
    void radiusChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    qreal radius_ = 12;
};

} // namespace ostrella
