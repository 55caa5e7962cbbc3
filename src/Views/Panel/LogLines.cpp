#include "Views/Panel/LogLines.h"

#include "Models/Precondition.h"

#include <algorithm>

namespace ostrella {

LogLines::LogLines(const LogStore& log, QObject* parent)
    : QObject(parent), log_(log), taken_(log.lines().size()) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &LogLines::takeIn);
    connect(&log, &LogStore::linesChanged, this, &LogLines::schedule);
}

void LogLines::setFilter(LogFilter filter) {
    if (filter == filter_) {
        takeIn();
        return;
    }
    filter_ = filter;
    taken_ = 0;
    chosen_ = {};
    choose();
    Q_EMIT changed();
}

std::size_t LogLines::number(std::size_t row) const {
    precondition(row < size(), "a row of the log's lines that there is not");
    return filter_ == LogFilter::all ? row : chosen_[row];
}

std::size_t LogLines::rowAtOrAfter(std::size_t number) const {
    if (filter_ == LogFilter::all) {
        return std::min(number, taken_);
    }
    const auto found = std::lower_bound(chosen_.begin(), chosen_.end(), number);
    return static_cast<std::size_t>(found - chosen_.begin());
}

void LogLines::takeIn() {
    timer_.stop();
    const std::size_t before = size();
    choose();
    if (size() != before) {
        sinceLast_.start();
        Q_EMIT changed();
    }
}

void LogLines::schedule() {
    if (!timer_.isActive()) {
        const qint64 since = sinceLast_.isValid() ? sinceLast_.elapsed() : frame;
        timer_.start(static_cast<int>(std::max<qint64>(0, frame - since)));
    }
}

void LogLines::choose() {
    const auto& lines = log_.lines();
    if (filter_ != LogFilter::all) {
        for (auto line = lines.begin() + static_cast<std::ptrdiff_t>(taken_); line != lines.end();
             ++line) {
            if (passes(filter_, line->level)) {
                chosen_.push_back(static_cast<std::uint32_t>(line - lines.begin()));
            }
        }
    }
    taken_ = lines.size();
}

} // namespace ostrella
