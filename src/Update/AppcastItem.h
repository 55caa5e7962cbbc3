#pragma once

#include <cstdint>
#include <string>

namespace ostrella {

/// One release as a feed tells of it. What the feed does not say is empty.
struct AppcastItem {
    /// The version that counts for order: the build, where the feed has builds.
    std::string version;
    /// The version as people read it.
    std::string displayVersionString;
    std::string title;
    /// What is new, as plain text or HTML, where the feed itself has it.
    std::string notes;
    /// Address of the notes elsewhere.
    std::string notesAddress;
    /// Address where people read of the release.
    std::string infoAddress;
    /// Address of the archive; empty where the feed only tells of the release.
    std::string archiveAddress;
    /// Bytes of the archive.
    std::int64_t archiveLength = 0;
    /// Ed25519 signature of the archive, in base64.
    std::string signature;

    bool operator==(const AppcastItem&) const = default;
};

} // namespace ostrella
