#pragma once

#include "Models/Precondition.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrella {

/// A vertex position in steps of the weld grid.
struct IsoWeldKey {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t z = 0;

    bool operator==(const IsoWeldKey&) const = default;
};

/// Numbers weld keys in the order of their first appearance: a flat hash table with linear probing
/// over indices into the list of keys.
class IsoVertexTable {
public:
    /// A table for up to `corners` keys. It does not grow.
    explicit IsoVertexTable(std::size_t corners)
        : slots_(std::bit_ceil(2 * corners + 2), vacant), mask_(slots_.size() - 1) {
        keys_.reserve(corners / 3);
    }

    /// The number of keys seen so far.
    std::size_t size() const { return keys_.size(); }

    /// The number of `key`: that of its first appearance, or size() if it is new and now has that
    /// number. More than 2³² − 1 keys end the process.
    std::uint32_t indexOf(const IsoWeldKey& key) {
        for (std::size_t at = hash(key) & mask_;; at = (at + 1) & mask_) {
            const std::uint32_t index = slots_[at];
            if (index == vacant) {
                precondition(keys_.size() < vacant, "a surface holds at most 4294967295 vertices");
                slots_[at] = static_cast<std::uint32_t>(keys_.size());
                keys_.push_back(key);
                return slots_[at];
            }
            if (keys_[index] == key)
                return index;
        }
    }

private:
    static constexpr std::uint32_t vacant = 0xFFFFFFFFU;

    static std::size_t hash(const IsoWeldKey& key) {
        // Odd words without pattern spread the planes of a lattice, which share coordinates.
        constexpr std::uint64_t first = 0x9E3779B97F4A7C15U;
        constexpr std::uint64_t second = 0xC2B2AE3D27D4EB4FU;
        std::uint64_t mixed = static_cast<std::uint32_t>(key.x) * first;
        mixed = (mixed ^ mixed >> 32 ^ static_cast<std::uint32_t>(key.y)) * second;
        mixed = (mixed ^ mixed >> 32 ^ static_cast<std::uint32_t>(key.z)) * first;
        return static_cast<std::size_t>(mixed ^ mixed >> 29);
    }

    std::vector<std::uint32_t> slots_;
    std::size_t mask_;
    std::vector<IsoWeldKey> keys_;
};

} // namespace ostrella
