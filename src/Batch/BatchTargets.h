#pragma once

#include "Batch/BatchOptions.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace ostrella {

/// Looks ahead of the run whether its outputs can be written where they are wanted, so that nobody
/// learns after a night that there was no such folder, and nothing of the user's is written over.
namespace BatchTargets {

/// What a file with streamlines and one with a vortex surface begin with, by which an earlier one
/// is known.
inline constexpr std::string_view streamlinesBeginning =
    "# vtk DataFile Version 3.0\nStreamlines, metres and metres per second\n";
inline constexpr std::string_view vortexBeginning =
    "ply\nformat ascii 1.0\ncomment surface of Q = ";

/// What the head of a written surface begins with.
inline constexpr std::string_view surfaceBeginning = "Ostrella surface, metres";

/// What is wrong with --results, --prepare, --export, --image, --json or a --write option, as a
/// sentence for the user; nothing if all is well.
std::optional<std::string> problem(const BatchOptions& options);

/// Where temporary files go: the first of TMPDIR, TMP, TEMP and TEMPDIR that is set, else /tmp.
/// Throws UsageError if that is no folder.
std::filesystem::path temporaryDirectory();

/// Writes a text, or any bytes, to a file of the user's. What is an ordinary file, or nothing yet,
/// is replaced as a whole and a link is followed; a device or a pipe just takes the text. Throws
/// FileError.
void writeFile(const std::filesystem::path& file, const std::string& text);

} // namespace BatchTargets

} // namespace ostrella
