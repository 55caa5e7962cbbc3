#pragma once

#include <string>

namespace ostrella {

/// What "ostrella-batch --help" prints: every option with its unit, range and default.
std::string batchHelp();

} // namespace ostrella
