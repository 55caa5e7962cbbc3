#include "Solver/Surface/CellFilling.h"

#include <array>
#include <bit>

namespace ostrella {

namespace {

using Index = CellLattice::Index;

/// The eight cells around a corner of the lattice as bits: 1 for y, 2 for z and 4 for x upward, so
/// that the cells of one x make four neighbouring bits.
using Octet = unsigned;
constexpr unsigned yBit = 1;
constexpr unsigned zBit = 2;
constexpr unsigned xBit = 4;

/// Whether the cells of `octet` hang together over faces; none do.
constexpr bool isConnected(Octet octet) {
    if (octet == 0)
        return true;
    Octet reached = octet & (~octet + 1);
    for (int round = 0; round < 8; ++round) {
        for (unsigned cell = 0; cell < 8; ++cell) {
            if (reached >> cell & 1)
                reached |=
                    octet & (1u << (cell ^ xBit) | 1u << (cell ^ yBit) | 1u << (cell ^ zBit));
        }
    }
    return reached == octet;
}

/// The border between the cells of `octet` and the others is one disc at their common corner, or
/// absent, just if both hang together: on a small sphere around the corner it is a set of closed
/// curves, one fewer than the pieces it divides the sphere into.
constexpr bool isDisc(Octet octet) {
    return isConnected(octet) && isConnected(~octet & 0xFFu);
}

/// For each octet the fewest cells whose filling makes a disc of its border. They lie in the box of
/// its cells: in a layer of four only two on a diagonal make no disc, and with one of the two
/// others they do.
constexpr std::array<std::uint8_t, 256> makeFillings() {
    std::array<std::uint8_t, 256> fillings{};
    for (Octet octet = 0; octet < 256; ++octet) {
        Octet best = 0xFF;
        for (Octet more = octet; more < 256; ++more) {
            if ((more & octet) == octet && std::popcount(more) < std::popcount(best) &&
                isDisc(more))
                best = more;
        }
        if (octet != 0)
            fillings[octet] = static_cast<std::uint8_t>(best & ~octet);
    }
    return fillings;
}

class Filling {
public:
    explicit Filling(CellLattice& lattice) : lattice_(lattice) {}

    std::int64_t fill(const CancellationToken& token) {
        for (std::int32_t z = 1; z < lattice_.counts[2]; ++z) {
            token.throwIfCancelled();
            for (std::int32_t y = 1; y < lattice_.counts[1]; ++y)
                fillAlong(y, z);
        }
        return filled_;
    }

private:
    /// The corners of the lattice between four rows.
    void fillAlong(std::int32_t y, std::int32_t z) {
        const std::array<const Cell*, 4> rows{lattice_.row(y - 1, z - 1), lattice_.row(y, z - 1),
            lattice_.row(y - 1, z), lattice_.row(y, z)};
        const auto column = [&rows](std::int32_t x) {
            Octet bits = 0;
            for (unsigned i = 0; i < 4; ++i)
                bits |= static_cast<Octet>(rows[i][x] != Cell::outside) << i;
            return bits;
        };
        Octet before = column(0);
        for (std::int32_t x = 1; x < lattice_.counts[0]; ++x) {
            Octet here = column(x);
            if (fillings_[before | here << 4] != 0) {
                settle({x, y, z});
                here = column(x);
            }
            before = here;
        }
    }

    /// Fills around a corner, and then around all corners that this concerns.
    void settle(const Index& corner) {
        open_.push_back(corner);
        while (!open_.empty()) {
            const Index at = open_.back();
            open_.pop_back();
            const unsigned filling = fillings_[octetAt(at)];
            for (unsigned cell = 0; cell < 8; ++cell) {
                if (filling >> cell & 1)
                    fillCell(cellAt(at, cell));
            }
        }
    }

    static Index cellAt(const Index& corner, unsigned cell) {
        return {corner[0] - (cell & xBit ? 0 : 1), corner[1] - (cell & yBit ? 0 : 1),
            corner[2] - (cell & zBit ? 0 : 1)};
    }

    Octet octetAt(const Index& corner) const {
        Octet octet = 0;
        for (unsigned cell = 0; cell < 8; ++cell)
            octet |= static_cast<Octet>(lattice_.isInside(cellAt(corner, cell))) << cell;
        return octet;
    }

    void fillCell(const Index& cell) {
        lattice_.row(cell[1], cell[2])[cell[0]] = Cell::blocked;
        ++filled_;
        for (unsigned corner = 0; corner < 8; ++corner)
            open_.push_back({cell[0] + (corner & xBit ? 1 : 0), cell[1] + (corner & yBit ? 1 : 0),
                cell[2] + (corner & zBit ? 1 : 0)});
    }

    CellLattice& lattice_;
    const std::array<std::uint8_t, 256> fillings_ = makeFillings();
    std::vector<Index> open_;
    std::int64_t filled_ = 0;
};

} // namespace

std::int64_t fillToManifold(CellLattice& lattice, const CancellationToken& token) {
    return Filling(lattice).fill(token);
}

} // namespace ostrella
