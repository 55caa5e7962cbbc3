#pragma once

#include "Models/LogStore.h"
#include "Views/Format/LogFilter.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ostrella {

/// The log's lines that a filter lets through, without a copy of any: all lines are the log's own,
/// others cost a number each. What is appended is taken in from time to time, at most once a
/// frame, at a cost that does not depend on what is there already.
class LogLines final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel's model")
    Q_PROPERTY(qsizetype count READ count NOTIFY changed)

public:
    /// The shortest time between two notifications of new lines, in milliseconds.
    static constexpr int frame = 16;

    explicit LogLines(const LogStore& log, QObject* parent = nullptr);

    LogFilter filter() const { return filter_; }
    /// Chooses among all lines anew, and takes in what is new.
    void setFilter(LogFilter filter);

    /// The lines taken in that the filter lets through.
    qsizetype count() const { return static_cast<qsizetype>(size()); }
    std::size_t size() const { return filter_ == LogFilter::all ? levels_.size() : chosen_.size(); }
    bool empty() const { return size() == 0; }
    const LogStore::Line& operator[](std::size_t row) const { return log_.lines()[number(row)]; }
    /// The place of a row's line in the whole log, which names it for good: lines stay.
    std::size_t number(std::size_t row) const;
    /// The row of the line with that place, or how many rows come before where it would be.
    std::size_t rowAtOrAfter(std::size_t number) const;
    const LogStore::Line& line(std::size_t number) const { return log_.lines()[number]; }

    /// Takes in what has been appended, without waiting for the frame.
    void takeIn();

Q_SIGNALS:
    /// There are more lines, or others.
    void changed();

private:
    void schedule();
    void takeLevels();
    void choose(std::size_t from);

    const LogStore& log_;
    LogFilter filter_ = LogFilter::all;
    /// The levels of the lines that have been taken in, side by side, so that another filter need
    /// not go through the lines themselves.
    std::vector<LogStore::Level> levels_;
    /// The places of those that the filter lets through, unless it is all.
    std::vector<std::uint32_t> chosen_;
    QTimer timer_;
    QElapsedTimer sinceLast_;
};

} // namespace ostrella
