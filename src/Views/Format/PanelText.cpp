#include "Views/Format/PanelText.h"

#include "Models/LogFormatting.h"
#include "Views/Format/ConvergenceHeader.h"

namespace ostrella::PanelText {

std::string_view title(Tab tab) {
    return tab == Tab::log ? "Log" : "Convergence";
}

std::string rightText(const HeaderInput& input) {
    if (input.tab == Tab::log) {
        return LogFormatting::headerText(input.lineCount, input.isFollowingLog);
    }
    std::optional<std::int64_t> iterations;
    if (input.summary && input.summary->iterations) {
        iterations = input.summary->iterations;
    } else if (input.latestIteration) {
        iterations = *input.latestIteration + 1;
    }
    return ConvergenceHeader::text(input.phase, iterations);
}

} // namespace ostrella::PanelText
