#pragma once

#include <QPointF>

class QQuickItem;

namespace ostrella {

/// The item that a user sees at a point of a scene, in points of `root`: the last drawn of those
/// that are shown there. Items that only hold others are looked through. Null for none.
QQuickItem* frontmostItem(QQuickItem& root, QPointF point);

} // namespace ostrella
