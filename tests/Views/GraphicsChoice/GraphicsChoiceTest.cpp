#include "Views/GraphicsChoice.h"

#include "Models/PlatformWords.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

std::optional<std::string> label(QSGRendererInterface::GraphicsApi api) {
    return GraphicsChoice::label(api, PlatformWords::freedesktop());
}

TEST(GraphicsChoice, TheLogNamesTheInterfaceThatDraws) {
    EXPECT_EQ(label(QSGRendererInterface::OpenGL), "OpenGL");
    EXPECT_EQ(label(QSGRendererInterface::Vulkan), "Vulkan");
    EXPECT_EQ(label(QSGRendererInterface::Software), "no graphics device");
}

TEST(GraphicsChoice, TheSystemNamesMetalAndItsFamily) {
    EXPECT_EQ(label(QSGRendererInterface::Metal), std::nullopt);
}

} // namespace
} // namespace ostrella
