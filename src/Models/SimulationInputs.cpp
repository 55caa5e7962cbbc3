#include "Models/SimulationInputs.h"

namespace ostrella {

std::string_view rawValue(TurbulenceModel model) {
    switch (model) {
    case TurbulenceModel::spalartAllmaras:
        return "spalartAllmaras";
    case TurbulenceModel::sst:
        return "sst";
    case TurbulenceModel::laminar:
        return "laminar";
    }
    return {};
}

std::optional<TurbulenceModel> turbulenceModelFromRawValue(std::string_view raw) {
    for (const TurbulenceModel model : allTurbulenceModels) {
        if (rawValue(model) == raw) {
            return model;
        }
    }
    return std::nullopt;
}

std::string_view rawValue(FlowRegime regime) {
    switch (regime) {
    case FlowRegime::incompressible:
        return "incompressible";
    case FlowRegime::compressible:
        return "compressible";
    }
    return {};
}

std::optional<FlowRegime> flowRegimeFromRawValue(std::string_view raw) {
    for (const FlowRegime regime : allFlowRegimes) {
        if (rawValue(regime) == raw) {
            return regime;
        }
    }
    return std::nullopt;
}

} // namespace ostrella
