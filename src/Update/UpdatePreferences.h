#pragma once

#include "Models/Clock.h"
#include "Models/PreferenceStore.h"

#include <optional>
#include <string>

namespace ostrella {

/// What is remembered of updates from one start to the next. A stored value that cannot be one
/// counts as none.
class UpdatePreferences {
public:
    /// `store` outlives this.
    explicit UpdatePreferences(PreferenceStore& store) : store_(store) {}

    /// Whether checks come by schedule; true until the user has chosen.
    bool automatic() const;
    void setAutomatic(bool automatic);

    /// When the feed was last looked at. Remembered for this run also where nothing can be stored.
    std::optional<Date> lastCheck() const;
    void setLastCheck(Date date);

    /// The version that scheduled checks do not show; empty for none.
    std::string skippedVersion() const;
    void setSkippedVersion(const std::string& version);

private:
    PreferenceStore& store_;
    std::optional<Date> lastCheck_;
};

} // namespace ostrella
