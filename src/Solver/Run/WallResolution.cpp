#include "Solver/Run/WallResolution.h"

#include "Solver/Flow/FlowScreen.h"

#include <fmt/format.h>

#include <string_view>

namespace ostrella {

namespace {

/// What a model wants of y⁺.
struct Thresholds {
    std::string_view label;
    float marginal;
    float tooCoarse;
};

std::optional<Thresholds> thresholds(TurbulenceModel model) {
    switch (model) {
    case TurbulenceModel::spalartAllmaras:
        return Thresholds{"y⁺ ≲ 5 (SA, low-Re)", 5, 30};
    case TurbulenceModel::sst:
        return Thresholds{"y⁺ ≲ 1 (k-ω SST)", 1, 10};
    case TurbulenceModel::laminar:
        return std::nullopt;
    }
    return std::nullopt;
}

std::optional<ScalarFieldStats> yPlusOf(const std::filesystem::path& url) {
    try {
        return FlowScreen::extractScalarStats(url, "Y_Plus");
    } catch (const std::exception&) {
        // The report changes nothing in a run and never fails it.
        return std::nullopt;
    }
}

} // namespace

std::vector<std::pair<std::string, LogStore::Level>> WallResolution::lines(
    const ScalarFieldStats& yPlus, TurbulenceModel model) {
    std::vector<std::pair<std::string, LogStore::Level>> result;
    result.emplace_back(
        fmt::format("y⁺ on body: min {:.2f} · mean {:.2f} · p95 {:.2f} · max {:.2f}", yPlus.min,
            yPlus.mean, yPlus.p95, yPlus.max),
        LogStore::Level::info);
    const auto wanted = thresholds(model);
    if (!wanted) {
        return result;
    }
    if (yPlus.p95 > wanted->tooCoarse) {
        result.emplace_back(
            fmt::format("Wall mesh too coarse for {} · p95 y⁺ = {:.0f}. The boundary layer is "
                        "unresolved, so drag and Cf are not trustworthy. Refine the body surface "
                        "mesh.",
                wanted->label, yPlus.p95),
            LogStore::Level::warn);
    } else if (yPlus.p95 > wanted->marginal) {
        result.emplace_back(
            fmt::format("Wall mesh marginal for {} · p95 y⁺ = {:.1f}. Results are indicative; the "
                        "boundary layer is in the transition band.",
                wanted->label, yPlus.p95),
            LogStore::Level::warn);
    }
    return result;
}

std::optional<ScalarFieldStats> reportYPlus(
    const std::filesystem::path& url, TurbulenceModel turbModel, const RunLog& log) {
    const auto yPlus = yPlusOf(url);
    if (yPlus) {
        for (const auto& [text, level] : WallResolution::lines(*yPlus, turbModel)) {
            log.append(text, level);
        }
    }
    return yPlus;
}

} // namespace ostrella
