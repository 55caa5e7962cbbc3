#include "Rendering/ScreenProjector.h"

namespace ostrella {

std::optional<Vec2> ScreenProjector::project(const Vec3& point) const {
    constexpr float nearestDepth = 1e-6F;
    const Vec4 clip = matrix * Vec4(point, 1.0F);
    if (!(clip.w > nearestDepth))
        return std::nullopt;
    return (Vec2(clip) / clip.w + 1.0F) * 0.5F * viewSize;
}

} // namespace ostrella
