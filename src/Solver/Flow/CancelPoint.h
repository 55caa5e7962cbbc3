#pragma once

#include "Models/Cancellation.h"

#include <functional>

namespace ostrella {

/// Throws CancellationError if `isCancelled` holds; an empty one never does.
inline void cancelPoint(const std::function<bool()>& isCancelled) {
    if (isCancelled && isCancelled())
        throw CancellationError();
}

} // namespace ostrella
