#pragma once

#include "support/OrdinaryUser.h"

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace ostrella::test {

/// Something that an archive holds.
struct ArchiveEntry {
    enum class Kind { file, program, folder, link, secondName, device };

    std::string path;
    Kind kind = Kind::file;
    /// Of a file its bytes, of a link where it leads, of a second name the first one.
    std::string text = {};
    /// So many bytes of a file that are 0, after the text.
    std::uint64_t zeros = 0;
};

enum class ArchiveForm { tarGzip, tarXZ, tarZstd, zip, tar };

/// Writes an archive exactly as told, also one that no sound program would write.
void makeArchive(const std::filesystem::path& file, const std::vector<ArchiveEntry>& entries,
    ArchiveForm form = ArchiveForm::tarGzip);

/// A copy of the application as small as can be. `program` is the text of a shell's script.
std::vector<ArchiveEntry> copyEntries(
    const std::string& version, const std::string& program = "#!/bin/sh\nexit 0\n");

/// The same as files of a folder.
void makeCopy(const std::filesystem::path& root, const std::string& version);

/// The names of what lies in a folder, hidden or not.
std::set<std::string> namesIn(const std::filesystem::path& folder);

} // namespace ostrella::test
