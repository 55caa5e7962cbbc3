#pragma once

#include "Models/TriangleMesh.h"

#include <string_view>

namespace ostrella {

/// The text form of STL. STLParser is the way in.
namespace ASCIISTL {

/// The mesh of the "facet normal" and "vertex" lines of `text`. Throws STLParseError.
TriangleMesh parse(std::string_view text);

} // namespace ASCIISTL

} // namespace ostrella
