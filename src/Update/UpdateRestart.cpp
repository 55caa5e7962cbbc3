#include "Update/UpdateRestart.h"

#include "Platform/FileDescriptor.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrella::UpdateRestart {

namespace {

/// The first after the standard ones; the same in every program that is started.
constexpr int descriptorOfWatch = 3;

std::atomic<int> watch = -1;

/// Of this process, without a watch on it, and with one of `descriptor` where there is one.
std::vector<std::string> environmentWith(bool watched) {
    std::vector<std::string> all;
    const std::string ours = std::string(variable) + "=";
    for (char** each = environ; *each; ++each) {
        if (!std::string_view(*each).starts_with(ours)) {
            all.emplace_back(*each);
        }
    }
    if (watched) {
        all.push_back(ours + std::to_string(descriptorOfWatch));
    }
    return all;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> all;
    for (std::string& text : texts) {
        all.push_back(text.data());
    }
    all.push_back(nullptr);
    return all;
}

/// -1 if the system refuses. `sign` becomes the program's end of the watch; -1 for none.
pid_t spawn(const std::filesystem::path& program, int sign) {
    std::vector<std::string> texts{program.string()};
    std::vector<std::string> settings = environmentWith(sign >= 0);
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_init(&actions);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    if (sign >= 0) {
        posix_spawn_file_actions_adddup2(&actions, sign, descriptorOfWatch);
    }
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
    // Libraries do not mark all of theirs, and the program is not to hold this one's files open.
    posix_spawn_file_actions_addclosefrom_np(
        &actions, sign >= 0 ? descriptorOfWatch + 1 : descriptorOfWatch);
#endif
    pid_t pid = -1;
    if (::posix_spawn(&pid, program.c_str(), &actions, &attributes, pointers(texts).data(),
            pointers(settings).data()) != 0) {
        pid = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return pid;
}

/// Waits for a byte; false at the end of all who could send one, or of the patience.
bool receives(int source, std::chrono::milliseconds patience) {
    using Steady = std::chrono::steady_clock;
    const auto end = Steady::now() + patience;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Steady::now());
        if (left.count() < 0) {
            return false;
        }
        pollfd subject{source, POLLIN, 0};
        const int count = ::poll(&subject, 1, static_cast<int>(left.count()));
        if (count == 0) {
            return false;
        }
        char sign = 0;
        if (count > 0) {
            return ::read(source, &sign, 1) == 1;
        }
        if (errno != EINTR) {
            return false;
        }
    }
}

} // namespace

bool startAndWatch(const std::filesystem::path& program, std::chrono::milliseconds patience) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return false;
    }
    const FileDescriptor ours(ends[0]);
    FileDescriptor theirs(ends[1]);
    // In the place it is to have there, it would stay marked as not for programs.
    FileDescriptor sign(::fcntl(theirs.get(), F_DUPFD_CLOEXEC, descriptorOfWatch + 1));
    theirs.close();
    if (sign.get() < 0) {
        return false;
    }
    const pid_t pid = spawn(program, sign.get());
    sign.close();
    if (pid < 0) {
        return false;
    }
    if (receives(ours.get(), patience)) {
        return true;
    }
    ::kill(pid, SIGKILL);
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return false;
}

bool start(const std::filesystem::path& program) {
    return spawn(program, -1) >= 0;
}

void adoptWatch() {
    const char* const text = std::getenv(variable);
    if (!text) {
        return;
    }
    int descriptor = -1;
    const auto [end, error] = std::from_chars(text, text + std::strlen(text), descriptor);
    struct stat facts {};
    if (error == std::errc() && *end == '\0' && descriptor > STDERR_FILENO &&
        ::fstat(descriptor, &facts) == 0 && S_ISSOCK(facts.st_mode)) {
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        watch = descriptor;
    }
    ::unsetenv(variable);
}

bool isWatched() {
    return watch >= 0;
}

void confirm() {
    const int descriptor = watch.exchange(-1);
    if (descriptor >= 0) {
        // Whoever waited in vain has gone; then nobody is left to be told.
        [[maybe_unused]] const auto sent = ::send(descriptor, "!", 1, MSG_NOSIGNAL);
        ::close(descriptor);
    }
}

} // namespace ostrella::UpdateRestart
