// Whether the pointer is on the model.
#include "Rendering/MetalRenderer.h"
#include "Rendering/ViewportPicking.h"

namespace ostrella {

bool MetalRenderer::modelHit(Vec2 point) const {
    if (!hasModel())
        return false;
    const auto ray =
        ViewportPicking::ray(point, viewSizePoints_, camera, currentLensShift(clock_()));
    if (!ray)
        return false;
    const ModelPlacement place = placement();
    const auto inModel = ray->transformed(place.inverseModelMatrix());
    if (!ViewportPicking::hitsSphere(inModel, place.centre, modelRadius()))
        return false;
    return model_.nearestHit(inModel).has_value();
}

} // namespace ostrella
