#pragma once

#include "Update/Updater.h"

#include <memory>

namespace ostrella {

/// The updater of a Mac: the framework Sparkle 2, with its own windows. It reads the feed's address
/// and key from the bundle. Not started yet.
std::unique_ptr<Updater> makeSparkleUpdater();

} // namespace ostrella
