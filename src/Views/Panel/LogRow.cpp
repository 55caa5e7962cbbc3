#include "Views/Panel/LogRow.h"

#include "Models/LogFormatting.h"
#include "Views/Controls/Theme.h"
#include "Views/QStringOf.h"

#include <fmt/format.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace ostrella {

LogRow::LogRow(const LogStore::Line& line, const LogStyle& style, qreal width)
    : style_(style),
      level_(line.level),
      width_(width),
      letter_(QFontMetricsF(style.font).horizontalAdvance(QLatin1Char('0'))),
      tag_(qStringOf(LogFormatting::tag(line.level))),
      time_(qStringOf(LogFormatting::time(line.date))),
      text_(qStringOf(line.text), style.font) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(8 * letter_);
    option.setUseDesignMetrics(true);
    text_.setTextOption(option);
    text_.setCacheEnabled(true);

    const qreal room = std::max(letter_, width - textLeft() - style.sideMargin);
    qreal top = 0;
    text_.beginLayout();
    for (QTextLine part = text_.createLine(); part.isValid(); part = text_.createLine()) {
        part.setLineWidth(room);
        part.setPosition({0, top + style.baseline - part.ascent()});
        top += style.linePitch;
    }
    text_.endLayout();
    height_ = std::max(top, style.linePitch) + style.rowPadding;
}

std::string LogRow::plainText(const LogStore::Line& line) {
    return fmt::format(
        "{} {} {}", LogFormatting::tag(line.level), LogFormatting::time(line.date), line.text);
}

QString LogRow::plainText() const {
    return tag_ + QLatin1Char(' ') + time_ + QLatin1Char(' ') + text_.text();
}

void LogRow::draw(QPainter& painter, QPointF origin, Span selected) const {
    if (!selected.empty()) {
        drawSelection(painter, origin, selected);
    }
    const Theme& theme = Theme::shared();
    const QPointF top = origin + QPointF(0, style_.rowPadding / 2);
    const QPointF baseline = top + QPointF(style_.sideMargin, style_.baseline);
    painter.setFont(style_.tagFont);
    painter.setPen(theme.color(LogStyle::tagColor(level_)));
    painter.drawText(baseline, tag_);
    painter.setFont(style_.font);
    painter.setPen(theme.textTertiary());
    painter.drawText(baseline + QPointF(style_.tagWidth, 0), time_);
    painter.setPen(theme.color(LogStyle::textColor(level_)));
    text_.draw(&painter, top + QPointF(textLeft(), 0));
}

qreal LogRow::leftOf(qsizetype position, const QTextLine& line) const {
    if (position < timeStart()) {
        return style_.sideMargin + static_cast<qreal>(position) * letter_;
    }
    if (position < textStart()) {
        return style_.sideMargin + style_.tagWidth +
               static_cast<qreal>(position - timeStart()) * letter_;
    }
    return textLeft() + line.cursorToX(static_cast<int>(position - textStart()));
}

void LogRow::drawSelection(QPainter& painter, QPointF origin, Span selected) const {
    const QColor fill = Theme::shared().accentSubtle();
    for (int i = 0; i < text_.lineCount(); ++i) {
        const QTextLine line = text_.lineAt(i);
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == text_.lineCount();
        const qsizetype begin = isFirst ? 0 : textStart() + line.textStart();
        const qsizetype end = textStart() + line.textStart() + line.textLength();
        const qsizetype from = std::max(begin, selected.from);
        const qsizetype to = std::min(end, selected.to);
        const bool fillsLine = selected.to > end || (isLast && selected.goesOn);
        if (from > to || (from == to && !fillsLine)) {
            continue;
        }
        const qreal left = leftOf(from, line);
        const qreal right = fillsLine ? width_ : leftOf(to, line);
        const qreal top = isFirst ? 0 : style_.rowPadding / 2 + i * style_.linePitch;
        const qreal bottom = isLast ? height_ : style_.rowPadding / 2 + (i + 1) * style_.linePitch;
        painter.fillRect(
            QRectF(origin + QPointF(left, top), QSizeF(right - left, bottom - top)), fill);
    }
}

qsizetype LogRow::positionAt(QPointF point) const {
    const auto line = std::clamp(
        static_cast<int>(std::floor((point.y() - style_.rowPadding / 2) / style_.linePitch)), 0,
        std::max(0, text_.lineCount() - 1));
    const auto letters = [this, &point](qreal left, qsizetype most) {
        return std::clamp<qsizetype>(std::llround((point.x() - left) / letter_), 0, most);
    };
    if (line == 0 && point.x() < style_.sideMargin + style_.tagWidth) {
        return letters(style_.sideMargin, tag_.size());
    }
    if (line == 0 && point.x() < textLeft()) {
        return timeStart() + letters(style_.sideMargin + style_.tagWidth, time_.size());
    }
    if (text_.lineCount() == 0) {
        return textStart();
    }
    return textStart() + text_.lineAt(line).xToCursor(point.x() - textLeft());
}

LogRow::Span LogRow::wordAt(qsizetype position) const {
    const QString plain = plainText();
    const auto isPart = [&plain](qsizetype at) { return !plain.at(at).isSpace(); };
    qsizetype from = std::min(position, plain.size());
    qsizetype to = from;
    while (from > 0 && isPart(from - 1)) {
        --from;
    }
    while (to < plain.size() && isPart(to)) {
        ++to;
    }
    if (from == to && to < plain.size()) {
        ++to;
    }
    return {from, to, false};
}

} // namespace ostrella
