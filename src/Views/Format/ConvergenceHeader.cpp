#include "Views/Format/ConvergenceHeader.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

#include <string_view>

namespace ostrella::ConvergenceHeader {

namespace {

std::string_view suffix(const RunPhase& phase) {
    switch (phase.kind) {
    case RunPhase::Kind::idle:
        return "";
    case RunPhase::Kind::meshing:
    case RunPhase::Kind::solving:
        return " · solving";
    case RunPhase::Kind::postProcessing:
        return " · processing";
    case RunPhase::Kind::cancelled:
        return " · cancelled";
    case RunPhase::Kind::failed:
        return " · failed";
    case RunPhase::Kind::finished:
        return phase.converged ? " · converged" : " · not converged";
    }
    return "";
}

} // namespace

std::string text(const RunPhase& phase, std::optional<std::int64_t> iterations) {
    if (!iterations) {
        return {};
    }
    return fmt::format("{} iter{}", NumberFormatting::grouped(*iterations), suffix(phase));
}

} // namespace ostrella::ConvergenceHeader
