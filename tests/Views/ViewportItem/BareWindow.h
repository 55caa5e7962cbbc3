#pragma once

#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Views/Viewport/ViewportItem.h"
#include "support/Wait.h"

#include <QQuickWindow>

#include <gmock/gmock.h>

namespace ostrella::test {

/// A white window of 64 × 48 points with a viewport that no device of ours draws. What keeps the
/// device away is to be set up before it is made.
struct BareWindow {
    BareWindow() {
        window.setColor(Qt::white);
        window.resize(64, 48);
        item = new ViewportItem(window.contentItem());
        item->setSize(window.size());
        item->setModel(parameters, settings);
    }

    /// The window comes, without the scene and without a picture of it, and says what is missing.
    void expectNoScene() {
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
    }

    SimulationParameters parameters;
    RenderSettings settings;
    QQuickWindow window;
    ViewportItem* item = nullptr; ///< owned by the window
};

} // namespace ostrella::test
