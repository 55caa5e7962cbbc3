#include "Views/Format/AppLinks.h"

#include <fmt/format.h>

namespace ostrella::AppLinks {

const std::string_view help = OSTRELLA_HELP_ADDRESS;
const std::string_view site = OSTRELLA_SITE_ADDRESS;
const std::string_view rights = OSTRELLA_RIGHTS_LINE;

std::string helpToolTip() {
    return fmt::format("Help on {}", shownAddress(help));
}

std::string_view shownAddress(std::string_view address) {
    if (const auto scheme = address.find("://"); scheme != std::string_view::npos) {
        address.remove_prefix(scheme + 3);
    }
    if (address.ends_with('/')) {
        address.remove_suffix(1);
    }
    return address;
}

} // namespace ostrella::AppLinks
