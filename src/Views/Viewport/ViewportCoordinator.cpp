#include "Views/Viewport/ViewportCoordinator.h"

#include "Models/MainThread.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Rendering/OrientationGizmo.h"
#include "Rendering/OrientationMath.h"
#include "Solver/Tools/Background.h"

#include <QPointer>

#include <cmath>
#include <memory>
#include <numbers>
#include <utility>

namespace ostrella {

namespace {

float radians(double degrees) {
    return static_cast<float>(degrees * std::numbers::pi / 180);
}

} // namespace

ViewportCoordinator::ViewportCoordinator(
    SimulationParameters& parameters, RenderSettings& settings, MetalRenderer::MediaClock clock)
    : parameters_(parameters), settings_(settings), renderer_(std::move(clock)) {
    view_.renderer = &renderer_;
    connectView();
    observe();
    scheduleUpdate();
}

ViewportCoordinator::~ViewportCoordinator() = default;

void ViewportCoordinator::observe() {
    const auto on = [this](auto* object, auto... changes) {
        (connect(object, changes, this, &ViewportCoordinator::scheduleUpdate), ...);
    };
    using Settings = RenderSettings;
    on(&settings_, &Settings::wireframeChanged, &Settings::showGridChanged,
        &Settings::colormapEnabledChanged, &Settings::streamlinesEnabledChanged,
        &Settings::vortexEnabledChanged, &Settings::orientModeChanged,
        &Settings::flowAnimationChanged, &Settings::viewportInsetsChanged,
        &Settings::reframeRequestIDChanged, &Settings::viewPresetRequestIDChanged,
        &Settings::snapshotRequestIDChanged);
    using Parameters = SimulationParameters;
    on(&parameters_, &Parameters::stlURLChanged, &Parameters::meshChanged,
        &Parameters::alphaChanged, &Parameters::betaChanged, &Parameters::rotationXChanged,
        &Parameters::rotationYChanged, &Parameters::rotationZChanged,
        &Parameters::loadingFileNameChanged, &Parameters::isRunningChanged,
        &Parameters::lastRunResultChanged);
}

void ViewportCoordinator::connectView() {
    view_.onOrbit = [this] {
        if (settings_.viewPresetIsCurrent())
            settings_.setViewPresetIsCurrent(false);
    };
    view_.onSelect = [this](bool isOn) {
        if (settings_.orientMode() != isOn)
            settings_.setOrientMode(isOn);
    };
    view_.onRotate = [this](OrientationAxis axis, double degrees) { rotate(axis, degrees); };
    view_.onRotateEnded = [this] { renderer_.refitAfterOrienting(); };
}

void ViewportCoordinator::scheduleUpdate() {
    if (std::exchange(updateIsScheduled_, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (updateIsScheduled_)
                update();
        },
        Qt::QueuedConnection);
}

void ViewportCoordinator::update() {
    updateIsScheduled_ = false;
    if (!modelIsReady())
        return;
    wireInteraction();
    renderer_.reduceMotion = prefersReducedMotion && prefersReducedMotion();
    copyToggles();
    refreshRotation();
    renderer_.freeStream = OrientationGizmo::freeStreamDirection(
        radians(parameters_.alpha()), radians(parameters_.beta()));
    takeInsets();
    updateModel();
    updateResult();
    actOnRequests();
    view_.changed();
}

bool ViewportCoordinator::canOrient() const {
    return parameters_.mesh() && !parameters_.isRunning() && !parameters_.loadingFileName();
}

void ViewportCoordinator::wireInteraction() {
    const bool couldOrient = std::exchange(view_.canOrient, canOrient());
    if (couldOrient && !view_.canOrient) {
        view_.endRingDrag();
        view_.updateHover(std::nullopt);
    }
    const bool wasOrienting =
        std::exchange(renderer_.orientMode, settings_.orientMode() && view_.canOrient);
    if (!renderer_.orientMode) {
        view_.endRingDrag();
        renderer_.hoveredRing.reset();
        renderer_.activeRing.reset();
    } else if (!wasOrienting) {
        renderer_.refitAfterOrienting();
        insetsWithoutOrientCard_ = settings_.viewportInsets();
    }
    if (!view_.canOrient && settings_.orientMode())
        queueDeselect();
}

void ViewportCoordinator::takeInsets() {
    const ViewportInsets& insets = settings_.viewportInsets();
    renderer_.setInsets(insets);
    // The orientation card comes a moment after its mode, and the rings are to stay clear of it.
    if (renderer_.orientMode && insetsWithoutOrientCard_ && insetsWithoutOrientCard_ != insets) {
        insetsWithoutOrientCard_.reset();
        renderer_.refitAfterOrienting();
    }
}

void ViewportCoordinator::copyToggles() {
    renderer_.wireframe = settings_.wireframe();
    renderer_.showGrid = settings_.showGrid();
    renderer_.colormapEnabled = settings_.colormapEnabled();
    renderer_.streamlinesEnabled = settings_.streamlinesEnabled();
    renderer_.vortexEnabled = settings_.vortexEnabled();
    renderer_.flowAnimation = settings_.flowAnimation();
}

void ViewportCoordinator::refreshRotation() {
    renderer_.setModelRotation(parameters_.rotationRadians());
}

bool ViewportCoordinator::hasNewModel() const {
    const auto& mesh = parameters_.mesh();
    return mesh && (!hasModel_ || parameters_.stlURL() != lastSTLURL_ ||
                       !mesh->positions().sharesBufferWith(lastPositions_));
}

bool ViewportCoordinator::modelIsReady() {
    if (!hasNewModel() || parameters_.mesh()->facetCount() <= mostFacetsAtOnce)
        return true;
    const TriangleMesh& mesh = *parameters_.mesh();
    if (preparation_ && preparation_->positions.sharesBufferWith(mesh.positions()))
        return preparation_->model.has_value();
    preparation_ = Preparation{mesh.positions(), std::nullopt};
    Background::run(
        [mesh, this, life = std::weak_ptr(life_)] {
            const auto model = std::make_shared<PreparedModel>(PreparedModel::of(mesh));
            MainThread::post([this, life, positions = mesh.positions(), model] {
                if (!life.expired())
                    accept(positions, std::move(*model));
            });
        },
        Background::Priority::userInitiated);
    return false;
}

void ViewportCoordinator::accept(const SharedArray<Vec3>& positions, PreparedModel model) {
    // Another model may have come while this one was prepared.
    if (!preparation_ || !preparation_->positions.sharesBufferWith(positions))
        return;
    preparation_->model = std::move(model);
    update();
}

void ViewportCoordinator::updateModel() {
    if (hasNewModel()) {
        const TriangleMesh& mesh = *parameters_.mesh();
        if (preparation_ && preparation_->positions.sharesBufferWith(mesh.positions()))
            renderer_.upload(*preparation_->model);
        else
            renderer_.upload(mesh);
        hasModel_ = true;
        lastSTLURL_ = parameters_.stlURL();
        lastPositions_ = mesh.positions();
        queueDeselect();
    } else if (!parameters_.mesh() && hasModel_) {
        renderer_.clear();
        hasModel_ = false;
        lastSTLURL_.reset();
        lastPositions_ = {};
    }
    preparation_.reset();
}

void ViewportCoordinator::updateResult() {
    const auto& result = parameters_.lastRunResult();
    if (!result) {
        if (lastRunDir_)
            renderer_.clearResults();
        lastRunDir_.reset();
        return;
    }
    const std::string runDir = result->runDirectory.string();
    if (runDir == lastRunDir_)
        return;
    // What the new result lacks must not be shown from the one before.
    if (lastRunDir_)
        renderer_.clearResults();
    if (result->surfaceField)
        renderer_.uploadSurface(*result->surfaceField);
    if (result->streamlines)
        renderer_.uploadStreamlines(*result->streamlines);
    if (result->vortex)
        renderer_.uploadVortex(*result->vortex);
    lastRunDir_ = runDir;
    renderer_.reframe(true);
}

void ViewportCoordinator::actOnRequests() {
    if (settings_.reframeRequestID() != lastReframeID_) {
        lastReframeID_ = settings_.reframeRequestID();
        renderer_.reframe(false);
    }
    const auto& preset = settings_.viewPresetRequestID();
    if (preset && preset != lastPresetID_) {
        lastPresetID_ = preset;
        renderer_.applyPreset(settings_.viewPreset(), true);
    }
    const auto& snapshot = settings_.snapshotRequestID();
    if (snapshot && snapshot != lastSnapshotID_) {
        lastSnapshotID_ = snapshot;
        captureSnapshot(*lastSnapshotID_);
    }
}

void ViewportCoordinator::captureSnapshot(const QUuid& request) {
    // A picture that comes after its request was given up or replaced belongs to nobody.
    const SnapshotCompletion deliver = [settings = QPointer(&settings_), request](
                                           const QImage* image) {
        if (settings && settings->snapshotRequestID() == request)
            settings->deliverSnapshot(image);
    };
    const auto width = static_cast<int>(renderer_.viewportSize().x);
    const auto height = static_cast<int>(renderer_.viewportSize().y);
    if (!capture || width < 2 || height < 2)
        MainThread::post([deliver] { deliver(nullptr); });
    else
        capture(width, height, deliver);
}

void ViewportCoordinator::queueDeselect() {
    MainThread::post([settings = QPointer(&settings_)] {
        if (settings && settings->orientMode())
            settings->setOrientMode(false);
    });
}

void ViewportCoordinator::rotate(OrientationAxis axis, double degrees) {
    if (!canOrient())
        return;
    const glm::dvec3 turned = OrientationMath::rotated(
        {parameters_.rotationX(), parameters_.rotationY(), parameters_.rotationZ()}, axis, degrees);
    parameters_.setRotationX(turned.x);
    parameters_.setRotationY(turned.y);
    parameters_.setRotationZ(turned.z);
    refreshRotation();
}

} // namespace ostrella
