#include "Views/Format/WelcomeText.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

namespace ostrella::WelcomeText {

std::string tagLine(const PlatformWords& words) {
    return fmt::format("Aerodynamic analysis on your {}.", words.machine);
}

std::string_view sampleSymbol(std::string_view id) {
    if (id == "sphere") {
        return "globe";
    }
    if (id == "rounded_box") {
        return "cube";
    }
    if (id == "simple_wing") {
        return "airplane";
    }
    return "cube.transparent";
}

std::string facetsText(std::optional<std::int64_t> count) {
    return count ? fmt::format("{} facets", NumberFormatting::grouped(*count)) : "";
}

std::string sampleHelp(std::string_view name) {
    return fmt::format("Load the {} sample", name);
}

std::string sampleLabel(std::string_view name) {
    return fmt::format("Load sample {}", name);
}

} // namespace ostrella::WelcomeText
