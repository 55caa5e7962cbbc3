#include "Config.h"

#include "ConfigOptions.h"
#include "Failure.h"

#include <fmt/format.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace ostrella::preview {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

struct Option {
    std::string name;
    std::string value;
};

/// The file's options in its order. A percent sign begins a comment, a backslash at the end of a
/// line continues it.
std::vector<Option> divide(std::string_view text) {
    std::vector<Option> options;
    std::string pending;
    int line = 0;
    while (!text.empty()) {
        ++line;
        const auto end = text.find('\n');
        std::string_view row = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        row = trimmed(row.substr(0, row.find('%')));
        const bool goesOn = !row.empty() && row.back() == '\\';
        pending += row.substr(0, row.size() - (goesOn ? 1 : 0));
        if (goesOn) {
            pending += ' ';
            continue;
        }
        const std::string whole = std::move(pending);
        pending.clear();
        if (trimmed(whole).empty())
            continue;
        const auto equals = whole.find('=');
        if (equals == std::string::npos)
            throw Failure(
                fmt::format("Line {} of the configuration is no option: {}", line, whole));
        options.push_back({upper(trimmed(std::string_view(whole).substr(0, equals))),
            std::string(trimmed(std::string_view(whole).substr(equals + 1)))});
    }
    return options;
}

void settle(Config& c) {
    if (c.turbulent() && c.turbulenceModel == "NONE")
        throw Failure("A RANS problem needs KIND_TURB_MODEL= SA.");
    if (c.turbulent() && c.turbulenceModel != "SA") {
        c.warnings.push_back(fmt::format(
            "KIND_TURB_MODEL= {} is not available, Spalart-Allmaras (SA) is used instead.",
            c.turbulenceModel));
    }
    if (!c.turbulent() && c.turbulenceModel != "NONE")
        c.warnings.push_back(
            fmt::format("KIND_TURB_MODEL= {} has no effect without RANS.", c.turbulenceModel));
    if (c.musclTurbulence)
        c.warnings.push_back("MUSCL_TURB= YES is not available, the first order is used.");
    if (c.regime == Regime::compressible) {
        if (!(c.machNumber > 0))
            throw Failure("MACH_NUMBER must be above 0.");
        if (!(c.gamma > 1))
            throw Failure("GAMMA_VALUE must be above 1.");
        if (c.initFromReynolds && c.viscous() && !(c.reynoldsNumber > 0))
            throw Failure("INIT_OPTION= REYNOLDS needs a REYNOLDS_NUMBER above 0.");
    } else {
        if (!(glm::length(c.incVelocity) > 0))
            throw Failure("INC_VELOCITY_INIT must not be zero.");
        if (c.sutherland)
            c.warnings.push_back(
                "VISCOSITY_MODEL: the viscosity is constant, MU_CONSTANT is used.");
        c.sutherland = false;
    }
    if (c.convergenceFields.empty())
        c.convergenceFields = {c.regime == Regime::compressible ? "RMS_DENSITY" : "RMS_PRESSURE"};
    if (c.historyOutput.empty())
        c.historyOutput = {"ITER", "RMS_RES", "AERO_COEFF"};
}

} // namespace

Config Config::parse(std::string_view text) {
    Config config;
    // The kind of problem comes first wherever it stands: other options are read by its light.
    const std::vector<Option> options = divide(text);
    std::set<std::string> seen;
    bool solver = false;
    for (const auto& option : options) {
        if (option.name == "SOLVER") {
            applyOption(config, ConfigValue(option.name, option.value));
            solver = true;
        }
    }
    if (!solver)
        throw Failure("The configuration names no SOLVER.");
    if (config.regime == Regime::incompressible) {
        config.sutherland = false;
        config.units = OutputUnits::incompressibleInitial;
    }
    for (const auto& option : options) {
        if (!seen.insert(option.name).second)
            throw Failure(fmt::format("{} appears twice in the configuration.", option.name));
        const ConfigValue value(option.name, option.value);
        if (value.words().empty()) {
            config.warnings.push_back(
                fmt::format("option {} has no value and is ignored.", option.name));
            continue;
        }
        applyOption(config, value);
    }
    settle(config);
    return config;
}

Config Config::read(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw Failure(fmt::format("There is no configuration file {}.", path));
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw Failure(fmt::format("The configuration {} cannot be read.", path));
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return parse(text);
}

} // namespace ostrella::preview
