#include "Views/Controls/Symbol.h"

#include "Views/Controls/SymbolPainter.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace ostrella {

Symbol::Symbol(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setImplicitSize(size_, size_);
}

void Symbol::setName(const QString& name) {
    if (name_ == name)
        return;
    name_ = name;
    redraw();
    Q_EMIT nameChanged();
}

void Symbol::setSize(qreal size) {
    if (size_ == size)
        return;
    size_ = size;
    setImplicitSize(size, size);
    redraw();
    Q_EMIT sizeChanged();
}

void Symbol::setColor(const QColor& color) {
    if (color_ == color)
        return;
    color_ = color;
    redraw();
    Q_EMIT colorChanged();
}

void Symbol::redraw() {
    stale_ = true;
    update();
}

void Symbol::itemChange(ItemChange change, const ItemChangeData& value) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        redraw();
    QQuickItem::itemChange(change, value);
}

QSGNode* Symbol::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGImageNode*>(old);
    const qreal ratio = window()->effectiveDevicePixelRatio();
    if (stale_ || node == nullptr) {
        const QImage picture =
            SymbolPainter::picture(name_, static_cast<int>(std::lround(size_ * ratio)), color_);
        if (picture.isNull()) {
            delete node;
            return nullptr;
        }
        if (node == nullptr) {
            node = window()->createImageNode();
            node->setOwnsTexture(true);
            // The picture has the screen's own pixels: none must be mixed with its neighbour.
            node->setFiltering(QSGTexture::Nearest);
        }
        node->setTexture(
            window()->createTextureFromImage(picture, QQuickWindow::TextureCanUseAtlas));
        stale_ = false;
    }
    const qreal side = node->texture()->textureSize().width() / ratio;
    node->setRect((width() - side) / 2, (height() - side) / 2, side, side);
    return node;
}

} // namespace ostrella
