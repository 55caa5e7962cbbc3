#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace ostrella {

/// Numbers from 0 on in sets that are united step by step; the least number of a set stands for it.
class DisjointSets {
public:
    explicit DisjointSets(std::size_t count) : parents_(count) {
        std::iota(parents_.begin(), parents_.end(), 0u);
    }

    std::uint32_t find(std::uint32_t number) {
        while (parents_[number] != number) {
            parents_[number] = parents_[parents_[number]];
            number = parents_[number];
        }
        return number;
    }

    void unite(std::uint32_t a, std::uint32_t b) {
        a = find(a);
        b = find(b);
        if (a < b)
            parents_[b] = a;
        else
            parents_[a] = b;
    }

    /// A further set of one number, which it gives.
    std::uint32_t add() {
        parents_.push_back(static_cast<std::uint32_t>(parents_.size()));
        return parents_.back();
    }

private:
    std::vector<std::uint32_t> parents_;
};

} // namespace ostrella
