#pragma once

#include <QImage>
#include <QString>

#include <string>

namespace ostrella {

/// How far two pictures of one size differ; colour components count from 0 to 255.
struct PictureDifference {
    bool sameSize = false;
    int largest = 0;   ///< of any component of any pixel
    double beyond = 0; ///< share of pixels with a component off by more than `noise`
    double mean = 0;   ///< over all components
    double coarse = 0; ///< largest one after averaging over squares of `square` pixels
    QString description() const;

    /// Rounding of one driver or another.
    static constexpr int noise = 6;
    static constexpr int square = 8;

    static PictureDifference between(const QImage& a, const QImage& b);

    /// The same picture from the same back end.
    bool isSame() const;
    /// The same picture from different back ends, whose edges may be rasterised another way.
    bool isAlike() const;
};

/// Each component's difference, eight times as strong.
QImage differencePicture(const QImage& a, const QImage& b);

} // namespace ostrella
