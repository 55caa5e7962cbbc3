#include "Models/PlatformWords.h"

namespace ostrella {

const PlatformWords& PlatformWords::mac() {
    static constexpr PlatformWords words{
        .systemName = "macOS",
        .noGraphicsDevice = "no Metal device",
        .requiredGraphics = "Ostrella requires a Metal-capable GPU",
        .toolsPlace = "Ostrella.app (Contents/MacOS)",
        .openShortcut = "⌘O",
        .runShortcut = "⌘R",
        .settingsShortcut = "⌘,",
        .originalSizeShortcut = "⌥⌘0",
        .viewShortcutPrefix = "⌥⌘",
        .machine = "Mac",
        .translatedArchitecture = "x86_64 via Rosetta, ",
        .licensesFolder = "Contents/Resources/licenses",
    };
    return words;
}

const PlatformWords& PlatformWords::freedesktop() {
    static constexpr PlatformWords words{
        .systemName = "Linux",
        .noGraphicsDevice = "no graphics device",
        .requiredGraphics = "Ostrella requires OpenGL 4.3 or Vulkan",
        .toolsPlace = "Ostrella (libexec/ostrella)",
        .openShortcut = "Ctrl+O",
        .runShortcut = "Ctrl+R",
        .settingsShortcut = "Ctrl+,",
        .originalSizeShortcut = "Ctrl+Alt+0",
        .viewShortcutPrefix = "Ctrl+Alt+",
        .machine = "computer",
        .translatedArchitecture = "x86_64, ",
        .licensesFolder = "share/ostrella/licenses",
    };
    return words;
}

} // namespace ostrella
