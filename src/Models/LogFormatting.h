#pragma once

#include "Models/LogStore.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace ostrella::LogFormatting {

/// "[INFO]", "[OK]", "[WARN]", "[ERR]" or "[SU2]".
std::string_view tag(LogStore::Level level);

/// "HH:mm:ss" in the machine's time zone.
std::string time(Date date);

/// A whole line: time, tag and text, with a blank between them.
std::string line(const LogStore::Line& line);

/// What the header of the log says of the lines on show: "1 line", "1 234 lines · auto-scroll".
std::string headerText(std::int64_t lineCount, bool following);

} // namespace ostrella::LogFormatting
