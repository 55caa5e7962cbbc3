#pragma once

#include <string_view>

namespace ostrella {

/// The few words in the application's texts that name the system it runs on. The text functions
/// take them as a parameter, so that every form is built and tested on every system.
struct PlatformWords {
    /// "macOS" or "Linux".
    std::string_view systemName;
    /// "Metal device" or "graphics device", as in "no … ".
    std::string_view noGraphicsDevice;
    /// What the user reads where nothing can draw the viewport.
    std::string_view requiredGraphics;
    /// Where the tools lie, as told to the user.
    std::string_view toolsPlace;
    /// "⌘O" or "Ctrl+O", and the like.
    std::string_view openShortcut;
    std::string_view runShortcut;
    std::string_view settingsShortcut;
    std::string_view originalSizeShortcut;
    /// What stands before the digit of a standard view: "⌥⌘" or "Ctrl+Alt+".
    std::string_view viewShortcutPrefix;
    /// The machine in front of the user: "Mac" or "computer".
    std::string_view machine;
    /// Said after "x86_64" of a solver on a machine that translates it.
    std::string_view translatedArchitecture;
    /// Folder of the licence texts, as told to the user.
    std::string_view licensesFolder;

    static const PlatformWords& mac();
    static const PlatformWords& freedesktop();
};

} // namespace ostrella
