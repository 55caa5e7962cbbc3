#pragma once

#include <stdexcept>

namespace ostrella::preview {

/// What ends a run with status 1; its text is what the user reads.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace ostrella::preview
