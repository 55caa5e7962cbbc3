#pragma once

#include "Models/InformationDictionary.h"

#include <optional>
#include <string>

namespace ostrella {

/// How a copy of the application names itself.
namespace UpdatePolicy {

/// "1.2.0 (345)", or "1.2.0" where no build is told; "0.0.0" where no version is.
std::string versionText(const std::optional<InformationDictionary>& info);

} // namespace UpdatePolicy

} // namespace ostrella
