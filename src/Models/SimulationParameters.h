#pragma once

#include "Models/RunState.h"
#include "Models/SimulationInputs.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"

#include <QObject>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace ostrella {

class AppSettings;

/// The working state of one launch: the loaded model, its orientation and the free-stream values.
/// None of it survives the process. Main thread only; a setter notifies at every set.
class SimulationParameters : public QObject {
    Q_OBJECT
    Q_PROPERTY(double velocity READ velocity WRITE setVelocity NOTIFY velocityChanged)
    Q_PROPERTY(double alpha READ alpha WRITE setAlpha NOTIFY alphaChanged)
    Q_PROPERTY(double beta READ beta WRITE setBeta NOTIFY betaChanged)
    Q_PROPERTY(double density READ density WRITE setDensity NOTIFY densityChanged)
    Q_PROPERTY(bool saRotationCorrection READ saRotationCorrection WRITE setSARotationCorrection
            NOTIFY saRotationCorrectionChanged)
    Q_PROPERTY(bool saTransition READ saTransition WRITE setSATransition NOTIFY saTransitionChanged)
    Q_PROPERTY(int maxIterations READ maxIterations NOTIFY maxIterationsChanged)
    Q_PROPERTY(double rotationX READ rotationX WRITE setRotationX NOTIFY rotationXChanged)
    Q_PROPERTY(double rotationY READ rotationY WRITE setRotationY NOTIFY rotationYChanged)
    Q_PROPERTY(double rotationZ READ rotationZ WRITE setRotationZ NOTIFY rotationZChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)

public:
    explicit SimulationParameters(QObject* parent = nullptr);

    /// File of the loaded model.
    const std::optional<std::filesystem::path>& stlURL() const { return stlURL_; }
    /// The model as loaded, in the application's frame, unturned.
    const std::optional<TriangleMesh>& mesh() const { return mesh_; }
    double velocity() const { return velocity_; }
    double alpha() const { return alpha_; }
    double beta() const { return beta_; }
    double density() const { return density_; }
    TurbulenceModel turbulenceModel() const { return turbulenceModel_; }
    FlowRegime regime() const { return regime_; }
    bool saRotationCorrection() const { return saRotationCorrection_; }
    bool saTransition() const { return saTransition_; }
    /// Iteration limit of the last started run; no user value.
    int maxIterations() const { return maxIterations_; }
    double rotationX() const { return rotationX_; }
    double rotationY() const { return rotationY_; }
    double rotationZ() const { return rotationZ_; }
    /// Present only while a file is being loaded.
    const std::optional<std::string>& loadingFileName() const { return loadingFileName_; }
    /// Absent until known.
    std::optional<std::int64_t> openEdgeCount() const { return openEdgeCount_; }
    bool isRunning() const { return isRunning_; }
    /// What the viewport shows.
    const std::optional<SimulationResult>& lastRunResult() const { return lastRunResult_; }

    /// The three turns in radians, narrowed to 32 bits ahead of the arithmetic.
    Vec3 rotationRadians() const;

    /// Freezes the values for a run; the iteration limit and the streamline values are those of the
    /// settings, where there are any.
    SimulationInputs snapshot(const AppSettings* settings) const;

    void setSTLURL(std::optional<std::filesystem::path> value);
    /// A new model ends the result on show and the count of open edges, also if it is the same
    /// model.
    void setMesh(std::optional<TriangleMesh> value);
    void setVelocity(double value);
    void setAlpha(double value);
    void setBeta(double value);
    void setDensity(double value);
    void setTurbulenceModel(TurbulenceModel value);
    void setRegime(FlowRegime value);
    void setSARotationCorrection(bool value);
    void setSATransition(bool value);
    void setMaxIterations(int value);
    /// A turn ends the result on show, except during a run: a result belongs to one orientation.
    void setRotationX(double value);
    void setRotationY(double value);
    void setRotationZ(double value);
    void setLoadingFileName(std::optional<std::string> value);
    void setOpenEdgeCount(std::optional<std::int64_t> value);
    void setIsRunning(bool value);
    void setLastRunResult(std::optional<SimulationResult> value);

Q_SIGNALS:
    void stlURLChanged();
    void meshChanged();
    void velocityChanged();
    void alphaChanged();
    void betaChanged();
    void densityChanged();
    void turbulenceModelChanged();
    void regimeChanged();
    void saRotationCorrectionChanged();
    void saTransitionChanged();
    void maxIterationsChanged();
    void rotationXChanged();
    void rotationYChanged();
    void rotationZChanged();
    void loadingFileNameChanged();
    void openEdgeCountChanged();
    void isRunningChanged();
    void lastRunResultChanged();

private:
    void setRotation(double& field, double value, void (SimulationParameters::*changed)());
    void discardResultForNewOrientation();

    std::optional<std::filesystem::path> stlURL_;
    std::optional<TriangleMesh> mesh_;
    double velocity_;
    double alpha_;
    double beta_;
    double density_;
    TurbulenceModel turbulenceModel_;
    FlowRegime regime_;
    bool saRotationCorrection_;
    bool saTransition_;
    int maxIterations_;
    double rotationX_ = 0;
    double rotationY_ = 0;
    double rotationZ_ = 0;
    std::optional<std::string> loadingFileName_;
    std::optional<std::int64_t> openEdgeCount_;
    bool isRunning_ = false;
    std::optional<SimulationResult> lastRunResult_;
};

} // namespace ostrella
