#pragma once

#include "Models/Cancellation.h"
#include "Models/RunState.h"

#include <exception>
#include <utility>

namespace ostrella {

/// Performs a stage of a run. A cancellation and an error that already names its stage leave as
/// they are; any other error leaves as RunStageError with this stage.
template <class Work>
auto atStage(RunStage stage, Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (const CancellationError&) {
        throw;
    } catch (const RunStageError&) {
        throw;
    } catch (...) {
        throw RunStageError(stage, std::current_exception());
    }
}

} // namespace ostrella
