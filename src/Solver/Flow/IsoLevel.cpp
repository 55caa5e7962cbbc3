#include "Solver/Flow/IsoLevel.h"

#include "Models/Precondition.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace ostrella {

std::optional<float> isoLevel(std::span<const float> scalars, float percentile) {
    std::vector<float> positive(scalars.size());
    std::size_t count = 0;
    for (const float value : scalars) {
        positive[count] = value;
        const bool taken = value > 0.0F && value <= std::numeric_limits<float>::max();
        count += static_cast<std::size_t>(taken);
    }
    if (count == 0)
        return std::nullopt;
    const float place = percentile * static_cast<float>(count - 1) / 100.0F;
    constexpr float beyondIndices = 0x1p63F;
    precondition(place > -1.0F && place < beyondIndices, "a percentile must be 0 to 100");
    const auto index = std::min(count - 1, static_cast<std::size_t>(std::max(place, 0.0F)));
    const auto chosen = positive.begin() + static_cast<std::ptrdiff_t>(index);
    std::nth_element(
        positive.begin(), chosen, positive.begin() + static_cast<std::ptrdiff_t>(count));
    return *chosen;
}

} // namespace ostrella
