#pragma once

#include "Models/LargeBuffer.h"
#include "Solver/Geometry/WeldGrid.h"

#include <cstddef>
#include <cstdint>

namespace ostrella {

/// Numbers weld keys in order of first appearance: a flat hash table with linear probing. A lookup
/// in a table beyond the cache waits for memory, so callers prefetch some corners ahead.
class VertexTable {
public:
    /// Room to start with for `expected` keys; the table grows as needed.
    explicit VertexTable(std::size_t expected);

    /// The number of keys seen so far.
    std::size_t size() const { return size_; }

    static std::uint64_t hash(const WeldKey& key) {
        // Both words are odd and without pattern, so that grids of points spread evenly.
        constexpr std::uint64_t first = 0x9E3779B97F4A7C15U;
        constexpr std::uint64_t second = 0xD6E8FEB86659FD93U;
        const std::uint64_t xy = static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.x))
                                     << 32 |
                                 static_cast<std::uint32_t>(key.y);
        std::uint64_t mixed = (xy ^ second) * first;
        mixed ^= mixed >> 32;
        mixed = (mixed ^ static_cast<std::uint32_t>(key.z)) * second;
        return mixed ^ mixed >> 29;
    }

    /// Fetches the place of a key of this hash into the cache, for a lookup soon to come.
    void prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[hash & mask_], 1); }

    /// The number of `key`, whose hash is `hash`: that of its first appearance, or size() if it is
    /// new and now has that number. More than 2³² − 1 keys end the process.
    std::uint32_t indexOf(const WeldKey& key, std::uint64_t hash) {
        for (std::size_t at = hash & mask_;; at = (at + 1) & mask_) {
            Slot& slot = slots_[at];
            if (slot.index == vacant) {
                slot = {key, static_cast<std::uint32_t>(size_)};
                if (++size_ > limit_)
                    grow();
                return static_cast<std::uint32_t>(size_ - 1);
            }
            if (slot.key == key)
                return slot.index;
        }
    }

private:
    struct Slot {
        WeldKey key;
        std::uint32_t index;
    };
    static constexpr std::uint32_t vacant = 0xFFFFFFFFU;

    void allocate(std::size_t slots);
    void grow();

    LargeBuffer<Slot> slots_;
    std::size_t mask_ = 0;
    std::size_t limit_ = 0; ///< keys beyond which probing would become slow
    std::size_t size_ = 0;
};

} // namespace ostrella
