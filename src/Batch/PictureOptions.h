#pragma once

#include "Models/ViewPreset.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// How the picture of --image is taken.
struct PictureOptions {
    /// Pixels.
    int width = 1200;
    int height = 800;
    ViewPreset view = ViewPreset::iso;

    /// Layers as the window's toggles have them after a run; a result without one has nothing to
    /// show there.
    struct Layers {
        bool cp = true;
        bool streams = true;
        bool vortex = true;
        bool grid = true;
        bool wireframe = false;

        bool operator==(const Layers&) const = default;
    };
    Layers layers;
    /// A body without a result looks as one with it does, instead of glass.
    bool shaded = false;
    /// Most samples a pixel; fewer where the device has no more.
    int samples = 4;

    bool operator==(const PictureOptions&) const = default;
};

/// The words of the picture's options.
namespace PictureWords {

/// The longest side that a picture may have, in pixels.
inline constexpr int longestSide = 16384;

/// A layer's word and its toggle.
struct Layer {
    std::string_view name;
    bool PictureOptions::Layers::*toggle;
};
inline constexpr std::array allLayers{
    Layer{"cp", &PictureOptions::Layers::cp},
    Layer{"streams", &PictureOptions::Layers::streams},
    Layer{"vortex", &PictureOptions::Layers::vortex},
    Layer{"grid", &PictureOptions::Layers::grid},
    Layer{"wireframe", &PictureOptions::Layers::wireframe},
};

/// "WxH" in pixels, whole numbers from 1 to the longest side. Throws UsageError.
void readSize(const std::string& word, PictureOptions& into);
/// The name of a view. Throws UsageError.
void readView(const std::string& word, PictureOptions& into);
/// "glass" or "shaded". Throws UsageError.
void readLook(const std::string& word, PictureOptions& into);
/// A power of two from 1 to 8. Throws UsageError.
void readSamples(const std::string& word, PictureOptions& into);
/// Names with commas between them, or "none"; the layers not named are off. Throws UsageError.
void readLayers(const std::string& word, PictureOptions& into);

} // namespace PictureWords

} // namespace ostrella
