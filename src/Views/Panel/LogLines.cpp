#include "Views/Panel/LogLines.h"

#include "Models/Precondition.h"

#include <algorithm>

namespace ostrella {

LogLines::LogLines(const LogStore& log, QObject* parent) : QObject(parent), log_(log) {
    takeLevels();
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
    takeLevels();
    chosen_ = {};
    choose(0);
    Q_EMIT changed();
}

std::size_t LogLines::number(std::size_t row) const {
    precondition(row < size(), "a row of the log's lines that there is not");
    return filter_ == LogFilter::all ? row : chosen_[row];
}

std::size_t LogLines::rowAtOrAfter(std::size_t number) const {
    if (filter_ == LogFilter::all) {
        return std::min(number, levels_.size());
    }
    const auto found = std::lower_bound(chosen_.begin(), chosen_.end(), number);
    return static_cast<std::size_t>(found - chosen_.begin());
}

void LogLines::takeIn() {
    timer_.stop();
    const std::size_t before = size();
    const std::size_t known = levels_.size();
    takeLevels();
    choose(known);
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

void LogLines::takeLevels() {
    const auto& lines = log_.lines();
    for (auto line = lines.begin() + static_cast<std::ptrdiff_t>(levels_.size());
         line != lines.end(); ++line) {
        levels_.push_back(line->level);
    }
}

void LogLines::choose(std::size_t from) {
    if (filter_ == LogFilter::all) {
        return;
    }
    for (std::size_t number = from; number < levels_.size(); ++number) {
        if (passes(filter_, levels_[number])) {
            chosen_.push_back(static_cast<std::uint32_t>(number));
        }
    }
}

} // namespace ostrella
