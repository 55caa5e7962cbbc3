#pragma once

#include "Batch/ResultFigures.h"

#include <nlohmann/json.hpp>

#include <optional>

namespace ostrella {

/// Keys keep the order in which they were written.
using Json = nlohmann::ordered_json;

template <class Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

/// The "results" of a report; a part that is absent is null.
Json resultsOf(const ResultFigures& figures);

} // namespace ostrella
