#include "Solver/Geometry/ASCIISTL.h"

#include "Models/NumberWord.h"
#include "Models/UTF8.h"
#include "Solver/Geometry/STLParseError.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrella::ASCIISTL {

namespace {

using ByteSet = std::array<bool, 256>;

constexpr ByteSet byteSet(std::string_view bytes) {
    ByteSet set{};
    for (const char c : bytes)
        set[static_cast<unsigned char>(c)] = true;
    return set;
}

/// The bytes with which a line end or a blank may begin; all others are passed over by one look.
constexpr ByteSet lineEndStarts = byteSet("\n\r\xC2\xE2");
constexpr ByteSet separatorStarts = byteSet(" \t\v\f\xC2\xE1\xE2\xE3");

bool contains(const ByteSet& set, char c) {
    return set[static_cast<unsigned char>(c)];
}

/// The bytes of what parts two words at the start of `line`, 0 if a word begins there. VT and FF
/// part words although they are not trimmed from a line's start.
std::size_t separator(std::string_view line) {
    if (!contains(separatorStarts, line.front()))
        return 0;
    return line.front() == '\v' || line.front() == '\f' ? 1 : UTF8::blank(line);
}

/// Takes the first line off `text`, and gives it without its end.
std::string_view takeLine(std::string_view& text) {
    std::size_t size = 0;
    std::size_t end = 0;
    for (; size < text.size(); ++size)
        if (contains(lineEndStarts, text[size]) && (end = UTF8::lineEnd(text.substr(size))) != 0)
            break;
    const std::string_view line = text.substr(0, size);
    text.remove_prefix(size + end);
    return line;
}

std::string_view trimmedAtStart(std::string_view line) {
    while (const std::size_t blank = UTF8::blank(line))
        line.remove_prefix(blank);
    return line;
}

/// Takes the first word off `line`; it is empty where there is none left.
std::string_view takeWord(std::string_view& line) {
    while (!line.empty()) {
        const std::size_t gap = separator(line);
        if (gap == 0)
            break;
        line.remove_prefix(gap);
    }
    std::size_t size = 0;
    while (size < line.size() && separator(line.substr(size)) == 0)
        ++size;
    const std::string_view word = line.substr(0, size);
    line.remove_prefix(size);
    return word;
}

/// The numbers behind the first `skipped` words of `line`; nothing unless there are three.
std::optional<Vec3> threeNumbers(std::string_view line, int skipped) {
    for (int i = 0; i < skipped; ++i)
        takeWord(line);
    Vec3 result;
    for (int axis = 0; axis < 3; ++axis) {
        const auto number = floatWord(takeWord(line));
        if (!number)
            return std::nullopt;
        result[axis] = *number;
    }
    return result;
}

} // namespace

TriangleMesh parse(std::string_view text) {
    if (!UTF8::isValid(text))
        throw STLParseError::invalidASCII("file is not ASCII/UTF-8 decodable");

    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    constexpr std::size_t usualBytesPerVertex = 80; // a share of the facet's other lines included
    positions.reserve(text.size() / usualBytesPerVertex);
    normals.reserve(text.size() / usualBytesPerVertex);
    Vec3 normal(0.0F, 0.0F, 1.0F);
    while (!text.empty()) {
        const std::string_view line = trimmedAtStart(takeLine(text));
        if (line.starts_with("facet normal")) {
            normal = threeNumbers(line, 2).value_or(normal);
        } else if (line.starts_with("vertex")) {
            if (const auto position = threeNumbers(line, 1)) {
                positions.push_back(*position);
                normals.push_back(normal);
            }
        }
    }

    if (positions.empty())
        throw STLParseError::invalidASCII("no vertices found");
    if (positions.size() % 3 != 0)
        throw STLParseError::invalidASCII(
            "vertex count " + std::to_string(positions.size()) + " not divisible by 3");
    return {std::move(positions), std::move(normals)};
}

} // namespace ostrella::ASCIISTL
