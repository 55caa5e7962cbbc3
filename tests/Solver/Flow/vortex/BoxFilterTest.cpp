#include "Solver/Flow/BoxFilter.h"

#include "Models/Cancellation.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestFlows.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <numeric>

namespace ostrella {

namespace {

using test::CancelAt;

const float nan = std::numeric_limits<float>::quiet_NaN();
const float infinity = std::numeric_limits<float>::infinity();

Lattice latticeOf(std::size_t points) {
    return {points, Vec3(0.0F), Vec3(1.0F)};
}

void expectSameBytes(const std::vector<float>& a, const std::vector<float>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        EXPECT_EQ(std::bit_cast<std::uint32_t>(a[i]), std::bit_cast<std::uint32_t>(b[i])) << i;
}

TEST(BoxFilter, givesTheMeanOf27AndLeavesTheOuterLayer) {
    std::vector<float> scalars(27);
    std::iota(scalars.begin(), scalars.end(), 1.0F);
    const auto smooth = boxFilter(scalars, 3);
    auto expected = scalars;
    expected[13] = 14.0F;
    EXPECT_EQ(smooth, expected);
    scalars[13] = 14.0F + 27.0F;
    EXPECT_EQ(boxFilter(scalars, 3)[13], 15.0F);
}

TEST(BoxFilter, readsTheInputAndNotItsOwnMeans) {
    const auto lattice = latticeOf(5);
    std::vector<float> scalars(125, 0.0F);
    scalars[lattice.index(1, 2, 2)] = 27.0F;
    const auto smooth = boxFilter(scalars, 5);
    EXPECT_EQ(smooth[lattice.index(1, 2, 2)], 1.0F);
    EXPECT_EQ(smooth[lattice.index(2, 2, 2)], 1.0F);
    EXPECT_EQ(smooth[lattice.index(3, 2, 2)], 0.0F);
    EXPECT_EQ(smooth[lattice.index(2, 1, 3)], 1.0F);
}

TEST(BoxFilter, closesHolesAndCountsOnlyWhatIsFinite) {
    for (const float hole : {nan, infinity, -infinity}) {
        std::vector<float> scalars(27, hole);
        scalars[0] = 1.0F;
        scalars[26] = 4.0F;
        EXPECT_EQ(boxFilter(scalars, 3)[13], 2.5F);
    }
}

TEST(BoxFilter, leavesPointsOutOfReachOfAnyValue) {
    const auto lattice = latticeOf(6);
    std::vector<float> scalars(lattice.count(), nan);
    scalars[lattice.index(1, 1, 1)] = 3.0F;
    const auto smooth = boxFilter(scalars, 6);
    EXPECT_EQ(smooth[lattice.index(2, 2, 2)], 3.0F);
    EXPECT_TRUE(std::isnan(smooth[lattice.index(3, 3, 3)]));
    EXPECT_TRUE(std::isnan(smooth[lattice.index(0, 1, 1)]));
}

TEST(BoxFilter, addsLayerByLayerRowByRow) {
    // The small number is lost unless the large ones have cancelled before it comes.
    std::vector<float> scalars(27, nan);
    scalars[0] = 1e8F;
    scalars[25] = -1e8F;
    scalars[26] = 1.0F;
    EXPECT_EQ(boxFilter(scalars, 3)[13], 1.0F / 3.0F);
    std::swap(scalars[25], scalars[1 + 3]);
    std::swap(scalars[26], scalars[1]);
    EXPECT_EQ(boxFilter(scalars, 3)[13], 0.0F);
}

TEST(BoxFilter, givesTheSameBytesAsThePlainOne) {
    for (const std::size_t dim : {3U, 4U, 5U, 8U, 19U}) {
        const auto lattice = latticeOf(dim);
        std::vector<float> scalars;
        for (std::size_t i = 0; i < lattice.count(); ++i) {
            const float value = std::sin(static_cast<float>(i) * 1.7F) * 1e3F;
            scalars.push_back(i % 3 == 0 ? nan : i % 41 == 0 ? -0.0F : value);
        }
        expectSameBytes(boxFilter(scalars, dim), plain::Vortex::boxFilter(scalars, dim));
    }
}

TEST(BoxFilter, hasNoSayOnALatticeOfTwo) {
    const std::vector<float> scalars = {1, 2, 3, 4, 5, 6, 7, 8};
    CancelAt cancel{1};
    EXPECT_EQ(boxFilter(scalars, 2, cancel.question()), scalars);
    EXPECT_EQ(cancel.asked, 0U);
}

TEST(BoxFilter, endsTheProcessOnALatticeOfOne) {
    const std::vector<float> scalars = {1.0F};
    EXPECT_DEATH(boxFilter(scalars, 1), "two points along each axis");
    EXPECT_DEATH(boxFilter({}, 0), "two points along each axis");
}

TEST(BoxFilter, asksForCancellationOnceAnInnerLayer) {
    const std::vector<float> scalars(216, 1.0F);
    CancelAt never;
    boxFilter(scalars, 6, never.question());
    EXPECT_EQ(never.asked, 4U);
    CancelAt cancel{2};
    EXPECT_THROW(boxFilter(scalars, 6, cancel.question()), CancellationError);
    EXPECT_EQ(cancel.asked, 2U);
}

} // namespace

} // namespace ostrella
