#include "Batch/OptionTable.h"

#include "Batch/OptionNumber.h"
#include "Batch/UsageError.h"
#include "Models/ParameterTable.h"
#include "Solver/Run/SampleLoader.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <type_traits>

namespace ostrella {

namespace {

std::string sampleNames() {
    std::vector<std::string_view> names;
    for (const auto& sample : SampleLoader::samples) {
        names.push_back(sample.id);
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

template <class Value>
Value parseChoice(std::string_view option, const std::string& word,
    const std::optional<Value>& value, std::string_view choices) {
    if (!value) {
        throw UsageError(fmt::format("--{} wants one of {}, not \"{}\".", option, choices, word));
    }
    return *value;
}

void parseSample(const std::string& word, BatchOptions& options) {
    const auto& samples = SampleLoader::samples;
    const bool isKnown = std::any_of(samples.begin(), samples.end(),
        [&word](const SampleLoader::Sample& sample) { return sample.id == word; });
    options.sample =
        parseChoice("sample", word, isKnown ? std::optional(word) : std::nullopt, sampleNames());
}

void parseRotation(const std::string& word, BatchOptions& options) {
    std::vector<std::string> parts(1);
    for (const char c : word) {
        if (c == ',') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    if (parts.size() != 3) {
        throw UsageError(fmt::format("--rotate wants three angles X,Y,Z, not \"{}\".", word));
    }
    options.rotationX = OptionNumber::parse("rotate", parts[0], ParameterTable::rotationX);
    options.rotationY = OptionNumber::parse("rotate", parts[1], ParameterTable::rotationY);
    options.rotationZ = OptionNumber::parse("rotate", parts[2], ParameterTable::rotationZ);
}

constexpr std::string_view turbulenceChoices = "spalartAllmaras, sst, laminar";
constexpr std::string_view regimeChoices = "incompressible, compressible";
constexpr std::string_view surfaceChoices = "auto, as-is, prepared";

/// The option of a parameter of the sidebar or the settings.
template <class Target>
BatchOption numberOption(const ParameterInfo& info, Target SimulationInputs::*field) {
    return {std::string(info.option), "NUMBER",
        fmt::format(
            "{} {}, default {}.", info.help, OptionNumber::rangeText(info), info.defaultValue),
        [&info, field](const std::string& word, BatchOptions& options) {
            if constexpr (std::is_same_v<Target, int>) {
                options.inputs.*field = OptionNumber::parseWhole(info.option, word, info);
            } else {
                options.inputs.*field =
                    static_cast<Target>(OptionNumber::parse(info.option, word, info));
            }
        }};
}

std::vector<BatchOption> bodyOptions() {
    return {
        {"sample", "NAME", fmt::format("Run a sample body: {}.", sampleNames()),
            [](const std::string& word, BatchOptions& options) { parseSample(word, options); }},
        {"demo", "", "Run the built-in two-dimensional NACA0012 case.",
            [](const std::string&, BatchOptions& options) { options.demo = true; }},
        {"rotate", "X,Y,Z",
            fmt::format(
                "Turn the model by X, then Y, then Z degrees about its axes (y is up, the flow "
                "runs along x). {} each.",
                OptionNumber::rangeText(ParameterTable::rotationX)),
            [](const std::string& word, BatchOptions& options) { parseRotation(word, options); }},
        {"surface", "NAME",
            fmt::format("What becomes of the model's surface ahead of the mesher: {}. prepared "
                        "makes a closed one of even facets that follows the model; auto, the "
                        "default, does so where the model is not sound or gives no mesh as it is.",
                surfaceChoices),
            [](const std::string& word, BatchOptions& options) {
                options.surface =
                    parseChoice("surface", word, surfaceChoiceFromRawValue(word), surfaceChoices);
            }},
    };
}

std::vector<BatchOption> earlierRunOptions() {
    return {
        {"results", "DIR",
            "Solve nothing, and read what a run left in a folder: an exported one, a kept run "
            "directory, or one of SU2_CFD from elsewhere. surface_flow.vtk, flow.vtk, history.csv "
            "and run.cfg count, as far as they are there; the folder is only read. What the "
            "options of the flow do not say is taken from run.cfg. One that was not written here "
            "tells nothing of the streamlines' options, and a Mach number tells the speed to its "
            "last digit only.",
            [](const std::string& word, BatchOptions& options) { options.resultsFolder = word; }},
        {"dimensions", "NUMBER",
            "Dimensions of that run, 2 or 3. Default: what its mesh file says; without one, 3 if "
            "the body has triangles or is not flat in z, else what the volume is.",
            [](const std::string& word, BatchOptions& options) {
                options.dimensions = parseChoice("dimensions", word,
                    word == "2" || word == "3" ? std::optional(word[0] - '0') : std::nullopt,
                    "2, 3");
            }},
    };
}

std::vector<BatchOption> flowOptions() {
    using Inputs = SimulationInputs;
    return {
        numberOption(ParameterTable::velocity, &Inputs::velocity),
        numberOption(ParameterTable::alpha, &Inputs::alpha),
        numberOption(ParameterTable::beta, &Inputs::beta),
        numberOption(ParameterTable::density, &Inputs::density),
        {"regime", "NAME", fmt::format("Flow regime: {}. Default incompressible.", regimeChoices),
            [](const std::string& word, BatchOptions& options) {
                options.inputs.regime =
                    parseChoice("regime", word, flowRegimeFromRawValue(word), regimeChoices);
            }},
        {"turbulence", "NAME",
            fmt::format("Turbulence model: {}. Default spalartAllmaras.", turbulenceChoices),
            [](const std::string& word, BatchOptions& options) {
                options.inputs.turbulenceModel = parseChoice(
                    "turbulence", word, turbulenceModelFromRawValue(word), turbulenceChoices);
            }},
        {"sa-rotation-correction", "", "Rotation correction of the Spalart-Allmaras model.",
            [](const std::string&, BatchOptions& options) {
                options.inputs.saRotationCorrection = true;
            }},
        {"sa-transition", "", "Transition option of the Spalart-Allmaras model.",
            [](const std::string&, BatchOptions& options) { options.inputs.saTransition = true; }},
        numberOption(ParameterTable::maxIterations, &Inputs::maxIterations),
        numberOption(ParameterTable::upstreamFactor, &Inputs::streamlineUpstreamFactor),
        numberOption(ParameterTable::downstreamFactor, &Inputs::streamlineDownstreamFactor),
        numberOption(ParameterTable::seedCount, &Inputs::streamlineSeedCount),
    };
}

std::vector<BatchOption> pictureOptions() {
    return {
        {"image", "FILE.png",
            "Draw what the viewport shows to a PNG file. Where no display server runs, an Xvfb is "
            "started for it; where nothing can draw, a line in the log says so and the run ends as "
            "it would have.",
            [](const std::string& word, BatchOptions& options) { options.imageFile = word; }},
        {"size", "WIDTHxHEIGHT",
            fmt::format("Pixels of the picture, at most {} either way, default 1200x800.",
                PictureWords::longestSide),
            [](const std::string& word, BatchOptions& options) {
                PictureWords::readSize(word, options.picture);
            }},
        {"view", "NAME", "Where from: iso, front, side, top. Default iso.",
            [](const std::string& word, BatchOptions& options) {
                PictureWords::readView(word, options.picture);
            }},
        {"layers", "NAMES",
            "What is shown: cp, streams, vortex, grid and wireframe, with commas between them, or "
            "none. Default cp,streams,vortex,grid, as far as there is a result.",
            [](const std::string& word, BatchOptions& options) {
                PictureWords::readLayers(word, options.picture);
            }},
        {"look", "NAME",
            "A body without a result: glass, as the viewport has it before a run, or shaded, as "
            "after one. Default glass.",
            [](const std::string& word, BatchOptions& options) {
                PictureWords::readLook(word, options.picture);
            }},
        {"samples", "NUMBER",
            "Samples a pixel, which smooth the outlines: 1, 2, 4, 8. Default 4; as many as the "
            "device has.",
            [](const std::string& word, BatchOptions& options) {
                PictureWords::readSamples(word, options.picture);
            }},
        {"no-run", "", "Draw the model as it is and solve nothing.",
            [](const std::string&, BatchOptions& options) { options.noRun = true; }},
    };
}

std::vector<BatchOption> outputOptions() {
    return {
        {"export", "DIR", "Copy the result files to a folder; nothing there is overwritten.",
            [](const std::string& word, BatchOptions& options) { options.exportFolder = word; }},
        {"json", "FILE", "Write the inputs, figures, times and tools of the run to a file.",
            [](const std::string& word, BatchOptions& options) { options.jsonFile = word; }},
        {"write-surface", "FILE.stl",
            "Write the surface that the mesher was given, turned as by --rotate, to a binary STL "
            "file.",
            [](const std::string& word, BatchOptions& options) { options.surfaceFile = word; }},
        {"write-streamlines", "FILE.vtk",
            "Write the streamlines to a legacy VTK file: lines with the speed in m/s.",
            [](const std::string& word, BatchOptions& options) { options.streamlinesFile = word; }},
        {"write-vortex", "FILE.ply",
            "Write the surface around the strongest vortices, of constant Q, to a PLY file.",
            [](const std::string& word, BatchOptions& options) { options.vortexFile = word; }},
        {"prepare", "DIR",
            "Write the complete case to a new or empty folder and stop ahead of the solver, so "
            "that it can be solved elsewhere with \"SU2_CFD run.cfg\".",
            [](const std::string& word, BatchOptions& options) { options.prepareFolder = word; }},
        {"keep-run-directory", "", "Leave the run's own directory on the disk and name it.",
            [](const std::string&, BatchOptions& options) { options.keepRunDirectory = true; }},
        {"quiet", "", "Leave out the lines of gmsh and the solver.",
            [](const std::string&, BatchOptions& options) { options.quiet = true; }},
    };
}

} // namespace

std::vector<BatchOptionGroup> batchOptionGroups() {
    return {{"The body", bodyOptions()}, {"An earlier run", earlierRunOptions()},
        {"The flow", flowOptions()}, {"The picture", pictureOptions()},
        {"What is kept", outputOptions()}};
}

} // namespace ostrella
