#include "Views/Format/WindowTitle.h"

#include <fmt/format.h>

namespace ostrella::WindowTitle {

std::string make(const std::optional<std::filesystem::path>& stlURL) {
    const std::string name = stlURL ? stlURL->filename().string() : std::string();
    return name.empty() ? "Ostrella" : fmt::format("{} · Ostrella", name);
}

} // namespace ostrella::WindowTitle
