#include "golden/PictureCompare.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

constexpr QRgb ground = qRgb(11, 14, 20);
constexpr QRgb body = qRgb(120, 140, 170);

QImage boxAt(int x, QRgb color = body) {
    QImage picture(640, 400, QImage::Format_RGB32);
    picture.fill(ground);
    for (int row = 100; row < 300; ++row) {
        for (int column = x; column < x + 200; ++column)
            picture.setPixel(column, row, color);
    }
    return picture;
}

TEST(PictureCompare, equalPicturesAreTheSame) {
    const auto d = PictureDifference::between(boxAt(200), boxAt(200));
    EXPECT_TRUE(d.isSame());
    EXPECT_TRUE(d.isAlike());
    EXPECT_EQ(d.largest, 0);
}

TEST(PictureCompare, aShiftOfOnePixelIsSeen) {
    const auto d = PictureDifference::between(boxAt(200), boxAt(201));
    EXPECT_FALSE(d.isSame());
    // Two columns of 200 pixels, of 256 000.
    EXPECT_NEAR(d.beyond, 400.0 / 256000, 1e-9);
    EXPECT_EQ(d.largest, 150);
}

TEST(PictureCompare, swappedColorsAreSeenAlsoAcrossBackEnds) {
    const auto d = PictureDifference::between(boxAt(200), boxAt(200, qRgb(170, 140, 120)));
    EXPECT_FALSE(d.isSame());
    EXPECT_FALSE(d.isAlike());
}

TEST(PictureCompare, aMissingPartIsSeenAlsoAcrossBackEnds) {
    QImage less = boxAt(200);
    for (int row = 100; row < 116; ++row) {
        for (int column = 200; column < 216; ++column)
            less.setPixel(column, row, ground);
    }
    EXPECT_FALSE(PictureDifference::between(boxAt(200), less).isAlike());
}

TEST(PictureCompare, roundingIsNotSeen) {
    const auto d = PictureDifference::between(boxAt(200), boxAt(200, qRgb(121, 140, 169)));
    EXPECT_EQ(d.largest, 1);
    EXPECT_EQ(d.beyond, 0);
    EXPECT_TRUE(d.isAlike());
    EXPECT_FALSE(d.isSame()) << "over a sixth of the picture it is more than rounding";
}

TEST(PictureCompare, otherSizesAreOtherPictures) {
    const auto d = PictureDifference::between(boxAt(200), QImage(640, 399, QImage::Format_RGB32));
    EXPECT_FALSE(d.isSame());
    EXPECT_FALSE(d.isAlike());
    EXPECT_FALSE(PictureDifference::between(QImage(), QImage()).isSame());
}

} // namespace
} // namespace ostrella
