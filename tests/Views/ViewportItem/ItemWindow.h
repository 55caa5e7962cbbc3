#pragma once

#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Rendering/MetalRenderer.h"
#include "Views/Viewport/ViewportItem.h"

#include <QImage>
#include <QQuickWindow>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>

namespace ostrella::test {

/// The viewport alone in a window of 320 × 200 points. Its clock stands still until a test lets it
/// run.
class ItemWindow : public testing::Test {
protected:
    ItemWindow();
    ~ItemWindow() override;

    /// A ball in its flow, with surface, streamlines and vortex, all switched on.
    void loadBallWithResult();
    void showWindow();
    /// Waits until what was set has been drawn and no frame is asked for any more.
    void settle();
    /// Frames of the scene that are drawn in so long a time.
    std::uint64_t framesDuring(std::chrono::milliseconds time);
    bool waitForFrames(std::uint64_t count);

    /// What the window shows.
    QImage shown();
    /// What it ought to show, drawn by another device of the same kind.
    QImage expected(bool withGizmo = true);
    void expectPicture();
    /// What the viewport gives when it is asked for a picture; null if it gives none.
    QImage captured();

    QRhi* device() const { return ViewportNode::deviceOf(*window); }
    MetalRenderer& renderer() const { return item->coordinator()->renderer(); }

    double now = 100;
    bool clockRuns = false;
    std::optional<SimulationParameters> parameters{std::in_place};
    std::optional<RenderSettings> settings{std::in_place};
    std::unique_ptr<QQuickWindow> window;
    ViewportItem* item = nullptr; ///< fills the window, which owns it
};

} // namespace ostrella::test
