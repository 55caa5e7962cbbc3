#pragma once

namespace ostrella {

/// Where on the sphere around its target a camera stands: radians, radians, metres.
struct CameraPose {
    float azimuth = 0;
    float elevation = 0;
    float distance = 0;

    bool operator==(const CameraPose&) const = default;
};

} // namespace ostrella
