#pragma once

#include "Config.h"
#include "ConfigValue.h"

namespace ostrella::preview {

/// Applies one option to `config`. Unknown ones and ones without effect leave a line in its
/// warnings; values that cannot be honoured throw Failure.
void applyOption(Config& config, const ConfigValue& value);

} // namespace ostrella::preview
