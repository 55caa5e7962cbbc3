#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace ostrella::WindowTitle {

/// "wing.stl · Ostrella", or the application's name alone.
std::string make(const std::optional<std::filesystem::path>& stlURL);

} // namespace ostrella::WindowTitle
