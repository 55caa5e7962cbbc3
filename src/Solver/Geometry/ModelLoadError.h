#pragma once

#include <stdexcept>
#include <string>

namespace ostrella {

/// Why a model that may be sound STL cannot be used; what() is the text that the user reads: what
/// is the matter, and what to do.
class ModelLoadError : public std::runtime_error {
public:
    enum class Reason {
        missing,
        folder,
        notAFile, ///< a device, a pipe or a socket
        notPermitted,
        unreadable,
        tooLarge,
        outOfMemory,
        noFacets,
        notFinite,
        boundless, ///< finite vertices, but extents beyond 32-bit float
        tooFar,    ///< from the origin for its size, so that it cannot be welded
    };

    ModelLoadError(Reason reason, const std::string& text)
        : std::runtime_error(text), reason_(reason) {}

    Reason reason() const { return reason_; }

private:
    Reason reason_;
};

} // namespace ostrella
