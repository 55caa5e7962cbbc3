#include "Emit.h"

#include <csignal>
#include <string>

/// As slow, but deaf to SIGTERM.
int main() {
    alarm(lifetime);
    std::signal(SIGTERM, SIG_IGN);
    emit("ready " + std::to_string(getpid()) + "\n");
    while (true) {
        pause();
    }
}
