#include "Platform/ProgramStart.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

// Declared by <unistd.h> on Linux only.
extern char** environ;

namespace ostrella {

namespace {

void check(int error) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category());
    }
}

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
        } else {
            check(posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO));
        }
        check(posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO));
        check(posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO));

        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        check(posix_spawnattr_setsigmask(&attributes, &none));
        check(posix_spawnattr_setsigdefault(&attributes, &all));
        check(posix_spawnattr_setflags(&attributes,
            static_cast<short>(
                POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_CLOEXEC_DEFAULT)));
    }

    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }

    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
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

    const SpawnSettings settings(program, output);
    pid_t pid = 0;
    check(posix_spawn(&pid, executable.c_str(), &settings.actions, &settings.attributes,
        arguments.data(), environ));
    return pid;
}

} // namespace ostrella
