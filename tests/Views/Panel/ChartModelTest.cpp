#include "Views/Panel/ChartModel.h"
#include "Models/HistoryStore.h"
#include "Views/Controls/Theme.h"
#include "support/Wait.h"

#include <QVariantMap>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using testing::ElementsAre;

class ChartModelOf : public testing::Test {
protected:
    void coefficientsOf(const std::vector<std::string>& labels, int rows) {
        HistoryStore::Points points;
        for (int i = 0; i < rows; ++i) {
            for (const std::string& label : labels) {
                points.push_back({label, i, 0.25 + i});
            }
        }
        history.setCoefficients(std::move(points));
        history.setCoefficientLabels(labels);
        history.setHasData(true);
    }
    bool waitForLines(const ChartModel& chart, std::size_t count) {
        return test::waitUntil([&] { return chart.lines().size() == count; });
    }
    static std::vector<std::string> legend(const ChartModel& chart, const char* key = "label") {
        std::vector<std::string> result;
        for (const QVariant& entry : chart.legend()) {
            result.push_back(entry.toMap()[QString::fromLatin1(key)].toString().toStdString());
        }
        return result;
    }

    HistoryStore history;
    ChartModel residuals{history, ChartModel::Kind::residuals};
    ChartModel coefficients{history, ChartModel::Kind::coefficients};
};

TEST_F(ChartModelOf, namesTheTwoCharts) {
    EXPECT_EQ(residuals.title().toStdString(), "Residuals");
    EXPECT_EQ(residuals.note().toStdString(), "log₁₀(rms)");
    EXPECT_EQ(residuals.noteForms().toStdString(), "log₁₀(rms)");
    EXPECT_EQ(residuals.axisName().toStdString(), "log10(rms)");
    EXPECT_EQ(coefficients.title().toStdString(), "Force coefficients");
    EXPECT_EQ(coefficients.note().toStdString(), "");
}

TEST_F(ChartModelOf, showsThePreferredCoefficientsInTheirOrderWithTheirNewestValues) {
    coefficients.setColumns(500);
    coefficientsOf({"CD", "CFx", "Cm", "CL"}, 3);
    ASSERT_TRUE(waitForLines(coefficients, 3));
    EXPECT_THAT(legend(coefficients), ElementsAre("CL", "CD", "Cm"));
    EXPECT_EQ(coefficients.note().toStdString(), "CL=2.2500  CD=2.2500  Cm=2.2500");
    const std::string forms = "CL=2.2500  CD=2.2500  Cm=2.2500\u009C"
                              "CL=2.2500  CD=2.2500\u009C"
                              "CL=2.2500";
    EXPECT_EQ(coefficients.noteForms().toStdString(), forms);
    ASSERT_EQ(coefficients.lines()[0].points.size(), 3U);
    EXPECT_EQ(coefficients.lines()[0].points[2], (ChartPoint{2, 2.25}));
}

TEST_F(ChartModelOf, showsWhatThereIsWhereNoneIsPreferredAndRepeatsItsColours) {
    coefficients.setColumns(500);
    coefficientsOf({"CSF", "CMx", "CMy", "CMz", "CFx", "CFy"}, 1);
    ASSERT_TRUE(waitForLines(coefficients, 6));
    EXPECT_THAT(legend(coefficients), ElementsAre("CSF", "CMx", "CMy", "CMz", "CFx", "CFy"));
    EXPECT_THAT(legend(coefficients, "color"),
        ElementsAre("#f5a524", "#60a5fa", "#a8aebb", "#4ade80", "#6b7180", "#f5a524"));
}

TEST_F(ChartModelOf, coversThePlotWithItsAxes) {
    residuals.setColumns(500);
    history.setResiduals({{"P", 0, -1.5}, {"P", 1, -7.2}});
    history.setResidualLabels({"P"});
    ASSERT_TRUE(waitForLines(residuals, 1));
    EXPECT_LE(residuals.values().from, -7.2);
    EXPECT_GE(residuals.values().to, -1.5);
    EXPECT_GE(residuals.valueTicks().size(), 4);
    EXPECT_LE(residuals.valueTicks().size(), 6);
    EXPECT_EQ(residuals.valueTicks().front().toMap()[QStringLiteral("at")].toDouble(), 0);
    EXPECT_EQ(residuals.valueTicks().back().toMap()[QStringLiteral("at")].toDouble(), 1);
}

