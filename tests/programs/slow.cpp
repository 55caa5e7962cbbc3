#include "Emit.h"

#include <string>

/// Says "ready" with its process identifier, and then nothing, until a signal ends it.
int main() {
    alarm(lifetime);
    emit("ready " + std::to_string(getpid()) + "\n");
    while (true) {
        pause();
    }
}
