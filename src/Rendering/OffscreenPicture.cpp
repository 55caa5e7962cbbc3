#include "Rendering/OffscreenPicture.h"

#include "Models/Precondition.h"

#include <QColorSpace>

namespace ostrella {

std::optional<QImage> OffscreenPicture::render(QRhi& rhi, RhiScene& scene, QSize pixels,
    const FrameEncoding& frame, const SceneBuffers& buffers, float pointScale, int samples) {
    precondition(!rhi.isRecordingFrame(), "a picture is a frame of its own");
    RhiTarget target(rhi, pixels, samples);
    QRhiCommandBuffer* commands = nullptr;
    if (rhi.beginOffscreenFrame(&commands) != QRhi::FrameOpSuccess)
        return std::nullopt;
    QRhiReadbackResult result;
    QRhiResourceUpdateBatch* reading = rhi.nextResourceUpdateBatch();
    reading->readBackTexture({&target.texture()}, &result);
    try {
        scene.render(*commands, target, frame, buffers, pointScale, reading);
    } catch (...) {
        rhi.endOffscreenFrame();
        throw;
    }
    // The frame's end waits for the device, so the result is there afterwards.
    if (rhi.endOffscreenFrame() != QRhi::FrameOpSuccess)
        return std::nullopt;
    const QSize size = result.pixelSize;
    if (size != target.pixelSize() ||
        result.data.size() < qsizetype(4) * size.width() * size.height())
        return std::nullopt;
    const QImage read(reinterpret_cast<const uchar*>(result.data.constData()), size.width(),
        size.height(), 4 * size.width(), QImage::Format_RGBX8888);
    QImage image = rhi.isYUpInFramebuffer() ? read.mirrored() : read.copy();
    image.setColorSpace(QColorSpace(QColorSpace::SRgb));
    return image;
}

} // namespace ostrella
