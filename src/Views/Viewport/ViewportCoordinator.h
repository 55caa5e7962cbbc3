#pragma once

#include "Models/SharedArray.h"
#include "Models/Vector.h"
#include "Models/ViewPreset.h"
#include "Rendering/MetalRenderer.h"
#include "Rendering/PreparedModel.h"
#include "Views/Viewport/ArcBallMTKView.h"

#include <QObject>
#include <QUuid>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class QImage;

namespace ostrella {

class RenderSettings;
class SimulationParameters;

/// Keeps the viewport in step with the shared objects: it brings the renderer up to date once per
/// turn of the event loop after something was set, acts on requests whose identifier has changed,
/// and writes back what the user does in the view. Main thread only; the shared objects outlive it.
class ViewportCoordinator final : public QObject {
public:
    using SnapshotCompletion = std::function<void(const QImage*)>;
    /// Draws the scene in so many pixels, without gizmo and rings, and answers on the main thread,
    /// at once or later; null where no picture could be made.
    using Capture = std::function<void(int width, int height, SnapshotCompletion answer)>;

    /// `clock` counts seconds; see MetalRenderer.
    ViewportCoordinator(SimulationParameters& parameters, RenderSettings& settings,
        MetalRenderer::MediaClock clock);
    ~ViewportCoordinator() override;

    MetalRenderer& renderer() { return renderer_; }
    ArcBallMTKView& view() { return view_; }

    /// The system asks for less motion; without it, it does not.
    std::function<bool()> prefersReducedMotion;
    /// Without it no snapshot has a picture.
    Capture capture;
    /// Models of more facets are prepared on a worker. Meanwhile the view stays as it was, and
    /// everything that was set comes with the model.
    std::size_t mostFacetsAtOnce = 50'000;

    /// Brings the renderer up to date in the next turn of the event loop, once for all calls until
    /// then.
    void scheduleUpdate();
    /// Brings the renderer up to date now.
    void update();

private:
    struct Preparation {
        SharedArray<Vec3> positions; ///< of the mesh that it is of
        std::optional<PreparedModel> model;
    };

    void observe();
    void connectView();
    bool canOrient() const;
    bool hasNewModel() const;
    /// True if the model on show can be changed now; otherwise it is being prepared.
    bool modelIsReady();
    void accept(const SharedArray<Vec3>& positions, PreparedModel model);

    // The parts of an update, in their order.
    void wireInteraction();
    void copyToggles();
    void takeInsets();
    void refreshRotation();
    void updateModel();
    void updateResult();
    void actOnRequests();

    void queueDeselect();
    void rotate(OrientationAxis axis, double degrees);
    void captureSnapshot(const QUuid& request);

    SimulationParameters& parameters_;
    RenderSettings& settings_;
    MetalRenderer renderer_;
    ArcBallMTKView view_;
    /// Lives as long as this, for whoever holds a pointer to it on a worker.
    std::shared_ptr<const bool> life_ = std::make_shared<bool>(true);
    bool updateIsScheduled_ = false;
    std::optional<Preparation> preparation_;

    /// Those that orient mode began with, until the card of that mode has come.
    std::optional<ViewportInsets> insetsWithoutOrientCard_;
    bool hasModel_ = false;
    std::optional<std::filesystem::path> lastSTLURL_;
    SharedArray<Vec3>
        lastPositions_; ///< of the mesh on show; held, so that no other takes its place
    std::optional<std::string> lastRunDir_;
    std::optional<QUuid> lastReframeID_;
    std::optional<QUuid> lastPresetID_;
    std::optional<QUuid> lastSnapshotID_;
};

} // namespace ostrella
