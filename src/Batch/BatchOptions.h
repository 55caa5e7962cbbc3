#pragma once

#include "Batch/PictureOptions.h"
#include "Models/SimulationInputs.h"
#include "Models/SurfacePreparation.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ostrella {

/// What a batch run is asked to do.
struct BatchOptions {
    /// The body: a file, a sample or, with neither, the built-in aerofoil case.
    std::optional<std::filesystem::path> model;
    std::optional<std::string> sample;
    bool demo = false;
    /// In the place of a body: a folder with the files of an earlier run, to be harvested without
    /// solving.
    std::optional<std::filesystem::path> resultsFolder;
    /// Of that run, where its files are not to be asked: 2 or 3.
    std::optional<int> dimensions;

    /// The sidebar's values, the iteration limit and the streamline settings.
    SimulationInputs inputs;
    /// Turn of the model about x, then y, then z, degrees.
    double rotationX = 0;
    double rotationY = 0;
    double rotationZ = 0;

    /// What becomes of the model's surface ahead of the mesher.
    SurfaceChoice surface = SurfaceChoice::automatic;

    /// Folder for copies of the result files.
    std::optional<std::filesystem::path> exportFolder;
    /// File for the figures.
    std::optional<std::filesystem::path> jsonFile;
    /// Files for the streamlines and the vortex surface.
    std::optional<std::filesystem::path> streamlinesFile;
    std::optional<std::filesystem::path> vortexFile;
    /// File for the surface that the mesher was given.
    std::optional<std::filesystem::path> surfaceFile;
    /// File for a picture of the viewport, and how it is taken.
    std::optional<std::filesystem::path> imageFile;
    PictureOptions picture;
    /// Draws the model without solving anything.
    bool noRun = false;
    /// Folder for a complete case; the solver is not run.
    std::optional<std::filesystem::path> prepareFolder;
    bool keepRunDirectory = false;
    /// Leaves out the child programs' lines.
    bool quiet = false;

    /// Names of the options that the command line has, without the dashes.
    std::set<std::string, std::less<>> given;

    bool isGiven(std::string_view option) const { return given.contains(option); }
};

/// Text for the user and an exit status instead of a run.
struct BatchReply {
    std::string text;
    int status = 0;
};

/// Reads the command line, the program's name first. A reply with status 2 tells what is wrong.
std::variant<BatchOptions, BatchReply> parseBatchOptions(const std::vector<std::string>& arguments);

/// A sentence for each value that the run will not look at, such as the regime of the built-in
/// case.
std::vector<std::string> optionsWithoutEffect(const BatchOptions& options);

} // namespace ostrella
