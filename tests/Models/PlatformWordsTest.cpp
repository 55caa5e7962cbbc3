#include "Models/PlatformWords.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(PlatformWords, ofAMac) {
    const PlatformWords& words = PlatformWords::mac();
    EXPECT_EQ(words.systemName, "macOS");
    EXPECT_EQ(words.noGraphicsDevice, "no Metal device");
    EXPECT_EQ(words.toolsPlace, "Ostrella.app (Contents/MacOS)");
    EXPECT_EQ(words.openShortcut, "⌘O");
    EXPECT_EQ(words.runShortcut, "⌘R");
    EXPECT_EQ(words.settingsShortcut, "⌘,");
    EXPECT_EQ(words.originalSizeShortcut, "⌥⌘0");
    EXPECT_EQ(words.viewShortcutPrefix, "⌥⌘");
    EXPECT_EQ(words.machine, "Mac");
    EXPECT_EQ(words.requiredGraphics, "Ostrella requires a Metal-capable GPU");
    EXPECT_EQ(words.translatedArchitecture, "x86_64 via Rosetta, ");
    EXPECT_EQ(words.licensesFolder, "Contents/Resources/licenses");
}

TEST(PlatformWords, ofAFreeDesktop) {
    const PlatformWords& words = PlatformWords::freedesktop();
    EXPECT_EQ(words.systemName, "Linux");
    EXPECT_EQ(words.noGraphicsDevice, "no graphics device");
    EXPECT_EQ(words.toolsPlace, "Ostrella (libexec/ostrella)");
    EXPECT_EQ(words.openShortcut, "Ctrl+O");
    EXPECT_EQ(words.runShortcut, "Ctrl+R");
    EXPECT_EQ(words.settingsShortcut, "Ctrl+,");
    EXPECT_EQ(words.originalSizeShortcut, "Ctrl+Alt+0");
    EXPECT_EQ(words.viewShortcutPrefix, "Ctrl+Alt+");
    EXPECT_EQ(words.machine, "computer");
    EXPECT_EQ(words.requiredGraphics, "Ostrella requires OpenGL 4.3 or Vulkan");
    EXPECT_EQ(words.translatedArchitecture, "x86_64, ");
    EXPECT_EQ(words.licensesFolder, "share/ostrella/licenses");
}

} // namespace
} // namespace ostrella
