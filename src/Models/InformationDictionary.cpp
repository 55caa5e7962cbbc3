#include "Models/InformationDictionary.h"

namespace ostrella {

std::optional<std::string> stringOf(const InformationDictionary& info, std::string_view key) {
    const auto found = info.find(key);
    if (found == info.end()) {
        return std::nullopt;
    }
    const auto* text = std::get_if<std::string>(&found->second);
    return text ? std::optional(*text) : std::nullopt;
}

} // namespace ostrella
