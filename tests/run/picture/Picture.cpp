#include "run/picture/Picture.h"

#include "Brand/ViewportStyle.h"

#include <QImageReader>

#include <glm/common.hpp>

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrella::test {

namespace {

float farthestComponent(const Vec3& difference) {
    const Vec3 size = glm::abs(difference);
    return std::max({size.x, size.y, size.z});
}

} // namespace

Picture::Picture(const std::filesystem::path& file) {
    QImageReader reader(QString::fromStdString(file.string()), "PNG");
    reader.setAllocationLimit(0);
    image_ = reader.read().convertToFormat(QImage::Format_RGB32);
    EXPECT_FALSE(image_.isNull()) << file;
}

Vec3 Picture::color(int x, int y) const {
    const QRgb color = reinterpret_cast<const QRgb*>(image_.constScanLine(y))[x];
    return {qRed(color), qGreen(color), qBlue(color)};
}

bool Picture::isGround(int x, int y) const {
    constexpr float rounding = 1.0F;
    return farthestComponent(color(x, y) - 255.0F * ViewportStyle::background) <= rounding;
}

template <class Test>
double Picture::share(Test&& test) const {
    int count = 0;
    for (int y = 0; y < height(); ++y) {
        for (int x = 0; x < width(); ++x) {
            count += test(x, y) ? 1 : 0;
        }
    }
    return count / (static_cast<double>(width()) * height());
}

double Picture::coveredShare() const {
    return share([this](int x, int y) { return !isGround(x, y); });
}

double Picture::blackShare() const {
    return share([this](int x, int y) {
        constexpr float light = 4.0F;
        const Vec3 pixel = color(x, y);
        return std::max({pixel.x, pixel.y, pixel.z}) < light;
    });
}

int Picture::firstCoveredColumn() const {
    for (int x = 0; x < width(); ++x) {
        for (int y = 0; y < height(); ++y) {
            if (!isGround(x, y)) {
                return x;
            }
        }
    }
    return width();
}

double Picture::colorfulShare() const {
    return share([this](int x, int y) {
        constexpr float far = 100.0F;
        const Vec3 pixel = color(x, y);
        return std::max({pixel.x, pixel.y, pixel.z}) - std::min({pixel.x, pixel.y, pixel.z}) > far;
    });
}

double Picture::differingShare(const Picture& other) const {
    EXPECT_EQ(image_.size(), other.image_.size());
    return share([&](int x, int y) {
        constexpr float seen = 4.0F;
        return farthestComponent(color(x, y) - other.color(x, y)) > seen;
    });
}

} // namespace ostrella::test
