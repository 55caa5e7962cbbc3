#include "golden/PictureCompare.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace ostrella {

namespace {

std::array<int, 3> componentsAt(const QImage& picture, int x, int y) {
    const QRgb pixel = picture.pixel(x, y);
    return {qRed(pixel), qGreen(pixel), qBlue(pixel)};
}

} // namespace

PictureDifference PictureDifference::between(const QImage& a, const QImage& b) {
    PictureDifference out;
    out.sameSize = a.size() == b.size() && !a.isNull();
    if (!out.sameSize)
        return out;
    double sum = 0;
    qint64 beyondNoise = 0;
    for (int top = 0; top < a.height(); top += square) {
        for (int left = 0; left < a.width(); left += square) {
            std::array<double, 3> balance{};
            int pixels = 0;
            for (int y = top; y < std::min(top + square, a.height()); ++y) {
                for (int x = left; x < std::min(left + square, a.width()); ++x) {
                    const auto first = componentsAt(a, x, y);
                    const auto second = componentsAt(b, x, y);
                    int most = 0;
                    for (std::size_t i = 0; i < 3; ++i) {
                        balance[i] += first[i] - second[i];
                        most = std::max(most, std::abs(first[i] - second[i]));
                        sum += std::abs(first[i] - second[i]);
                    }
                    out.largest = std::max(out.largest, most);
                    beyondNoise += most > noise ? 1 : 0;
                    ++pixels;
                }
            }
            for (const double b3 : balance)
                out.coarse = std::max(out.coarse, std::abs(b3) / pixels);
        }
    }
    const double pixels = double(a.width()) * a.height();
    out.beyond = static_cast<double>(beyondNoise) / pixels;
    out.mean = sum / (3 * pixels);
    return out;
}

bool PictureDifference::isSame() const {
    // Of 640 × 400 pixels some 50 may fall to the other side of an edge.
    return sameSize && beyond <= 0.0002 && mean <= 0.05;
}

bool PictureDifference::isAlike() const {
    return sameSize && coarse <= 12 && mean <= 0.6;
}

QString PictureDifference::description() const {
    if (!sameSize)
        return QStringLiteral("sizes differ, or there is no such picture");
    return QStringLiteral("largest %1, %2 of 10 000 pixels beyond noise, mean %3, coarse %4")
        .arg(largest)
        .arg(beyond * 10000, 0, 'f', 2)
        .arg(mean, 0, 'f', 4)
        .arg(coarse, 0, 'f', 2);
}

QImage differencePicture(const QImage& a, const QImage& b) {
    QImage out(a.size(), QImage::Format_RGB32);
    out.fill(Qt::magenta);
    for (int y = 0; y < std::min(a.height(), b.height()); ++y) {
        for (int x = 0; x < std::min(a.width(), b.width()); ++x) {
            const auto first = componentsAt(a, x, y);
            const auto second = componentsAt(b, x, y);
            std::array<int, 3> d{};
            for (std::size_t i = 0; i < 3; ++i)
                d[i] = std::min(8 * std::abs(first[i] - second[i]), 255);
            out.setPixel(x, y, qRgb(d[0], d[1], d[2]));
        }
    }
    return out;
}

} // namespace ostrella
