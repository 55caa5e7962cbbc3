// The part of a run around the user's model that ends with a complete case in the run directory.

#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/ModelScreen.h"
#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Geometry/Welding.h"
#include "Solver/Run/CaseConfiguration.h"
#include "Solver/Run/ReferenceArea.h"
#include "Solver/Run/SolverLaunch.h"
#include "Solver/Run/SolverRunner.h"
#include "Solver/Run/StageExit.h"
#include "Solver/Run/SurfaceMeshing.h"
#include "Solver/Run/SurfaceTexts.h"
#include "Solver/Tools/SU2ConfigTemplate.h"
#include "Solver/Tools/TextFile.h"
#include "Solver/Tools/TextTemplate.h"

#include <fmt/format.h>

#include <optional>
#include <string>

namespace ostrella {

namespace {

constexpr int dimensions = 3;

std::string renderConfiguration(const std::string& configTemplate, const SimulationInputs& inputs,
    const std::string& meshFilename, double area) {
    const std::string text =
        inputs.regime == FlowRegime::compressible
            ? SU2ConfigTemplate::renderCompressible(configTemplate, inputs, meshFilename)
            : SU2ConfigTemplate::renderIncompressible(
                  configTemplate, inputs, meshFilename, dimensions);
    return replaceAll(text, "{{REF_AREA}}", fmt::format("{:.6f}", area));
}

/// How far the reference area is to be trusted, where that is in doubt.
void tellTrust(const MeshedModel& meshed, const TriangleMesh& body, const RunLog& log) {
    const Vec3 up(0, 0, 1);
    SurfaceTexts::Planform planform;
    planform.up = projectedArea(body, up);
    planform.down = projectedArea(body, -up);
    if (meshed.prepared) {
        planform.prepared = projectedArea(*meshed.prepared, up);
    }
    if (auto line =
            SurfaceTexts::planformTrust(meshed.fitness.value_or(SurfaceFitness()), planform)) {
        log.append(std::move(line->first), line->second);
    }
}

} // namespace

SolverRunner::PreparedCase SolverRunner::prepareSTL(const STLContext& stl,
    const SimulationInputs& inputs, const RunLog& log, const Events& events) const {
    sendEvent(events, RunPhase::meshing());

    PreparedCase prepared;
    prepared.dimensions = dimensions;
    const bool compressible = inputs.regime == FlowRegime::compressible;
    const std::string configTemplate = atStage(RunStage::solver, [&] {
        prepared.solver = locateSolver(log);
        std::string text = readText(
            locateTemplate(compressible ? "compressible_rans_sa_3d" : "incompressible_rans_sa_3d"));
        prepared.directory = makeRunDirectory();
        sendEvent(events, RunDirectory{prepared.directory});
        log.info(fmt::format("Working dir: {}", prepared.directory.string()));
        log.info(fmt::format(
            "Regime: {}", compressible ? "Compressible (transonic+)" : "Incompressible (M < 0.3)"));
        return text;
    });

    const TriangleMesh body = SolverFrame::toSolver(stl.mesh);
    const double area = referenceArea(body);
    log.info("Geometry turned into the solver frame (app Y up → SU2 Z up)");

    const MeshedModel meshed = atStage(RunStage::mesh, [&] {
        // A turn can carry a far-off body that was fit for use as loaded beyond what can be welded.
        screenModel(body);
        return SurfaceMeshing(
            {environment_, prepared.directory, log, events, token_}, stl.mesh, body)
            .run();
    });
    if (const auto openEdges = openEdgeCount(body); openEdges > 0 && !meshed.prepared) {
        log.warn(GMSHRunner::openSurfaceLine(static_cast<std::int64_t>(openEdges)));
    }
    const GMSHRunner::Output& mesh = meshed.mesh;
    if (mesh.header) {
        prepared.meshCells = mesh.header->elements;
        sendEvent(events, MeshCells{mesh.header->elements});
    }
    token_.throwIfCancelled();
    sendEvent(events, RunPhase::solving());

    const std::string configuration =
        renderConfiguration(configTemplate, inputs, mesh.meshURL.filename().string(), area);
    log.info(fmt::format("Reference area (planform, top view): {:.4f} m²", area));
    tellTrust(meshed, body, log);
    atStage(
        RunStage::solver, [&] { writeConfiguration(prepared.directory, configuration, inputs); });
    log.info(fmt::format("V={:.2f} m/s, α={:.2f}°, β={:.2f}°, ρ={:.3f} kg/m³, ITER={}",
        inputs.velocity, inputs.alpha, inputs.beta, inputs.density, inputs.maxIterations));
    return prepared;
}

} // namespace ostrella
