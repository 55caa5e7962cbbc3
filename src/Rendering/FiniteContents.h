#pragma once

#include "Models/BoundingBox.h"
#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstdint>
#include <span>

namespace ostrella {

/// Data as the scene can show them, whatever came out of a file or of a run that went wrong: one
/// number that is none would take the camera, or the colours of a whole surface, with it.
namespace FiniteContents {

/// How far from the origin (m) a point may lie: squares of its coordinates stay within 32 bits.
inline constexpr float farthest = 1e15F;

/// All three coordinates are numbers, and not beyond `farthest`.
bool isPlaced(const Vec3& point);

/// `box`, or where that is no box the one of those points that are placed; zeros for none.
BoundingBox boundsOf(const BoundingBox& box, std::span<const Vec3> points);

/// (`least`, `greatest`), or where that is no range the one of those values, each `stride` apart,
/// that are finite; (0, 1) for none.
Vec2 rangeOf(float least, float greatest, std::span<const float> values, std::size_t stride = 1);

/// `value` within the range; what is no number is drawn as the least.
float withinReach(float value, Vec2 range);

/// The indices of those primitives of `corners` indices each that name only vertices that are
/// there; the same array where all do.
SharedArray<std::uint32_t> presentPrimitives(
    const SharedArray<std::uint32_t>& indices, std::size_t corners, std::size_t vertexCount);

} // namespace FiniteContents

} // namespace ostrella
