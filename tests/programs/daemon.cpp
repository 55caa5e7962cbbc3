#include "Emit.h"

#include <string>

/// Ends at once and leaves a descendant behind that holds the output open. Says which, and half a
/// line.
int main() {
    const pid_t descendant = fork();
    if (descendant == 0) {
        setsid();
        alarm(lifetime);
        while (true) {
            pause();
        }
    }
    emit("descendant " + std::to_string(descendant) + "\nhalf a li");
}
