#pragma once

#include "Brand/Brand.h"
#include "Models/Vector.h"

namespace ostrella {

/// The colours of the viewport as the renderer takes them: sRGB components, written as they are.
/// The viewport is dark whatever the window's appearance.
namespace ViewportStyle {

/// The components of a colour under the dark appearance.
constexpr Vec3 darkRGB(const Brand::Color& color) {
    return color.dark.rgb;
}

inline constexpr Vec3 background = darkRGB(Brand::surfaceBase);
inline constexpr Vec3 accent = darkRGB(Brand::accentPrimary);

inline constexpr Vec3 shadedBaseColor{0.62F, 0.72F, 0.85F};
inline constexpr Vec3 streamlineFloorColor{0.55F, 0.55F, 0.70F};
inline constexpr Vec3 vortexTint{0.80F, 0.85F, 0.90F};
inline constexpr Vec3 vortexRimColor{0.93F, 0.95F, 0.98F};

/// Of the gizmo's axes and of the orientation rings.
inline constexpr Vec4 gizmoAxisX{0.84F, 0.48F, 0.47F, 0.72F};
inline constexpr Vec4 gizmoAxisY{0.52F, 0.76F, 0.52F, 0.72F};
inline constexpr Vec4 gizmoAxisZ{0.50F, 0.62F, 0.88F, 0.72F};

} // namespace ViewportStyle

} // namespace ostrella
