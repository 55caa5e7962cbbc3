#pragma once

#include "Update/CopyMaker.h"
#include "Update/UpdateInstaller.h"
#include "Update/UpdateRefusal.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace ostrella::test {

/// Version 1.0.0 installed in a folder of its own, and an archive beside.
class InstallerFixture : public testing::Test {
protected:
    using Names = std::set<std::string>;

    InstallerFixture() {
        std::filesystem::permissions(directory_.path(), std::filesystem::perms(0755));
        makeCopy(root_, "1.0.0");
    }

    /// No thread is started for its time limit, so that a process that was forked off can use it.
    UpdateInstaller installer() { return installer({.timers = &timers_}); }

    UpdateInstaller installer(UpdateInstaller::Options options) const {
        return UpdateInstaller(root_, std::move(options));
    }

    static AppcastItem item(const std::string& version) {
        AppcastItem item;
        item.version = version;
        return item;
    }

    /// Stages version 1.1.0.
    void stage(UpdateInstaller& installer) const {
        makeArchive(archive_, copyEntries("1.1.0"));
        installer.stage(archive_, item("1.1.0"), "1.0.0");
    }

    /// The line of the log with which it is refused; empty if it is not.
    static std::string refusal(const std::function<void()>& work) {
        try {
            work();
        } catch (const UpdateRefusal& error) {
            return error.what();
        }
        return "";
    }

    std::string refusalToStage(const std::vector<ArchiveEntry>& entries) {
        makeArchive(archive_, entries);
        UpdateInstaller subject = installer();
        return refusal([&] { subject.stage(archive_, item("1.1.0"), "1.0.0"); });
    }

    /// Performs `work` in a process of its own, which a step of it ends.
    static void inProcessThatEnds(const std::function<void()>& work) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            work();
            ::_exit(EXIT_FAILURE);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS)
            << "the process did not come to the step that was to end it";
    }

    static void endProcess() { ::_exit(EXIT_SUCCESS); }

    std::string installed() const { return UpdateInstaller::version(root_); }
    Names beside() const { return namesIn(root_.parent_path()); }

    ManualTimers timers_;
    TemporaryDirectory directory_;
    std::filesystem::path archive_ = directory_.path() / "archive";
    std::filesystem::path root_ = directory_.path() / "place" / "ostrella";
    std::filesystem::path work_ = directory_.path() / "place" / ".ostrella.ostrella-update";
    std::filesystem::path previous_ = directory_.path() / "place" / "ostrella.previous";
};

} // namespace ostrella::test
