#include "Ordering.h"

#include <algorithm>

namespace ostrella::preview {

namespace {

class Walk {
public:
    Walk(std::span<const std::int32_t> start, std::span<const std::int32_t> neighbours)
        : start_(start), neighbours_(neighbours), level_(start.size() - 1, 0) {}

    std::int32_t degree(std::int32_t point) const { return start_[point + 1] - start_[point]; }

    /// Breadth-first order from `seed`, neighbours by rising degree; `mark` tells this walk's
    /// visits from those of earlier ones.
    void from(std::int32_t seed, int mark, std::vector<std::int32_t>& order) {
        std::size_t next = order.size();
        order.push_back(seed);
        level_[seed] = mark;
        while (next < order.size()) {
            const std::int32_t point = order[next++];
            const std::size_t first = order.size();
            for (auto k = start_[point]; k < start_[point + 1]; ++k) {
                const std::int32_t other = neighbours_[k];
                if (level_[other] != mark) {
                    level_[other] = mark;
                    order.push_back(other);
                }
            }
            std::sort(order.begin() + static_cast<std::ptrdiff_t>(first), order.end(),
                [this](auto a, auto b) {
                    return degree(a) != degree(b) ? degree(a) < degree(b) : a < b;
                });
        }
    }

private:
    std::span<const std::int32_t> start_;
    std::span<const std::int32_t> neighbours_;
    std::vector<int> level_;
};

} // namespace

std::vector<std::int32_t> reverseCuthillMcKee(
    std::span<const std::int32_t> start, std::span<const std::int32_t> neighbours) {
    const auto count = static_cast<std::int32_t>(start.size()) - 1;
    Walk walk(start, neighbours);
    std::vector<std::int32_t> order;
    order.reserve(count);
    std::vector<char> done(count, 0);
    for (std::int32_t seed = 0; seed < count; ++seed) {
        if (done[seed])
            continue;
        // The last point of a walk is far from its start: twice gives a good end of the component.
        std::vector<std::int32_t> trial;
        walk.from(seed, 3 * seed + 1, trial);
        const std::int32_t far = trial.back();
        trial.clear();
        walk.from(far, 3 * seed + 2, trial);
        const std::int32_t farther = trial.back();
        const std::size_t first = order.size();
        walk.from(farther, 3 * seed + 3, order);
        for (std::size_t k = first; k < order.size(); ++k)
            done[order[k]] = 1;
    }
    std::reverse(order.begin(), order.end());
    return order;
}

} // namespace ostrella::preview
