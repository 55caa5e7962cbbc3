#include "Platform/SystemFacts.h"

#include <algorithm>

namespace ostrella::SystemFacts {

std::string metalLabel(int systemMajor, const std::function<bool(int)>& supportsFamily) {
    // MTLGPUFamilyMetal3 and MTLGPUFamilyMetal4; macOS 26 is the first to know the latter.
    constexpr int metal3 = 5001;
    constexpr int metal4 = 5002;
    constexpr int firstSystemOfMetal4 = 26;
    if (!supportsFamily) {
        return std::string(PlatformWords::mac().noGraphicsDevice);
    }
    if (systemMajor >= firstSystemOfMetal4 && supportsFamily(metal4)) {
        return "Metal 4";
    }
    return supportsFamily(metal3) ? "Metal 3" : "Metal 2";
}

std::optional<std::string> chipNameIn(std::string_view cpuInfo) {
    constexpr std::string_view key = "model name";
    constexpr std::string_view blanks = " \t";
    while (!cpuInfo.empty()) {
        const std::string_view line = cpuInfo.substr(0, cpuInfo.find('\n'));
        cpuInfo.remove_prefix(std::min(line.size() + 1, cpuInfo.size()));
        const auto colon = line.find(':');
        if (!line.starts_with(key) || colon == std::string_view::npos ||
            line.substr(key.size(), colon - key.size()).find_first_not_of(blanks) !=
                std::string_view::npos) {
            continue;
        }
        const auto begin = line.find_first_not_of(blanks, colon + 1);
        if (begin == std::string_view::npos) {
            return std::nullopt;
        }
        return std::string(line.substr(begin, line.find_last_not_of(blanks) + 1 - begin));
    }
    return std::nullopt;
}

} // namespace ostrella::SystemFacts
