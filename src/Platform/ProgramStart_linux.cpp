#include "Platform/ProgramStart.h"

#include "Platform/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrella {

namespace {

constexpr int firstUnsharedDescriptor = 3;
constexpr int cannotBecomeTheProgram = 127;

/// All that a new process needs to become its program, made ahead: until then it shares this one's
/// memory and may allocate nothing.
struct Birth {
    const char* executable;
    char* const* arguments;
    const char* directory; ///< null for the parent's
    bool nullInput;
    int output;
    int failure; ///< takes the number of the error; closed by success
    pid_t parent;
};

void require(bool holds, const Birth& birth) {
    if (!holds) {
        const int error = errno;
        // The reader takes a missing number for a success, and there is nobody else to tell.
        [[maybe_unused]] const ssize_t written = ::write(birth.failure, &error, sizeof error);
        ::_exit(cannotBecomeTheProgram);
    }
}

/// Makes `descriptor` the standard one of this number, for the program too.
bool share(int descriptor, int number) {
    return descriptor == number ? ::fcntl(number, F_SETFD, 0) == 0
                                : ::dup2(descriptor, number) == number;
}

/// Keeps the parent's other descriptors from the program, those of libraries that do not mark
/// theirs included.
void markOtherDescriptors() {
#if defined(SYS_close_range)
    constexpr unsigned atExec = 1U << 2U;
    if (::syscall(SYS_close_range, firstUnsharedDescriptor, ~0U, atExec) == 0) {
        return;
    }
#endif
    // Kernels before 5.11.
    constexpr long most = 65'536;
    for (int each = firstUnsharedDescriptor; each < std::min(::sysconf(_SC_OPEN_MAX), most);
         ++each) {
        ::fcntl(each, F_SETFD, FD_CLOEXEC);
    }
}

/// In the new process. All signals are blocked, so that no handler runs in the shared memory.
[[noreturn]] void become(const Birth& birth) {
    require(::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0, birth);
    if (::getppid() != birth.parent) {
        // It ended before it could be told to take its children along.
        ::_exit(cannotBecomeTheProgram);
    }
    require(!birth.directory || ::chdir(birth.directory) == 0, birth);
    require(share(birth.output, STDOUT_FILENO) && share(birth.output, STDERR_FILENO), birth);
    if (birth.nullInput) {
        const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        require(null >= 0 && share(null, STDIN_FILENO), birth);
    }
    markOtherDescriptors();
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        // Refused for the few that cannot be handled in any other way.
        ::sigaction(signal, &standard, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execve(birth.executable, birth.arguments, environ);
    require(false, birth);
    ::_exit(cannotBecomeTheProgram);
}

/// On its own, since what the new process does to the stack is the caller's too.
[[gnu::noinline]] pid_t bear(const Birth& birth) {
    // Unlike fork(), it copies no tables of a large model's memory.
    const pid_t pid = ::vfork();
    if (pid == 0) {
        become(birth);
    }
    return pid;
}

/// The thread that bears all children. A process that is to end with its parent ends, to be exact,
/// with the parent's thread that bore it: that one has to last as long as the process.
class Midwife {
public:
    /// The one of this process. Never destroyed, since workers may outlive main().
    static Midwife& ofThisProcess() {
        static std::mutex mutex;
        static Midwife* instance = nullptr;
        const std::lock_guard lock(mutex);
        // A copy of a process has no threads but the one that asked for it.
        if (!instance || instance->process_ != ::getpid()) {
            instance = new Midwife;
        }
        return *instance;
    }

    /// The new process, or -1 and the error in `errno`.
    pid_t attend(const Birth& birth) {
        const std::lock_guard oneAtATime(callers_);
        std::unique_lock lock(mutex_);
        birth_ = &birth;
        changed_.notify_all();
        changed_.wait(lock, [this] { return birth_ == nullptr; });
        errno = error_;
        return pid_;
    }

private:
    Midwife() : process_(::getpid()) {
        std::thread([this] { work(); }).detach();
    }

    [[noreturn]] void work() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return birth_ != nullptr; });
            pid_ = bear(*birth_);
            error_ = errno;
            birth_ = nullptr;
            changed_.notify_all();
        }
    }

    const pid_t process_;
    std::mutex callers_;
    std::mutex mutex_;
    std::condition_variable changed_;
    const Birth* birth_ = nullptr;
    pid_t pid_ = -1;
    int error_ = 0;
};

} // namespace

pid_t startProgram(const ChildProcess::Program& program, int output) {
    // The child changes its directory before it looks for the program.
    const std::string executable = std::filesystem::absolute(program.executable).string();
    std::vector<char*> arguments{const_cast<char*>(executable.c_str())};
    for (const std::string& argument : program.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);

    Pipe failure = Pipe::make();
    // Out of the way of the standard ones, which this process may lack.
    failure.writeEnd =
        FileDescriptor(::fcntl(failure.writeEnd.get(), F_DUPFD_CLOEXEC, firstUnsharedDescriptor));
    if (failure.writeEnd.get() < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    const pid_t pid = Midwife::ofThisProcess().attend({.executable = executable.c_str(),
        .arguments = arguments.data(),
        .directory = program.directory ? program.directory->c_str() : nullptr,
        .nullInput = program.nullInput,
        .output = output,
        .failure = failure.writeEnd.get(),
        .parent = ::getpid()});
    if (pid < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    failure.writeEnd.close();
    int error = 0;
    ssize_t count = 0;
    do {
        count = ::read(failure.readEnd.get(), &error, sizeof error);
    } while (count < 0 && errno == EINTR);
    if (count == sizeof error) {
        while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
        }
        throw std::system_error(error, std::generic_category());
    }
    return pid;
}

} // namespace ostrella
