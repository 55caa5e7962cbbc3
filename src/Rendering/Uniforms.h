#pragma once

#include "Models/Vector.h"

#include <cstddef>

namespace ostrella {

/// The blocks that draws hand to the shaders, byte for byte: all of them rows of four 32-bit
/// floats, so that every shading language lays them out alike.

/// Slot 1 of every scene draw.
struct Uniforms {
    Mat4 modelMatrix{1.0F};
    Mat4 viewMatrix{1.0F};
    Mat4 projectionMatrix{1.0F};
    Vec4 lightDirection{0.0F}; ///< unit vector in view space, w 0
    Vec4 baseColor{0.0F};
    Vec4 scalarRange{0.0F}; ///< least and greatest value of the draw's scalar, then zeros
};
static_assert(sizeof(Uniforms) == 240);

/// Slot 2 of the grid.
struct GridUniforms {
    Vec4 lineColor{0.0F};
    Vec4 background{0.0F};
    Vec4 fade{
        0.0F}; ///< centre x and z (m), half extent (m), where the fade begins as a share of it
};
static_assert(sizeof(GridUniforms) == 48);

/// Slot 2 of the body ahead of any result, of its wireframe and of feature lines.
struct PreRunUniforms {
    Vec4 color{0.0F};    ///< of the fill, or of the lines
    Vec4 rimColor{0.0F}; ///< zeros for lines
    Vec4 params{0.0F};   ///< fill: three parameters of the shading; lines: z scale and pull forward
};
static_assert(sizeof(PreRunUniforms) == 48);

/// Slot 2 of the vortex surface.
struct VortexUniforms {
    Vec4 tint{0.0F};
    Vec4 rimColor{0.0F};
    Vec4 params{0.0F};
};
static_assert(sizeof(VortexUniforms) == 48);

/// Slot 2 of the ribbons.
struct RibbonUniforms {
    Vec4 view{0.0F};  ///< width and height (pixels), half width of a ribbon (pixels), 1
    Vec4 depth{0.0F}; ///< near and far distance (m), brightness of the far end, alpha
    Vec4 pulse{0.0F}; ///< phase (s), spacing (m), speed (m/s), faded share at each end
    Vec4 look{0.0F};  ///< strength of the still thread, animation on, pull forward, pulse's tail
    Vec4 floorColor{0.0F};
};
static_assert(sizeof(RibbonUniforms) == 80);

/// Slot 2 of a ring.
struct RingStyle {
    Vec4 color{0.0F};
    Vec4 view{0.0F};   ///< width and height (pixels), half width (pixels), 1
    Vec4 centre{0.0F}; ///< centre (m), number of points
    Vec4 eye{0.0F};    ///< eye (m), 0
    Vec4 behind{0.0F}; ///< alpha of the half behind the body, softness of the passage, 0, 0
};
static_assert(sizeof(RingStyle) == 80);

/// Slot 1 of the gizmo.
struct GizmoUniforms {
    Vec4 box{0.0F}; ///< width and height of the gizmo's box (pixels), zeros
};
static_assert(sizeof(GizmoUniforms) == 16);

} // namespace ostrella
