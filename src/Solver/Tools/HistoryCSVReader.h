#pragma once

#include "Models/HistoryPoint.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// Reader of the solver's "history.csv", for a file that is being written while it is read.
namespace HistoryCSVReader {

/// Points are in the order of the rows, and within a row of the columns; labels in that of the
/// columns.
struct ParseResult {
    std::vector<HistoryPoint> residuals;
    std::vector<HistoryPoint> coefficients;
    std::vector<std::string> residualLabels;
    std::vector<std::string> coefficientLabels;

    bool operator==(const ParseResult&) const = default;
};

/// The series in a whole file. Columns "rms[X]" are residuals labelled X, taken as they stand (the
/// solver writes common logarithms); the ten force and moment columns are coefficients. One more,
/// "Cm", is the pitching moment, nose up: "CMy", and −"CMz" where `dimensions` is 2. A row without
/// a readable "Inner_Iter" is skipped, which drops a row caught half-written; a value that is no
/// finite number is left out alone. Never fails.
ParseResult parse(std::string_view text, std::optional<int> dimensions);

} // namespace HistoryCSVReader

} // namespace ostrella
