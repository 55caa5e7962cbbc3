#include "Models/AppSettings.h"

#include "Models/PreferenceStore.h"
#include "Models/SimulationInputs.h"

#include <cmath>
#include <limits>

namespace ostrella {

namespace {

constexpr SimulationInputs defaults;

/// A stored whole number that fits; a boolean or a text is of another type.
std::optional<int> asInteger(const PreferenceValue& value) {
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    double number = 0;
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        number = static_cast<double>(*whole);
    } else if (const auto* real = std::get_if<double>(&value)) {
        number = *real;
    } else {
        return std::nullopt;
    }
    if (!(number >= lowest && number <= highest) || number != std::trunc(number)) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

std::optional<double> asReal(const PreferenceValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return static_cast<double>(*whole);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return *real;
    }
    return std::nullopt;
}

int storedInteger(const PreferenceStore& store, std::string_view key, int missing) {
    const auto value = store.value(key);
    return value ? asInteger(*value).value_or(missing) : missing;
}

double storedReal(const PreferenceStore& store, std::string_view key, double missing) {
    const auto value = store.value(key);
    return value ? asReal(*value).value_or(missing) : missing;
}

} // namespace

AppSettings::AppSettings(PreferenceStore& store, QObject* parent)
    : QObject(parent),
      store_(store),
      defaultMaxIterations_(storedInteger(store, maxIterationsKey, defaults.maxIterations)),
      streamlineUpstreamFactor_(
          storedReal(store, upstreamFactorKey, defaults.streamlineUpstreamFactor)),
      streamlineDownstreamFactor_(
          storedReal(store, downstreamFactorKey, defaults.streamlineDownstreamFactor)),
      streamlineSeedCount_(storedInteger(store, seedCountKey, defaults.streamlineSeedCount)) {}

void AppSettings::setDefaultMaxIterations(int value) {
    defaultMaxIterations_ = value;
    store_.set(maxIterationsKey, PreferenceValue(std::int64_t{value}));
    Q_EMIT defaultMaxIterationsChanged();
}

void AppSettings::setStreamlineUpstreamFactor(double value) {
    streamlineUpstreamFactor_ = value;
    store_.set(upstreamFactorKey, PreferenceValue(value));
    Q_EMIT streamlineUpstreamFactorChanged();
}

void AppSettings::setStreamlineDownstreamFactor(double value) {
    streamlineDownstreamFactor_ = value;
    store_.set(downstreamFactorKey, PreferenceValue(value));
    Q_EMIT streamlineDownstreamFactorChanged();
}

void AppSettings::setStreamlineSeedCount(int value) {
    streamlineSeedCount_ = value;
    store_.set(seedCountKey, PreferenceValue(std::int64_t{value}));
    Q_EMIT streamlineSeedCountChanged();
}

void AppSettings::restoreSolverDefaults() {
    setDefaultMaxIterations(defaults.maxIterations);
}

void AppSettings::restoreStreamlineDefaults() {
    setStreamlineUpstreamFactor(defaults.streamlineUpstreamFactor);
    setStreamlineDownstreamFactor(defaults.streamlineDownstreamFactor);
    setStreamlineSeedCount(defaults.streamlineSeedCount);
}

} // namespace ostrella
