#include "Batch/BatchOptions.h"

#include "Models/ParameterTable.h"
#include "Platform/AppBundle.h"
#include "Solver/Run/SampleLoader.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace ostrella {

namespace {

constexpr int wrongUsage = 2;

/// Ends the reading with a text for the user.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

double parseNumber(std::string_view option, const std::string& word, const ParameterInfo& range) {
    char* end = nullptr;
    const double value = std::strtod(word.c_str(), &end);
    if (word.empty() || *end != '\0' || !std::isfinite(value)) {
        throw UsageError(fmt::format("--{} wants a number, not \"{}\".", option, word));
    }
    if (value < range.minimum || value > range.maximum) {
        throw UsageError(fmt::format("--{} {} is out of range: {} to {}{}{}.", option, word,
            range.minimum, range.maximum, range.unit.empty() ? "" : " ", range.unit));
    }
    return value;
}

int parseWhole(std::string_view option, const std::string& word, const ParameterInfo& range) {
    const double value = parseNumber(option, word, range);
    if (value != std::trunc(value)) {
        throw UsageError(fmt::format("--{} wants a whole number, not \"{}\".", option, word));
    }
    return static_cast<int>(value);
}

template <class Value>
Value parseChoice(std::string_view option, const std::string& word,
    const std::optional<Value>& value, std::string_view choices) {
    if (!value) {
        throw UsageError(fmt::format("--{} wants one of {}, not \"{}\".", option, choices, word));
    }
    return *value;
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
    options.rotationX = parseNumber("rotate", parts[0], ParameterTable::rotationX);
    options.rotationY = parseNumber("rotate", parts[1], ParameterTable::rotationY);
    options.rotationZ = parseNumber("rotate", parts[2], ParameterTable::rotationZ);
}

constexpr std::string_view turbulenceChoices = "spalartAllmaras, sst, laminar";
constexpr std::string_view regimeChoices = "incompressible, compressible";

/// One option: its name, what stands for its value in the help (empty for a switch), its help, and
/// what it does.
struct Option {
    std::string name;
    std::string value;
    std::string help;
    std::function<void(const std::string& word, BatchOptions& options)> apply;
};

template <class Target>
Option numberOption(const ParameterInfo& info, Target SimulationInputs::*field) {
    const std::string unit = info.unit.empty() ? "" : fmt::format(" {}", info.unit);
    return {std::string(info.option), "NUMBER",
        fmt::format("{} {} to {}{}, default {}.", info.help, info.minimum, info.maximum, unit,
            info.defaultValue),
        [&info, field](const std::string& word, BatchOptions& options) {
            if constexpr (std::is_same_v<Target, int>) {
                options.inputs.*field = parseWhole(info.option, word, info);
            } else {
                options.inputs.*field = static_cast<Target>(parseNumber(info.option, word, info));
            }
        }};
}

std::vector<Option> bodyOptions() {
    std::vector<std::string_view> names;
    for (const auto& sample : SampleLoader::samples) {
        names.push_back(sample.id);
    }
    return {
        {"sample", "NAME", fmt::format("Run a sample body: {}.", fmt::join(names, ", ")),
            [](const std::string& word, BatchOptions& options) { options.sample = word; }},
        {"demo", "", "Run the built-in two-dimensional NACA0012 case.",
            [](const std::string&, BatchOptions& options) { options.demo = true; }},
        {"rotate", "X,Y,Z",
            fmt::format(
                "Turn the model by X, then Y, then Z degrees about its axes (y is up, the flow "
                "runs along x). {} to {} ° each.",
                ParameterTable::rotationX.minimum, ParameterTable::rotationX.maximum),
            [](const std::string& word, BatchOptions& options) { parseRotation(word, options); }},
    };
}

std::vector<Option> flowOptions() {
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

std::vector<Option> outputOptions() {
    return {
        {"export", "DIR", "Copy the result files to a folder; nothing there is overwritten.",
            [](const std::string& word, BatchOptions& options) { options.exportFolder = word; }},
        {"json", "FILE", "Write the inputs, figures, times and tools of the run to a file.",
            [](const std::string& word, BatchOptions& options) { options.jsonFile = word; }},
        {"prepare", "DIR",
            "Write the complete case to a new or empty folder and stop ahead of the solver, so "
            "that it "
            "can be solved elsewhere with \"SU2_CFD run.cfg\".",
            [](const std::string& word, BatchOptions& options) { options.prepareFolder = word; }},
        {"keep-run-directory", "", "Leave the run's own directory on the disk and name it.",
            [](const std::string&, BatchOptions& options) { options.keepRunDirectory = true; }},
        {"quiet", "", "Leave out the lines of gmsh and the solver.",
            [](const std::string&, BatchOptions& options) { options.quiet = true; }},
    };
}

void appendOptions(std::string& text, std::string_view title, const std::vector<Option>& options) {
    text += fmt::format("\n{}:\n", title);
    for (const Option& option : options) {
        text += fmt::format("  --{}{}{}\n      {}\n", option.name, option.value.empty() ? "" : " ",
            option.value, option.help);
    }
}

void check(const BatchOptions& options) {
    const int bodies = options.model.has_value() + options.sample.has_value() + options.demo;
    if (bodies == 0) {
        throw UsageError("Name a model: an STL file, --sample NAME or --demo.");
    }
    if (bodies > 1) {
        throw UsageError("Name one model only: an STL file, --sample NAME or --demo.");
    }
    if (options.prepareFolder && options.exportFolder) {
        throw UsageError("--prepare stops ahead of the results, so --export has nothing to copy.");
    }
}

BatchOptions read(const std::vector<std::string>& arguments) {
    std::vector<Option> all = bodyOptions();
    for (auto* group : {&flowOptions, &outputOptions}) {
        const auto more = (*group)();
        all.insert(all.end(), more.begin(), more.end());
    }
    BatchOptions result;
    bool onlyModels = false;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--" && !onlyModels) {
            onlyModels = true;
            continue;
        }
        if (onlyModels || !argument.starts_with("-") || argument == "-") {
            if (result.model) {
                throw UsageError("Name one model only.");
            }
            result.model = argument;
            continue;
        }
        const auto equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const auto option = std::find_if(
            all.begin(), all.end(), [&](const Option& one) { return "--" + one.name == name; });
        if (option == all.end()) {
            throw UsageError(fmt::format("There is no option {}.", name));
        }
        std::string word;
        if (option->value.empty()) {
            if (equals != std::string::npos) {
                throw UsageError(fmt::format("{} takes no value.", name));
            }
        } else if (equals != std::string::npos) {
            word = argument.substr(equals + 1);
        } else if (i + 1 < arguments.size()) {
            word = arguments[++i];
        } else {
            throw UsageError(fmt::format("{} wants a value.", name));
        }
        option->apply(word, result);
    }
    check(result);
    return result;
}

} // namespace

