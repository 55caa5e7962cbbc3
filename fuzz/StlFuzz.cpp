// Feeds arbitrary bytes to the STL parser, and what it makes of them to everything that is done to
// a model that the loader lets in. Start corpus: tests/data/stl.

#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/ModelScreen.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/SolverFrame.h"
#include "Solver/Geometry/Welding.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace ostrella;
    try {
        const auto mesh = STLParser::parse(std::as_bytes(std::span(data, size)));
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
    return 0;
}
