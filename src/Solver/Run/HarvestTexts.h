#pragma once

#include "Models/RunState.h"

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace ostrella {

/// What the log says of the parts of a harvest. Times in seconds.
namespace HarvestTexts {

inline constexpr std::string_view surfaceWarning = "Surface parse warning: ";
inline constexpr std::string_view volumeWarning = "Volume parse warning: ";
inline constexpr std::string_view tracing = "Generating streamlines…";
inline constexpr std::string_view extracting = "Extracting vortex iso-surface (Q-criterion)…";
inline constexpr std::string_view noVortex = "Vortex: no Q > 0 region in the wake.";

/// What the log calls primitives: half the number of indices, for triangles too.
std::size_t primitiveCount(const SurfaceField& surface);

std::string surfaceLine(const SurfaceField& surface);
std::string volumeLine(const VolumeField& volume, double seconds);
std::string streamlinesLine(const Streamlines& streamlines, double seconds);
std::string vortexLine(const IsoSurface& vortex, double seconds);

/// Why a part of the harvest is missing, `part` being what was read or made, such as "flow.vtk":
/// the error's own words, and advice where the machine had not enough memory for it.
std::string reason(const std::exception_ptr& error, std::string_view part);

} // namespace HarvestTexts

} // namespace ostrella
