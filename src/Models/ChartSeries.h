#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrella {

/// Small rules of presentation for the convergence series.
namespace ChartSeries {

/// Which coefficients a chart shows: "CL", "CD" and "Cm", those of them that occur, in this order;
/// all labels where none does, so that a chart with data is never empty.
std::vector<std::string> coefficientLabels(const std::vector<std::string>& labels);

/// A label as shown: the working variable of the turbulence model reads "rms[ν]" under each of the
/// solver's names for it.
std::string displayName(std::string_view label);

/// The newest values in one line, "CL=0.2500  CD=1.000e-05": the labels of `order` that have a
/// value.
std::string latestSummary(const std::vector<std::pair<std::string, double>>& latest,
    const std::vector<std::string>& order);

} // namespace ChartSeries

} // namespace ostrella
