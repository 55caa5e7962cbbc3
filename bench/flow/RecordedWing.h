#pragma once

#include "Models/Streamlines.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <filesystem>

namespace ostrella::bench {

/// The recorded run of a wing at 5°, 56 053 points in 315 292 tetrahedra. Fields are in the model's
/// frame of axes, the files in the solver's.
namespace RecordedWing {

std::filesystem::path volumeFile();
std::filesystem::path surfaceFile();

/// What a run makes of it, with the settings as they come: 100 seeds, 400 steps, a lattice of 64.
inline constexpr float freeStreamVelocity = 50.0F; ///< m/s
inline constexpr int seeds = 100;
inline constexpr int steps = 400;
inline constexpr int resolution = 64;
inline constexpr float percentile = 99.5F;

/// Read or made at the first call and kept, all of them.
const VolumeField& volume();
const StreamlineFocus& focus();
const Streamlines& streamlines();

} // namespace RecordedWing

} // namespace ostrella::bench
