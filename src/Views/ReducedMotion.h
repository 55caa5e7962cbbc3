#pragma once

namespace ostrella {

class DesktopAppearance;
class ViewportCoordinator;

/// Has the viewport stand still as long as the user wants no motion, from now on and with every
/// change. The appearance outlives the viewport's coordinator.
void followReducedMotion(ViewportCoordinator& viewport, const DesktopAppearance& appearance);

} // namespace ostrella
