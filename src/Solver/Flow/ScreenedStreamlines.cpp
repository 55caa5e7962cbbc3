#include "Solver/Flow/FlowScreen.h"

namespace ostrella::FlowScreen {

Streamlines generate(const VolumeField& volume, float freeStreamVelocity,
    const std::optional<StreamlineGenerator::Focus>& focus, std::optional<int> seedCount,
    int stepCount, const std::function<bool()>& isCancelled) {
    requireFinite(volume);
    return StreamlineGenerator::generate(
        volume, freeStreamVelocity, focus, seedCount, stepCount, isCancelled);
}

} // namespace ostrella::FlowScreen
