// A cancellation drops everything, at once where a part can be left midway.

#include "HarvestFixture.h"

#include <algorithm>
#include <chrono>

namespace ostrella::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;
using Seconds = std::chrono::duration<double>;
using SteadyClock = std::chrono::steady_clock;

class HarvestCancel : public HarvestTest {
protected:
    /// Cancels when the log has a line that begins so; the harvest waits for the log meanwhile, so
    /// the part behind the line is cancelled while it is under way. The time to the end.
    Seconds cancelledAt(const std::string& beginning, const std::filesystem::path& directory) {
        SteadyClock::time_point asked;
        QObject::connect(&log_, &LogStore::linesChanged, [&] {
            if (log_.lines().back().text.starts_with(beginning)) {
                asked = SteadyClock::now();
                cancellation_.cancel();
            }
        });
        SteadyClock::time_point ended;
        onWorker([&, log = RunLog(log_)] {
            EXPECT_THROW(
                harvestResult(directory, {}, std::nullopt, 3, inputs_, log, cancellation_.token()),
                CancellationError);
            ended = SteadyClock::now();
        });
        EXPECT_THAT(texts().back(), StartsWith(beginning)) << "the harvest went on";
        return ended - asked;
    }
};

TEST_F(HarvestCancel, AheadOfEverythingLeavesAfterTheSurface) {
    writeWholeRun();
    cancellation_.cancel();
    EXPECT_THROW(harvest(), CancellationError);
    EXPECT_THAT(texts(), ElementsAre("Surface: 8 points, 18 primitives, Cp ∈ [-0.500, 0.500]",
                             "y⁺ on body: min 0.50 · mean 2.25 · p95 3.50 · max 4.00"));
}

TEST_F(HarvestCancel, IsNoLackOfFilesWhereThereAreNone) {
    cancellation_.cancel();
    EXPECT_THROW(harvest(), CancellationError);
}

class HarvestCancelAt : public HarvestCancel, public testing::WithParamInterface<const char*> {};

TEST_P(HarvestCancelAt, LeavesWithoutAnotherLine) {
    writeWholeRun();
    EXPECT_LT(cancelledAt(GetParam(), run_), Seconds(0.5));
}

INSTANTIATE_TEST_SUITE_P(AnyLine, HarvestCancelAt,
    testing::Values("y⁺", "Generating", "Streamlines", "Extracting", "Vortex"));

/// A run of the real solver with 56 053 points, and as much to compute as the settings allow.
class LargeHarvestCancel : public HarvestCancel {
protected:
    LargeHarvestCancel() {
        inputs_.streamlineSeedCount = 500;
        inputs_.streamlineDownstreamFactor = 10;
    }
    const std::filesystem::path wing_ =
        std::filesystem::path(OSTRELLA_RECORDED_RUNS) / "wing_inc_sa_a5";
};

TEST_F(LargeHarvestCancel, LeavesTheStreamlinesWithinHalfASecond) {
    EXPECT_LT(cancelledAt("Generating", wing_), Seconds(0.5));
}

TEST_F(LargeHarvestCancel, LeavesTheVortexWithinHalfASecond) {
    EXPECT_LT(cancelledAt("Extracting", wing_), Seconds(0.5));
}

} // namespace
} // namespace ostrella::test
