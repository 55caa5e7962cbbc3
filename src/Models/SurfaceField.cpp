#include "Models/SurfaceField.h"

#include "Models/Precondition.h"

#include <utility>

namespace ostrella {

SurfaceField::SurfaceField(SharedArray<Vec3> points, SharedArray<float> values, std::string name,
    SharedArray<std::uint32_t> cells, Primitive drawnAs)
    : positions(std::move(points)),
      scalar(std::move(values)),
      scalarName(std::move(name)),
      indices(std::move(cells)),
      primitive(drawnAs) {
    precondition(
        positions.size() == scalar.size(), "a surface field needs one scalar for each position");
    const auto box = BoundingBox::of(positions.span());
    boundingMin = box.min;
    boundingMax = box.max;
    if (!scalar.empty()) {
        const auto range = ValueRange::of(scalar.span());
        scalarMin = range.min;
        scalarMax = range.max;
    }
}

} // namespace ostrella
