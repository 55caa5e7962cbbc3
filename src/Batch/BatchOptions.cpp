#include "Batch/BatchOptions.h"

#include "Batch/ExitStatus.h"
#include "Batch/HelpText.h"
#include "Batch/OptionTable.h"
#include "Batch/UsageError.h"
#include "Platform/AppBundle.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace ostrella {

namespace {

const BatchOption* find(const std::vector<BatchOptionGroup>& groups, std::string_view name) {
    for (const BatchOptionGroup& group : groups) {
        for (const BatchOption& option : group.options) {
            if (option.name == name) {
                return &option;
            }
        }
    }
    return nullptr;
}

void takeModel(const std::string& word, BatchOptions& options) {
    if (word.empty()) {
        throw UsageError("The model's name is empty.");
    }
    if (options.model) {
        throw UsageError(fmt::format(
            "Name one model only, not \"{}\" and \"{}\".", options.model->string(), word));
    }
    options.model = word;
}

/// Reads the option at `arguments[i]`, and its value if that is the next word; `i` is then moved.
void takeOption(const std::vector<BatchOptionGroup>& groups,
    const std::vector<std::string>& arguments, std::size_t& i, BatchOptions& options) {
    const std::string& argument = arguments[i];
    const auto equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const BatchOption* option = name.starts_with("--") ? find(groups, name.substr(2)) : nullptr;
    if (!option) {
        throw UsageError(fmt::format("There is no option {}.", name));
    }
    std::string word;
    if (option->value.empty()) {
        if (equals != std::string::npos) {
            throw UsageError(fmt::format("{} takes no value.", name));
        }
    } else {
        if (equals != std::string::npos) {
            word = argument.substr(equals + 1);
        } else if (i + 1 < arguments.size() && !arguments[i + 1].starts_with("--")) {
            word = arguments[++i];
        }
        if (word.empty()) {
            throw UsageError(fmt::format("{0} wants a value: {0} {1}.", name, option->value));
        }
    }
    option->apply(word, options);
    options.given.insert(option->name);
}

/// What --results goes together with: it has no body and solves nothing.
void checkResults(const BatchOptions& options) {
    if (!options.resultsFolder) {
        if (options.dimensions) {
            throw UsageError("--dimensions belongs to --results DIR.");
        }
        return;
    }
    if (options.model || options.sample || options.demo || options.isGiven("rotate")) {
        throw UsageError("--results reads what a run left, so it takes no model, --sample, --demo "
                         "or --rotate.");
    }
    if (options.prepareFolder) {
        throw UsageError("--results solves nothing, so --prepare has no case to write.");
    }
}

/// What goes together with --image, and what does with --no-run.
void checkPicture(const BatchOptions& options) {
    if (!options.imageFile) {
        for (const std::string_view name :
            {"size", "view", "layers", "look", "samples", "no-run"}) {
            if (options.isGiven(name)) {
                throw UsageError(fmt::format("--{} belongs to --image FILE.png.", name));
            }
        }
        return;
    }
    if (options.prepareFolder) {
        throw UsageError("--prepare stops ahead of the results, so --image has nothing to draw.");
    }
    if (!options.noRun) {
        return;
    }
    if (options.resultsFolder) {
        throw UsageError("--results solves nothing anyway, and --no-run draws a model.");
    }
    if (options.demo) {
        throw UsageError("--demo has no model, so --no-run has nothing to draw.");
    }
    for (const std::string_view name :
        {"export", "write-surface", "write-streamlines", "write-vortex", "keep-run-directory"}) {
        if (options.isGiven(name)) {
            throw UsageError(
                fmt::format("--no-run gives no results, so --{} has nothing to keep.", name));
        }
    }
}

void check(const BatchOptions& options) {
    checkResults(options);
    checkPicture(options);
    const int bodies = options.model.has_value() + options.sample.has_value() + options.demo;
    if (bodies == 0 && !options.resultsFolder) {
        throw UsageError("Name a model: an STL file, --sample NAME or --demo.");
    }
    if (bodies > 1) {
        throw UsageError("Name one model only: an STL file, --sample NAME or --demo.");
    }
    if (options.prepareFolder && options.exportFolder) {
        throw UsageError("--prepare stops ahead of the results, so --export has nothing to copy.");
    }
    if (options.prepareFolder && (options.streamlinesFile || options.vortexFile)) {
        throw UsageError(
            fmt::format("--prepare stops ahead of the results, so --{} has nothing to write.",
                options.streamlinesFile ? "write-streamlines" : "write-vortex"));
    }
}

BatchOptions read(const std::vector<std::string>& arguments) {
    const auto groups = batchOptionGroups();
    BatchOptions result;
    bool onlyModels = false;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--" && !onlyModels) {
            onlyModels = true;
        } else if (onlyModels || !argument.starts_with("-") || argument == "-") {
            takeModel(argument, result);
        } else {
            takeOption(groups, arguments, i, result);
        }
    }
    check(result);
    return result;
}

} // namespace

