#pragma once

#include "Models/Vector.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <cstddef>
#include <vector>

namespace ostrella::bench {

/// `count` points spread evenly in the cube from −half to half, the same on every machine.
std::vector<Vec3> cloud(std::size_t count, float half);

/// A stream with a swirl through `count` such points around cloudBody(), all of which have a say.
VolumeField cloudFlow(std::size_t count);

/// A body of 1 m in the middle of a cloud.
StreamlineFocus cloudBody();

} // namespace ostrella::bench
