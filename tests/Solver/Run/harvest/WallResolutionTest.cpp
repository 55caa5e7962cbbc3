// Whether the mesh on the body suits the turbulence model.

#include "HarvestFixture.h"

#include "Solver/Run/WallResolution.h"

#include <optional>

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Level = LogStore::Level;

/// The second line for a body with this 95th percentile, or an empty one if there is none.
TextLine warning(TurbulenceModel model, float p95) {
    const auto lines = WallResolution::lines({100, 0.25F, 1000, 12, p95}, model);
    EXPECT_LE(lines.size(), 2U);
    return lines.size() == 2 ? lines[1] : TextLine();
}

TextLine marginal(const std::string& label, const std::string& p95) {
    return {"Wall mesh marginal for " + label + " · p95 y⁺ = " + p95 +
                ". Results are indicative; the boundary layer is in the transition band.",
        Level::warn};
}

TextLine tooCoarse(const std::string& label, const std::string& p95) {
    return {"Wall mesh too coarse for " + label + " · p95 y⁺ = " + p95 +
                ". The boundary layer is unresolved, so drag and Cf are not trustworthy. Refine "
                "the body surface mesh.",
        Level::warn};
}

TEST(WallResolution, TellsTheFiguresOfEveryModel) {
    for (const TurbulenceModel model : allTurbulenceModels) {
        EXPECT_EQ(WallResolution::lines({4, 0.125F, 3.456F, 1, 0.5F}, model),
            (std::vector{
                TextLine("y⁺ on body: min 0.12 · mean 1.00 · p95 0.50 · max 3.46", Level::info)}));
    }
}

TEST(WallResolution, OfSpalartAllmarasIsMarginalAbove5AndTooCoarseAbove30) {
    constexpr auto model = TurbulenceModel::spalartAllmaras;
    const std::string label = "y⁺ ≲ 5 (SA, low-Re)";
    EXPECT_EQ(warning(model, 5), TextLine());
    EXPECT_EQ(warning(model, 5.01F), marginal(label, "5.0"));
    EXPECT_EQ(warning(model, 30), marginal(label, "30.0"));
    EXPECT_EQ(warning(model, 30.01F), tooCoarse(label, "30"));
}

TEST(WallResolution, OfSSTIsMarginalAbove1AndTooCoarseAbove10) {
    constexpr auto model = TurbulenceModel::sst;
    const std::string label = "y⁺ ≲ 1 (k-ω SST)";
    EXPECT_EQ(warning(model, 1), TextLine());
    EXPECT_EQ(warning(model, 1.01F), marginal(label, "1.0"));
    EXPECT_EQ(warning(model, 10), marginal(label, "10.0"));
    EXPECT_EQ(warning(model, 12.4F), tooCoarse(label, "12"));
}

TEST(WallResolution, OfALaminarFlowIsNotJudged) {
    EXPECT_EQ(warning(TurbulenceModel::laminar, 5000), TextLine());
}

TEST(WallResolution, JudgesTheBulkOfTheBodyAndNotItsWorstPoint) {
    // The maximum of 1000 is there in each of these.
    EXPECT_EQ(warning(TurbulenceModel::sst, 0.5F), TextLine());
}

class WallReport : public HarvestTest {
protected:
    std::optional<ScalarFieldStats> report(TurbulenceModel model = TurbulenceModel::sst) {
        std::optional<ScalarFieldStats> stats;
        onWorker([&, log = RunLog(log_)] { stats = reportYPlus(surface_, model, log); });
        return stats;
    }
};

TEST_F(WallReport, LogsWhatItFinds) {
    writeSurface(cube());
    EXPECT_EQ(report(), (ScalarFieldStats{8, 0.5F, 4, 2.25F, 3.5F}));
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("y⁺ on body: min 0.50 · mean 2.25 · p95 3.50 · max 4.00", Level::info),
            marginal("y⁺ ≲ 1 (k-ω SST)", "3.5")));
}

TEST_F(WallReport, IsSilentWithoutItsFieldOrItsFile) {
    EXPECT_FALSE(report());
    writeSurface(FieldFiles::box(Vec3(0), Vec3(1)));
    EXPECT_FALSE(report());
    writeSurface("rubbish");
    EXPECT_FALSE(report());
    writeSurface(FieldFiles::replaced(cube(), "POINTS 8", "POINTS -8"));
    EXPECT_FALSE(report());
    std::filesystem::remove(surface_);
    std::filesystem::create_directory(surface_);
    EXPECT_FALSE(report());
    EXPECT_THAT(lines(), IsEmpty());
}

} // namespace
} // namespace ostrella::test
