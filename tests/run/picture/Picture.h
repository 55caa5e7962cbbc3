#pragma once

#include "Models/Vector.h"

#include <QImage>

#include <filesystem>

namespace ostrella::test {

/// A picture that was drawn, looked at pixel by pixel.
class Picture {
public:
    /// A failed expectation if there is no such PNG file.
    explicit Picture(const std::filesystem::path& file);

    int width() const { return image_.width(); }
    int height() const { return image_.height(); }
    /// Components from 0 to 255; x and y from the upper left corner.
    Vec3 color(int x, int y) const;
    /// The share of the pixels that are not of the ground's colour.
    double coveredShare() const;
    /// The share of the pixels without any light; the ground has some.
    double blackShare() const;
    /// The leftmost column with a pixel that is not of the ground's colour; the width for none.
    int firstCoveredColumn() const;
    /// The share of the pixels whose strongest and weakest component are far apart.
    double colorfulShare() const;
    /// The share of the pixels that are not the same in both, which are of one size.
    double differingShare(const Picture& other) const;

    /// That pixel is of the ground's colour.
    bool isGround(int x, int y) const;

private:
    template <class Test>
    double share(Test&& test) const;

    QImage image_;
};

} // namespace ostrella::test
