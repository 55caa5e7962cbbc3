#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>

namespace ostrella {

/// The line icons as pictures of one colour.
namespace SymbolPainter {

/// Whether there is an icon of this name.
bool knows(const QString& name);

/// The names of all icons, sorted.
QStringList names();

/// The icon in a colour, `pixels` wide and high, premultiplied; each size and colour is drawn once
/// and kept. Null where there is no such icon or no size. Main thread only.
QImage picture(const QString& name, int pixels, const QColor& color);

} // namespace SymbolPainter

} // namespace ostrella
