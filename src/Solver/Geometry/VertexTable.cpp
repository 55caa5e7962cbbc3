#include "Solver/Geometry/VertexTable.h"

#include "Models/Precondition.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace ostrella {

VertexTable::VertexTable(std::size_t expected) {
    constexpr std::size_t least = 64;
    allocate(std::bit_ceil(std::max(least, expected + expected / 2)));
}

void VertexTable::allocate(std::size_t slots) {
    slots_ = LargeBuffer<Slot>(slots);
    // All bits set: every index reads `vacant`.
    std::memset(static_cast<void*>(slots_.data()), 0xFF, slots * sizeof(Slot));
    mask_ = slots - 1;
    limit_ = std::min<std::size_t>(slots / 3 * 2, vacant);
}

void VertexTable::grow() {
    precondition(size_ < vacant, "a welded mesh holds at most 4294967295 vertices");
    const LargeBuffer<Slot> old = std::move(slots_);
    allocate(2 * old.size());
    for (const Slot& slot : old) {
        if (slot.index == vacant)
            continue;
        std::size_t at = hash(slot.key) & mask_;
        while (slots_[at].index != vacant)
            at = (at + 1) & mask_;
        slots_[at] = slot;
    }
}

} // namespace ostrella
