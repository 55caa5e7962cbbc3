#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace ostrella {

/// The short roads for numbers as solvers write them, one word at a time. Each takes the start of a
/// word that a blank ends, with at least 16 readable bytes behind that blank, and either gives the
/// number and moves `at` to the blank, or gives false and leaves `at`: then the word is no number
/// or one for the long road. Both roads give the same bits.
namespace QuickNumber {

/// True for the ASCII characters that part words.
inline bool isBlank(char c) {
    return c == ' ' || static_cast<unsigned char>(c - '\t') < 5;
}

/// Eight bytes in the order of the text, the first of them lowest.
inline std::uint64_t eightBytes(const char* at) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    if constexpr (std::endian::native == std::endian::big) {
        std::uint64_t turned = 0;
        for (int i = 0; i < 8; ++i)
            turned |= (word >> (56 - 8 * i) & 0xFF) << (8 * i);
        word = turned;
    }
    return word;
}

/// Highest bit set in each byte that is above 9, up to the first such byte; those behind it may be
/// wrong.
inline std::uint64_t aboveNine(std::uint64_t bytes) {
    return ((bytes + 0x7676767676767676U) | bytes) & 0x8080808080808080U;
}

/// The number of eight digits (0 to 9, not '0' to '9'), the first of them in the lowest byte: pairs
/// of neighbours are joined three times.
inline std::uint32_t eightDigits(std::uint64_t digits) {
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t mask = 0x000000FF000000FFU;
    constexpr std::uint64_t upper = 100 + (std::uint64_t{1000000} << 32);
    constexpr std::uint64_t lower = 1 + (std::uint64_t{10000} << 32);
    return static_cast<std::uint32_t>(
        ((digits & mask) * upper + (digits >> 16 & mask) * lower) >> 32);
}

inline constexpr std::uint64_t zeros = 0x3030303030303030U;

/// An unsigned integer of one to seven digits.
inline bool integer(const char*& at, std::int64_t& value) {
    const std::uint64_t word = eightBytes(at);
    // Digits have this bit and blanks lack it: the shortest way to where the next word begins,
    // which is what the time goes into. The rest is checked beside it.
    const std::uint64_t ends = ~word & 0x1010101010101010U;
    const int size = std::countr_zero(ends) / 8;
    if (ends == 0 || size == 0)
        return false;
    // Digits move to the top, so that zeros lead.
    const std::uint64_t digits = (word ^ zeros) << (64 - 8 * size);
    if (aboveNine(digits) != 0 || !isBlank(at[size]))
        return false;
    value = eightDigits(digits);
    at += size;
    return true;
}

/// The whole powers of ten that are exact in 64-bit floats.
inline constexpr std::array<double, 23> powersOfTen = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8,
    1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// digits × 10^exponent, correctly rounded to 32 bits; false where that takes more care.
///
/// The product or quotient in 64 bits is exact, or off by two units in its last place at most. It
/// rounds to 32 bits like the true value unless it is off and a boundary between two floats,
/// half-way between them, lies that near (Clinger 1990, with the margin of a wider format added).
inline bool scaled(std::uint64_t digits, int exponent, bool isNegative, float& value) {
    constexpr std::uint64_t mostExact = std::uint64_t{1} << 53;
    constexpr int exact = 22;
    if (digits > mostExact || exponent > exact || exponent < -2 * exact)
        return false;
    double wide = static_cast<double>(digits);
    bool isExact = false;
    if (exponent >= 0) {
        wide *= powersOfTen[static_cast<std::size_t>(exponent)];
        isExact = wide < static_cast<double>(mostExact);
    } else {
        if (exponent < -exact) {
            wide /= powersOfTen[exact];
            exponent += exact;
        }
        wide /= powersOfTen[static_cast<std::size_t>(-exponent)];
    }
    constexpr std::uint64_t dropped = (std::uint64_t{1} << 29) - 1; // bits that 32-bit floats lack
    constexpr std::uint64_t half = std::uint64_t{1} << 28;
    constexpr std::uint64_t margin = 4;
    const auto bits = std::bit_cast<std::uint64_t>(wide);
    const bool isNearBoundary = ((bits - half + margin) & dropped) <= 2 * margin;
    // Floats below this lack bits at the end, so that other boundaries hold.
    const bool isSmall = wide < static_cast<double>(std::numeric_limits<float>::min()) * 2;
    if ((isNearBoundary && !isExact) || (isSmall && digits != 0))
        return false;
    const auto sign = static_cast<std::uint32_t>(isNegative) << 31;
    value = std::bit_cast<float>(std::bit_cast<std::uint32_t>(static_cast<float>(wide)) | sign);
    return true;
}

/// Takes the sign at `at`, if there is one; true for a minus. Has no branch, since nothing
/// foretells the signs in a flow.
inline bool takeSign(const char*& at) {
    const bool isNegative = *at == '-';
    at += static_cast<int>(isNegative) | static_cast<int>(*at == '+');
    return isNegative;
}

/// Takes the exponent's digits and sign at `at`, behind the letter; false if it has not one to four
/// digits.
inline bool takeExponent(const char*& at, int& exponent) {
    const bool isNegative = takeSign(at);
    int value = 0;
    int count = 0;
    for (; *at >= '0' && *at <= '9' && count < 5; ++at, ++count)
        value = value * 10 + (*at - '0');
    exponent = isNegative ? -value : value;
    return count >= 1 && count <= 4;
}

/// A decimal float of at most 19 digits, with or without sign, point and exponent.
inline bool decimal(const char*& at, float& value) {
    const char* here = at;
    const bool isNegative = takeSign(here);
    std::uint64_t digits = 0;
    int count = 0;
    int fraction = 0; // digits behind the point
    const auto takeDigits = [&] {
        const int before = count;
        for (; *here >= '0' && *here <= '9' && count < 20; ++here, ++count)
            digits = digits * 10 + static_cast<std::uint64_t>(*here - '0');
        return count - before;
    };
    // "1.234567" in one go: the first digit takes the place of the point, and a zero its own.
    const std::uint64_t word = eightBytes(here);
    const std::uint64_t joined =
        ((word & ~std::uint64_t{0xFFFF}) | (word & 0xFF) << 8 | '0') ^ zeros;
    if ((word & 0xFF00) == std::uint64_t{'.'} << 8 && aboveNine(joined) == 0) {
        digits = eightDigits(joined);
        here += 8;
        count = 7;
        fraction = 6 + takeDigits();
    } else {
        takeDigits();
        if (*here == '.') {
            ++here;
            fraction = takeDigits();
        }
    }
    if (count == 0 || count > 19)
        return false;
    int exponent = 0;
    if (*here == 'e' || *here == 'E') {
        ++here;
        if (!takeExponent(here, exponent))
            return false;
    }
    if (!isBlank(*here) || !scaled(digits, exponent - fraction, isNegative, value))
        return false;
    at = here;
    return true;
}

} // namespace QuickNumber

} // namespace ostrella
