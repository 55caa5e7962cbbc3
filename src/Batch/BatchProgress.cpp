#include "Batch/BatchProgress.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

namespace ostrella {

namespace {

std::string stageText(const BatchProgress& progress) {
    if (progress.isCancelling) {
        return "Cancelling…";
    }
    switch (progress.phase.kind) {
    case RunPhase::Kind::meshing:
        return "Meshing…";
    case RunPhase::Kind::solving:
        return progress.iteration
                   ? fmt::format("Iter {} / {}", *progress.iteration, progress.maxIterations)
                   : "Starting solver…";
    case RunPhase::Kind::postProcessing:
        return "Processing results…";
    default:
        return "";
    }
}

} // namespace

std::string progressLine(const BatchProgress& progress) {
    std::string text = stageText(progress);
    if (progress.phase.kind == RunPhase::Kind::solving && !progress.isCancelling) {
        if (progress.residual) {
            text += fmt::format(
                " · rms[{}] {:.2f}", progress.residual->first, progress.residual->second);
        }
        if (progress.cl) {
            text += fmt::format(" · CL {}", NumberFormatting::fixed(*progress.cl, 4));
        }
        if (progress.cd) {
            text += fmt::format(" · CD {}", NumberFormatting::fixed(*progress.cd, 4));
        }
    }
    text += fmt::format(" · {} elapsed", NumberFormatting::duration(progress.elapsedSeconds));
    if (progress.remainingSeconds && !progress.isCancelling) {
        text +=
            fmt::format(" · ~{} remaining", NumberFormatting::duration(*progress.remainingSeconds));
    }
    return text;
}

} // namespace ostrella
