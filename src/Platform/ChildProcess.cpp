#include "Platform/ChildProcess.h"

#include "Models/Precondition.h"
#include "Platform/ProgramStart.h"

#include <cerrno>
#include <csignal>
#include <set>
#include <system_error>

#include <sys/wait.h>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

/// With SIGCHLD ignored (some starters leave it so) the system reaps children by itself and their
/// status is lost.
void ensureChildrenAreReported() {
    struct sigaction action {};
    if (sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        action.sa_handler = SIG_DFL;
        sigaction(SIGCHLD, &action, nullptr);
    }
}

/// The children that run. Never destroyed, since workers may outlive main(). Its lock is taken
/// before that of a child.
struct Family {
    std::mutex mutex;
    std::set<ChildProcess*> running;
    bool isClosed = false;
};

Family& family() {
    static Family* const instance = new Family;
    return *instance;
}

std::string startFailure(const ChildProcess::Program& program) {
    std::error_code ignored;
    if (program.directory && !fs::is_directory(*program.directory, ignored)) {
        return "Cannot start " + program.executable.filename().string() + " in " +
               program.directory->string();
    }
    return "Cannot start " + program.executable.string();
}

/// Waits until the child can be reaped; with `extra` WNOWAIT it stays a zombie.
siginfo_t waitForEnd(pid_t pid, int extra) {
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | extra) != 0) {
        if (errno != EINTR) {
            throw std::system_error(
                errno, std::generic_category(), "The status of a program is lost");
        }
    }
    return info;
}

} // namespace

ChildProcess::~ChildProcess() {
    if (isRunning()) {
        kill();
        try {
            wait();
        } catch (const std::system_error&) {
            // Reaped by somebody else: nothing is left behind.
        }
    }
}

void ChildProcess::start(const Program& program, int output) {
    const std::lock_guard familyLock(family().mutex);
    const std::lock_guard lock(mutex_);
    precondition(pid_ == 0, "a child process is started once");
    if (family().isClosed) {
        throw std::system_error(ECANCELED, std::generic_category(), startFailure(program));
    }
    ensureChildrenAreReported();

    try {
        pid_ = startProgram(program, output);
    } catch (const std::system_error& error) {
        throw std::system_error(error.code(), startFailure(program));
    }
    running_ = true;
    family().running.insert(this);
}

std::int32_t ChildProcess::wait() {
    pid_t pid = 0;
    {
        const std::lock_guard lock(mutex_);
        precondition(running_, "a child process is waited for once, after its start");
        pid = pid_;
    }
    // As long as the child is not reaped its identifier belongs to nobody else; the mark is set
    // before that, under the lock that a signal takes.
    const auto markEnded = [this] {
        const std::lock_guard familyLock(family().mutex);
        const std::lock_guard lock(mutex_);
        running_ = false;
        family().running.erase(this);
    };
    try {
        waitForEnd(pid, WNOWAIT);
    } catch (...) {
        markEnded();
        throw;
    }
    markEnded();
    return static_cast<std::int32_t>(waitForEnd(pid, 0).si_status);
}

bool ChildProcess::isRunning() const {
    const std::lock_guard lock(mutex_);
    return running_;
}

void ChildProcess::terminate() {
    signal(SIGTERM);
}

void ChildProcess::kill() {
    signal(SIGKILL);
}

void ChildProcess::killAllForGood() {
    const std::lock_guard lock(family().mutex);
    family().isClosed = true;
    for (ChildProcess* const child : family().running) {
        child->kill();
    }
}

void ChildProcess::signal(int number) {
    const std::lock_guard lock(mutex_);
    if (running_) {
        ::kill(pid_, number);
    }
}

} // namespace ostrella
