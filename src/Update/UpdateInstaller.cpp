#include "Update/UpdateInstaller.h"

#include "Platform/AppBundle.h"
#include "Platform/ChildProcess.h"
#include "Platform/PackageUse.h"
#include "Update/FileSteps.h"
#include "Update/Installation.h"
#include "Update/UpdateRefusal.h"
#include "Update/VersionOrder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace ostrella {

namespace fs = std::filesystem;

using namespace FileSteps;

namespace {

constexpr std::chrono::seconds longestTrial{10};

[[noreturn]] void refuse(const std::string& attempt, std::error_code reason) {
    throw UpdateRefusal(fmt::format("{}: {}.", attempt, reason.message()));
}

/// So that it can be told apart from what stands after it in the record.
bool isOneWord(std::string_view version) {
    return std::none_of(version.begin(), version.end(),
        [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7f'; });
}

void requireNewer(const std::string& candidate, const std::string& present) {
    if (!VersionOrder::isNewer(candidate, present)) {
        throw UpdateRefusal(fmt::format("Version {} is not newer than {}.", candidate, present));
    }
}

/// Archives hold the root's folders either as they are or in one folder around them.
fs::path treeIn(const fs::path& folder) {
    if (isThere(folder / "bin")) {
        return folder;
    }
    std::vector<fs::path> all;
    for (const auto& entry : fs::directory_iterator(folder)) {
        all.push_back(entry.path());
    }
    return all.size() == 1 && !fs::is_symlink(all.front()) && fs::is_directory(all.front())
               ? all.front()
               : folder;
}

} // namespace

UpdateInstaller::UpdateInstaller(fs::path root, Options options)
    : root_(std::move(root)), options_(std::move(options)) {}

fs::path UpdateInstaller::beside(const char* prefix, const char* suffix) const {
    return root_.parent_path() / (prefix + root_.filename().string() + suffix);
}

fs::path UpdateInstaller::previous() const {
    return beside("", ".previous");
}

fs::path UpdateInstaller::work() const {
    return beside(".", ".ostrella-update");
}

fs::path UpdateInstaller::ready() const {
    return work() / "ready";
}

fs::path UpdateInstaller::obsolete() const {
    return work() / "obsolete";
}

fs::path UpdateInstaller::record() const {
    return work() / "installing";
}

fs::path UpdateInstaller::failure() const {
    return work() / "failed";
}

std::string UpdateInstaller::version(const InformationDictionary& information) {
    const auto build = stringOf(information, InformationKeys::build);
    return build && !build->empty() ? *build
                                    : stringOf(information, InformationKeys::version).value_or("");
}

std::string UpdateInstaller::version(const fs::path& root) {
    const auto information = AppBundle(root).information();
    return information ? version(*information) : "";
}

void UpdateInstaller::takeLock() {
    if (lock_.get() >= 0) {
        return;
    }
    constexpr mode_t forTheUser = 0600;
    FileDescriptor lock(
        ::open((work() / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, forTheUser));
    if (lock.get() < 0) {
        refuse("Cannot write beside " + root_.string(), lastError());
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        throw UpdateRefusal("Another Ostrella of this folder is updating it already.");
    }
    lock_ = std::move(lock);
}

void UpdateInstaller::requireOwn() const {
    const Installation now(root_);
    if (!now.isOwn()) {
        throw UpdateRefusal(
            fmt::format("Cannot replace {}: {}.", root_.string(), now.managedBecause()));
    }
}

void UpdateInstaller::stage(const fs::path& archive, const AppcastItem& item,
    const std::string& presentVersion, const CancellationToken& token) {
    constexpr mode_t forTheUser = 0700;
    constexpr mode_t asRoot = 0755;
    if (isThere(record())) {
        throw UpdateRefusal("The update before has not been completed yet.");
    }
    if (isThere(previous())) {
        throw UpdateRefusal(fmt::format("{} is in the way.", previous().string()));
    }
    if (::mkdir(work().c_str(), forTheUser) != 0 && errno != EEXIST) {
        refuse("Cannot write beside " + root_.string(), lastError());
    }
    if (!isOwnFolder(work())) {
        throw UpdateRefusal(fmt::format("Others can write {}.", work().string()));
    }
    takeLock();
    const fs::path unpacked = work() / "unpacked";
    clear(unpacked);
    try {
        requireOwn();
        if (::mkdir(unpacked.c_str(), asRoot) != 0) {
            refuse("Cannot write beside " + root_.string(), lastError());
        }
        UpdateArchive::unpack(archive, unpacked, options_.limits, token);
        const fs::path tree = treeIn(unpacked);
        UpdateArchive::requireLinksInside(tree);
        check(tree, item, presentVersion, token);
        settle(work());
        clear(ready());
        if (const auto error = moveTo(tree, ready())) {
            refuse("Cannot move " + tree.string(), error);
        }
        clear(unpacked);
    } catch (...) {
        clear(unpacked);
        if (!isStaged()) {
            discard();
        }
        throw;
    }
}

void UpdateInstaller::check(const fs::path& tree, const AppcastItem& item,
    const std::string& presentVersion, const CancellationToken& token) const {
    struct stat facts {};
    const fs::path program = tree / "bin" / "ostrella";
    if (::lstat(program.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        throw UpdateRefusal("The archive holds no bin/ostrella.");
    }
    if ((facts.st_mode & S_IXUSR) == 0) {
        throw UpdateRefusal("The archive's bin/ostrella is no program.");
    }
    const std::string stated = version(tree);
    if (stated.empty()) {
        throw UpdateRefusal("The archive does not tell which version it holds.");
    }
    if (!isOneWord(stated)) {
        throw UpdateRefusal("The archive's version is not a single word.");
    }
    if (stated != item.version) {
        throw UpdateRefusal(
            fmt::format("The archive holds version {} and not {}.", stated, item.version));
    }
    requireNewer(stated, presentVersion);
    requireThatItStarts(program, token);
}

void UpdateInstaller::requireThatItStarts(
    const fs::path& program, const CancellationToken& token) const {
    const FileDescriptor output(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    const auto child = std::make_shared<ChildProcess>();
    try {
        child->start({.executable = program,
                         .arguments = {"--version"},
                         .directory = std::nullopt,
                         .nullInput = true},
            output.get());
    } catch (const std::system_error& error) {
        refuse("The new version does not start on this machine", error.code());
    }
    const Timer limit = options_.timers->after(longestTrial, [child] { child->kill(); });
    const auto leave = token.onCancel([child] { child->kill(); });
    const int status = child->wait();
    token.throwIfCancelled();
    if (status != 0) {
        throw UpdateRefusal(
            fmt::format("The new version does not start on this machine: status {}.", status));
    }
}

bool UpdateInstaller::isStaged() const {
    return lock_.get() >= 0 && isThere(ready()) && !isThere(record());
}

void UpdateInstaller::discard() {
    if (!isOwnFolder(work()) || isThere(record())) {
        return;
    }
    try {
        takeLock();
    } catch (const UpdateRefusal&) {
        return;
    }
    clear(work());
    lock_.close();
}

void UpdateInstaller::replaceRoot(const fs::path& by, const fs::path& keepAs) {
    const auto halfWay = [this] {
        if (options_.halfWay) {
            options_.halfWay();
        }
    };
    std::error_code error = options_.atomically
                                ? swapNames(root_, by)
                                : std::make_error_code(std::errc::function_not_supported);
    if (!error) {
        halfWay();
        if ((error = moveTo(by, keepAs)) && !swapNames(root_, by)) {
            refuse("Cannot rename " + by.string(), error);
        }
        return;
    }
    if (error != std::errc::function_not_supported) {
        refuse("Cannot exchange " + root_.string(), error);
    }
    if ((error = moveTo(root_, keepAs))) {
        refuse("Cannot rename " + root_.string(), error);
    }
    halfWay();
    if ((error = moveTo(by, root_))) {
        // Back at once: without its root there is no application.
        const auto back = moveTo(keepAs, root_);
        refuse(back ? "The previous version lies in " + keepAs.string()
                    : "Cannot rename " + by.string(),
            error);
    }
}

void UpdateInstaller::exchange() {
    if (!isStaged()) {
        throw UpdateRefusal("The update that lay ready is not there any more.");
    }
    requireOwn();
    const FileDescriptor alone = PackageUse::claimAlone(root_);
    if (alone.get() < 0) {
        throw InUse(fmt::format("A run uses {}.", root_.string()));
    }
    const std::string next = version(ready());
    // Another may have been unpacked by hand meanwhile.
    requireNewer(next, version(root_));
    // The tree itself was settled when it was staged.
    write(record(), next + "\n");
    settleNames(work());
    try {
        replaceRoot(ready(), previous());
    } catch (const UpdateRefusal&) {
        // The way back from "previous" needs it.
        if (isThere(root_)) {
            clear(record());
        }
        throw;
    }
    settleNames(root_.parent_path());
}

void UpdateInstaller::rollBack() {
    const std::string failed = version(root_);
    if (!isThere(previous())) {
        throw UpdateRefusal("There is no previous version to go back to.");
    }
    clear(obsolete());
    replaceRoot(previous(), obsolete());
    // Not the other way round: without the record, nobody would know what "previous" is.
    write(failure(), failed + "\n");
    clear(record());
    clear(obsolete());
    settleNames(root_.parent_path());
}

} // namespace ostrella
