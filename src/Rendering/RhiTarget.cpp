#include "Rendering/RhiTarget.h"

#include "Rendering/RhiError.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostrella {

namespace {

/// The most samples that the device has and this size may take: a very large picture is smooth
/// enough without, and its buffers would be too much for many a device.
int samplesFor(QRhi& rhi, QSize pixels, int most) {
    constexpr qint64 mostStored = 160'000'000; // samples of 8 bytes each
    int chosen = 1;
    for (const int count : rhi.supportedSampleCounts()) {
        if (count <= most && qint64(pixels.width()) * pixels.height() * count <= mostStored)
            chosen = std::max(chosen, count);
    }
    return chosen;
}

} // namespace

RhiTarget::RhiTarget(QRhi& rhi, QSize pixels, int mostSamples)
    : pixels_(pixels.expandedTo(QSize(1, 1))), samples_(samplesFor(rhi, pixels_, mostSamples)) {
    const int largest = rhi.resourceLimit(QRhi::TextureSizeMax);
    bool made = pixels_.width() <= largest && pixels_.height() <= largest;
    if (made) {
        texture_.reset(rhi.newTexture(QRhiTexture::RGBA8, pixels_, 1,
            QRhiTexture::RenderTarget | QRhiTexture::UsedAsTransferSource));
        made = texture_->create();
    }
    if (made && samples_ > 1) {
        multisampled_.reset(rhi.newRenderBuffer(
            QRhiRenderBuffer::Color, pixels_, samples_, {}, QRhiTexture::RGBA8));
        made = multisampled_->create();
    }
    if (made) {
        depth_.reset(rhi.newRenderBuffer(QRhiRenderBuffer::DepthStencil, pixels_, samples_));
        made = depth_->create();
    }
    if (made) {
        QRhiColorAttachment color(texture_.get());
        if (multisampled_) {
            color = QRhiColorAttachment(multisampled_.get());
            color.setResolveTexture(texture_.get());
        }
        QRhiTextureRenderTargetDescription parts(color);
        parts.setDepthStencilBuffer(depth_.get());
        target_.reset(rhi.newTextureRenderTarget(parts));
        pass_.reset(target_->newCompatibleRenderPassDescriptor());
        target_->setRenderPassDescriptor(pass_.get());
        made = target_->create();
    }
    if (!made)
        throw RhiError(fmt::format("the graphics device has no room for a picture of {} × {}",
            pixels_.width(), pixels_.height()));
}

RhiTarget::~RhiTarget() = default;

} // namespace ostrella
