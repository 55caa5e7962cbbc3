#pragma once

#include "Models/SurfaceFitness.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// Counts defects and remembers those of the least keys, so that what is shown of them depends on
/// neither threads nor the order of the search.
class FirstPlaces {
public:
    void add(std::uint64_t key) {
        ++count_;
        if (keys_.size() < SurfaceDefect::mostPlaces) {
            keys_.push_back(key);
            std::push_heap(keys_.begin(), keys_.end());
        } else if (key < keys_.front()) {
            std::pop_heap(keys_.begin(), keys_.end());
            keys_.back() = key;
            std::push_heap(keys_.begin(), keys_.end());
        }
    }

    /// Takes in what another one found elsewhere.
    void add(const FirstPlaces& other) {
        const std::int64_t count = count_ + other.count_;
        for (const std::uint64_t key : other.keys_)
            add(key);
        count_ = count;
    }

    std::int64_t count() const { return count_; }

    /// The defects, with place(key) for each that is remembered, in the order of the keys.
    template <class Place>
    SurfaceDefect defect(Place&& place) const {
        SurfaceDefect result;
        result.count = count_;
        std::vector<std::uint64_t> sorted = keys_;
        std::sort(sorted.begin(), sorted.end());
        for (const std::uint64_t key : sorted)
            result.places.push_back(place(key));
        return result;
    }

private:
    std::int64_t count_ = 0;
    std::vector<std::uint64_t> keys_; ///< a heap, the greatest in front
};

} // namespace ostrella
