#pragma once

#include "Models/Cancellation.h"
#include "Models/SurfaceFitness.h"
#include "Models/TriangleMesh.h"
#include "Solver/Run/SolverRunner.h"
#include "Solver/Surface/SurfacePreparer.h"
#include "Solver/Tools/GMSHRunner.h"
#include "Solver/Tools/MeshQuality.h"
#include "Solver/Tools/RunEnvironment.h"
#include "Solver/Tools/RunLog.h"

#include <filesystem>
#include <optional>

namespace ostrella {

/// What came of meshing the air around a model.
struct MeshedModel {
    GMSHRunner::Output mesh;
    /// In the application's frame of axes; absent where the surface could not be judged.
    std::optional<SurfaceFitness> fitness;
    /// The surface that was meshed, in the solver's frame of axes; absent where that is the model
    /// as it is.
    std::optional<TriangleMesh> prepared;
};

/// The way from a model to the mesh around it: its surface is judged, meshed as it is where it is
/// fit for that, and prepared where it is not, where the mesher fails on it, or where the cells
/// around it are too flat for a solver and those around the prepared one are less so; all as far
/// as the environment's choice allows. For a worker, and for one model.
class SurfaceMeshing {
public:
    /// Seconds that judging may take: what takes longer is prepared if the choice is automatic. The
    /// other choices do not depend on it, so the mesher waits less for it.
    static constexpr double longestJudging = 10;
    static constexpr double longestJudgingAside = 3;
    /// Seconds that the mesher has for a surface as it is if the choice is automatic. With this,
    /// the judging of a large model, the mesher's end by force, the preparation and the mesh of
    /// what came of it stay within a minute on two cores.
    static constexpr double longestAttempt = 25;
    /// Seconds that preparing a surface may take, and the mesh around a prepared one where nothing
    /// else is left to try: far more than any body needs, so that nothing is waited for without
    /// end.
    static constexpr double longestPreparing = 60;
    static constexpr double longestLastAttempt = 180;

    /// Where a run takes place and whom it tells; all of it must outlive the meshing.
    struct Setting {
        const RunEnvironment& environment;
        const std::filesystem::path& directory;
        const RunLog& log;
        const SolverRunner::Events& events;
        const CancellationToken& token;
    };

    /// The model as it was turned by the user, in the application's frame of axes, and the same in
    /// the solver's.
    SurfaceMeshing(const Setting& setting, TriangleMesh model, TriangleMesh body);

    /// Reports the surface's fitness, each surface that the mesher is given, and the quality of the
    /// mesh around it; at the end once more the surface whose mesh is kept, where that is not the
    /// last one. Throws GMSHError, that of the first attempt where two failed; PreparationError
    /// where the surface has no area or is to be prepared in any case; CancellationError; or the
    /// error of a file.
    MeshedModel run();

private:
    void judge();
    GMSHRunner::Output meshByChoice();
    GMSHRunner::Output meshAutomatically();
    GMSHRunner::Output meshAsItIs(std::optional<double> timeLimit);
    GMSHRunner::Output betterThan(const GMSHRunner::Output& asItIs);
    GMSHRunner::Output meshPrepared(bool isFurther, double timeLimit = longestLastAttempt);
    GMSHRunner::Output measured(GMSHRunner::Output mesh);
    void prepare();
    bool tryToPrepare();
    void report(const TriangleMesh& surface, std::optional<SurfacePreparation> preparation) const;

    Setting setting_;
    TriangleMesh model_;
    TriangleMesh body_;
    GMSHRunner mesher_;
    /// Spent on judging and preparing.
    double seconds_ = 0;
    std::optional<SurfaceFitness> fitness_;
    /// In the application's frame of axes, in which users look for the places that texts name.
    std::optional<PreparedSurface> prepared_;
    /// What its facets were made for, m.
    float facetEdge_ = 0;
    /// Of the mesh that was made last; absent where it could not be measured.
    std::optional<MeshQuality> quality_;
};

/// Least edge of the facets that a surface is prepared with, m: what the mesher wants on the body,
/// or less where the body's own facets are even and finer, as far as the mesher would keep those;
/// then the facets of both are of one size. `fitness` may be absent.
float preparedFacetEdge(
    const std::optional<SurfaceFitness>& fitness, const GMSHRunner::FarField& field);

} // namespace ostrella
