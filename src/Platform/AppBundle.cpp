#include "Platform/AppBundle.h"

#include <QCoreApplication>

#include <fstream>
#include <utility>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view previewSolverName = "ostrella-preview-solver";

#ifdef __APPLE__
constexpr std::string_view toolsPlace = "Contents/MacOS";
constexpr std::string_view resourcesPlace = "Contents/Resources";
constexpr int levelsAboveProgram = 3;
#else
constexpr std::string_view toolsPlace = "libexec/ostrella";
constexpr std::string_view resourcesPlace = "share/ostrella";
constexpr int levelsAboveProgram = 2;
#endif

} // namespace

AppBundle::AppBundle(fs::path root) : root_(std::move(root)) {}

AppBundle AppBundle::main() {
    fs::path place(QCoreApplication::applicationFilePath().toStdString());
    for (int i = 0; i < levelsAboveProgram; ++i) {
        place = place.parent_path();
    }
    return AppBundle(std::move(place));
}

fs::path AppBundle::toolsDirectory() const {
    return root_ / toolsPlace;
}

fs::path AppBundle::resourcesDirectory() const {
    return root_ / resourcesPlace;
}

std::optional<fs::path> AppBundle::resource(
    std::string_view name, std::string_view extension, std::string_view subdirectory) const {
    fs::path place = resourcesDirectory() / subdirectory / name;
    place += ".";
    place += extension;
    std::error_code error;
    if (!fs::is_regular_file(place, error)) {
        return std::nullopt;
    }
    return place;
}

bool AppBundle::solverIsStandIn() const {
    std::error_code error;
    const fs::path solver = fs::canonical(toolsDirectory() / "SU2_CFD", error);
    return !error && solver.filename() == previewSolverName;
}

std::optional<std::string> AppBundle::solverRelease() const {
    std::ifstream file(resourcesDirectory() / "su2" / "release.txt");
    std::string release;
    if (!(file >> release)) {
        return std::nullopt;
    }
    return release;
}

std::string AppBundle::version() {
    return OSTRELLA_VERSION;
}

} // namespace ostrella
