#include "Views/Format/SidebarText.h"

#include <fmt/format.h>

namespace ostrella::SidebarText {

std::string loadHelp(const PlatformWords& words) {
    return fmt::format("Open an STL file ({})", words.openShortcut);
}

std::string_view title(FlowRegime option) {
    switch (option) {
    case FlowRegime::incompressible:
        return "Incompressible (M < 0.3)";
    case FlowRegime::compressible:
        return "Compressible (transonic+)";
    }
    return {};
}

std::string_view title(TurbulenceModel option) {
    switch (option) {
    case TurbulenceModel::spalartAllmaras:
        return "Spalart-Allmaras (RANS)";
    case TurbulenceModel::sst:
        return "k-ω SST (RANS)";
    case TurbulenceModel::laminar:
        return "Laminar";
    }
    return {};
}

std::string runHelp(const PlatformWords& words) {
    return fmt::format("Run the simulation ({})", words.runShortcut);
}

} // namespace ostrella::SidebarText
