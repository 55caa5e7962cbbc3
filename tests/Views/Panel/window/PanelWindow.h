#pragma once

#include "../PanelBench.h"
#include "Views/Panel/ChartItem.h"
#include "Views/Panel/LogView.h"
#include "support/RealInput.h"

#include <QQuickView>

#include <memory>
#include <optional>
#include <string>

class QAccessibleInterface;

namespace ostrella::test {

/// The panel alone in a window of 680 × 228 points, under a user's hands.
class PanelWindow : public testing::Test, protected PanelBench {
protected:
    PanelWindow();
    ~PanelWindow() override;

    /// Lays the item out and draws it.
    void settle();
    /// The first item of a type, from the top; null if there is none.
    template <class Item>
    Item* find() const {
        return view->rootObject()->findChild<Item*>();
    }
    LogView& log() const { return *find<LogView>(); }
    /// Middle of the item whose accessible name this is, in points of the window.
    QPointF middleOf(const QString& name) const;
    /// Where a point of the log lies in the window.
    QPointF inLog(QPointF point) const { return log().mapToScene(point); }
    /// The text of the line at the bottom edge.
    std::string bottomText() const;
    bool isAtEnd() const;
    QAccessibleInterface* accessible(const QString& name) const;

    std::unique_ptr<QQuickView> view;
    std::unique_ptr<RealInput> user;
};

} // namespace ostrella::test
