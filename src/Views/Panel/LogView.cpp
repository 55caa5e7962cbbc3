#include "Views/Panel/LogView.h"

#include "Views/Controls/Theme.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace ostrella {

LogView::LogView(QQuickItem* parent)
    : QQuickPaintedItem(parent),
      style_(LogStyle::current()),
      scroll_([this](std::size_t row) { return rowOf(row).height(); }, style_.endMargin) {
    setOpaquePainting(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
    setCursor(Qt::IBeamCursor);
    connect(&Theme::shared(), &Theme::changed, this, &LogView::applyTheme);
    connect(&dragTimer_, &QTimer::timeout, this, &LogView::keepScrolling);
    dragTimer_.setInterval(LogLines::frame);
    QAccessible::installActivationObserver(this);
    applyTheme();
}

LogView::~LogView() {
    QAccessible::removeActivationObserver(this);
}

void LogView::accessibilityActiveChanged(bool active) {
    isReadOut_ = active;
    if (active && isLaidOut()) {
        placed();
    }
}

void LogView::setLines(LogLines* lines) {
    if (lines == lines_) {
        return;
    }
    if (lines_) {
        lines_->disconnect(this);
    }
    lines_ = lines;
    rows_.clear();
    selection_.clear();
    copy_.reset();
    if (lines) {
        filter_ = lines->filter();
        copy_ = std::make_unique<LogCopy>(*lines);
        connect(copy_.get(), &LogCopy::finished, this,
            [](const QString& text) { QGuiApplication::clipboard()->setText(text); });
        connect(lines, &LogLines::changed, this, &LogView::takeLines);
    }
    takeLines();
    Q_EMIT linesChanged();
    Q_EMIT selectionChanged();
}

void LogView::applyTheme() {
    style_ = LogStyle::current();
    setFillColor(Theme::shared().surfaceSunken());
    rows_.clear();
    scroll_.setPadding(style_.endMargin);
    layOut();
    update();
}

LogView::LineNumber LogView::lastNumber(std::size_t before) const {
    const std::size_t count = lines_ ? lines_->size() : 0;
    return before < count ? LineNumber(lines_->number(count - 1 - before)) : std::nullopt;
}

void LogView::takeLines() {
    if (!lines_) {
        return;
    }
    const bool wasFollowing = following_.isFollowing();
    const bool isFilterOther = std::exchange(filter_, lines_->filter()) != lines_->filter();
    following_.linesChanged(lastNumber(), lastNumber(1));
    if (isFilterOther) {
        selection_.clear();
        Q_EMIT selectionChanged();
        if (wasFollowing && !lines_->empty()) {
            following_.scrolledTo(lastNumber());
        }
    }
    layOut();
    tellFollowing(wasFollowing);
}

void LogView::layOut() {
    if (!isLaidOut()) {
        return;
    }
    scroll_.setCount(lines_->size());
    scroll_.setViewHeight(height());
    if (isAtEnd()) {
        scroll_.toEnd();
    } else {
        scroll_.remeasure();
    }
    placed();
}

LogRow& LogView::rowOf(std::size_t row) {
    const std::size_t number = lines_->number(row);
    std::unique_ptr<LogRow>& known = rows_[number];
    if (!known) {
        known = std::make_unique<LogRow>(lines_->line(number), style_, width());
    }
    return *known;
}

void LogView::placed() {
    // What has gone out of view is laid out again should it come back.
    const auto& visible = scroll_.visible();
    if (!visible.empty() && rows_.size() > 4 * visible.size() + 64) {
        const std::size_t first = lines_->number(visible.front().row);
        const std::size_t last = lines_->number(visible.back().row);
        std::erase_if(rows_,
            [first, last](const auto& entry) { return entry.first < first || entry.first > last; });
    }
    if (isReadOut_) {
        std::vector<LogVisibleRows::Row> rows;
        for (const LogScroll::Row& row : visible) {
            rows.push_back({rowOf(row.row).plainText(), row.top, row.height});
        }
        visibleRows_.show(std::move(rows));
    }
    Q_EMIT moved();
    update();
}

void LogView::paint(QPainter* painter) {
    const qreal scale = window() ? window()->effectiveDevicePixelRatio() : 1;
    for (const LogScroll::Row& row : scroll_.visible()) {
        const std::size_t number = lines_->number(row.row);
        const auto laidOut = rows_.find(number);
        if (laidOut == rows_.end()) {
            continue;
        }
        const LogRow& text = *laidOut->second;
        const qreal top = std::round(row.top * scale) / scale;
        const LogRow::Span selected =
            selection_.empty() ? LogRow::Span{} : selection_.within(number, text.length());
        text.draw(*painter, {0, top}, selected);
    }
}

void LogView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickPaintedItem::geometryChange(now, before);
    if (now.width() != before.width()) {
        rows_.clear();
    }
    if (now.size() != before.size() && isLaidOut()) {
        layOut();
        userMoved();
    }
}

void LogView::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged && data.boolValue) {
        layOut();
    }
}

void LogView::setFollowing(bool following) {
    const bool before = following_.isFollowing();
    following_.setFollowing(following);
    if (before != following_.isFollowing() && following) {
        layOut();
    }
    tellFollowing(before);
}

void LogView::tellFollowing(bool before) {
    if (before != following_.isFollowing()) {
        Q_EMIT isFollowingChanged();
    }
}

void LogView::dragBarTo(qreal position) {
    scroll_.setBarPosition(position);
    placed();
    userMoved();
}

void LogView::moveBy(qreal distance) {
    if (isLaidOut()) {
        scroll_.moveBy(distance);
        placed();
        userMoved();
    }
}

void LogView::userMoved() {
    const std::optional<std::size_t> bottom = scroll_.bottomRow();
    if (!bottom || *bottom >= lines_->size()) {
        return;
    }
    const bool before = following_.isFollowing();
    following_.scrolledTo(lines_->number(*bottom));
    if (following_.isFollowing() && !before) {
        layOut();
    }
    tellFollowing(before);
}

bool LogView::event(QEvent* event) {
    // The window's own shortcuts for these act on what has the keyboard, which is this.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::SelectAll)) {
            key->accept();
            return true;
        }
    }
    return QQuickPaintedItem::event(event);
}

} // namespace ostrella
