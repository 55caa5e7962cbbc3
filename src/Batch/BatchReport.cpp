#include "Batch/BatchReport.h"

#include "Batch/ResultsJSON.h"
#include "Batch/SurfaceJSON.h"
#include "Platform/AppBundle.h"

namespace ostrella {

namespace {

Json pathOrNull(const std::optional<std::filesystem::path>& path) {
    return path ? Json(path->string()) : Json();
}

/// The value's name, as the options spell it.
template <class Value>
Json nameOrNull(const std::optional<Value>& value) {
    return value ? Json(rawValue(*value)) : Json();
}

/// All of the inputs that a run is started with.
ConfiguredInputs knownInputs(const BatchOptions& options) {
    const SimulationInputs& inputs = options.inputs;
    ConfiguredInputs known;
    known.velocity = inputs.velocity;
    known.alpha = inputs.alpha;
    known.beta = inputs.beta;
    known.density = inputs.density;
    // The aerofoil case is incompressible whatever was asked for.
    known.regime = options.demo ? FlowRegime::incompressible : inputs.regime;
    known.turbulenceModel = inputs.turbulenceModel;
    known.saRotationCorrection = inputs.saRotationCorrection;
    known.saTransition = inputs.saTransition;
    known.maxIterations = inputs.maxIterations;
    known.streamlineUpstreamFactor = inputs.streamlineUpstreamFactor;
    known.streamlineDownstreamFactor = inputs.streamlineDownstreamFactor;
    known.streamlineSeedCount = inputs.streamlineSeedCount;
    return known;
}

Json inputsOf(const BatchReport& report) {
    const BatchOptions& options = report.options;
    const ConfiguredInputs inputs =
        report.earlierInputs ? *report.earlierInputs : knownInputs(options);
    Json json;
    json["model"] = pathOrNull(options.model);
    json["sample"] = orNull(options.sample);
    json["demo"] = options.demo;
    json["results"] = pathOrNull(options.resultsFolder);
    json["rotation_deg"] = options.resultsFolder
                               ? Json()
                               : Json{options.rotationX, options.rotationY, options.rotationZ};
    json["velocity_m_s"] = orNull(inputs.velocity);
    json["alpha_deg"] = orNull(inputs.alpha);
    json["beta_deg"] = orNull(inputs.beta);
    json["density_kg_m3"] = orNull(inputs.density);
    json["regime"] = nameOrNull(inputs.regime);
    json["turbulenceModel"] = nameOrNull(inputs.turbulenceModel);
    json["saRotationCorrection"] = orNull(inputs.saRotationCorrection);
    json["saTransition"] = orNull(inputs.saTransition);
    json["maxIterations"] = orNull(inputs.maxIterations);
    json["streamlineUpstreamFactor"] = orNull(inputs.streamlineUpstreamFactor);
    json["streamlineDownstreamFactor"] = orNull(inputs.streamlineDownstreamFactor);
    json["streamlineSeedCount"] = orNull(inputs.streamlineSeedCount);
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

Json toolsOf(const std::optional<ToolFacts>& tools) {
    if (!tools) {
        return {};
    }
    return {{"mesher", tools->mesher}, {"solver", tools->solver},
        {"solverIsStandIn", tools->solverIsStandIn}};
}

Json imageOf(const BatchReport& report) {
    if (!report.image) {
        return {};
    }
    const PictureOptions& picture = report.options.picture;
    Json layers = Json::array();
    for (const auto& layer : PictureWords::allLayers) {
        if (picture.layers.*layer.toggle) {
            layers.push_back(layer.name);
        }
    }
    Json json;
    json["file"] = report.image->file.string();
    json["width"] = picture.width;
    json["height"] = picture.height;
    json["view"] = rawValue(picture.view);
    json["layers"] = layers;
    json["device"] = report.image->device;
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
    json["inputs"] = inputsOf(report);
    json["phase"] = report.phase;
    json["failure"] = Json();
    if (report.failure) {
        json["failure"] = {{"stage", report.failure->first}, {"message", report.failure->second}};
    }
    json["stopReason"] = stopReasonOf(report.stopReason);
    json["converged"] = orNull(report.converged);
    json["iterations"] = orNull(report.iterations);
    json["cells"] = orNull(report.cells);
    const Json coefficients = numbersOf(report.coefficients);
    json["cl"] = coefficients.value("CL", Json());
    json["cd"] = coefficients.value("CD", Json());
    json["coefficients"] = coefficients;
    json["referenceArea_m2"] = orNull(report.referenceArea);
    json["openEdges"] = orNull(report.openEdges);
    json["surfaceIsOpen"] = report.openEdges ? Json(*report.openEdges > 0) : Json();
    json["surface"] = surfaceOf(report);
    json["times_s"] = numbersOf(report.times);
    json["results"] = report.results ? resultsOf(*report.results) : Json();
    json["tools"] = toolsOf(report.tools);
    json["runDirectory"] = pathOrNull(report.runDirectory);
    json["exported"] = Json::array();
    for (const auto& file : report.exported) {
        json["exported"].push_back(file.string());
    }
    json["streamlinesFile"] = pathOrNull(report.streamlinesFile);
    json["vortexFile"] = pathOrNull(report.vortexFile);
    json["image"] = imageOf(report);
    // A path may hold bytes that are no UTF-8.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace ostrella
