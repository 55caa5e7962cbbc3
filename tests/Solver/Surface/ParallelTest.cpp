#include "Solver/Surface/Parallel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <vector>

namespace ostrella {

namespace {

TEST(InParallel, EachNumberIsWorkedOnOnce) {
    for (const std::size_t count : {0, 1, 1023, 1024, 1025, 50'000}) {
        std::vector<int> visits(count, 0);
        inParallel(count, {}, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                ++visits[i];
            }
        });
        EXPECT_EQ(std::ranges::count(visits, 1), static_cast<std::ptrdiff_t>(count));
    }
}

TEST(InParallel, WhatTheWorkThrowsLeavesOnTheCallersThread) {
    // Thrown in every block, so on whichever thread is first.
    EXPECT_THROW(inParallel(50'000, {},
                     [](std::size_t, std::size_t) { throw std::runtime_error("no memory"); }),
        std::runtime_error);
}

TEST(InParallel, ACancelEndsItAndLeavesAsOne) {
    const CancellationSource source;
    EXPECT_THROW(
        inParallel(1'000'000, source.token(), [&](std::size_t, std::size_t) { source.cancel(); }),
        CancellationError);
}

} // namespace

} // namespace ostrella
