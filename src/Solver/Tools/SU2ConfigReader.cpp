#include "Solver/Tools/SU2ConfigReader.h"

#include "Models/ParameterTable.h"
#include "Solver/Tools/SU2ConfigTemplate.h"
#include "Solver/Tools/TextTrimming.h"

#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

namespace ostrella::SU2ConfigReader {

namespace {

constexpr std::string_view commentBeginning = "% For ostrella-batch --results:";

/// Decimals of the sidebar's number fields.
constexpr int sidebarDecimals = 4;
/// Velocity components are written with six decimals; a length of three of them is this near, m/s.
constexpr double velocityTolerance = 1e-6;
/// Ratio of the specific heats of air, where a configuration does not say.
constexpr double heatRatio = 1.4;
/// Faster is nothing that the reader of fields would compute with, m/s.
constexpr double fastest = 1e12;

using Options = std::map<std::string, std::string, std::less<>>;

/// The number that a word spells as a whole.
template <class Number>
std::optional<Number> number(std::string_view word) {
    word = trimmedBlanks(word);
    if (word.starts_with('+') && !word.starts_with("+-")) {
        word.remove_prefix(1);
    }
    Number value{};
    const char* const end = word.data() + word.size();
    const auto read = fast_float::from_chars(word.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> wholeNumber(std::string_view word) {
    const auto value = number<double>(word);
    if (!value || *value != std::trunc(*value) || std::abs(*value) > 1e9) {
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

/// The words of a list such as "( A, B )".
std::vector<std::string_view> words(std::string_view list) {
    constexpr std::string_view separators = " \t,()";
    std::vector<std::string_view> result;
    for (std::size_t start = 0;
         (start = list.find_first_not_of(separators, start)) != std::string_view::npos;) {
        const std::size_t end = std::min(list.find_first_of(separators, start), list.size());
        result.push_back(list.substr(start, end - start));
        start = end;
    }
    return result;
}

/// Cuts the first line off `text`; it comes without its line end.
std::string_view takeLine(std::string_view& text) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

/// The options, comments left out, lines that end in a backslash joined with the next. Of an option
/// that stands twice the first counts.
Options optionsIn(std::string_view text) {
    Options options;
    while (!text.empty()) {
        std::string statement;
        for (bool goesOn = true; goesOn && !text.empty();) {
            std::string_view line = takeLine(text);
            line = trimmedBlanks(line.substr(0, line.find('%')));
            goesOn = line.ends_with('\\');
            statement += line.substr(0, line.size() - (goesOn ? 1 : 0));
        }
        const std::size_t equals = statement.find('=');
        if (equals != std::string::npos) {
            const std::string_view whole = statement;
            options.emplace(
                trimmedBlanks(whole.substr(0, equals)), trimmedBlanks(whole.substr(equals + 1)));
        }
    }
    return options;
}

std::optional<std::string_view> find(const Options& options, std::string_view name) {
    const auto found = options.find(name);
    return found == options.end() ? std::nullopt : std::optional<std::string_view>(found->second);
}

std::optional<double> findNumber(const Options& options, std::string_view name) {
    const auto word = find(options, name);
    return word ? number<double>(*word) : std::nullopt;
}

/// The roundest decimal fraction within `tolerance` of `value`, else `value` itself.
double roundest(double value, double tolerance) {
    for (int decimals = 0; decimals <= sidebarDecimals; ++decimals) {
        const auto rounded = number<double>(fmt::format("{:.{}f}", value, decimals));
        if (rounded && std::abs(*rounded - value) <= tolerance) {
            return *rounded;
        }
    }
    return value;
}

/// A value and how far what was written may be from what was meant.
struct Rounded {
    double value = 0;
    double tolerance = 0;
};

/// Half of what the last decimal of a number is worth, with some air for the arithmetic.
double halfDecimal(std::string_view word) {
    const std::size_t point = word.find('.');
    if (point == std::string_view::npos || word.find_first_of("eE") != std::string_view::npos) {
        return 0;
    }
    return 0.500001 * std::pow(10.0, -static_cast<double>(word.size() - point - 1));
}

std::optional<Rounded> speedOfVelocity(const Options& options) {
    const auto velocity = find(options, "INC_VELOCITY_INIT");
    if (!velocity) {
        return std::nullopt;
    }
    double squares = 0;
    const auto components = words(*velocity);
    for (const std::string_view component : components) {
        const auto value = number<double>(component);
        if (!value) {
            return std::nullopt;
        }
        squares += *value * *value;
    }
    return Rounded{std::sqrt(squares), velocityTolerance};
}

double temperature(const Options& options) {
    return findNumber(options, "FREESTREAM_TEMPERATURE")
        .value_or(SU2ConfigTemplate::freeStreamTemperature);
}

double gasConstant(const Options& options) {
    return findNumber(options, "GAS_CONSTANT").value_or(SU2ConfigTemplate::gasConstant);
}

std::optional<Rounded> speedOfMachNumber(const Options& options) {
    const auto word = find(options, "MACH_NUMBER");
    const auto mach = word ? number<double>(*word) : std::nullopt;
    if (!mach) {
        return std::nullopt;
    }
    const double speedOfSound = std::sqrt(findNumber(options, "GAMMA_VALUE").value_or(heatRatio) *
                                          gasConstant(options) * temperature(options));
    return Rounded{*mach * speedOfSound, halfDecimal(*word) * speedOfSound};
}

std::optional<double> densityOfPressure(const Options& options) {
    const auto word = find(options, "FREESTREAM_PRESSURE");
    const auto pressure = word ? number<double>(*word) : std::nullopt;
    if (!pressure) {
        return std::nullopt;
    }
    const double perDensity = gasConstant(options) * temperature(options);
    return roundest(*pressure / perDensity, halfDecimal(*word) / perDensity);
}

std::optional<TurbulenceModel> turbulenceModel(const Options& options) {
    const std::string_view solver = find(options, "SOLVER").value_or("");
    if (solver.ends_with("NAVIER_STOKES") || solver.ends_with("EULER")) {
        return TurbulenceModel::laminar;
    }
    const std::string_view model = find(options, "KIND_TURB_MODEL").value_or("");
    if (model.starts_with("SST")) {
        return TurbulenceModel::sst;
    }
    if (model.starts_with("SA")) {
        return TurbulenceModel::spalartAllmaras;
    }
    return model == "NONE" ? std::optional(TurbulenceModel::laminar) : std::nullopt;
}

bool isIn(const ParameterInfo& range, double value) {
    return value >= range.minimum && value <= range.maximum;
}

/// Takes what our own comment tells. `velocity` of it is handed back, since it has to agree with
/// the options.
std::optional<double> readComment(std::string_view text, ConfiguredInputs& inputs) {
    std::optional<double> velocity;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (!line.starts_with(commentBeginning)) {
            continue;
        }
        const auto list = words(line.substr(commentBeginning.size()));
        for (std::size_t i = 0; i + 1 < list.size(); i += 2) {
            const auto takeInto = [&](const ParameterInfo& info, auto& target, auto value) {
                if (value &&
                    list[i].substr(std::min<std::size_t>(2, list[i].size())) == info.option &&
                    isIn(info, *value)) {
                    target = *value;
                }
            };
            takeInto(ParameterTable::velocity, velocity, number<double>(list[i + 1]));
            takeInto(ParameterTable::upstreamFactor, inputs.streamlineUpstreamFactor,
                number<float>(list[i + 1]));
            takeInto(ParameterTable::downstreamFactor, inputs.streamlineDownstreamFactor,
                number<float>(list[i + 1]));
            takeInto(
                ParameterTable::seedCount, inputs.streamlineSeedCount, wholeNumber(list[i + 1]));
        }
    }
    return velocity;
}

/// The speed that was meant: the comment's if the options would be written so with it.
std::optional<double> speed(const std::optional<Rounded>& written, std::optional<double> comment) {
    if (!written || written->value > fastest) {
        return std::nullopt;
    }
    if (comment && std::abs(*comment - written->value) <= written->tolerance) {
        return comment;
    }
    const double value = roundest(written->value, written->tolerance);
    return value > 0 ? std::optional(value) : std::nullopt;
}

} // namespace

std::string inputsComment(const SimulationInputs& inputs) {
    return fmt::format("{} --{} {} --{} {} --{} {} --{} {}\n", commentBeginning,
        ParameterTable::velocity.option, inputs.velocity, ParameterTable::upstreamFactor.option,
        inputs.streamlineUpstreamFactor, ParameterTable::downstreamFactor.option,
        inputs.streamlineDownstreamFactor, ParameterTable::seedCount.option,
        inputs.streamlineSeedCount);
}

ConfiguredInputs parse(std::string_view text) {
    ConfiguredInputs inputs;
    const Options options = optionsIn(text);
    const auto exactVelocity = readComment(text, inputs);
    const auto solver = find(options, "SOLVER");
    if (solver) {
        inputs.regime =
            solver->starts_with("INC_") ? FlowRegime::incompressible : FlowRegime::compressible;
    }
    const bool isCompressible = inputs.regime == FlowRegime::compressible;
    inputs.velocity = speed(
        isCompressible ? speedOfMachNumber(options) : speedOfVelocity(options), exactVelocity);
    inputs.density =
        isCompressible ? densityOfPressure(options) : findNumber(options, "INC_DENSITY_INIT");
    inputs.alpha = findNumber(options, "AOA");
    inputs.beta = findNumber(options, "SIDESLIP_ANGLE");
    if (const auto limit = find(options, "ITER")) {
        inputs.maxIterations = wholeNumber(*limit);
    }
    inputs.turbulenceModel = turbulenceModel(options);
    if (inputs.turbulenceModel) {
        // Another model has none, whatever may have been asked for.
        const bool hasOptions = inputs.turbulenceModel == TurbulenceModel::spalartAllmaras;
        const auto list = words(hasOptions ? find(options, "SA_OPTIONS").value_or("") : "");
        inputs.saRotationCorrection = std::count(list.begin(), list.end(), "ROTATION") > 0;
        inputs.saTransition = std::count(list.begin(), list.end(), "BCM") > 0;
    }
    inputs.referenceArea = findNumber(options, "REF_AREA");
    if (const auto mesh = find(options, "MESH_FILENAME")) {
        inputs.meshFilename = std::string(*mesh);
    }
    return inputs;
}

} // namespace ostrella::SU2ConfigReader
