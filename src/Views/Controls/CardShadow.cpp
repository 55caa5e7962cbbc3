#include "Views/Controls/CardShadow.h"

#include "Brand/Brand.h"

#include <QCache>
#include <QPainter>
#include <QQuickWindow>
#include <QSGNinePatchNode>

#include <algorithm>
#include <cmath>
#include <vector>

namespace ostrella {

namespace {

/// A shadow as style sheets give it: a blur of twice the deviation, lowered by an offset.
struct Layer {
    qreal offset;
    qreal blur;
    float opacity;
};

constexpr Layer soft{8, 24, Brand::floatingShadow.alpha};
constexpr Layer tight{1, 3, 0.30F};

/// Beyond this from an edge a shadow is as strong as it gets, in points.
constexpr qreal settled = 32;

std::vector<float> gaussian(qreal deviation) {
    const int half = std::max(1, static_cast<int>(std::ceil(3 * deviation)));
    std::vector<float> weights;
    float sum = 0;
    for (int i = -half; i <= half; ++i) {
        weights.push_back(static_cast<float>(std::exp(-i * i / (2 * deviation * deviation))));
        sum += weights.back();
    }
    for (float& weight : weights)
        weight /= sum;
    return weights;
}

/// One direction of a blur: `count` values that lie `stride` apart.
void blurLine(float* first, int count, int stride, const std::vector<float>& weights,
    std::vector<float>& line) {
    const int half = static_cast<int>(weights.size()) / 2;
    line.resize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        line[static_cast<size_t>(i)] = first[i * stride];
    for (int i = 0; i < count; ++i) {
        float sum = 0;
        for (int k = std::max(-half, -i); k <= std::min(half, count - 1 - i); ++k)
            sum += weights[static_cast<size_t>(k + half)] * line[static_cast<size_t>(i + k)];
        first[i * stride] = sum;
    }
}

/// The blurred cover of the card, 0 to 1, by rows.
std::vector<float> cover(QSize size, const QRectF& card, qreal radius, qreal deviation) {
    QImage mask(size, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(card, radius, radius);
    painter.end();
    const int width = size.width();
    const int height = size.height();
    std::vector<float> values(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        std::transform(mask.constScanLine(y), mask.constScanLine(y) + width,
            values.begin() + static_cast<ptrdiff_t>(y) * width,
            [](uchar byte) { return static_cast<float>(byte) / 255.0F; });
    }
    const std::vector<float> weights = gaussian(deviation);
    std::vector<float> line;
    for (int y = 0; y < height; ++y)
        blurLine(values.data() + static_cast<ptrdiff_t>(y) * width, width, 1, weights, line);
    for (int x = 0; x < width; ++x)
        blurLine(values.data() + x, height, width, weights, line);
    return values;
}

/// The least size of a card whose shadow can be stretched from a shared picture.
qreal shared(qreal radius) {
    return 2 * (radius + settled) + 1;
}

QImage cached(QSizeF card, qreal radius, qreal ratio) {
    static QCache<QString, QImage> drawn(8 * 1024 * 1024); // bytes
    const QString key =
        QStringLiteral("%1|%2|%3|%4").arg(card.width()).arg(card.height()).arg(radius).arg(ratio);
    if (const QImage* kept = drawn.object(key))
        return *kept;
    QImage picture = CardShadow::picture(card, radius, ratio);
    drawn.insert(key, new QImage(picture), picture.sizeInBytes());
    return picture;
}

} // namespace

CardShadow::CardShadow(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void CardShadow::setRadius(qreal radius) {
    if (radius_ == radius)
        return;
    radius_ = radius;
    update();
    Q_EMIT radiusChanged();
}

QImage CardShadow::picture(QSizeF card, qreal radius, qreal ratio) {
    const QSize size(static_cast<int>(std::ceil((card.width() + 2 * reach) * ratio)),
        static_cast<int>(std::ceil((card.height() + 2 * reach) * ratio)));
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    std::vector<float> clear(
        static_cast<size_t>(size.width()) * static_cast<size_t>(size.height()), 1.0F);
    for (const Layer& layer : {soft, tight}) {
        const QRectF lowered(reach * ratio, (reach + layer.offset) * ratio, card.width() * ratio,
            card.height() * ratio);
        const std::vector<float> values =
            cover(size, lowered, radius * ratio, layer.blur * ratio / 2);
        for (size_t i = 0; i < clear.size(); ++i)
            clear[i] *= 1 - layer.opacity * values[i];
    }
    const float* left = clear.data();
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = qRgba(0, 0, 0, static_cast<int>(std::lround((1 - *left++) * 255)));
    }
    return picture;
}

void CardShadow::itemChange(ItemChange change, const ItemChangeData& value) {
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        update();
    QQuickItem::itemChange(change, value);
}

void CardShadow::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    update();
}

QSGNode* CardShadow::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGNinePatchNode*>(old);
    if (width() <= 0 || height() <= 0) {
        delete node;
        return nullptr;
    }
    if (node == nullptr)
        node = window()->createNinePatchNode();
    const qreal ratio = window()->effectiveDevicePixelRatio();
    const qreal least = shared(radius_);
    const QSizeF card(std::min(width(), least), std::min(height(), least));
    node->setTexture(window()->createTextureFromImage(cached(card, radius_, ratio)));
    node->setDevicePixelRatio(ratio);
    node->setBounds(QRectF(-reach, -reach, width() + 2 * reach, height() + 2 * reach));
    const qreal across = reach + std::min(radius_ + settled, card.width() / 2);
    const qreal down = reach + std::min(radius_ + settled, card.height() / 2);
    node->setPadding(across, down, across, down);
    node->update();
    return node;
}

} // namespace ostrella
