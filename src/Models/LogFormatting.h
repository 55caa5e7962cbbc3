#pragma once

#include "Models/LogStore.h"

#include <string>
#include <string_view>

namespace ostrella::LogFormatting {

/// "[INFO]", "[OK]", "[WARN]", "[ERR]" or "[SU2]".
std::string_view tag(LogStore::Level level);

/// "HH:mm:ss" in the machine's time zone.
std::string time(Date date);

/// A whole line: time, tag and text, with a blank between them.
std::string line(const LogStore::Line& line);

} // namespace ostrella::LogFormatting
