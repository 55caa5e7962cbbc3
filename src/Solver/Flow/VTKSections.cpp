#include "Solver/Flow/VTKSections.h"

#include "Solver/Flow/VTKNumberError.h"
#include "Solver/Flow/VTKParseError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <limits>

namespace ostrella::VTKSections {

namespace {

/// Takes a count or an id. Throws VTKNumberError if it is negative; `what` names it.
std::int64_t takeNatural(VTKScanner& scanner, std::string_view what) {
    const VTKScanner before = scanner;
    const std::int64_t number = scanner.takeInteger();
    if (number < 0) [[unlikely]]
        throw VTKNumberError::negative(what, number, before.tokenNumber());
    return number;
}

std::uint32_t takeId(VTKScanner& scanner) {
    const VTKScanner before = scanner;
    const std::int64_t id = takeNatural(scanner, "point id");
    if (id > std::numeric_limits<std::uint32_t>::max()) [[unlikely]]
        throw VTKNumberError::beyondBits(id, before.tokenNumber());
    return static_cast<std::uint32_t>(id);
}

/// As many as the file says, but at most one more than the rest of it can hold: whoever takes them
/// all meets the file's end first, as on the way to a greater count.
std::size_t roomFor(const VTKScanner& scanner, std::int64_t count, std::size_t numbersEach) {
    const std::size_t most = scanner.mostNumbersLeft() / numbersEach;
    return std::min(static_cast<std::uint64_t>(count), static_cast<std::uint64_t>(most) + 1);
}

LargeBuffer<Vec3> takeTriples(VTKScanner& scanner, std::int64_t count) {
    LargeBuffer<Vec3> triples(roomFor(scanner, count, 3));
    for (Vec3& triple : triples)
        for (int axis = 0; axis < 3; ++axis)
            triple[axis] = scanner.takeFloat();
    return triples;
}

std::vector<std::uint32_t> takeCells(VTKScanner& scanner, Ids ids) {
    const std::int64_t cells = takeNatural(scanner, "number of cells");
    std::vector<std::uint32_t> indices;
    // The list's size counts the ids and one number for each cell. It is only a hint of how much
    // room they take.
    if (const auto size = VTKScanner(scanner).takeIntegerIfAny();
        ids == Ids::keep && size && *size > cells)
        indices.reserve(
            std::min(static_cast<std::size_t>(*size - cells), scanner.mostNumbersLeft()));
    scanner.skip();
    for (std::int64_t cell = 0; cell < cells; ++cell) {
        const std::int64_t corners = takeNatural(scanner, "number of point ids");
        for (std::int64_t corner = 0; corner < corners; ++corner) {
            const std::uint32_t id = takeId(scanner);
            if (ids == Ids::keep)
                indices.push_back(id);
        }
    }
    return indices;
}

std::int64_t takeFirstCellType(VTKScanner& scanner) {
    constexpr std::int64_t line = 3;
    const std::int64_t types = takeNatural(scanner, "number of cell types");
    if (types == 0)
        return line;
    const std::int64_t first = scanner.takeInteger();
    for (std::int64_t i = 1; i < types; ++i)
        scanner.takeInteger();
    return first;
}

/// Moves on to where `keyword` is followed by `name`; false unless something comes behind it.
bool findField(VTKScanner& scanner, std::string_view keyword, std::string_view name) {
    while (scanner.find(keyword)) {
        VTKScanner next = scanner;
        next.skip();
        if (!next.isAtEnd() && next.word() == name) {
            next.skip();
            return !next.isAtEnd();
        }
        scanner.skip();
    }
    return false;
}

void skip(VTKScanner& scanner, int words) {
    for (int i = 0; i < words; ++i)
        scanner.skip();
}

} // namespace

void requireLegacyHeader(VTKScanner scanner) {
    const VTKScanner start = scanner;
    constexpr int fewest = 6;
    skip(scanner, fewest - 1);
    if (scanner.isAtEnd() || !VTKScanner(start).find("ASCII") ||
        !VTKScanner(start).find("UNSTRUCTURED_GRID"))
        throw VTKParseError::notVTKLegacy();
}

void findSection(VTKScanner& scanner, std::string_view keyword) {
    if (!scanner.find(keyword))
        throw VTKParseError::malformed(fmt::format("{} not found", keyword));
    scanner.skip();
}

Geometry takeGeometry(VTKScanner& scanner, Ids ids) {
    Geometry geometry;
    findSection(scanner, "POINTS");
    const std::int64_t points = takeNatural(scanner, "number of points");
    scanner.skip(); // the type of the coordinates
    geometry.positions = takeTriples(scanner, points);
    findSection(scanner, "CELLS");
    geometry.indices = takeCells(scanner, ids);
    findSection(scanner, "CELL_TYPES");
    geometry.firstCellType = takeFirstCellType(scanner);
    return geometry;
}

Scalar takeScalar(VTKScanner& scanner, std::string_view name, std::int64_t count) {
    if (!findField(scanner, "SCALARS", name))
        throw VTKParseError::missingScalar(name);
    skip(scanner, 3); // keyword, name, type
    const VTKScanner atComponents = scanner;
    const std::int64_t components = scanner.takeIntegerIfAny().value_or(1);
    if (!scanner.find("LOOKUP_TABLE"))
        throw VTKParseError::malformed(fmt::format("LOOKUP_TABLE after {} missing", name));
    skip(scanner, 2); // keyword, the table's name
    if (components < 0)
        throw VTKNumberError::negative(
            "number of components", components, atComponents.tokenNumber());
    Scalar scalar;
    scalar.isWithoutComponents = components == 0;
    if (scalar.isWithoutComponents)
        return scalar;
    scalar.values =
        LargeBuffer<float>(roomFor(scanner, count, static_cast<std::size_t>(components)));
    for (float& value : scalar.values) {
        value = scanner.takeFloat();
        for (std::int64_t other = 1; other < components; ++other)
            scanner.takeFloat();
    }
    return scalar;
}

LargeBuffer<Vec3> takeVector(VTKScanner& scanner, std::string_view name, std::int64_t count) {
    if (!findField(scanner, "VECTORS", name))
        throw VTKParseError::missingVector(name);
    skip(scanner, 3); // keyword, name, type
    return takeTriples(scanner, count);
}

} // namespace ostrella::VTKSections