std::string batchHelp() {
    std::string text = "Usage: ostrella-batch [options] MODEL.stl\n"
                       "       ostrella-batch [options] --sample NAME\n"
                       "       ostrella-batch [options] --demo\n\n"
                       "Meshes the air around a body, solves the flow and reports lift and drag.\n";
    appendOptions(text, "The body", bodyOptions());
    appendOptions(text, "The flow", flowOptions());
    appendOptions(text, "What is kept", outputOptions());
    text += "\nOther:\n  --help\n      This text.\n  --version\n      The version.\n"
            "\nExit status: 0 finished, 2 wrong usage or a model that cannot be loaded, 3 meshing "
            "failed,\n4 the solver failed, 5 the results failed or could not be written, 130 "
            "cancelled.\n";
    return text;
}

std::variant<BatchOptions, BatchReply> parseBatchOptions(
    const std::vector<std::string>& arguments) {
    for (std::size_t i = 1; i < arguments.size() && arguments[i] != "--"; ++i) {
        if (arguments[i] == "--help" || arguments[i] == "-h") {
            return BatchReply{batchHelp(), 0};
        }
        if (arguments[i] == "--version") {
            return BatchReply{fmt::format("Ostrella {}\n", AppBundle::version()), 0};
        }
    }
    try {
        return read(arguments);
    } catch (const UsageError& error) {
        return BatchReply{
            fmt::format("{}\nSee ostrella-batch --help.\n", error.what()), wrongUsage};
    }
}

} // namespace ostrella
