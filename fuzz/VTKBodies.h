#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ostrella::fuzz {

/// What the fuzz targets do with arbitrary bytes, as if they were a file of the solver's. Each end
/// the process where the reader and the plain reader disagree.

/// The surface with its pressure coefficient.
void vtkSurface(std::span<const std::uint8_t> bytes);

/// The volume with its velocity, and from that streamlines, ribbons and the vortex surface.
void vtkVolume(std::span<const std::uint8_t> bytes);

/// The figures of the wall distance.
void vtkStats(std::span<const std::uint8_t> bytes);

} // namespace ostrella::fuzz
