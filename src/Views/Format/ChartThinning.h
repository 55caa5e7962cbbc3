#pragma once

#include "Models/HistoryPoint.h"
#include "Views/Format/ChartTicks.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace ostrella {

/// A point of a line as it is drawn.
struct ChartPoint {
    double iteration = 0;
    double value = 0;

    bool operator==(const ChartPoint&) const = default;
};

/// One series of a chart, thinned so that what is drawn looks the same: of the iterations that
/// share a column of pixels, the first, the last, the least and the greatest value. A point costs
/// the same however many came before, and the memory depends on the width alone.
class ThinnedSeries {
public:
    /// `columns` is the width of the chart in device pixels. Values at or below `zero` are kept,
    /// but do not count for the range.
    explicit ThinnedSeries(
        std::size_t columns, double zero = -std::numeric_limits<double>::infinity());

    /// A value that is not finite is passed over.
    void append(std::int64_t iteration, double value);

    /// At most 8 points a column, ascending in iterations.
    std::vector<ChartPoint> points() const;

    /// Range of the values above zero.
    const std::optional<ChartRange>& range() const { return range_; }

    /// The same of the iterations from ChartTicks::settledIteration on.
    const std::optional<ChartRange>& settledRange() const { return settledRange_; }

    /// The value at the greatest iteration.
    const std::optional<ChartPoint>& newest() const { return newest_; }

private:
    /// The points of some consecutive iterations.
    struct Column {
        bool isEmpty = true;
        ChartPoint first;
        ChartPoint last;
        ChartPoint least;
        ChartPoint greatest;

        void include(const ChartPoint& point);
        void include(const Column& later);
    };

    void makeRoomFor(std::int64_t iteration);
    void coarsen();

    std::size_t mostColumns_;
    double zero_;
    /// Iterations a column, a power of 2, and the number of the first column in such widths.
    std::int64_t width_ = 1;
    std::int64_t firstColumn_ = 0;
    std::vector<Column> columns_;
    std::optional<ChartRange> range_;
    std::optional<ChartRange> settledRange_;
    std::optional<ChartPoint> newest_;
};

/// All series of a chart, kept up with a history that grows: only its new points are looked at.
class ThinnedHistory {
public:
    explicit ThinnedHistory(
        std::size_t columns, double zero = -std::numeric_limits<double>::infinity());

    /// Takes in what has been added to `points` since the last time; begins anew if it is the
    /// history of another run. Gives the number of points looked at.
    std::size_t update(const std::vector<HistoryPoint>& points);

    /// The series of a label; absent if it has no points.
    const ThinnedSeries* series(SeriesName label) const;

    /// Range of all series' values above zero.
    std::optional<ChartRange> range() const;

    /// The first and the last iteration of all series; absent without any point.
    std::optional<ChartRange> iterations() const { return iterations_; }

private:
    struct Named {
        SeriesName label;
        ThinnedSeries series;
    };

    void clear();

    std::size_t columns_;
    double zero_;
    std::vector<Named> series_;
    std::size_t taken_ = 0;
    std::optional<HistoryPoint> first_;
    std::optional<HistoryPoint> last_;
    std::optional<ChartRange> iterations_;
};

} // namespace ostrella
