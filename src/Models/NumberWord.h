#pragma once

#include <optional>
#include <string_view>

namespace ostrella {

/// The number that `word` is as a whole, read as strtof reads it in the C locale: a leading plus,
/// hexadecimal floats, "inf" and "nan" are numbers, "1.5abc" and "1,5" are not. Nothing for
/// anything else, blanks included. Out of range gives infinity or what is left of the number.
std::optional<float> floatWord(std::string_view word);

} // namespace ostrella
