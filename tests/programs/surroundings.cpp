#include "Emit.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

/// Tells what its parent gave it: directory, arguments, a variable of the environment, the file
/// behind standard input, further open descriptors, blocked and ignored signals.
int main(int argc, char** argv) {
    emit("directory " + std::filesystem::current_path().string() + "\n");
    for (int i = 1; i < argc; ++i) {
        emit("argument " + std::string(argv[i]) + "\n");
    }
    if (const char* value = std::getenv("OSTRELLA_TEST_VARIABLE")) {
        emit("variable " + std::string(value) + "\n");
    }
    struct stat input {};
    fstat(STDIN_FILENO, &input);
    emit("input " + std::to_string(input.st_dev) + ":" + std::to_string(input.st_ino) + "\n");
    for (int descriptor = 3; descriptor < 1024; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1) {
            emit("descriptor " + std::to_string(descriptor) + "\n");
        }
    }
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number <= 31; ++number) {
        if (sigismember(&blocked, number) == 1) {
            emit("blocked " + std::to_string(number) + "\n");
        }
        struct sigaction action {};
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
            emit("ignored " + std::to_string(number) + "\n");
        }
    }
}
