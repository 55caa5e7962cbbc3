#pragma once

#include <QColor>
#include <QImage>

namespace ostrella {

/// How far a pixel is from `ground` towards `color`, 0 to 1, by the component that differs most.
double shareOf(const QColor& pixel, const QColor& ground, const QColor& color);

/// The sum of those shares down a column: the width of a level line there, in pixels.
double widthInColumn(const QImage& picture, int x, const QColor& ground, const QColor& color);

} // namespace ostrella
