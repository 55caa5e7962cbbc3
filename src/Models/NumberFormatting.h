#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ostrella {

/// The number formats that everything the user reads shares.
namespace NumberFormatting {

/// Digits in groups of three joined by a no-break space, "-" in front of a negative number.
std::string grouped(std::int64_t n);

/// The same with a separator of the caller's.
std::string grouped(std::int64_t n, std::string_view separator);

/// "%.<digits>f" (a negative count of digits is 0), without the sign of a value that prints as
/// zero.
std::string fixed(double value, int digits);

/// A size in decimal units: "999 bytes", "1.0 KB". A negative size is 0.
std::string bytes(std::int64_t n);

/// Seconds as "59 s", "1 min 05 s" or "1 h 01 min", rounded to whole seconds; a negative count is
/// 0. A value that is not finite ends the process.
std::string duration(double seconds);

} // namespace NumberFormatting

} // namespace ostrella
