#include "Solver/Tools/SU2ConfigTemplate.h"

#include "Solver/Tools/TextTemplate.h"

#include <fmt/format.h>

#include <cmath>
#include <initializer_list>
#include <numbers>
#include <utility>

namespace ostrella::SU2ConfigTemplate {

namespace {

using Replacement = std::pair<std::string_view, std::string>;

std::string filled(std::string_view text, std::initializer_list<Replacement> replacements) {
    std::string result(text);
    for (const auto& [placeholder, value] : replacements) {
        result = replaceAll(result, placeholder, value);
    }
    return result;
}

std::string turbulenceModelName(TurbulenceModel model) {
    switch (model) {
    case TurbulenceModel::spalartAllmaras:
        return "SA";
    case TurbulenceModel::sst:
        return "SST";
    case TurbulenceModel::laminar:
        return "NONE";
    }
    return {};
}

std::string solverName(const SimulationInputs& inputs, std::string_view prefix) {
    const bool isLaminar = inputs.turbulenceModel == TurbulenceModel::laminar;
    return fmt::format("{}{}", prefix, isLaminar ? "NAVIER_STOKES" : "RANS");
}

/// Options of the Spalart-Allmaras model; empty for another model or without any.
std::string saOptionsLine(const SimulationInputs& inputs) {
    if (inputs.turbulenceModel != TurbulenceModel::spalartAllmaras) {
        return {};
    }
    std::string options;
    if (inputs.saRotationCorrection) {
        options = "ROTATION";
    }
    if (inputs.saTransition) {
        options += options.empty() ? "BCM" : ", BCM";
    }
    return options.empty() ? options : fmt::format("SA_OPTIONS= ({})", options);
}

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

} // namespace

glm::dvec3 freeStreamVelocity(const SimulationInputs& inputs, int dimensions) {
    const double speed = inputs.velocity;
    const double alpha = radians(inputs.alpha);
    const double beta = radians(inputs.beta);
    if (dimensions == 3) {
        return {speed * std::cos(alpha) * std::cos(beta), speed * std::sin(beta),
            speed * std::sin(alpha) * std::cos(beta)};
    }
    return {speed * std::cos(alpha), speed * std::sin(alpha), 0};
}

std::string renderIncompressible(std::string_view text, const SimulationInputs& inputs,
    std::string_view meshFilename, int dimensions) {
    const auto number = [](double value) { return fmt::format("{:.6f}", value); };
    const glm::dvec3 velocity = freeStreamVelocity(inputs, dimensions);
    return filled(
        text, {{"{{SOLVER}}", solverName(inputs, "INC_")},
                  {"{{KIND_TURB_MODEL}}", turbulenceModelName(inputs.turbulenceModel)},
                  {"{{SA_OPTIONS_LINE}}", saOptionsLine(inputs)},
                  {"{{INC_DENSITY}}", number(inputs.density)}, {"{{VX}}", number(velocity.x)},
                  {"{{VY}}", number(velocity.y)}, {"{{VZ}}", number(velocity.z)},
                  {"{{AOA_DEG}}", number(inputs.alpha)}, {"{{BETA_DEG}}", number(inputs.beta)},
                  {"{{ITER}}", fmt::format("{}", inputs.maxIterations)},
                  {"{{MESH_FILENAME}}", std::string(meshFilename)}});
}

std::string renderCompressible(
    std::string_view text, const SimulationInputs& inputs, std::string_view meshFilename) {
    const double pressure = inputs.density * gasConstant * freeStreamTemperature;
    return filled(
        text, {{"{{SOLVER}}", solverName(inputs, "")},
                  {"{{KIND_TURB_MODEL}}", turbulenceModelName(inputs.turbulenceModel)},
                  {"{{SA_OPTIONS_LINE}}", saOptionsLine(inputs)},
                  {"{{MACH}}", fmt::format("{:.4f}", inputs.velocity / speedOfSound)},
                  {"{{AOA_DEG}}", fmt::format("{:.4f}", inputs.alpha)},
                  {"{{BETA_DEG}}", fmt::format("{:.4f}", inputs.beta)},
                  {"{{FREESTREAM_PRESSURE}}", fmt::format("{:.2f}", pressure)},
                  {"{{FREESTREAM_TEMPERATURE}}", fmt::format("{:.2f}", freeStreamTemperature)},
                  {"{{ITER}}", fmt::format("{}", inputs.maxIterations)},
                  {"{{MESH_FILENAME}}", std::string(meshFilename)}});
}

} // namespace ostrella::SU2ConfigTemplate
