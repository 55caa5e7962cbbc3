#include "Models/VolumeField.h"

#include "Models/BoundingBox.h"
#include "Models/Precondition.h"

#include <utility>

namespace ostrella {

VolumeField::VolumeField(SharedArray<Vec3> points, SharedArray<Vec3> velocities)
    : positions(std::move(points)), velocity(std::move(velocities)) {
    precondition(
        positions.size() == velocity.size(), "a volume field needs one velocity for each position");
    const auto box = BoundingBox::of(positions.span());
    boundingMin = box.min;
    boundingMax = box.max;
}

} // namespace ostrella
