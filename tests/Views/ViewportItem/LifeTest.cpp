#include "Views/ViewportItem/ItemWindow.h"
#include "golden/PictureCompare.h"
#include "support/Wait.h"

#include <QOpenGLContext>

#include <utility>

#include <private/qrhi_p_p.h>
#include <private/qrhigles2_p_p.h>

namespace ostrella::test {
namespace {

class ItemLife : public ItemWindow {
protected:
    void SetUp() override {
        loadBallWithResult();
        settings->setFlowAnimation(false);
    }

    void expectCapture() {
        const QImage picture = captured();
        ASSERT_FALSE(picture.isNull());
        const auto difference = PictureDifference::between(picture, expected(false));
        EXPECT_TRUE(difference.isSame()) << difference.description().toStdString();
    }
};

/// Takes a device's context away, so that it finds itself lost with the next frame; the context,
/// to be kept until the device is gone. Nothing where the device is of another kind.
// The library keeps to itself what a sanitizer would check the device's type with.
__attribute__((no_sanitize("vptr"))) std::unique_ptr<QOpenGLContext> loseDevice(QRhi& rhi) {
    if (rhi.backend() != QRhi::OpenGLES2)
        return nullptr;
    struct Resource : QRhiBuffer {
        static QRhiImplementation* implementationOf(QRhiBuffer& buffer) {
            return buffer.*(&Resource::m_rhi);
        }
    };
    const std::unique_ptr<QRhiBuffer> probe(
        rhi.newBuffer(QRhiBuffer::Static, QRhiBuffer::VertexBuffer, 16));
    auto* device = static_cast<QRhiGles2*>(Resource::implementationOf(*probe));
    return std::unique_ptr<QOpenGLContext>(std::exchange(device->ctx, new QOpenGLContext));
}

TEST_F(ItemLife, drawsTheSameOnAnotherDeviceAfterALoss) {
    showWindow();
    settle();
    const QImage before = shown();
    int invalidations = 0;
    QObject::connect(
        window.get(), &QQuickWindow::sceneGraphInvalidated, item, [&] { ++invalidations; });
    for (int loss = 1; loss <= 3; ++loss) {
        const auto context = loseDevice(*device());
        if (!context)
            GTEST_SKIP() << "the loss of this device cannot be brought about";
        EXPECT_TRUE(captured().isNull()) << "by the device that is gone";
        const std::uint64_t frames = item->frameCount();
        item->update();
        ASSERT_TRUE(
            waitUntil([&] { return invalidations == loss && item->frameCount() > frames; }));
        settle();
        ASSERT_NE(device(), nullptr);
        EXPECT_FALSE(device()->isDeviceLost());
        EXPECT_EQ(PictureDifference::between(shown(), before).largest, 0);
        expectCapture();
    }
}

TEST_F(ItemLife, drawsTheSameInAWindowThatWasMadeAnew) {
    window->setPersistentGraphics(false);
    window->setPersistentSceneGraph(false);
    showWindow();
    settle();
    const QImage before = shown();
    for (int round = 0; round < 3; ++round) {
        window->releaseResources();
        window->destroy();
        EXPECT_FALSE(item->isShown());
        window->show();
        ASSERT_TRUE(waitUntil([&] { return item->isShown(); }));
        EXPECT_EQ(PictureDifference::between(shown(), before).largest, 0);
    }
    expectPicture();
}

TEST_F(ItemLife, givesPictures) {
    showWindow();
    settle();
    expectCapture();
    settings->setOrientMode(true); // whose rings are in no picture
    settle();
    expectCapture();
}

TEST_F(ItemLife, givesPicturesWhileHidden) {
    showWindow();
    settle();
    window->hide();
    settings->setWireframe(true);
    settings->setColormapEnabled(false);
    expectCapture();
    window->resize(200, 150);
    ASSERT_TRUE(waitUntil([&] { return item->width() == 200; }));
    const std::uint64_t frames = item->frameCount();
    expectCapture();
    EXPECT_EQ(item->frameCount(), frames) << "none was needed";
}

TEST_F(ItemLife, givesPicturesWhileMinimised) {
    showWindow();
    settle();
    window->showMinimized();
    ASSERT_TRUE(waitUntil([&] { return !item->isShown(); }));
    settings->setVortexEnabled(false);
    expectCapture();
}

TEST_F(ItemLife, givesNoPictureBeforeTheWindowWasEverShown) {
    window->contentItem()->setSize(window->size());
    EXPECT_TRUE(captured().isNull());
    showWindow();
    settle();
    expectCapture();
}

TEST_F(ItemLife, givesNoPictureOfOnePixel) {
    showWindow();
    window->resize(1, 100);
    ASSERT_TRUE(waitUntil([&] { return item->width() == 1; }));
    if (window->effectiveDevicePixelRatio() == 1)
        EXPECT_TRUE(captured().isNull());
    else
        EXPECT_FALSE(captured().isNull());
}

} // namespace
} // namespace ostrella::test
