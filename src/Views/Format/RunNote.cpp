#include "Views/Format/RunNote.h"

#include <fmt/format.h>

#include <cctype>

namespace ostrella {

namespace {

/// As the log closes such a run.
std::string failureLine(std::string stage, std::string message) {
    if (!stage.empty()) {
        stage.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(stage.front())));
    }
    if (message.ends_with('.')) {
        message.pop_back();
    }
    return fmt::format("{} failed · {}", stage, message);
}

} // namespace

std::optional<RunNote> RunNote::make(
    const RunPhase& phase, double seconds, bool isInFront, const std::string& finishLine) {
    // No number is no long time.
    const bool tookLong = seconds > longestWait;
    if (isInFront || !tookLong) {
        return std::nullopt;
    }
    const std::string title = "Ostrella";
    switch (phase.kind) {
    case RunPhase::Kind::finished:
        return RunNote{title, finishLine};
    case RunPhase::Kind::failed:
        return RunNote{title, failureLine(phase.stage, phase.message)};
    case RunPhase::Kind::idle:
    case RunPhase::Kind::meshing:
    case RunPhase::Kind::solving:
    case RunPhase::Kind::postProcessing:
    case RunPhase::Kind::cancelled:
        break;
    }
    return std::nullopt;
}

} // namespace ostrella
