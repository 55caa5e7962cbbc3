#include "Views/ViewportItem/ItemWindow.h"

#include "Rendering/OffscreenDevice.h"
#include "Rendering/OffscreenPicture.h"
#include "golden/GoldenBodies.h"
#include "golden/PictureCompare.h"
#include "support/Wait.h"

#include <QEventLoop>
#include <QSGRendererInterface>
#include <QTimer>

namespace ostrella::test {

ItemWindow::ItemWindow() : window(std::make_unique<QQuickWindow>()) {
    window->resize(320, 200);
    item = new ViewportItem(window->contentItem());
    const auto fill = [this] { item->setSize(window->contentItem()->size()); };
    QObject::connect(window->contentItem(), &QQuickItem::widthChanged, item, fill);
    QObject::connect(window->contentItem(), &QQuickItem::heightChanged, item, fill);
    item->setModel(
        *parameters, *settings, [this] { return clockRuns ? ViewportItem::mediaTime() : now; });
}

ItemWindow::~ItemWindow() = default;

void ItemWindow::loadBallWithResult() {
    parameters->setSTLURL("ball.stl");
    parameters->setMesh(golden::ball());
    SimulationResult result;
    result.runDirectory = "ball";
    result.surfaceField = golden::ballPressure();
    result.streamlines = golden::ballFlow();
    result.vortex = golden::trailingVortices();
    parameters->setLastRunResult(std::move(result));
    settings->setColormapEnabled(true);
    settings->setStreamlinesEnabled(true);
    settings->setVortexEnabled(true);
}

void ItemWindow::showWindow() {
    const std::uint64_t before = item->frameCount();
    window->show();
    ASSERT_TRUE(waitUntil([&] { return window->isExposed() && item->frameCount() > before; }));
}

void ItemWindow::settle() {
    const auto isStill = [this] {
        now += 10; // whatever moves for a while has come to its end
        return framesDuring(std::chrono::milliseconds(100)) == 0;
    };
    ASSERT_TRUE(waitUntil(isStill));
}

std::uint64_t ItemWindow::framesDuring(std::chrono::milliseconds time) {
    const std::uint64_t before = item->frameCount();
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    return item->frameCount() - before;
}

bool ItemWindow::waitForFrames(std::uint64_t count) {
    const std::uint64_t before = item->frameCount();
    return waitUntil([&] { return item->frameCount() >= before + count; });
}

QImage ItemWindow::shown() {
    QImage image = window->grabWindow();
    image.setDevicePixelRatio(1);
    return image;
}

QImage ItemWindow::expected(bool withGizmo) {
    const auto api = window->rendererInterface()->graphicsApi();
    const auto backend = api == QSGRendererInterface::Vulkan ? OffscreenDevice::Backend::vulkan
                                                             : OffscreenDevice::Backend::openGL;
    const auto other = OffscreenDevice::create(backend);
    if (!other)
        return {};
    RhiScene scene(other->rhi());
    const double ratio = window->effectiveDevicePixelRatio();
    const QSize pixels(qRound(item->width() * ratio), qRound(item->height() * ratio));
    const Vec2 size(static_cast<float>(pixels.width()), static_cast<float>(pixels.height()));
    return OffscreenPicture::render(other->rhi(), scene, pixels,
        renderer().encodeScene(size, now, withGizmo), renderer().buffers(),
        static_cast<float>(ratio), item->samples())
        .value_or(QImage());
}

void ItemWindow::expectPicture() {
    const QImage seen = shown();
    const QImage wanted = expected();
    ASSERT_FALSE(wanted.isNull());
    const auto difference = PictureDifference::between(seen, wanted);
    EXPECT_TRUE(difference.isSame()) << difference.description().toStdString();
}

QImage ItemWindow::captured() {
    QImage picture;
    bool answered = false;
    settings->requestSnapshot([&](const QImage* image) {
        answered = true;
        if (image != nullptr)
            picture = *image;
    });
    EXPECT_TRUE(waitUntil([&] { return answered; }));
    return picture;
}

} // namespace ostrella::test
