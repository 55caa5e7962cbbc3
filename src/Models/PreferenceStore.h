#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace ostrella {

/// A stored preference.
using PreferenceValue = std::variant<bool, std::int64_t, double, std::string>;

/// The user's preferences, or a stand-in for them; handed in, so that neither a test nor a batch
/// run touches the user's own.
class PreferenceStore {
public:
    virtual ~PreferenceStore() = default;
    virtual std::optional<PreferenceValue> value(std::string_view key) const = 0;
    virtual void set(std::string_view key, const PreferenceValue& value) = 0;
};

/// Preferences that live as long as the object.
class MemoryPreferences final : public PreferenceStore {
public:
    std::optional<PreferenceValue> value(std::string_view key) const override {
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    void set(std::string_view key, const PreferenceValue& value) override {
        values_.insert_or_assign(std::string(key), value);
    }

private:
    std::map<std::string, PreferenceValue, std::less<>> values_;
};

} // namespace ostrella
