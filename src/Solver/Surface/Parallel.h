#pragma once

#include "Models/Cancellation.h"

#include <cstddef>
#include <functional>

namespace ostrella {

/// Calls `work(begin, end)` for blocks of the numbers from 0 to `count`, on as many threads as the
/// machine has cores, and returns when all are done. Between blocks it looks whether it is to stop,
/// and throws CancellationError then. What `work` throws ends all and leaves from here.
void inParallel(std::size_t count, const CancellationToken& token,
    const std::function<void(std::size_t begin, std::size_t end)>& work);

} // namespace ostrella
