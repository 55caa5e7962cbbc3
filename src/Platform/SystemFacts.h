#pragma once

#include "Models/LogStore.h"
#include "Models/PlatformWords.h"

namespace ostrella::SystemFacts {

/// The words of the system that this program was built for.
const PlatformWords& words();

/// Version of the running system and the label of its graphics interface.
LogStore::BootFacts bootFacts();

/// "OpenGL", "Vulkan" …, or the words for no device. May load a driver: some tens of milliseconds.
std::string graphicsLabel();

} // namespace ostrella::SystemFacts
