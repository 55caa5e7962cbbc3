#pragma once

#include "Models/LogStore.h"
#include "Models/PlatformWords.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella::SystemFacts {

/// The words of the system that this program was built for.
const PlatformWords& words();

/// Version of the running system and the label of its graphics interface: `graphics` where that is
/// known already, and graphicsLabel() otherwise.
LogStore::BootFacts bootFacts(const std::optional<std::string>& graphics = {});

/// "OpenGL", "Vulkan" …, or the words for no device. May load a driver: some tens of milliseconds.
std::string graphicsLabel();

/// The label of a Mac's graphics interface: "Metal 2", "Metal 3", "Metal 4", or the words for no
/// device where `supportsFamily` is empty. That tells whether the device supports a GPU family, by
/// the number of MTLGPUFamily; a family is asked about only where the system, of this major
/// version, knows it.
std::string metalLabel(int systemMajor, const std::function<bool(int)>& supportsFamily);

/// The processor's brand string, without blanks around it; nothing where the system has none.
std::optional<std::string> chipName();

/// The first "model name" of a text like /proc/cpuinfo.
std::optional<std::string> chipNameIn(std::string_view cpuInfo);

/// Bytes that the user may fill on the volume that holds `path`; nothing if that cannot be told.
/// May wait for a slow disk.
std::optional<std::int64_t> availableCapacity(const std::filesystem::path& path);

} // namespace ostrella::SystemFacts
