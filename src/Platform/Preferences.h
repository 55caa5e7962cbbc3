#pragma once

#include "Models/PreferenceStore.h"

#include <QSettings>

namespace ostrella {

/// The user's own preferences, where the system keeps them. Main thread only.
class Preferences final : public PreferenceStore {
public:
    Preferences();
    /// Preferences in a file of the caller's, in the same form.
    explicit Preferences(const QString& file);

    std::optional<PreferenceValue> value(std::string_view key) const override;
    void set(std::string_view key, const PreferenceValue& value) override;

private:
    QSettings settings_;
};

} // namespace ostrella
