#include "Views/Panel/LogView.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <algorithm>
#include <limits>

namespace ostrella {

namespace {

/// A notch of a wheel is 120 units of angle, and moves by so many lines.
constexpr qreal unitsOfANotch = 120;
constexpr qreal linesOfANotch = 3;
/// How much of the distance beyond an edge a drag scrolls by in a frame.
constexpr qreal dragShare = 0.25;

} // namespace

void LogView::focusInEvent(QFocusEvent* event) {
    QQuickPaintedItem::focusInEvent(event);
    isFocusFromKeys_ = event->reason() == Qt::TabFocusReason ||
                       event->reason() == Qt::BacktabFocusReason ||
                       event->reason() == Qt::ShortcutFocusReason;
    Q_EMIT showsFocusChanged();
}

void LogView::focusOutEvent(QFocusEvent* event) {
    QQuickPaintedItem::focusOutEvent(event);
    Q_EMIT showsFocusChanged();
}

void LogView::keyPressEvent(QKeyEvent* event) {
    const qreal page = std::max(style_.linePitch, height() - style_.linePitch);
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event->key() == Qt::Key_Up) {
        moveBy(-style_.linePitch - style_.rowPadding);
    } else if (event->key() == Qt::Key_Down) {
        moveBy(style_.linePitch + style_.rowPadding);
    } else if (event->key() == Qt::Key_PageUp) {
        moveBy(-page);
    } else if (event->key() == Qt::Key_PageDown) {
        moveBy(page);
    } else if (event->key() == Qt::Key_Home) {
        dragBarTo(0);
    } else if (event->key() == Qt::Key_End) {
        dragBarTo(1);
    } else if (event->key() == Qt::Key_Escape && hasSelection()) {
        selection_.clear();
        selectionMoved();
    } else {
        event->ignore();
    }
}

void LogView::wheelEvent(QWheelEvent* event) {
    const qreal pixels = event->pixelDelta().y();
    const qreal notches = event->angleDelta().y() / unitsOfANotch;
    moveBy(event->pixelDelta().isNull()
               ? -notches * linesOfANotch * (style_.linePitch + style_.rowPadding)
               : -pixels);
    event->accept();
}

LogPlace LogView::placeAt(QPointF point) {
    const auto row = scroll_.rowAt(point.y());
    if (!row) {
        return {};
    }
    const LogRow& text = rowOf(row->row);
    const std::size_t number = lines_->number(row->row);
    // Beyond the first and the last row lie the beginning and the end.
    if (point.y() < row->top) {
        return {number, 0};
    }
    if (point.y() >= row->top + row->height) {
        return {number, text.length()};
    }
    return {number, text.positionAt(point - QPointF(0, row->top))};
}

void LogView::mousePressEvent(QMouseEvent* event) {
    forceActiveFocus(Qt::MouseFocusReason);
    if (scroll_.visible().empty()) {
        return;
    }
    const LogPlace place = placeAt(event->position());
    const bool isThird =
        sinceDoubleClick_.isValid() &&
        sinceDoubleClick_.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval();
    sinceDoubleClick_.invalidate();
    if (isThird) {
        selection_.set({place.number, 0}, {place.number, std::numeric_limits<qsizetype>::max()});
    } else if (event->modifiers() & Qt::ShiftModifier) {
        selection_.extend(place);
        isDragging_ = true;
    } else {
        selection_.begin(place);
        isDragging_ = true;
    }
    setKeepMouseGrab(true);
    selectionMoved();
}

void LogView::mouseDoubleClickEvent(QMouseEvent* event) {
    const auto row = scroll_.rowAt(event->position().y());
    if (!row) {
        return;
    }
    const LogPlace place = placeAt(event->position());
    const LogRow::Span word = rowOf(row->row).wordAt(place.position);
    selection_.set({place.number, word.from}, {place.number, word.to});
    isDragging_ = false;
    sinceDoubleClick_.start();
    selectionMoved();
}

void LogView::mouseMoveEvent(QMouseEvent* event) {
    if (isDragging_) {
        dragTo(event->position());
        const bool isBeyond = pointer_.y() < 0 || pointer_.y() > height();
        if (!isBeyond) {
            dragTimer_.stop();
        } else if (!dragTimer_.isActive()) {
            dragTimer_.start();
        }
    }
}

void LogView::mouseReleaseEvent(QMouseEvent*) {
    isDragging_ = false;
    dragTimer_.stop();
    setKeepMouseGrab(false);
}

void LogView::mouseUngrabEvent() {
    isDragging_ = false;
    dragTimer_.stop();
}

void LogView::dragTo(QPointF point) {
    pointer_ = point;
    if (!scroll_.visible().empty()) {
        selection_.extend(placeAt({point.x(), std::clamp(point.y(), 0.0, height() - 1)}));
        selectionMoved();
    }
}

void LogView::keepScrolling() {
    const qreal beyond = pointer_.y() < 0 ? pointer_.y() : pointer_.y() - height();
    moveBy(beyond * dragShare);
    dragTo(pointer_);
}

void LogView::selectAll() {
    if (lines_ && !lines_->empty()) {
        selection_.set(
            {lines_->number(0), 0}, {*lastNumber(), std::numeric_limits<qsizetype>::max()});
        selectionMoved();
    }
}

void LogView::copy() {
    if (copy_) {
        copy_->start(selection_);
    }
}

void LogView::selectionMoved() {
    Q_EMIT selectionChanged();
    update();
}

} // namespace ostrella
