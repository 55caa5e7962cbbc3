#pragma once

#include <cstdio>
#include <cstdlib>

namespace ostrella {

/// Ends the process with `text` on the standard error unless `holds`, in release builds too: for
/// what only a defect of the program can break, never for what a file or a user can bring about.
inline void precondition(bool holds, const char* text) {
    if (!holds) [[unlikely]] {
        std::fprintf(stderr, "Fatal: %s\n", text);
        std::abort();
    }
}

} // namespace ostrella
