#pragma once

#include "Update/Updater.h"
#include "Update/UpdaterDelegate.h"

#include <optional>
#include <string>

namespace ostrella::test {

/// An updater that does what a test says and counts what is asked of it.
class ScriptedUpdater final : public Updater {
public:
    std::optional<std::string> startUpdater() override {
        ++starts;
        if (!failure && canCheckWhenStarted) {
            setCanCheck(true);
        }
        return failure;
    }
    void checkForUpdates() override { ++checks; }
    bool canCheckForUpdates() const override { return canCheck_; }
    bool sessionInProgress() const override { return inSession_; }
    bool automaticallyChecksForUpdates() const override { return isAutomatic_; }
    void setAutomaticallyChecksForUpdates(bool automatically) override {
        isAutomatic_ = automatically;
        Q_EMIT automaticallyChecksForUpdatesChanged();
    }
    void setDelegate(UpdaterDelegate* given) override { delegate = given; }

    void setCanCheck(bool can) {
        canCheck_ = can;
        Q_EMIT canCheckForUpdatesChanged();
    }
    void setInSession(bool is) {
        inSession_ = is;
        Q_EMIT sessionInProgressChanged();
    }

    UpdaterDelegate* delegate = nullptr;
    /// What the next starts end with.
    std::optional<std::string> failure;
    bool canCheckWhenStarted = true;
    int starts = 0;
    int checks = 0;

private:
    bool canCheck_ = false;
    bool inSession_ = false;
    bool isAutomatic_ = true;
};

} // namespace ostrella::test
