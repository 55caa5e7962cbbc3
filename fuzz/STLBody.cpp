#include "fuzz/STLBody.h"

#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/ModelScreen.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Geometry/Welding.h"

namespace ostrella::fuzz {

void stl(std::span<const std::uint8_t> bytes) {
    try {
        const auto mesh = STLParser::parse(std::as_bytes(bytes));
        screenModel(mesh);
        openEdgeCount(mesh);
        FeatureEdges::extract(welded(mesh), 30.0F);
        const auto turned = SolverFrame::toSolver(rotated(mesh, {0.1F, 0.2F, 0.3F}));
        projectedArea(turned, {0, 0, 1});
        screenModel(turned);
        openEdgeCount(turned);
    } catch (const STLParseError&) {
    } catch (const ModelLoadError&) {
    }
}

} // namespace ostrella::fuzz
