#pragma once

#include <stdexcept>

namespace ostrella {

/// The device cannot draw the scene, or gave up while it did.
class RhiError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace ostrella
