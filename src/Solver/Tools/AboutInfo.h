#pragma once

#include "Models/InformationDictionary.h"
#include "Models/PlatformWords.h"
#include "Models/Timers.h"
#include "Platform/AppBundle.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// What the two tools of the package really are. Every failure of a probe turns into a text.
namespace AboutInfo {

/// The release of SU2 that is meant where none is recorded.
inline constexpr std::string_view packagedRelease = "8.5.0";

/// "Version 1.2.0 (345)", after UpdatePolicy::versionText.
std::string versionLine(const std::optional<InformationDictionary>& info);

/// Processors that a program can be built for.
enum class Architecture { arm64, x86_64 };

/// Architectures of a Mach-O program, thin or universal, from its first bytes (4096 suffice);
/// others than the two are skipped, and anything else gives none. Layouts after <mach-o/loader.h>
/// and <mach-o/fat.h>.
std::vector<Architecture> architectures(std::span<const std::byte> machOHeader);

/// The same of an ELF program, by e_machine of its header.
std::optional<Architecture> elfArchitecture(std::span<const std::byte> header);

/// "SU2 8.5.0 (arm64, LGPL)" and the like; "… · not found" for no list. `release` is that of the
/// packaged solver, if it was recorded.
std::string su2Line(const std::optional<std::vector<Architecture>>& architectures,
    const PlatformWords& words, const std::optional<std::string>& release = std::nullopt);

/// su2Line of the packaged solver, or the words for the built-in one. Reads a few kilobytes.
std::string probeSU2(const AppBundle& bundle, const PlatformWords& words);

/// The version in what "gmsh --version" printed, such as "4.15.2".
std::optional<std::string> parseGMSHVersion(std::string_view output);

/// "gmsh 4.15.2 (GPL)" by asking the packaged gmsh. Blocks the calling worker; a gmsh that hangs is
/// terminated after 3 seconds.
std::string probeGMSH(const AppBundle& bundle, TimerService& timers = TimerService::system());

} // namespace AboutInfo

} // namespace ostrella
