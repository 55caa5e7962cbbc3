#include "Views/Format/SettingsText.h"

namespace ostrella::SettingsText {

std::string_view rawValue(SettingsTab tab) {
    return tab == SettingsTab::solver ? "solver" : "streamlines";
}

std::optional<SettingsTab> tab(std::string_view rawValue) {
    for (const SettingsTab tab : allTabs) {
        if (SettingsText::rawValue(tab) == rawValue) {
            return tab;
        }
    }
    return std::nullopt;
}

std::string_view title(SettingsTab tab) {
    return tab == SettingsTab::solver ? "Solver" : "Streamlines";
}

std::string_view symbol(SettingsTab tab) {
    return tab == SettingsTab::solver ? "function" : "wind";
}

} // namespace ostrella::SettingsText
