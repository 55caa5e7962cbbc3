#pragma once

#include "Views/Panel/LogStyle.h"

#include <QPointF>
#include <QString>
#include <QTextLayout>

#include <memory>
#include <string>

class QPainter;

namespace ostrella {

/// One line of the log, laid out for a width: its tag and its time in columns, and its text, which
/// wraps and is never cut. Positions count the UTF-16 units of its plain text.
class LogRow {
public:
    /// A part of the plain text; empty if `from` is not below `to`.
    struct Span {
        qsizetype from = 0;
        qsizetype to = 0;
        /// Goes on in the next row.
        bool goesOn = false;

        bool empty() const { return from >= to && !goesOn; }
    };

    LogRow(const LogStore::Line& line, const LogStyle& style, qreal width);
    LogRow(const LogRow&) = delete;
    LogRow& operator=(const LogRow&) = delete;

    /// Tag, time and text with a blank between them, as a row is read and copied.
    static std::string plainText(const LogStore::Line& line);

    qreal height() const { return height_; }
    QString plainText() const;
    qsizetype length() const { return plainText().size(); }

    /// Draws the row with its top left corner at `origin`.
    void draw(QPainter& painter, QPointF origin, Span selected) const;
    /// The position before the letter whose left half, or behind the one whose right half, lies at
    /// `point`, from the row's top left corner.
    qsizetype positionAt(QPointF point) const;
    /// The word at a position; the letter where there is none.
    Span wordAt(qsizetype position) const;

private:
    qsizetype timeStart() const { return tag_.size() + 1; }
    qsizetype textStart() const { return timeStart() + time_.size() + 1; }
    qreal textLeft() const { return style_.sideMargin + style_.tagWidth + style_.timeWidth; }
    qreal leftOf(qsizetype position, const QTextLine& line) const;
    void drawSelection(QPainter& painter, QPointF origin, Span selected) const;

    const LogStyle& style_;
    LogStore::Level level_;
    qreal width_;
    qreal letter_;
    QString tag_;
    QString time_;
    QTextLayout text_;
    qreal height_ = 0;
};

} // namespace ostrella
