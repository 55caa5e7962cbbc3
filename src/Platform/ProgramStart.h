#pragma once

#include "Platform/ChildProcess.h"

#include <sys/types.h>

namespace ostrella {

/// Bears the program's process, with `output` as its standard output and standard error, no other
/// descriptor but the standard input, and no blocked and no ignored signal. Where the system can do
/// so, the process is killed when this one ends, in whatever way. Safe on every thread, and the
/// calling thread may end before the program does. Throws std::system_error without a text if the
/// system refuses.
pid_t startProgram(const ChildProcess::Program& program, int output);

} // namespace ostrella
