#include "Platform/ChildProcess.h"

#include "Models/Precondition.h"

#include <cerrno>
#include <csignal>
#include <set>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef __linux__
// Declared by <unistd.h> on Linux only.
extern char** environ;
#endif

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr int firstUnsharedDescriptor = 3;

/// What the child does between its birth and the program: its files, directory and signals.
class SpawnSettings {
public:
    SpawnSettings(const ChildProcess::Program& program, int output) {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        if (program.directory) {
            check(posix_spawn_file_actions_addchdir_np(&actions, program.directory->c_str()));
        }
        if (program.nullInput) {
            check(
                posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        }
        check(posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO));
        check(posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO));
        const short closing = keepOtherDescriptors(program);

        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        check(posix_spawnattr_setsigmask(&attributes, &none));
        check(posix_spawnattr_setsigdefault(&attributes, &all));
        check(posix_spawnattr_setflags(&attributes,
            static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | closing)));
    }

    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }

    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;

private:
    static void check(int error) {
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), "Cannot prepare a program");
        }
    }

    /// Keeps the parent's other descriptors from the child, those of libraries that do not mark
    /// theirs included; the flag that this takes.
    short keepOtherDescriptors([[maybe_unused]] const ChildProcess::Program& program) {
#if defined(__APPLE__)
        if (!program.nullInput) {
            check(posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO));
        }
        return POSIX_SPAWN_CLOEXEC_DEFAULT;
#elif defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
        check(posix_spawn_file_actions_addclosefrom_np(&actions, firstUnsharedDescriptor));
        return 0;
#else
        return 0;
#endif
    }
};

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

    // The child changes its directory before it looks for the program.
    const std::string executable = fs::absolute(program.executable).string();
    std::vector<char*> arguments{const_cast<char*>(executable.c_str())};
    for (const std::string& argument : program.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);

    const SpawnSettings settings(program, output);
    pid_t pid = 0;
    const int error = posix_spawn(&pid, executable.c_str(), &settings.actions, &settings.attributes,
        arguments.data(), environ);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), startFailure(program));
    }
    pid_ = pid;
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
