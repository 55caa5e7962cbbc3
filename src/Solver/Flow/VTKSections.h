#pragma once

#include "Models/LargeBuffer.h"
#include "Models/Vector.h"
#include "Solver/Flow/VTKScanner.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace ostrella::VTKSections {

/// Throws VTKParseError unless the text from its start has at least 6 words, "ASCII" and
/// "UNSTRUCTURED_GRID" among them.
void requireLegacyHeader(VTKScanner scanner);

/// What to do with the point ids of the cells; they are checked in any case.
enum class Ids { keep, drop };

struct Geometry {
    LargeBuffer<Vec3> positions;
    std::vector<std::uint32_t> indices; ///< all ids of all cells, one behind the other
    std::int64_t firstCellType = 3;     ///< a line where there are no cells
};

/// Takes points, cells and the cells' types. Throws VTKParseError and VTKNumberError.
Geometry takeGeometry(VTKScanner& scanner, Ids ids);

/// Moves on to the word behind the next `keyword`. Throws VTKParseError, "POINTS not found" for
/// one.
void findSection(VTKScanner& scanner, std::string_view keyword);

struct Scalar {
    LargeBuffer<float> values;
    /// The file says that the scalar has no components: each of the points has 0, and there are no
    /// values.
    bool isWithoutComponents = false;
};

/// The first component of the scalar `name` on `count` points, which is looked for from the cursor
/// on. Throws VTKParseError and VTKNumberError.
Scalar takeScalar(VTKScanner& scanner, std::string_view name, std::int64_t count);

/// The vector `name` on `count` points, which is looked for from the cursor on. Throws
/// VTKParseError.
LargeBuffer<Vec3> takeVector(VTKScanner& scanner, std::string_view name, std::int64_t count);

} // namespace ostrella::VTKSections
