#include "Models/SimulationParameters.h"

#include "Models/AppSettings.h"

#include <utility>

namespace ostrella {

namespace {

constexpr SimulationInputs defaults;

} // namespace

SimulationParameters::SimulationParameters(QObject* parent)
    : QObject(parent),
      velocity_(defaults.velocity),
      alpha_(defaults.alpha),
      beta_(defaults.beta),
      density_(defaults.density),
      turbulenceModel_(defaults.turbulenceModel),
      regime_(defaults.regime),
      saRotationCorrection_(defaults.saRotationCorrection),
      saTransition_(defaults.saTransition),
      maxIterations_(defaults.maxIterations) {}

Vec3 SimulationParameters::rotationRadians() const {
    const auto radians = [](double degrees) {
        return static_cast<float>(degrees) * 3.1415925F / 180.0F;
    };
    return {radians(rotationX_), radians(rotationY_), radians(rotationZ_)};
}

SimulationInputs SimulationParameters::snapshot(const AppSettings* settings) const {
    SimulationInputs inputs;
    inputs.velocity = velocity_;
    inputs.alpha = alpha_;
    inputs.beta = beta_;
    inputs.density = density_;
    inputs.turbulenceModel = turbulenceModel_;
    inputs.regime = regime_;
    inputs.saRotationCorrection = saRotationCorrection_;
    inputs.saTransition = saTransition_;
    inputs.maxIterations = maxIterations_;
    if (settings) {
        inputs.maxIterations = settings->defaultMaxIterations();
        inputs.streamlineUpstreamFactor = static_cast<float>(settings->streamlineUpstreamFactor());
        inputs.streamlineDownstreamFactor =
            static_cast<float>(settings->streamlineDownstreamFactor());
        inputs.streamlineSeedCount = settings->streamlineSeedCount();
    }
    return inputs;
}

void SimulationParameters::setSTLURL(std::optional<std::filesystem::path> value) {
    stlURL_ = std::move(value);
    Q_EMIT stlURLChanged();
}

void SimulationParameters::setMesh(std::optional<TriangleMesh> value) {
    mesh_ = std::move(value);
    setLastRunResult(std::nullopt);
    setOpenEdgeCount(std::nullopt);
    Q_EMIT meshChanged();
}

void SimulationParameters::setVelocity(double value) {
    velocity_ = value;
    Q_EMIT velocityChanged();
}

void SimulationParameters::setAlpha(double value) {
    alpha_ = value;
    Q_EMIT alphaChanged();
}

void SimulationParameters::setBeta(double value) {
    beta_ = value;
    Q_EMIT betaChanged();
}

void SimulationParameters::setDensity(double value) {
    density_ = value;
    Q_EMIT densityChanged();
}

void SimulationParameters::setTurbulenceModel(TurbulenceModel value) {
    turbulenceModel_ = value;
    Q_EMIT turbulenceModelChanged();
}

void SimulationParameters::setRegime(FlowRegime value) {
    regime_ = value;
    Q_EMIT regimeChanged();
}

void SimulationParameters::setSARotationCorrection(bool value) {
    saRotationCorrection_ = value;
    Q_EMIT saRotationCorrectionChanged();
}

void SimulationParameters::setSATransition(bool value) {
    saTransition_ = value;
    Q_EMIT saTransitionChanged();
}

void SimulationParameters::setMaxIterations(int value) {
    maxIterations_ = value;
    Q_EMIT maxIterationsChanged();
}

void SimulationParameters::setRotationX(double value) {
    setRotation(rotationX_, value, &SimulationParameters::rotationXChanged);
}

void SimulationParameters::setRotationY(double value) {
    setRotation(rotationY_, value, &SimulationParameters::rotationYChanged);
}

void SimulationParameters::setRotationZ(double value) {
    setRotation(rotationZ_, value, &SimulationParameters::rotationZChanged);
}

void SimulationParameters::setRotation(
    double& field, double value, void (SimulationParameters::*changed)()) {
    const double old = std::exchange(field, value);
    Q_EMIT(this->*changed)();
    if (field != old) {
        discardResultForNewOrientation();
    }
}

void SimulationParameters::discardResultForNewOrientation() {
    if (!isRunning_ && lastRunResult_) {
        setLastRunResult(std::nullopt);
    }
}

void SimulationParameters::setLoadingFileName(std::optional<std::string> value) {
    loadingFileName_ = std::move(value);
    Q_EMIT loadingFileNameChanged();
}

void SimulationParameters::setOpenEdgeCount(std::optional<std::int64_t> value) {
    openEdgeCount_ = value;
    Q_EMIT openEdgeCountChanged();
}

void SimulationParameters::setIsRunning(bool value) {
    isRunning_ = value;
    Q_EMIT isRunningChanged();
}

void SimulationParameters::setLastRunResult(std::optional<SimulationResult> value) {
    lastRunResult_ = std::move(value);
    Q_EMIT lastRunResultChanged();
}

} // namespace ostrella
