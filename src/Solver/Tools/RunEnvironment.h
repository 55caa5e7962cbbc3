#pragma once

#include "Models/Clock.h"
#include "Models/PlatformWords.h"
#include "Models/SurfacePreparation.h"
#include "Models/Timers.h"
#include "Platform/AppBundle.h"

#include <filesystem>

namespace ostrella {

/// What a run finds around it, handed in once, so that tests and the batch program neither wait nor
/// touch the user's own places.
struct RunEnvironment {
    AppBundle bundle;
    /// Parent of the run directories; the system's temporary directory for the desktop application.
    std::filesystem::path temporaryDirectory;
    const PlatformWords* words;
    const Clock* clock = &Clock::system();
    TimerService* timers = &TimerService::system();
    /// What becomes of a model's surface ahead of the mesher.
    SurfaceChoice surface = SurfaceChoice::automatic;
};

} // namespace ostrella
