#include "Update/UpdatePreferences.h"

#include <chrono>
#include <cstdint>
#include <string_view>

namespace ostrella {

namespace {

constexpr std::string_view automaticKey = "Ostrella.updates.automatic";
constexpr std::string_view lastCheckKey = "Ostrella.updates.lastCheck";
constexpr std::string_view skippedKey = "Ostrella.updates.skipped";
/// Before a version, since a text that reads as a number would come back as one: 1.10 as 1.1.
constexpr std::string_view versionMark = "v";

template <class Value>
std::optional<Value> stored(const PreferenceStore& store, std::string_view key) {
    const auto value = store.value(key);
    const auto* held = value ? std::get_if<Value>(&*value) : nullptr;
    return held ? std::optional(*held) : std::nullopt;
}

} // namespace

bool UpdatePreferences::automatic() const {
    return stored<bool>(store_, automaticKey).value_or(true);
}

void UpdatePreferences::setAutomatic(bool automatic) {
    store_.set(automaticKey, automatic);
}

std::optional<Date> UpdatePreferences::lastCheck() const {
    if (lastCheck_) {
        return lastCheck_;
    }
    // As many as the clock can count.
    constexpr std::int64_t most =
        std::chrono::duration_cast<std::chrono::seconds>(Date::duration::max()).count();
    const auto seconds = stored<std::int64_t>(store_, lastCheckKey);
    return seconds && *seconds >= 0 && *seconds <= most
               ? std::optional(Date(std::chrono::seconds(*seconds)))
               : std::nullopt;
}

void UpdatePreferences::setLastCheck(Date date) {
    lastCheck_ = date;
    store_.set(lastCheckKey,
        std::int64_t{
            std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count()});
}

std::string UpdatePreferences::skippedVersion() const {
    const auto text = stored<std::string>(store_, skippedKey).value_or("");
    return text.starts_with(versionMark) ? text.substr(versionMark.size()) : "";
}

void UpdatePreferences::setSkippedVersion(const std::string& version) {
    store_.set(skippedKey, std::string(versionMark) + version);
}

} // namespace ostrella
