#pragma once

#include "Rendering/FrameEncoding.h"
#include "Rendering/RhiScene.h"
#include "Rendering/SceneBuffers.h"

#include <QColor>
#include <QImage>

#include <span>
#include <vector>

namespace ostrella {

/// A frame made by hand, seen straight on without perspective: x to the right and y up from −1 to 1
/// over a square picture, z towards the viewer from −1 to 1. Its light falls along the view.
struct FlatScene {
    static constexpr int size = 64; ///< pixels a side

    FrameEncoding frame;
    SceneBuffers buffers;
    float pointScale = 1;
    int samples = RhiTarget::preferredSamples;

    FlatScene();

    template <class T>
    void fill(SceneBuffer buffer, const std::vector<T>& values) {
        fillBytes(buffer, std::as_bytes(std::span(values)));
    }

    /// A quad across the box of these corners at a height, with normals towards the viewer; for the
    /// model or the vortex. `tilt` degrees about the vertical through its middle.
    void addQuad(SceneBuffer vertices, Vec2 min, Vec2 max, float z, float tilt = 0);
    /// The same with scalars, a number for all four corners.
    void addScalarQuad(Vec2 min, Vec2 max, float scalar, float z = 0, float tilt = 0);

    /// A draw of all that a buffer holds, with the extras that the looks of these tests share.
    DrawCommand& draw(Pipeline pipeline, DepthState depth = DepthState::less);

    /// The picture from the current device; fails the test and is empty where there is none.
    QImage picture(int pixels = size) const;
    QImage picture(RhiScene& scene, int pixels = size) const;

private:
    void fillBytes(SceneBuffer buffer, std::span<const std::byte> bytes);
    std::vector<Vec4> quads_[2];
    std::vector<std::uint32_t> quadIndices_[2];
    std::vector<Vec4> scalars_;
    std::vector<std::uint32_t> scalarIndices_;
};

/// The background of hand-made frames.
inline const QColor flatGround = QColor(20, 40, 60);

/// Whether every component is within `tolerance`.
bool isNear(const QColor& a, const QColor& b, int tolerance);

} // namespace ostrella
