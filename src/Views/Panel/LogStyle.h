#pragma once

#include "Brand/Brand.h"
#include "Models/LogStore.h"

#include <QColor>
#include <QFont>

namespace ostrella {

/// How a row of the log looks: its columns, its type and its colours. Lengths are in points.
struct LogStyle {
    QFont font;
    QFont tagFont;
    /// From the view's edges to the rows, sideways and before the first and behind the last.
    qreal sideMargin = 16;
    qreal endMargin = 8;
    /// The columns of the level's tag and of the time; the text takes what remains.
    qreal tagWidth = 62;
    qreal timeWidth = 74;
    /// From one line of a row to its next, and what a row is higher than its lines.
    qreal linePitch = 16;
    qreal rowPadding = 3;
    /// From a line's top down to its baseline.
    qreal baseline = 12;

    bool operator==(const LogStyle&) const = default;

    /// By the theme of the moment.
    static LogStyle current();

    static const Brand::Color& tagColor(LogStore::Level level);
    static const Brand::Color& textColor(LogStore::Level level);
};

} // namespace ostrella
