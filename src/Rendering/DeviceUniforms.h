#pragma once

#include "Models/Vector.h"

namespace ostrella {

/// Slot 3 of every draw: what its functions have to know of the device and the target. No part of a
/// frame's encoding, which is the same for all devices.
struct DeviceUniforms {
    /// Width and height (pixels), pixels per point, 1 where triangles are drawn as lines.
    Vec4 target{1.0F, 1.0F, 1.0F, 0.0F};
    /// y of what is up in clip space, 1 or −1, then zeros.
    Vec4 traits{1.0F, 0.0F, 0.0F, 0.0F};

    bool operator==(const DeviceUniforms&) const = default;
};
static_assert(sizeof(DeviceUniforms) == 32);

} // namespace ostrella
