#pragma once

#include <string_view>

namespace ostrella {

/// `text` without the blanks at both ends: tabs and Unicode's space separators, no line ends.
std::string_view trimmedBlanks(std::string_view text);

/// `text` without the white space at both ends: blanks, and the line ends of ASCII and Unicode.
std::string_view trimmedWhiteSpace(std::string_view text);

} // namespace ostrella
