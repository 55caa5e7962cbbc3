#pragma once

#include "Models/PreferenceStore.h"

#include <map>
#include <string>

namespace ostrella {

/// What a package says of itself: its version, and where updates of it come from.
using InformationDictionary = std::map<std::string, PreferenceValue, std::less<>>;

/// The keys in use; each value is a string where nothing else is said.
namespace InformationKeys {

/// The version as people read it, such as "1.2.0".
inline constexpr std::string_view version = "CFBundleShortVersionString";
/// The build within the version; may be missing.
inline constexpr std::string_view build = "CFBundleVersion";
/// Address of the update feed; missing where there are no updates.
inline constexpr std::string_view feed = "SUFeedURL";
/// Public Ed25519 key, in base64, that signatures of updates are checked against.
inline constexpr std::string_view key = "SUPublicEDKey";
/// True where the feed may be a file; a boolean. For copies that never see a network.
inline constexpr std::string_view allowsFileFeed = "OstrellaAllowsFileFeed";

} // namespace InformationKeys

/// The string under a key; nothing where there is none, or something else.
std::optional<std::string> stringOf(const InformationDictionary& info, std::string_view key);

} // namespace ostrella
