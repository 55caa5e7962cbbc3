#include "Views/Format/SystemInfo.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

namespace ostrella::SystemInfo {

std::string summary(std::optional<std::int64_t> freeBytes, const std::optional<std::string>& chip) {
    std::string text;
    if (freeBytes) {
        text = fmt::format("{} free", NumberFormatting::bytes(*freeBytes));
    }
    if (chip && !chip->empty()) {
        text += (text.empty() ? "" : " · ") + *chip;
    }
    return text;
}

} // namespace ostrella::SystemInfo
