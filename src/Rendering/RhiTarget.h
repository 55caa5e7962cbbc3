#pragma once

#include "Rendering/Rhi.h"

#include <memory>

namespace ostrella {

/// What a scene is drawn into: a colour texture of four 8-bit components, drawn with several
/// samples a pixel where the device has them, and a depth buffer. The texture can be read back and
/// sampled.
class RhiTarget {
public:
    /// Samples a pixel of a picture that moves no more than others.
    static constexpr int preferredSamples = 4;

    /// Throws RhiError where the device refuses this size. At least 1 × 1.
    RhiTarget(QRhi& rhi, QSize pixels, int mostSamples = preferredSamples);
    ~RhiTarget();
    RhiTarget(const RhiTarget&) = delete;
    RhiTarget& operator=(const RhiTarget&) = delete;

    QSize pixelSize() const { return pixels_; }
    int samples() const { return samples_; }
    QRhiTexture& texture() const { return *texture_; }
    QRhiRenderTarget& renderTarget() const { return *target_; }
    QRhiRenderPassDescriptor& pass() const { return *pass_; }

private:
    QSize pixels_;
    int samples_ = 1;
    // The order of their making; they go in the opposite one.
    std::unique_ptr<QRhiTexture> texture_;
    std::unique_ptr<QRhiRenderBuffer> multisampled_;
    std::unique_ptr<QRhiRenderBuffer> depth_;
    std::unique_ptr<QRhiRenderPassDescriptor> pass_;
    std::unique_ptr<QRhiTextureRenderTarget> target_;
};

} // namespace ostrella
