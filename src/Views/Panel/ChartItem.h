#pragma once

#include "Views/Panel/ChartModel.h"
#include "Views/Panel/StrokeMesh.h"

#include <QPointer>
#include <QQuickItem>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace ostrella {

/// The lines of a chart over its horizontal hairlines; the first series lies on top, and a dot
/// marks the newest point of each.
class ChartItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrella::ChartModel* chart READ chart WRITE setChart NOTIFY chartChanged)
    /// How far the plot lies within the item's edges, in points.
    Q_PROPERTY(qreal margin READ margin CONSTANT)
    /// Where the axes' ends lie, in points from the item's top left corner.
    Q_PROPERTY(QRectF plot READ plot NOTIFY plotChanged)

public:
    explicit ChartItem(QQuickItem* parent = nullptr);
    ~ChartItem() override;

    ChartModel* chart() const { return chart_; }
    void setChart(ChartModel* chart);
    qreal margin() const { return 3; }
    QRectF plot() const;

    /// What is drawn, bottom first: for tests.
    const StrokeMesh& mesh() const { return *mesh_; }

Q_SIGNALS:
    void chartChanged();
    void plotChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    qreal pixelsPerPoint() const;
    void tellColumns();
    void redraw();
    void addHairlines();
    void addLines();

    QPointer<ChartModel> chart_;
    std::optional<StrokeMesh> mesh_;
    bool isStale_ = true;
};

} // namespace ostrella
