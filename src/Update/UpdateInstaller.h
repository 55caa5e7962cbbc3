#pragma once

#include "Models/Cancellation.h"
#include "Models/InformationDictionary.h"
#include "Models/Timers.h"
#include "Platform/FileDescriptor.h"
#include "Update/AppcastItem.h"
#include "Update/UpdateArchive.h"
#include "Update/UpdateRefusal.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace ostrella {

/// Puts another version of the application in the place of the installed one. Beside the root NAME
/// lie, for as long as they are needed, ".NAME.ostrella-update" with all that is under way, and
/// "NAME.previous", the version before, until the new one has come up once. Whatever moment the
/// process or the machine ends at, the next start finds out by them what had been done. Not for
/// several threads at a time.
class UpdateInstaller {
public:
    struct Options {
        UpdateArchive::Limits limits = {};
        /// In one step of the file system where it has such a step; false to test the other way.
        bool atomically = true;
        /// Called between the two steps of an exchange.
        std::function<void()> halfWay = {};
        TimerService* timers = &TimerService::system();
    };

    /// The root of an installation that is ours to replace.
    explicit UpdateInstaller(std::filesystem::path root) : UpdateInstaller(std::move(root), {}) {}
    UpdateInstaller(std::filesystem::path root, Options options);

    /// A run uses what is installed; what is staged stays.
    class InUse : public UpdateRefusal {
        using UpdateRefusal::UpdateRefusal;
    };

    /// What the start of a program finds.
    struct Recovery {
        /// The version that did not come up and has been taken back; empty for none.
        std::string failedVersion;
        /// The program to become instead: the files of the running one are no longer in place.
        std::optional<std::filesystem::path> startInstead;
        /// To be held until the running version has come up: no other start takes it back while
        /// this one is about to.
        FileDescriptor claim;
    };

    /// At the start of the installed program, before anything else of the update: finishes or takes
    /// back what was interrupted. An update that came up neither under watch nor at its first start
    /// without is taken back at its second. Throws nothing; what cannot be done is left.
    Recovery recover();

    /// Unpacks the archive beside the root and checks what is in it: a program that starts, and
    /// exactly the version that `item` states, newer than `presentVersion`. Blocks the calling
    /// worker. Throws UpdateRefusal, and CancellationError; nothing is left of the archive then,
    /// and what was staged before stays.
    void stage(const std::filesystem::path& archive, const AppcastItem& item,
        const std::string& presentVersion, const CancellationToken& token = {});

    bool isStaged() const;
    /// Takes over what a process that did not come to its end had staged, and gives what that says
    /// of itself. Nothing where none lies there, where it is not newer than `presentVersion`, and
    /// where another process is at it.
    std::optional<InformationDictionary> adopt(const std::string& presentVersion);
    /// Removes what stage() made, and what earlier attempts left that nobody works on.
    void discard();

    /// Puts the staged version in the place of the installed one. Throws UpdateRefusal, also where
    /// nothing is staged any more, InUse while a run of any process uses the root, where the root
    /// has come to hold what is not ours, and where what is installed by now is no older; the
    /// installed one is in its place then as before.
    void exchange();
    /// Puts the previous version back. Throws UpdateRefusal, with the new one in its place.
    void rollBack();

    /// The version `running` has come up: nobody takes it back any more, and the one before is put
    /// aside, unless it holds what is not ours. Only for a process that is watched or holds the
    /// claim of recover(), which it hands in. True if it was this update that waited for that.
    bool confirmStarted(const std::string& running, FileDescriptor claim = {});
    /// Removes what a confirmed start has put aside; may take a while.
    void removePrevious();
    /// Lets other processes at it again.
    void release() { lock_.close(); }

    std::filesystem::path program() const { return root_ / "bin" / "ostrella"; }
    /// Where the version before is kept.
    std::filesystem::path previous() const;

    /// The version that counts for order: the build, where there is one. Empty if none is told.
    static std::string version(const InformationDictionary& information);
    /// The same of the copy at `root`.
    static std::string version(const std::filesystem::path& root);

private:
    std::filesystem::path beside(const char* prefix, const char* suffix) const;
    std::filesystem::path work() const;
    std::filesystem::path ready() const;
    std::filesystem::path obsolete() const;
    std::filesystem::path record() const;
    std::filesystem::path failure() const;

    void takeLock();
    void requireOwn() const;
    void check(const std::filesystem::path& tree, const AppcastItem& item,
        const std::string& presentVersion, const CancellationToken& token) const;
    void requireThatItStarts(
        const std::filesystem::path& program, const CancellationToken& token) const;
    void replaceRoot(const std::filesystem::path& by, const std::filesystem::path& keepAs);
    bool recoverFromPrevious(Recovery& recovery);
    void finishExchange(const std::string& installing, Recovery& recovery);

    std::filesystem::path root_;
    Options options_;
    FileDescriptor lock_;
};

} // namespace ostrella
