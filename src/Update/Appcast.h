#pragma once

#include "Update/AppcastItem.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The feed that tells which versions there are: RSS with the elements of Sparkle.
namespace ostrella::Appcast {

/// More than this is no feed.
inline constexpr std::size_t mostBytes = 4 << 20;

/// What the feed calls the machine this program was built for: "linux-x86_64" or "linux-arm64".
std::string platform();

/// The items of a feed that concern `platform`, in the feed's order. An item counts if its
/// enclosure states this platform or its family ("linux"); of several enclosures the closest is
/// taken. Items of a channel (beta versions) and items without a version are left out. One that is
/// only to be read about, or has no enclosure but a link, comes with an empty `archiveAddress`;
/// `presentVersion` decides where the feed limits that to certain versions. `archiveLength` is 0
/// where none is stated. Addresses to be shown are http or https, or empty. Throws UpdateRefusal
/// for what is no such feed: not UTF-8, too long, not well-formed, with a document type, or more
/// than 32 levels deep. Notes are cut off after 64 Ki characters. Takes up to a second for the
/// longest feed: not on the main thread.
std::vector<AppcastItem> items(
    std::string_view xml, std::string_view platform, std::string_view presentVersion = {});

} // namespace ostrella::Appcast
