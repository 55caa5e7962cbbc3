#pragma once

#include <filesystem>

namespace ostrella {

/// Copies a file to a place at which nothing exists. Whatever has come there meanwhile stays
/// untouched and makes the copy fail. A copy that fails half-way leaves nothing. Throws FileError.
void copyExclusively(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace ostrella
