#pragma once

#include <QVariantMap>

namespace ostrella {

/// ViewportLayout::place for the views. `wishes` has its fields under their names, cards as sizes
/// or, for `card` and `legend`, as maps; a card that is not on show is absent or null. The result
/// has for each card a map with `frame` (a rectangle) and `scale`, besides `barHeight`,
/// `mostCardHeight` and `cardIsSqueezed`.
QVariantMap placeOverlays(const QVariantMap& wishes);

} // namespace ostrella
