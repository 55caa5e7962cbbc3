#include "Views/ReducedMotion.h"

#include "Platform/DesktopAppearance.h"
#include "Views/Viewport/ViewportCoordinator.h"

namespace ostrella {

void followReducedMotion(ViewportCoordinator& viewport, const DesktopAppearance& appearance) {
    viewport.prefersReducedMotion = [&appearance] { return appearance.prefersReducedMotion(); };
    QObject::connect(&appearance, &DesktopAppearance::prefersReducedMotionChanged, &viewport,
        &ViewportCoordinator::scheduleUpdate);
    viewport.scheduleUpdate();
}

} // namespace ostrella
