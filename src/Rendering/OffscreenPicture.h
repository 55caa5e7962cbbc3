#pragma once

#include "Rendering/FrameEncoding.h"
#include "Rendering/Rhi.h"
#include "Rendering/RhiScene.h"
#include "Rendering/SceneBuffers.h"

#include <QImage>

namespace ostrella {

/// Frames as images in memory, read back from a device outside of any frame of it.
namespace OffscreenPicture {

/// One frame in so many pixels: opaque sRGB, 32 bits a pixel. Nothing where the device was lost on
/// the way. Throws RhiError where it has no room.
std::optional<QImage> render(QRhi& rhi, RhiScene& scene, QSize pixels, const FrameEncoding& frame,
    const SceneBuffers& buffers, float pointScale, int samples = RhiTarget::preferredSamples);

} // namespace OffscreenPicture

} // namespace ostrella
