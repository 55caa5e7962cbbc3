#include "Models/ChartSeries.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace ostrella::ChartSeries {

namespace {

constexpr std::array<std::string_view, 3> preferredLabels{"CL", "CD", "Cm"};

/// The solver's names for the Spalart-Allmaras variable, in small letters.
constexpr std::array<std::string_view, 3> viscosityNames{"nu", "nu_tilde", "nutilde"};

std::string inSmallLetters(std::string_view text) {
    std::string result(text);
    for (char& letter : result) {
        if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return result;
}

std::string valueText(double value) {
    const double magnitude = std::abs(value);
    if (magnitude >= 100 || (value != 0 && magnitude < 0.0001)) {
        return fmt::format("{:.3e}", value);
    }
    return NumberFormatting::fixed(value, 4);
}

} // namespace

std::vector<std::string> coefficientLabels(const std::vector<std::string>& labels) {
    std::vector<std::string> result;
    for (const std::string_view label : preferredLabels) {
        if (std::find(labels.begin(), labels.end(), label) != labels.end()) {
            result.emplace_back(label);
        }
    }
    return result.empty() ? labels : result;
}

std::string displayName(std::string_view label) {
    constexpr std::string_view head = "rms[";
    if (label.size() > head.size() && label.starts_with(head) && label.ends_with(']')) {
        const auto inner =
            inSmallLetters(label.substr(head.size(), label.size() - head.size() - 1));
        if (std::find(viscosityNames.begin(), viscosityNames.end(), inner) !=
            viscosityNames.end()) {
            return "rms[ν]";
        }
    }
    return std::string(label);
}

std::string latestSummary(const std::vector<std::pair<std::string, double>>& latest,
    const std::vector<std::string>& order) {
    const std::map<std::string, double> values(latest.begin(), latest.end());
    std::string result;
    for (const std::string& label : order) {
        const auto found = values.find(label);
        if (found == values.end()) {
            continue;
        }
        if (!result.empty()) {
            result += "  ";
        }
        result += fmt::format("{}={}", label, valueText(found->second));
    }
    return result;
}

} // namespace ostrella::ChartSeries
