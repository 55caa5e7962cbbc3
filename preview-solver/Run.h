#pragma once

#include <string>

namespace ostrella::preview {

/// Solves the case of the configuration file at `path`, with its files in the working directory and
/// its report on the standard output. Returns the process's exit status: 0 also where the
/// iterations ran out, 1 for a flow that diverged. Throws Failure where the case cannot be run.
int run(const std::string& path);

} // namespace ostrella::preview
