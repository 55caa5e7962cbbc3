#include "golden/BrightPixels.h"

#include <cstdlib>

namespace ostrella {

double shareOf(const QColor& pixel, const QColor& ground, const QColor& color) {
    const int red = color.red() - ground.red();
    const int green = color.green() - ground.green();
    const int blue = color.blue() - ground.blue();
    if (std::abs(red) >= std::abs(green) && std::abs(red) >= std::abs(blue))
        return double(pixel.red() - ground.red()) / red;
    if (std::abs(green) >= std::abs(blue))
        return double(pixel.green() - ground.green()) / green;
    return double(pixel.blue() - ground.blue()) / blue;
}

double widthInColumn(const QImage& picture, int x, const QColor& ground, const QColor& color) {
    double width = 0;
    for (int y = 0; y < picture.height(); ++y)
        width += shareOf(picture.pixelColor(x, y), ground, color);
    return width;
}

} // namespace ostrella
