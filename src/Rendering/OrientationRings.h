#pragma once

#include "Models/Vector.h"
#include "Rendering/OrientationAxis.h"
#include "Rendering/ScreenProjector.h"

#include <optional>
#include <span>
#include <utility>
#include <variant>
#include <vector>

namespace ostrella {

/// The three rings around the model in orient mode: their circles, which of them is under the
/// pointer, and how a drag turns into an angle. Points of the view have y up.
namespace OrientationRings {

/// A ring on the screen: absent points are behind the eye.
using ProjectedRing = std::pair<OrientationAxis, std::vector<std::optional<Vec2>>>;

/// `segments` points of the circle (m) about `axis`; the first is not repeated.
std::vector<Vec3> points(OrientationAxis axis, const Vec3& centre, float radius, int segments);

/// The ring nearest to a point, at most `tolerance` away; the earlier among equals.
std::optional<OrientationAxis> hitTest(
    Vec2 point, std::span<const ProjectedRing> rings, float tolerance);

/// A drag of one ring.
struct Drag {
    /// The pointer circles the ring's centre (view points); sign +1 or −1.
    struct Around {
        Vec2 centre{0.0F};
        float sign = 1;
        bool operator==(const Around&) const = default;
    };
    /// The pointer follows a straight line; unit direction.
    struct Along {
        Vec2 direction{0.0F};
        float pointsPerRadian = 1;
        bool operator==(const Along&) const = default;
    };
    using Mode = std::variant<Around, Along>;

    OrientationAxis axis = OrientationAxis::x;
    Mode mode;
    Vec2 last{0.0F};           ///< the pointer's last position, view points
    double rawDegrees = 0;     ///< accumulated, without snapping
    double appliedDegrees = 0; ///< what the model has been turned by

    /// How the ring would be dragged, seen from `eye`; nothing where it cannot be.
    static std::optional<Mode> modeFor(OrientationAxis axis, const Vec3& centre, float radius,
        const Vec3& eye, const ScreenProjector& projector);

    /// The angle to turn by now, degrees; `snap` rounds the whole drag to multiples of 15.
    double move(Vec2 to, bool snap);
    /// The angle to turn by when the snapping modifier changes without a move, degrees.
    double resnap(bool snap);

    bool operator==(const Drag&) const = default;
};

} // namespace OrientationRings

} // namespace ostrella
