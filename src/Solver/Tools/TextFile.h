#pragma once

#include "Models/FileError.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace ostrella {

/// What helps where a run's directory is full or not writable, for the text of a FileError.
inline constexpr std::string_view elsewhereForRuns = "set another temporary directory (TMPDIR)";

/// The whole of a UTF-8 text file. Throws FileError, for bytes that are no UTF-8 too.
std::string readText(const std::filesystem::path& path);

/// Writes `text` to `path` so that the file is either the old one or the whole new one: a file
/// beside it is written first and takes its name at the end. Throws FileError and leaves nothing
/// behind.
void writeTextAtomically(const std::filesystem::path& path, std::string_view text);

/// Removes a file if it is there. Throws FileError.
void removeFile(const std::filesystem::path& path);

} // namespace ostrella
