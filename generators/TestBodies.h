#pragma once

#include <span>
#include <string_view>

#include "Body.h"

namespace ostrella::generators {

/// A body of the test corpus: sound ones that a mesher must master and faulty ones that it must
/// refuse within a short time.
struct TestBody {
    std::string_view name;
    std::string_view about;
    Body (*make)();
    bool ascii = false;
};

/// The whole corpus.
[[nodiscard]] std::span<const TestBody> testBodies();

/// The body of this name, or nothing.
[[nodiscard]] const TestBody* testBody(std::string_view name);

} // namespace ostrella::generators
