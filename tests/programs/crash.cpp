#include "Emit.h"

#include <csignal>
#include <cstdlib>
#include <string_view>

#include <sys/resource.h>

/// Dies in the middle of a line, by an invalid access ("segv") or by its own decision ("abort").
int main(int argc, char** argv) {
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    emit("a whole line\nhalf a li");
    if (argc > 1 && std::string_view(argv[1]) == "abort") {
        std::abort();
    }
    raise(SIGSEGV);
}
