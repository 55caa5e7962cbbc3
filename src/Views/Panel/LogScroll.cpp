#include "Views/Panel/LogScroll.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrella {

LogScroll::LogScroll(HeightOf heightOf, double padding)
    : heightOf_(std::move(heightOf)), padding_(padding) {}

void LogScroll::setCount(std::size_t count) {
    count_ = count;
    place();
}

void LogScroll::setViewHeight(double height) {
    viewHeight_ = height;
    place();
}

void LogScroll::setPadding(double padding) {
    padding_ = padding;
    place();
}

void LogScroll::remeasure() {
    if (count_ > 0 && !visible_.empty()) {
        const Row& last = visible_.back();
        const bool wasSeenToItsEnd = last.top + last.height <= viewHeight_;
        const double below = viewHeight_ - last.top - last.height;
        bottom_ = std::min(last.row, count_ - 1);
        seen_ = wasSeenToItsEnd ? heightOf_(bottom_) + below
                                : std::min(viewHeight_ - last.top, heightOf_(bottom_));
    }
    place();
}

void LogScroll::toStart() {
    bottom_ = 0;
    seen_ = viewHeight_ - padding_;
    place();
}

void LogScroll::toEnd() {
    if (count_ > 0) {
        toRow(count_ - 1);
    }
}

void LogScroll::toRow(std::size_t row) {
    if (row >= count_) {
        return;
    }
    bottom_ = row;
    seen_ = heightOf_(row) + roomBelow(row);
    place();
}

void LogScroll::moveBy(double distance) {
    seen_ += distance;
    place();
}

std::optional<std::size_t> LogScroll::bottomRow() const {
    return count_ == 0 ? std::nullopt : std::optional(bottom_);
}

std::optional<LogScroll::Row> LogScroll::rowAt(double y) const {
    if (visible_.empty()) {
        return std::nullopt;
    }
    const auto found = std::find_if(
        visible_.begin(), visible_.end(), [y](const Row& row) { return y < row.top + row.height; });
    return found == visible_.end() ? visible_.back() : *found;
}

double LogScroll::rowsAbove() const {
    const Row& first = visible_.front();
    return static_cast<double>(first.row) + std::max(0.0, -first.top / first.height);
}

double LogScroll::rowsBelow() const {
    const Row& last = visible_.back();
    const double hidden = last.top + last.height - viewHeight_;
    return static_cast<double>(count_ - 1 - last.row) + std::max(0.0, hidden / last.height);
}

double LogScroll::barSize() const {
    if (visible_.empty()) {
        return 1;
    }
    const auto all = static_cast<double>(count_);
    return (all - rowsAbove() - rowsBelow()) / all;
}

double LogScroll::barPosition() const {
    if (visible_.empty()) {
        return 0;
    }
    const double hidden = rowsAbove() + rowsBelow();
    return hidden > 0 ? rowsAbove() / hidden * (1 - barSize()) : 0;
}

void LogScroll::setBarPosition(double position) {
    if (visible_.empty()) {
        return;
    }
    const double most = 1 - barSize();
    if (position <= 0 || most <= 0) {
        toStart();
    } else if (position >= most) {
        toEnd();
    } else {
        const double above = position / most * (rowsAbove() + rowsBelow());
        bottom_ = std::min(static_cast<std::size_t>(above), count_ - 1);
        const double hidden = above - static_cast<double>(bottom_);
        seen_ = viewHeight_ + hidden * heightOf_(bottom_);
        place();
    }
}

void LogScroll::place() {
    if (count_ == 0 || viewHeight_ <= 0) {
        visible_.clear();
        return;
    }
    bottom_ = std::min(bottom_, count_ - 1);
    stepToBottomEdge();
    bindToEnd();
    bindToStart();
    collect();
}

void LogScroll::stepToBottomEdge() {
    for (double height = heightOf_(bottom_); seen_ > height && !isLast(bottom_);
         height = heightOf_(bottom_)) {
        seen_ -= height;
        ++bottom_;
    }
    while (seen_ <= 0 && bottom_ > 0) {
        --bottom_;
        seen_ += heightOf_(bottom_);
    }
}

void LogScroll::bindToEnd() {
    if (isLast(bottom_)) {
        seen_ = std::min(seen_, heightOf_(bottom_) + padding_);
    }
}

void LogScroll::bindToStart() {
    double top = viewHeight_ - seen_;
    std::size_t row = bottom_;
    while (top > 0 && row > 0) {
        --row;
        top -= heightOf_(row);
    }
    if (row == 0 && top > padding_) {
        seen_ += top - padding_;
        stepToBottomEdge();
    }
}

void LogScroll::collect() {
    visible_.clear();
    double top = viewHeight_ - seen_;
    visible_.push_back({bottom_, top, heightOf_(bottom_)});
    for (std::size_t row = bottom_; top > 0 && row > 0;) {
        --row;
        const double height = heightOf_(row);
        top -= height;
        visible_.push_back({row, top, height});
    }
    std::reverse(visible_.begin(), visible_.end());
}

} // namespace ostrella
