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

std::vector<std::string> rightForms(const HeaderInput& input) {
    constexpr std::string_view dot = " · ";
    std::vector<std::string> forms{rightText(input)};
    for (auto end = forms.back().rfind(dot); end != std::string::npos;
         end = forms.back().rfind(dot)) {
        forms.push_back(forms.back().substr(0, end));
    }
    if (!forms.back().empty()) {
        forms.emplace_back();
    }
    return forms;
}

} // namespace ostrella::PanelText
