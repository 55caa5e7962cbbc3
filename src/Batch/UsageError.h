#pragma once

#include <stdexcept>

namespace ostrella {

/// A command line that asks for what cannot be done; what() tells the user which part of it.
class UsageError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace ostrella
