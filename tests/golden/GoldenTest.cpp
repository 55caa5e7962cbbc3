#include "Rendering/OffscreenPicture.h"
#include "golden/GoldenDevice.h"
#include "golden/GoldenScenes.h"
#include "golden/PictureCompare.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>

namespace ostrella {
namespace {

using golden::Picture;

QImage drawn(const Picture& picture) {
    const golden::Scene scene(picture);
    QRhi& rhi = GoldenDevice::current().rhi();
    RhiScene device(rhi);
    const auto image = OffscreenPicture::render(rhi, device, {golden::width, golden::height},
        scene.frame, scene.renderer.buffers(), picture.pointScale);
    EXPECT_TRUE(image) << "the device was lost";
    return image ? image->convertToFormat(QImage::Format_RGB888) : QImage();
}

QString reference(const QString& backend, const Picture& picture) {
    return QStringLiteral(OSTRELLA_GOLDEN_PICTURES "/%1/%2.png")
        .arg(backend, QString::fromStdString(picture.name));
}

/// Where pictures are left that are not as they should be.
QString left(const Picture& picture, const char* what) {
    const QString folder =
        QStringLiteral(OSTRELLA_GOLDEN_LEFT "/%1").arg(GoldenDevice::current().name);
    QDir().mkpath(folder);
    return QStringLiteral("%1/%2-%3.png")
        .arg(folder, QString::fromStdString(picture.name), QLatin1String(what));
}

class Golden : public testing::TestWithParam<Picture> {};

TEST_P(Golden, pictureIsAsItWas) {
    const Picture& picture = GetParam();
    const GoldenDevice& device = GoldenDevice::current();
    const QImage actual = drawn(picture);
    if (device.update) {
        QDir().mkpath(QStringLiteral(OSTRELLA_GOLDEN_PICTURES "/%1").arg(device.name));
        ASSERT_TRUE(actual.save(reference(device.name, picture), "PNG", 1));
        return;
    }
    QFile::remove(left(picture, "actual"));
    QFile::remove(left(picture, "difference"));
    const QImage expected(reference(device.name, picture));
    const auto own = PictureDifference::between(actual, expected);
    const auto other = PictureDifference::between(actual, QImage(reference(device.other, picture)));
    EXPECT_TRUE(own.isSame()) << own.description().toStdString();
    EXPECT_TRUE(other.isAlike()) << "beside " << device.other.toStdString()
                                 << "'s: " << other.description().toStdString();
    if (HasFailure()) {
        actual.save(left(picture, "actual"));
        differencePicture(actual, expected).save(left(picture, "difference"));
    }
}

TEST_P(Golden, pictureIsTheSameWhenDrawnAgain) {
    EXPECT_EQ(PictureDifference::between(drawn(GetParam()), drawn(GetParam())).largest, 0);
}

INSTANTIATE_TEST_SUITE_P(Pictures, Golden,
    testing::ValuesIn(golden::pictures().begin(), golden::pictures().end()),
    [](const testing::TestParamInfo<Picture>& picture) {
        std::string name = picture.param.name;
        std::ranges::replace(name, '-', '_');
        return name;
    });

// What the comparison is for: mistakes in a picture that is otherwise right do not pass it.
TEST(GoldenComparison, seesABodyThatIsOnePixelOff) {
    for (const char* name : {"glass", "shaded", "surface", "wireframe"}) {
        const auto picture = std::ranges::find(golden::pictures(), name, &Picture::name);
        const QImage right = drawn(*picture);
        golden::Scene moved(*picture);
        for (Uniforms& block : moved.frame.uniforms)
            block.projectionMatrix[2] += Vec4(2.0F / golden::width, 0, 0, 0) * -1.0F;
        RhiScene device(GoldenDevice::current().rhi());
        const auto image = OffscreenPicture::render(GoldenDevice::current().rhi(), device,
            right.size(), moved.frame, moved.renderer.buffers(), picture->pointScale);
        ASSERT_TRUE(image);
        EXPECT_FALSE(PictureDifference::between(right, *image).isSame()) << name;
    }
}

TEST(GoldenComparison, seesSwappedColors) {
    for (const Picture& picture : golden::pictures()) {
        const QImage right = drawn(picture);
        EXPECT_FALSE(PictureDifference::between(right, right.rgbSwapped()).isSame())
            << picture.name;
    }
}

} // namespace
} // namespace ostrella