std::variant<BatchOptions, BatchReply> parseBatchOptions(
    const std::vector<std::string>& arguments) {
    for (std::size_t i = 1; i < arguments.size() && arguments[i] != "--"; ++i) {
        if (arguments[i] == "--help" || arguments[i] == "-h") {
            return BatchReply{batchHelp(), ExitStatus::finished};
        }
        if (arguments[i] == "--version") {
            return BatchReply{
                fmt::format("Ostrella {}\n", AppBundle::version()), ExitStatus::finished};
        }
    }
    try {
        return read(arguments);
    } catch (const UsageError& error) {
        return BatchReply{
            fmt::format("{}\nSee ostrella-batch --help.\n", error.what()), ExitStatus::wrongUsage};
    }
}

std::vector<std::string> optionsWithoutEffect(const BatchOptions& options) {
    std::vector<std::string> notes;
    const SimulationInputs& inputs = options.inputs;
    const auto note = [&notes](std::string_view option, std::string_view reason) {
        notes.push_back(fmt::format("--{} has no effect: {}.", option, reason));
    };
    if (options.demo) {
        if (inputs.regime != FlowRegime::incompressible) {
            note("regime", "the built-in case is incompressible");
        }
        if (inputs.beta != 0) {
            note("beta", "the built-in case is two-dimensional");
        }
        if (options.rotationX != 0 || options.rotationY != 0 || options.rotationZ != 0) {
            note("rotate", "the built-in case has no model to turn");
        }
        if (options.vortexFile) {
            note("write-vortex", "the built-in case is two-dimensional and has no vortex surface");
        }
    }
    if (options.demo || options.resultsFolder || options.noRun) {
        const std::string_view reason = options.demo            ? "the built-in case has no model"
                                        : options.resultsFolder ? "--results meshes nothing"
                                                                : "--no-run meshes nothing";
        for (const std::string_view name : {"surface", "write-surface"}) {
            if (options.isGiven(name)) {
                note(name, reason);
            }
        }
    }
    if (options.noRun && options.isGiven("layers")) {
        const PictureOptions::Layers& layers = options.picture.layers;
        if (layers.cp || layers.streams || layers.vortex) {
            notes.push_back("Of --layers, cp, streams and vortex have no effect: --no-run gives no "
                            "results.");
        }
    }
    if (options.resultsFolder && options.keepRunDirectory) {
        note("keep-run-directory", "--results makes none, and leaves its folder as it is");
    }
    if (!options.resultsFolder && inputs.turbulenceModel != TurbulenceModel::spalartAllmaras) {
        if (inputs.saRotationCorrection) {
            note("sa-rotation-correction", "the turbulence model is not Spalart-Allmaras");
        }
        if (inputs.saTransition) {
            note("sa-transition", "the turbulence model is not Spalart-Allmaras");
        }
    }
    return notes;
}

} // namespace ostrella
