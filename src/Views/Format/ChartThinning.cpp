#include "Views/Format/ChartThinning.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrella {

namespace {

/// Beyond this an iteration is no longer exact as a double.
constexpr std::int64_t greatestIteration = std::int64_t{1} << 53;

std::int64_t floorDivided(std::int64_t value, std::int64_t by) {
    return value / by - (value % by < 0 ? 1 : 0);
}

bool isSame(const HistoryPoint& a, const HistoryPoint& b) {
    // Two values that are not a number are the same here.
    return a.label == b.label && a.iter == b.iter &&
           (a.value == b.value || (std::isnan(a.value) && std::isnan(b.value)));
}

} // namespace

void ThinnedSeries::Column::include(const ChartPoint& point) {
    if (isEmpty) {
        *this = {false, point, point, point, point};
        return;
    }
    first = point.iteration < first.iteration ? point : first;
    last = point.iteration >= last.iteration ? point : last;
    least = point.value < least.value ? point : least;
    greatest = point.value > greatest.value ? point : greatest;
}

void ThinnedSeries::Column::include(const Column& later) {
    if (later.isEmpty) {
        return;
    }
    for (const ChartPoint& point : {later.first, later.least, later.greatest, later.last}) {
        include(point);
    }
}

ThinnedSeries::ThinnedSeries(std::size_t columns, double zero)
    : mostColumns_(2 * std::max<std::size_t>(columns, 1)), zero_(zero) {}

void ThinnedSeries::append(std::int64_t iteration, double value) {
    if (!std::isfinite(value)) {
        return;
    }
    iteration = std::clamp(iteration, -greatestIteration, greatestIteration);
    makeRoomFor(iteration);
    const ChartPoint point{static_cast<double>(iteration), value};
    const std::int64_t column = floorDivided(iteration, width_) - firstColumn_;
    columns_[static_cast<std::size_t>(column)].include(point);
    if (!newest_ || point.iteration >= newest_->iteration) {
        newest_ = point;
    }
    if (value > zero_) {
        range_ = ChartTicks::joined(range_, ChartRange{value, value});
        if (iteration >= ChartTicks::settledIteration) {
            settledRange_ = ChartTicks::joined(settledRange_, ChartRange{value, value});
        }
    }
}

void ThinnedSeries::makeRoomFor(std::int64_t iteration) {
    if (columns_.empty()) {
        firstColumn_ = floorDivided(iteration, width_);
        columns_.resize(1);
        return;
    }
    while (true) {
        const std::int64_t column = floorDivided(iteration, width_);
        const std::int64_t end = firstColumn_ + static_cast<std::int64_t>(columns_.size());
        const std::int64_t first = std::min(firstColumn_, column);
        const std::int64_t needed = std::max(end, column + 1) - first;
        if (needed <= static_cast<std::int64_t>(mostColumns_)) {
            columns_.insert(
                columns_.begin(), static_cast<std::size_t>(firstColumn_ - first), Column());
            firstColumn_ = first;
            columns_.resize(static_cast<std::size_t>(needed));
            return;
        }
        coarsen();
    }
}

void ThinnedSeries::coarsen() {
    const std::int64_t first = floorDivided(firstColumn_, 2);
    const std::int64_t end = firstColumn_ + static_cast<std::int64_t>(columns_.size());
    std::vector<Column> merged(static_cast<std::size_t>(floorDivided(end - 1, 2) - first + 1));
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const std::int64_t number = firstColumn_ + static_cast<std::int64_t>(i);
        merged[static_cast<std::size_t>(floorDivided(number, 2) - first)].include(columns_[i]);
    }
    columns_ = std::move(merged);
    firstColumn_ = first;
    width_ *= 2;
}

std::vector<ChartPoint> ThinnedSeries::points() const {
    std::vector<ChartPoint> points;
    points.reserve(4 * columns_.size());
    for (const Column& column : columns_) {
        if (column.isEmpty) {
            continue;
        }
        points.push_back(column.first);
        std::array inner{column.least, column.greatest};
        if (inner[1].iteration < inner[0].iteration) {
            std::swap(inner[0], inner[1]);
        }
        for (const ChartPoint& point : {inner[0], inner[1], column.last}) {
            if (point != points.back()) {
                points.push_back(point);
            }
        }
    }
    return points;
}

ThinnedHistory::ThinnedHistory(std::size_t columns, double zero) : columns_(columns), zero_(zero) {}

void ThinnedHistory::clear() {
    series_.clear();
    taken_ = 0;
    first_.reset();
    last_.reset();
    iterations_.reset();
}

std::size_t ThinnedHistory::update(const std::vector<HistoryPoint>& points) {
    const bool isContinued = taken_ > 0 && points.size() >= taken_ &&
                             isSame(points.front(), *first_) && isSame(points[taken_ - 1], *last_);
    if (!isContinued) {
        clear();
    }
    const std::size_t begin = taken_;
    for (std::size_t i = begin; i < points.size(); ++i) {
        const HistoryPoint& point = points[i];
        // A dozen series at most: a plain list is searched faster than any map.
        auto named = std::find_if(series_.begin(), series_.end(),
            [&point](const Named& other) { return other.label == point.label; });
        if (named == series_.end()) {
            named = series_.insert(series_.end(), {point.label, ThinnedSeries(columns_, zero_)});
        }
        named->series.append(point.iter, point.value);
        const auto iteration = static_cast<double>(point.iter);
        iterations_ = ChartTicks::joined(iterations_, ChartRange{iteration, iteration});
    }
    taken_ = points.size();
    if (!points.empty()) {
        first_ = points.front();
        last_ = points.back();
    }
    return points.size() - begin;
}

const ThinnedSeries* ThinnedHistory::series(SeriesName label) const {
    const auto found = std::find_if(series_.begin(), series_.end(),
        [&label](const Named& other) { return other.label == label; });
    return found == series_.end() ? nullptr : &found->series;
}

std::optional<ChartRange> ThinnedHistory::range() const {
    std::optional<ChartRange> range;
    for (const Named& named : series_) {
        range = ChartTicks::joined(range, named.series.range());
    }
    return range;
}

} // namespace ostrella
