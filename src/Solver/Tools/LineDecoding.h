#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// How the bytes of a child program's output become lines of the log.
namespace LineDecoding {

/// The bytes as UTF-8, each longest invalid piece replaced by U+FFFD (Unicode 15, section 3.9).
std::string decoded(std::string_view bytes);

/// The line that the bytes before a line feed make: decoded, without one carriage return at the
/// end. Nothing for a line of blanks and tabs alone.
std::optional<std::string> line(std::string_view bytes);

} // namespace LineDecoding

} // namespace ostrella
