#pragma once

#include "Models/Vector.h"

#include <cstdint>

namespace ostrella {

/// The one place where colours, type and shadows are defined, so that the window has one look in
/// dark and in light appearance. Plain values: what draws them turns them into its own.
namespace Brand {

enum class Appearance { dark, light };

/// sRGB components as they are written into a picture, 0 to 1, and an opacity.
struct Shade {
    Vec3 rgb{0.0F};
    float alpha = 1;

    bool operator==(const Shade&) const = default;
};

/// A colour of the window, one shade for each appearance.
struct Color {
    Shade dark;
    Shade light;

    /// The shade for an appearance.
    const Shade& resolved(Appearance appearance) const;
    bool operator==(const Color&) const = default;
};

/// The shade of a number like 0xF5A524: red, green and blue, a byte each.
constexpr Shade hexShade(std::uint32_t rgb, float alpha = 1) {
    const auto component = [&](unsigned shift) {
        return static_cast<float>((rgb >> shift) & 0xFFU) / 255.0F;
    };
    return {{component(16), component(8), component(0)}, alpha};
}

constexpr Color hexColor(std::uint32_t dark, std::uint32_t light) {
    return {hexShade(dark), hexShade(light)};
}

/// A shade between black (0) and white (1).
constexpr Shade grey(float white, float alpha) {
    return {Vec3(white), alpha};
}

inline constexpr Color surfaceBase = hexColor(0x0B0E14, 0xFCFBF8);
inline constexpr Color surfaceRaised = hexColor(0x11151D, 0xFFFFFF);
inline constexpr Color surfaceSunken = hexColor(0x070910, 0xF4F2EC);
inline constexpr Color textPrimary = hexColor(0xECEEF2, 0x0F1722);
inline constexpr Color textSecondary = hexColor(0xA8AEBB, 0x4A5161);
inline constexpr Color textTertiary = hexColor(0x6B7180, 0x6B7180);
inline constexpr Color textDisabled = hexColor(0x3E4452, 0xC6CAD3);
inline constexpr Color accentPrimary = hexColor(0xF5A524, 0xD88A0A);
inline constexpr Color accentPressed = hexColor(0xD88A0A, 0xA36608);
inline constexpr Color accentOn = hexColor(0x1A1212, 0xFFFFFF);
inline constexpr Color statusSuccess = hexColor(0x4ADE80, 0x16A34A);
inline constexpr Color statusWarning = hexColor(0xFBBF24, 0xB45309);
inline constexpr Color statusError = hexColor(0xF87171, 0xDC2626);
inline constexpr Color statusInfo = hexColor(0x60A5FA, 0x2563EB);

inline constexpr Color borderSubtle{grey(1.0F, 0.06F), grey(0.06F, 0.08F)};
inline constexpr Color borderStrong{grey(1.0F, 0.12F), grey(0.06F, 0.16F)};
inline constexpr Color accentSubtle{hexShade(0xF5A524, 0.14F), hexShade(0xD88A0A, 0.12F)};

/// Black.
inline constexpr Shade floatingShadow = grey(0.0F, 0.45F);

enum class Weight { regular, medium, semibold };
enum class Design { proportional, monospaced };

/// A style of type in the system's face; the size in points.
struct Typeface {
    int size = 13;
    Weight weight = Weight::regular;
    Design design = Design::proportional;

    bool operator==(const Typeface&) const = default;

    static const Typeface label;
    static const Typeface monoSmall;
    static const Typeface mono;
    static const Typeface caption;
    static const Typeface body;
    static const Typeface bodyMedium;
    static const Typeface hero;
    static const Typeface title;
    static const Typeface display;
};

inline constexpr Typeface Typeface::label{11, Weight::semibold, Design::proportional};
inline constexpr Typeface Typeface::monoSmall{11, Weight::regular, Design::monospaced};
inline constexpr Typeface Typeface::mono{12, Weight::regular, Design::monospaced};
inline constexpr Typeface Typeface::caption{12, Weight::regular, Design::proportional};
inline constexpr Typeface Typeface::body{13, Weight::regular, Design::proportional};
inline constexpr Typeface Typeface::bodyMedium{13, Weight::medium, Design::proportional};
inline constexpr Typeface Typeface::hero{15, Weight::semibold, Design::proportional};
inline constexpr Typeface Typeface::title{20, Weight::semibold, Design::proportional};
inline constexpr Typeface Typeface::display{34, Weight::semibold, Design::proportional};

} // namespace Brand

} // namespace ostrella
