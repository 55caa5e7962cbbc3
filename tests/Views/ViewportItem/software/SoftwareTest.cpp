#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Views/Viewport/ViewportItem.h"
#include "support/Wait.h"

#include <QQuickWindow>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

TEST(SoftwareSceneGraph, showsNothingAndSaysWhatIsMissing) {
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    SimulationParameters parameters;
    RenderSettings settings;
    QQuickWindow window;
    window.setColor(Qt::white);
    window.resize(64, 48);
    auto* item = new ViewportItem(window.contentItem());
    item->setSize(window.size());
    item->setModel(parameters, settings);
    EXPECT_EQ(item->deviceProblem(), QString()) << "not known yet";
    int changes = 0;
    QObject::connect(item, &ViewportItem::deviceProblemChanged, item, [&] { ++changes; });
    window.show();
    ASSERT_TRUE(waitUntil([&] { return !item->deviceProblem().isEmpty(); }));
    EXPECT_EQ(item->deviceProblem(), QStringLiteral("Ostrella requires OpenGL 4.3 or Vulkan"));
    EXPECT_EQ(window.grabWindow().pixelColor(30, 20), QColor(Qt::white));
    EXPECT_EQ(item->frameCount(), 0U);

    bool answered = false;
    item->coordinator()->capture(64, 48, [&](const QImage* image) {
        answered = true;
        EXPECT_EQ(image, nullptr);
    });
    ASSERT_TRUE(waitUntil([&] { return answered; }));
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace ostrella::test
