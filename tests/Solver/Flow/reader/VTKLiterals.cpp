#include "Solver/Flow/reader/VTKLiterals.h"

#include "Solver/Flow/FlowScreen.h"
#include "support/Wait.h"

#include <exception>
#include <fstream>

namespace ostrella::test {

namespace {

/// What `read` gives of a file with these contents.
template <class Read>
auto ofFile(std::string_view contents, Read read) {
    const TemporaryDirectory folder;
    const auto path = folder.path() / "flow.vtk";
    std::ofstream(path, std::ios::binary) << contents;
    return read(path);
}

} // namespace

SurfaceField surfaceOf(std::string_view contents, std::string_view name) {
    return ofFile(
        contents, [&](const auto& path) { return VTKLegacyParser::parseSurface(path, name); });
}

VolumeField volumeOf(std::string_view contents, std::string_view name) {
    return ofFile(
        contents, [&](const auto& path) { return VTKLegacyParser::parseVolume(path, name); });
}

ScalarFieldStats statsOf(std::string_view contents, std::string_view name) {
    return ofFile(contents,
        [&](const auto& path) { return VTKLegacyParser::extractScalarStats(path, name); });
}

SurfaceField screenedSurfaceOf(std::string_view contents) {
    return ofFile(contents,
        [](const auto& path) { return FlowScreen::parseSurface(path, "Pressure_Coefficient"); });
}

VolumeField screenedVolumeOf(std::string_view contents) {
    return ofFile(
        contents, [](const auto& path) { return FlowScreen::parseVolume(path, "Velocity"); });
}

ScalarFieldStats screenedStatsOf(std::string_view contents) {
    return ofFile(
        contents, [](const auto& path) { return FlowScreen::extractScalarStats(path, "Y_Plus"); });
}

std::string failureOf(const std::function<void()>& act) {
    try {
        act();
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::string surfaceFailure(std::string_view contents, std::string_view name) {
    return failureOf([&] { surfaceOf(contents, name); });
}

std::string volumeFailure(std::string_view contents, std::string_view name) {
    return failureOf([&] { volumeOf(contents, name); });
}

std::string statsFailure(std::string_view contents, std::string_view name) {
    return failureOf([&] { statsOf(contents, name); });
}

} // namespace ostrella::test
