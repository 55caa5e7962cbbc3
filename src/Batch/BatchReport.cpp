#include "Batch/BatchReport.h"

#include "Platform/AppBundle.h"

#include <nlohmann/json.hpp>

namespace ostrella {

namespace {

using Json = nlohmann::ordered_json;

template <class Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

Json inputsOf(const BatchOptions& options) {
    const SimulationInputs& inputs = options.inputs;
    Json json;
    json["model"] = options.model ? Json(options.model->string()) : Json();
    json["sample"] = orNull(options.sample);
    json["demo"] = options.demo;
    json["rotation_deg"] = {options.rotationX, options.rotationY, options.rotationZ};
    json["velocity_m_s"] = inputs.velocity;
    json["alpha_deg"] = inputs.alpha;
    json["beta_deg"] = inputs.beta;
    json["density_kg_m3"] = inputs.density;
    // The aerofoil case is incompressible whatever was asked for.
    json["regime"] = rawValue(options.demo ? FlowRegime::incompressible : inputs.regime);
    json["turbulenceModel"] = rawValue(inputs.turbulenceModel);
    json["saRotationCorrection"] = inputs.saRotationCorrection;
    json["saTransition"] = inputs.saTransition;
    json["maxIterations"] = inputs.maxIterations;
    json["streamlineUpstreamFactor"] = inputs.streamlineUpstreamFactor;
    json["streamlineDownstreamFactor"] = inputs.streamlineDownstreamFactor;
    json["streamlineSeedCount"] = inputs.streamlineSeedCount;
    return json;
}

Json stopReasonOf(const std::optional<StopReason>& reason) {
    if (!reason) {
        return {};
    }
    Json json;
    json["kind"] = reason->kind == StopReason::Kind::converged ? "converged" : "iterationCap";
    json["iterations"] = orNull(reason->iterations);
    return json;
}

Json numbersOf(const std::vector<std::pair<std::string, double>>& values) {
    Json json = Json::object();
    for (const auto& [name, value] : values) {
        json[name] = value;
    }
    return json;
}

} // namespace

std::string toJSON(const BatchReport& report) {
    Json json;
    json["application"] = "Ostrella " + AppBundle::version();
    json["inputs"] = inputsOf(report.options);
    json["phase"] = report.phase;
    json["failure"] = Json();
    if (report.failure) {
        json["failure"] = {{"stage", report.failure->first}, {"message", report.failure->second}};
    }
    json["stopReason"] = stopReasonOf(report.stopReason);
    json["converged"] = report.converged;
    json["iterations"] = orNull(report.iterations);
    json["cells"] = orNull(report.cells);
    const Json coefficients = numbersOf(report.coefficients);
    json["cl"] = coefficients.value("CL", Json());
    json["cd"] = coefficients.value("CD", Json());
    json["coefficients"] = coefficients;
    json["referenceArea_m2"] = orNull(report.referenceArea);
    json["openEdges"] = orNull(report.openEdges);
    json["surfaceIsOpen"] = report.openEdges ? Json(*report.openEdges > 0) : Json();
    json["times_s"] = numbersOf(report.times);
    json["tools"] = {{"mesher", report.tools.mesher}, {"solver", report.tools.solver},
        {"solverIsStandIn", report.tools.solverIsStandIn}};
    json["runDirectory"] = report.runDirectory ? Json(report.runDirectory->string()) : Json();
    json["exported"] = Json::array();
    for (const auto& file : report.exported) {
        json["exported"].push_back(file.string());
    }
    // A path may hold bytes that are no UTF-8.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace ostrella
