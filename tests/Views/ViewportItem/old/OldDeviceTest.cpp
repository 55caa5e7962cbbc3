#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Views/Viewport/ViewportItem.h"
#include "support/Wait.h"

#include <QQuickWindow>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

TEST(OldDevice, drawsTheWindowButNotTheScene) {
    qputenv("QSG_RHI_BACKEND", "opengl");
    qputenv("MESA_GL_VERSION_OVERRIDE", "4.2");
    SimulationParameters parameters;
    RenderSettings settings;
    QQuickWindow window;
    window.setColor(Qt::white);
    window.resize(64, 48);
    auto* item = new ViewportItem(window.contentItem());
    item->setSize(window.size());
    item->setModel(parameters, settings);
    window.show();
    ASSERT_TRUE(waitUntil([&] { return !item->deviceProblem().isEmpty(); }));
    ASSERT_NE(ViewportNode::deviceOf(window), nullptr);
    EXPECT_EQ(item->deviceProblem(), QStringLiteral("Ostrella requires OpenGL 4.3 or Vulkan"));
    EXPECT_EQ(window.grabWindow().pixelColor(30, 20), QColor(Qt::white));
    EXPECT_EQ(item->frameCount(), 0U);

    bool answered = false;
    item->coordinator()->capture(64, 48, [&](const QImage* image) {
        answered = true;
        EXPECT_EQ(image, nullptr);
    });
    ASSERT_TRUE(waitUntil([&] { return answered; }));
}

} // namespace
} // namespace ostrella::test
