// The part of the built-in aerofoil's run that ends with a complete case in the run directory.

#include "Platform/ExclusiveCopy.h"
#include "Solver/Run/CaseConfiguration.h"
#include "Solver/Run/SolverLaunch.h"
#include "Solver/Run/SolverRunner.h"
#include "Solver/Run/StageExit.h"
#include "Solver/Tools/SU2ConfigTemplate.h"
#include "Solver/Tools/SU2Output.h"
#include "Solver/Tools/TextFile.h"
#include "Solver/Tools/TextTemplate.h"

#include <fmt/format.h>

#include <string>

namespace ostrella {

namespace {

constexpr int dimensions = 2;
/// Chord 1 m by a span of 1 m.
constexpr double referenceArea = 1.0;
constexpr const char* meshFilename = "mesh.su2";

void copyMesh(const std::filesystem::path& from, const std::filesystem::path& to) {
    // Not std::filesystem::copy_file, which calls a full disk an input/output error.
    try {
        copyExclusively(from, to);
    } catch (const FileError& error) {
        if (error.path1() != to) {
            throw;
        }
        throw FileError("Cannot write " + to.string(), to, error.code(), elsewhereForRuns);
    }
}

} // namespace

SolverRunner::PreparedCase SolverRunner::prepareDemo(
    const SimulationInputs& inputs, const RunLog& log, const Events& events) const {
    sendEvent(events, RunPhase::solving());
    return atStage(RunStage::solver, [&] {
        PreparedCase prepared;
        prepared.dimensions = dimensions;
        prepared.solver = locateSolver(log);
        const auto mesh = environment_.bundle.resource("n0012_897-257", "su2", "su2/fixtures");
        if (!mesh) {
            throw SolverError::meshNotFound();
        }
        const std::string configTemplate = readText(locateTemplate("incompressible_rans_sa_2d"));
        prepared.directory = makeRunDirectory();
        sendEvent(events, RunDirectory{prepared.directory});

        const std::filesystem::path meshCopy = prepared.directory / meshFilename;
        copyMesh(*mesh, meshCopy);
        if (const auto header = SU2Output::readMeshHeader(meshCopy)) {
            prepared.meshCells = header->elements;
            sendEvent(events, MeshCells{header->elements});
        }

        SimulationInputs incompressible = inputs;
        incompressible.regime = FlowRegime::incompressible;
        const std::string configuration =
            replaceAll(SU2ConfigTemplate::renderIncompressible(
                           configTemplate, incompressible, meshFilename, dimensions),
                "{{REF_AREA}}", fmt::format("{:.6f}", referenceArea));
        writeConfiguration(prepared.directory, configuration, inputs);
        log.info(fmt::format("Working dir: {}", prepared.directory.string()));
        log.info(fmt::format("V={:.2f} m/s, α={:.2f}°, ρ={:.3f} kg/m³, ITER={}", inputs.velocity,
            inputs.alpha, inputs.density, inputs.maxIterations));
        return prepared;
    });
}

} // namespace ostrella
