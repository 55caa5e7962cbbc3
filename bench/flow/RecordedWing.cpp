#include "RecordedWing.h"

#include "Solver/Flow/StreamlineGenerator.h"
#include "Solver/Flow/VTKLegacyParser.h"
#include "Solver/Geometry/SolverFrame.h"

namespace ostrella::bench {

namespace {

std::filesystem::path folder() {
    return std::filesystem::path(OSTRELLA_RECORDED_RUNS) / "wing_inc_sa_a5";
}

StreamlineFocus focusOfTheSurface() {
    const auto surface = SolverFrame::toApp(
        VTKLegacyParser::parseSurface(RecordedWing::surfaceFile(), "Pressure_Coefficient"));
    return StreamlineFocus::around(surface.boundingMin, surface.boundingMax, 0.5F, 2.0F);
}

} // namespace

std::filesystem::path RecordedWing::volumeFile() {
    return folder() / "flow.vtk";
}

std::filesystem::path RecordedWing::surfaceFile() {
    return folder() / "surface_flow.vtk";
}

const VolumeField& RecordedWing::volume() {
    static const auto field =
        SolverFrame::toApp(VTKLegacyParser::parseVolume(volumeFile(), "Velocity"));
    return field;
}

const StreamlineFocus& RecordedWing::focus() {
    static const auto result = focusOfTheSurface();
    return result;
}

const Streamlines& RecordedWing::streamlines() {
    static const auto lines =
        StreamlineGenerator::generate(volume(), freeStreamVelocity, focus(), seeds, steps);
    return lines;
}

} // namespace ostrella::bench
