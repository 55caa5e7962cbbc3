#pragma once

#include <compare>
#include <string_view>

namespace ostrella::VersionOrder {

/// Which of two versions is the older, as the Mac's updater orders them, so that one feed means the
/// same on both. Numbers count as numbers of any length ("1.9" < "1.10"), missing ones at the end
/// as 0 ("1.0" is "1.0.0"). A word makes a version older than the same one without it ("1.0b2" <
/// "1.0rc1" < "1.0"); words go by their bytes. What follows a "-" does not count at all.
std::weak_ordering compare(std::string_view a, std::string_view b);

/// Whether `candidate` comes after `present`.
bool isNewer(std::string_view candidate, std::string_view present);

} // namespace ostrella::VersionOrder
