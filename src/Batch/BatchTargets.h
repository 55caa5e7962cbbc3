#pragma once

#include "Batch/BatchOptions.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace ostrella {

/// Looks ahead of the run whether its outputs can be written where they are wanted, so that nobody
/// learns after a night that there was no such folder, and nothing of the user's is written over.
namespace BatchTargets {

/// What is wrong with --prepare, --export or --json, as a sentence for the user; nothing if all is
/// well.
std::optional<std::string> problem(const BatchOptions& options);

/// Where temporary files go: the first of TMPDIR, TMP, TEMP and TEMPDIR that is set, else /tmp.
/// Throws UsageError if that is no folder.
std::filesystem::path temporaryDirectory();

/// Writes the report. What is an ordinary file, or nothing yet, is replaced as a whole and a link
/// is followed; a device or a pipe just takes the text. Throws FileError.
void writeReport(const std::filesystem::path& file, const std::string& text);

} // namespace BatchTargets

} // namespace ostrella
