#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace ostrella {

/// Where a list of rows of unlike heights stands in its view, for any number of rows: the place is
/// the row at the view's bottom edge and how much of it is seen, so that heights are asked for in
/// the neighbourhood of what is visible only. Lengths are in points, y downwards from the view's
/// top.
class LogScroll {
public:
    /// A row that is at least partly in view.
    struct Row {
        std::size_t row = 0;
        double top = 0;
        double height = 0;
    };
    using HeightOf = std::function<double(std::size_t row)>;

    /// `heightOf` gives a row's height, above 0; `padding` is the room before the first row and
    /// behind the last.
    LogScroll(HeightOf heightOf, double padding);

    std::size_t count() const { return count_; }
    /// Rows are added at the end, or there are others altogether; the row at the bottom edge stays
    /// where it is as far as it can.
    void setCount(std::size_t count);
    /// The bottom edge stays with its row.
    void setViewHeight(double height);
    void setPadding(double padding);
    /// Heights have changed: asks for them again. A row seen to its end stays so.
    void remeasure();

    void toStart();
    void toEnd();
    /// Brings the end of `row` to the bottom edge.
    void toRow(std::size_t row);
    /// Moves the view by `distance` towards the end, or towards the start if it is negative.
    void moveBy(double distance);

    /// What is in view, from the top.
    const std::vector<Row>& visible() const { return visible_; }
    /// The row at the bottom edge, or the last one above it.
    std::optional<std::size_t> bottomRow() const;
    /// The row at `y`; the first or the last in view where there is none.
    std::optional<Row> rowAt(double y) const;

    /// For a scroll bar, counted in rows as nobody knows the height of all: the part of the rows
    /// that is in view, and where it begins, each from 0 to 1.
    double barSize() const;
    double barPosition() const;
    /// Moves to where the bar would begin at `position`; the ends are exact.
    void setBarPosition(double position);

private:
    bool isLast(std::size_t row) const { return row + 1 == count_; }
    double roomBelow(std::size_t row) const { return isLast(row) ? padding_ : 0; }
    void place();
    void bindToEnd();
    void bindToStart();
    void stepToBottomEdge();
    void collect();
    double rowsAbove() const;
    double rowsBelow() const;

    HeightOf heightOf_;
    double padding_ = 0;
    double viewHeight_ = 0;
    std::size_t count_ = 0;
    /// The row at the bottom edge, and the distance from its top down to that edge.
    std::size_t bottom_ = 0;
    double seen_ = 0;
    std::vector<Row> visible_;
};

} // namespace ostrella
