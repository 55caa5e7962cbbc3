#include "Solver/Surface/CellFlood.h"

#include <algorithm>
#include <cstring>

namespace ostrella {

namespace {

/// Neighbouring cells of one row, from `first` to before `end`.
struct Run {
    std::int32_t first;
    std::int32_t end;
    std::int32_t y;
    std::int32_t z;
};

/// Spreads by whole runs of a row: each is entered once.
class Flood {
public:
    explicit Flood(CellLattice& lattice) : lattice_(lattice) {}

    void spread(const CancellationToken& token) {
        claim(0, 0, 0);
        std::size_t rounds = 0;
        while (!open_.empty()) {
            if (++rounds % 4096 == 0)
                token.throwIfCancelled();
            const Run run = open_.back();
            open_.pop_back();
            if (run.y > 0)
                enter(run, run.y - 1, run.z);
            if (run.y + 1 < lattice_.counts[1])
                enter(run, run.y + 1, run.z);
            if (run.z > 0)
                enter(run, run.y, run.z - 1);
            if (run.z + 1 < lattice_.counts[2])
                enter(run, run.y, run.z + 1);
        }
    }

private:
    /// Claims all runs of the row (y, z) beside `run`.
    void enter(const Run& run, std::int32_t y, std::int32_t z) {
        const Cell* row = lattice_.row(y, z);
        std::int32_t x = run.first;
        while (x < run.end) {
            const void* found = std::memchr(
                row + x, static_cast<int>(Cell::free), static_cast<std::size_t>(run.end - x));
            if (found == nullptr)
                return;
            x = claim(static_cast<std::int32_t>(static_cast<const Cell*>(found) - row), y, z);
        }
    }

    /// Makes the run of free cells around (x, y, z) outside, and gives its end.
    std::int32_t claim(std::int32_t x, std::int32_t y, std::int32_t z) {
        Cell* row = lattice_.row(y, z);
        std::int32_t first = x;
        std::int32_t end = x + 1;
        while (first > 0 && row[first - 1] == Cell::free)
            --first;
        while (end < lattice_.counts[0] && row[end] == Cell::free)
            ++end;
        std::fill(row + first, row + end, Cell::outside);
        open_.push_back({first, end, y, z});
        return end;
    }

    CellLattice& lattice_;
    std::vector<Run> open_;
};

} // namespace

void floodOutside(CellLattice& lattice, const CancellationToken& token) {
    std::replace(lattice.cells.begin(), lattice.cells.end(), Cell::outside, Cell::free);
    Flood(lattice).spread(token);
}

} // namespace ostrella
