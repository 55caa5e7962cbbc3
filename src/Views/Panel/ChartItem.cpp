#include "Views/Panel/ChartItem.h"

#include "Views/Controls/Theme.h"

#include <QQuickWindow>
#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ostrella {

namespace {

constexpr float lineWidth = 1.5F;
constexpr float dotDiameter = 4.5F;
/// Room on the right for iterations to come, as a part of the width.
constexpr qreal roomAhead = 0.06;

StrokeMesh::Color premultiplied(const QColor& color) {
    const auto byte = [&color](float component) {
        return static_cast<std::uint8_t>(std::lround(255 * component * color.alphaF()));
    };
    return {byte(color.redF()), byte(color.greenF()), byte(color.blueF()), byte(1)};
}

} // namespace

ChartItem::ChartItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setClip(true);
    mesh_.emplace(1.0F);
    connect(&Theme::shared(), &Theme::changed, this, &ChartItem::redraw);
}

ChartItem::~ChartItem() {
    if (chart_) {
        chart_->setColumns(0);
    }
}

void ChartItem::setChart(ChartModel* chart) {
    if (chart == chart_) {
        return;
    }
    if (chart_) {
        chart_->disconnect(this);
        chart_->setColumns(0);
    }
    chart_ = chart;
    if (chart) {
        connect(chart, &ChartModel::linesChanged, this, &ChartItem::redraw);
    }
    tellColumns();
    redraw();
    Q_EMIT chartChanged();
}

QRectF ChartItem::plot() const {
    const qreal ahead = std::round(width() * roomAhead);
    return {margin(), margin(), std::max(1.0, width() - 2 * margin() - ahead),
        std::max(1.0, height() - 2 * margin())};
}

qreal ChartItem::pixelsPerPoint() const {
    return window() ? window()->effectiveDevicePixelRatio() : 1;
}

void ChartItem::tellColumns() {
    if (chart_) {
        const bool isSeen = isVisible() && width() > 0 && height() > 0 && window();
        chart_->setColumns(
            isSeen ? static_cast<std::size_t>(std::ceil(plot().width() * pixelsPerPoint())) : 0);
    }
}

void ChartItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) {
        Q_EMIT plotChanged();
        tellColumns();
        redraw();
    }
}

void ChartItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange ||
        change == ItemDevicePixelRatioHasChanged) {
        tellColumns();
        redraw();
    }
}

void ChartItem::redraw() {
    isStale_ = true;
    polish();
    update();
}

void ChartItem::updatePolish() {
    if (isStale_) {
        mesh_.emplace(static_cast<float>(1 / pixelsPerPoint()));
        if (chart_) {
            addHairlines();
            addLines();
        }
    }
}

void ChartItem::addHairlines() {
    const qreal scale = pixelsPerPoint();
    const ChartAxis& axis = chart_->values();
    const auto line = static_cast<float>(Theme::shared().hairline(scale));
    for (const double tick : axis.ticks) {
        const qreal at =
            plot().bottom() - (tick - axis.from) / (axis.to - axis.from) * plot().height();
        const auto top = static_cast<float>(std::floor(at * scale) / scale);
        mesh_->box({0, top}, {static_cast<float>(width()), top + line},
            premultiplied(Theme::shared().borderSubtle()));
    }
}

void ChartItem::addLines() {
    const ChartAxis& x = chart_->iterations();
    const ChartAxis& y = chart_->values();
    const QRectF area = plot();
    const double xScale = area.width() / (x.to - x.from);
    const double yScale = area.height() / (y.to - y.from);
    // Far outside is as good as anywhere outside.
    const double most = area.bottom() + area.height();
    std::vector<StrokeMesh::Point> path;
    const auto& lines = chart_->lines();
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        path.clear();
        for (const ChartPoint& point : line->points) {
            const double down = area.bottom() - (point.value - y.from) * yScale;
            path.push_back({static_cast<float>(area.left() + (point.iteration - x.from) * xScale),
                static_cast<float>(std::clamp(down, -area.height(), most))});
        }
        const StrokeMesh::Color color = premultiplied(line->color);
        mesh_->line(path, lineWidth, color);
        if (!path.empty()) {
            mesh_->dot(path.back(), dotDiameter, color);
        }
    }
}

QSGNode* ChartItem::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGGeometryNode*>(old);
    if (mesh_->indices().empty()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = new QSGGeometryNode;
        node->setGeometry(new QSGGeometry(
            QSGGeometry::defaultAttributes_ColoredPoint2D(), 0, 0, QSGGeometry::UnsignedIntType));
        node->geometry()->setDrawingMode(QSGGeometry::DrawTriangles);
        node->setMaterial(new QSGVertexColorMaterial);
        node->setFlags(QSGNode::OwnsGeometry | QSGNode::OwnsMaterial);
        isStale_ = true;
    }
    if (std::exchange(isStale_, false)) {
        static_assert(sizeof(StrokeMesh::Vertex) == sizeof(QSGGeometry::ColoredPoint2D));
        const auto& vertices = mesh_->vertices();
        const auto& indices = mesh_->indices();
        QSGGeometry& geometry = *node->geometry();
        geometry.allocate(static_cast<int>(vertices.size()), static_cast<int>(indices.size()));
        std::memcpy(
            geometry.vertexData(), vertices.data(), vertices.size() * sizeof(StrokeMesh::Vertex));
        std::memcpy(geometry.indexData(), indices.data(), indices.size() * sizeof(std::uint32_t));
        node->markDirty(QSGNode::DirtyGeometry);
    }
    return node;
}

} // namespace ostrella
