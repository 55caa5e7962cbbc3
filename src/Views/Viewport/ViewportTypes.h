#pragma once

#include "Views/Viewport/ViewportItem.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace ostrella {

/// The scene's item as QML knows it.
struct ViewportItemType {
    Q_GADGET
    QML_FOREIGN(ostrella::ViewportItem)
    QML_NAMED_ELEMENT(ViewportItem)
};

} // namespace ostrella
