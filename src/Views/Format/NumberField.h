#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

struct ParameterInfo;

/// The rules of a number field: what its text is for a value, and its value for a text. The same on
/// every machine, whatever the user's language.
struct NumberField {
    /// The range of the values.
    double from = 0;
    double to = 0;
    /// Digits after the point.
    int fewestDigits = 0;
    int mostDigits = 0;

    /// The field of a parameter.
    static NumberField of(const ParameterInfo& info, int fewestDigits, int mostDigits);

    /// A value within the range: a finite one is clamped, any other is the lower bound.
    double inRange(double value) const;

    /// The value within the range, without grouping, with as few digits as it needs.
    std::string text(double value) const;

    /// The number that a text is: digits with a point, a sign and an exponent, and blanks around
    /// it; infinity for one that is too large. Nothing for anything else, such as letters, a
    /// decimal comma or an empty text.
    static std::optional<double> number(std::string_view text);

    /// The value that a typed text stands for, within the range; nothing where it is no number, and
    /// the value that was there stays.
    std::optional<double> value(std::string_view text) const;
};

} // namespace ostrella