TEST_F(ChartModelOf, keepsAPointOfNumericalZeroButNotForItsAxis) {
    residuals.setColumns(500);
    history.setResiduals({{"P", 0, -1.5}, {"P", 1, -32}, {"P", 2, -3.5}});
    history.setResidualLabels({"P"});
    ASSERT_TRUE(waitForLines(residuals, 1));
    EXPECT_EQ(residuals.lines()[0].points.size(), 3U);
    EXPECT_GT(residuals.values().from, -6);
}

TEST_F(ChartModelOf, keepsTheStartOfAnEquationButNotForItsAxis) {
    residuals.setColumns(500);
    std::vector<HistoryPoint> points{{"U", 0, -12.7}};
    for (std::int64_t iteration = 1; iteration < 30; ++iteration) {
        points.push_back({"U", iteration, -0.1 * static_cast<double>(iteration)});
    }
    history.setResiduals(points);
    history.setResidualLabels({"U"});
    ASSERT_TRUE(waitForLines(residuals, 1));
    EXPECT_EQ(residuals.lines()[0].points.front().value, -12.7);
    EXPECT_EQ(residuals.values().from, -3);
    EXPECT_EQ(residuals.values().to, 0);
}

TEST_F(ChartModelOf, doesNothingWhileNobodyLooks) {
    int updates = 0;
    QObject::connect(
        &coefficients, &ChartModel::linesChanged, &coefficients, [&updates] { ++updates; });
    residuals.setColumns(500);
    coefficientsOf({"CL"}, 3);
    history.setResidualLabels({"P"});
    ASSERT_TRUE(waitForLines(residuals, 1)) << "the turn is over";
    EXPECT_EQ(updates, 0);
    coefficients.setColumns(500);
    EXPECT_EQ(coefficients.lines().size(), 1U) << "it catches up at once";
    EXPECT_EQ(updates, 1);
    coefficients.setColumns(0);
    coefficientsOf({"CL"}, 4);
    history.setResidualLabels({"P", "U"});
    ASSERT_TRUE(waitForLines(residuals, 2));
    EXPECT_EQ(updates, 1);
}

TEST_F(ChartModelOf, updatesOnceForAFlush) {
    coefficients.setColumns(500);
    int updates = 0;
    QObject::connect(
        &coefficients, &ChartModel::linesChanged, &coefficients, [&updates] { ++updates; });
    coefficientsOf({"CL", "CD"}, 3);
    ASSERT_TRUE(waitForLines(coefficients, 2));
    EXPECT_EQ(updates, 1);
}

TEST_F(ChartModelOf, emptiesItselfWithTheHistory) {
    coefficients.setColumns(500);
    coefficientsOf({"CL"}, 3);
    ASSERT_TRUE(waitForLines(coefficients, 1));
    history.reset();
    ASSERT_TRUE(waitForLines(coefficients, 0));
    EXPECT_EQ(coefficients.note().toStdString(), "");
}

TEST_F(ChartModelOf, takesTheColoursOfTheAppearance) {
    coefficients.setColumns(500);
    coefficientsOf({"CL"}, 1);
    ASSERT_TRUE(waitForLines(coefficients, 1));
    Theme::shared().setDark(false);
    EXPECT_EQ(coefficients.lines()[0].color, QColor(0xD8, 0x8A, 0x0A));
    EXPECT_THAT(legend(coefficients, "color"), ElementsAre("#d88a0a"));
    Theme::shared().setDark(true);
    EXPECT_EQ(coefficients.lines()[0].color, QColor(0xF5, 0xA5, 0x24));
}

TEST_F(ChartModelOf, isReadOutWithItsNewestValues) {
    residuals.setColumns(500);
    history.setResiduals({{"P", 117, -3.73}, {"U", 117, -1.5}});
    history.setResidualLabels({"P", "U"});
    ASSERT_TRUE(waitForLines(residuals, 2));
    EXPECT_EQ(residuals.description().toStdString(), "P -3.7300, Iter 117; U -1.5000, Iter 117");
}

} // namespace
} // namespace ostrella
