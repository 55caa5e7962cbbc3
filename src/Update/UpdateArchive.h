#pragma once

#include "Models/Cancellation.h"

#include <cstdint>
#include <filesystem>

namespace ostrella::UpdateArchive {

/// What no sound archive reaches.
struct Limits {
    /// Bytes of all files together, unpacked.
    std::uint64_t mostBytes = std::uint64_t{4} << 30;
    std::uint64_t mostEntries = 100'000;
};

/// Unpacks an archive, tar with gzip, xz or zstd, or zip, into a folder that is there and empty.
/// Holds folders, files and links; a link may lead only to what the archive holds itself. Whatever
/// would reach out of the folder by its name or by a link, devices, two entries of one name, more
/// than the limits, and an archive that ends too soon are refused with UpdateRefusal; what had been
/// unpacked until then stays in the folder. Files are writable by the user alone; of their rights
/// only the one to be executed is kept. Blocks the calling worker; throws CancellationError.
void unpack(const std::filesystem::path& archive, const std::filesystem::path& folder,
    const Limits& limits = {}, const CancellationToken& token = {});

/// The same rule for links, once more, for a part of what was unpacked that is to lie elsewhere:
/// throws UpdateRefusal where one leads out of that part.
void requireLinksInside(const std::filesystem::path& tree);

} // namespace ostrella::UpdateArchive
