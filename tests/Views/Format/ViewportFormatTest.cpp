#include "Views/Format/ViewportFormat.h"

#include "Views/Format/ViewportNotice.h"

#include <gtest/gtest.h>

#include <vector>

namespace ostrella {
namespace {

using namespace ViewportFormat;
using Rows = std::vector<CardRowModel>;
using Tone = CardRowModel::Tone;
using Texts = std::vector<std::string>;

RunSummary figures() {
    RunSummary summary;
    summary.elapsedSeconds = 95.44;
    summary.iterations = 1200;
    summary.cells = 4321;
    summary.cl = 0.16872;
    summary.cd = 0.0388;
    return summary;
}

SimulationResult result() {
    SimulationResult value;
    value.surfaceField = SurfaceField();
    value.surfaceField->scalarName = "Pressure_Coefficient";
    value.surfaceField->scalarMin = -1.5F;
    value.surfaceField->scalarMax = 1;
    value.streamlines = Streamlines();
    value.streamlines->magnitudeMin = 3;
    value.streamlines->magnitudeMax = 62.5F;
    return value;
}

TEST(Legend, TicksFromTheTopDownwards) {
    EXPECT_EQ(legendTicks(0, 10, 1), std::vector<float>{10});
    EXPECT_EQ(legendTicks(0, 10, -3), std::vector<float>{10});
    EXPECT_EQ(legendTicks(0, 10, 3), (std::vector<float>{10, 5, 0}));
    EXPECT_EQ(legendTicks(-1, 1, 5), (std::vector<float>{1, 0.5F, 0, -0.5F, -1}));
}

TEST(Legend, LabelsHaveTheDecimalsOfTheirSpan) {
    EXPECT_EQ(legendTickLabels(0, 2000, 3), (Texts{"2000", "1000", "0"}));
    EXPECT_EQ(legendTickLabels(0, 1000, 2), (Texts{"1000", "0"}));
    EXPECT_EQ(legendTickLabels(0, 999, 2), (Texts{"999.0", "0.0"}));
    EXPECT_EQ(legendTickLabels(0, 10, 2), (Texts{"10.0", "0.0"}));
    EXPECT_EQ(legendTickLabels(0, 9, 2), (Texts{"9.00", "0.00"}));
    EXPECT_EQ(legendTickLabels(5, 5, 2), (Texts{"5.00", "5.00"}));
}

TEST(Legend, LabelsAcrossZeroHaveSigns) {
    EXPECT_EQ(legendTickLabels(-1, 1, 3), (Texts{"+1.00", "+0.00", "-1.00"}));
    EXPECT_EQ(legendTickLabels(-1, 0, 2), (Texts{"0.00", "-1.00"}));
    EXPECT_EQ(legendTickLabels(-20, 20, 2), (Texts{"+20.0", "-20.0"}));
}

TEST(Legend, AShortBarHasFewerTicks) {
    EXPECT_EQ(legendTickCount(139), 3);
    EXPECT_EQ(legendTickCount(140), 5);
    EXPECT_EQ(legendTickCount(72), 3);
    EXPECT_EQ(legendTickCount(220), 5);
}

TEST(Legend, IsThatOfTheSurfaceOrElseOfTheStreamlines) {
    const Legend surface{-1.5F, 1, "Cp", ""};
    const Legend speed{3, 62.5F, "|V|", "m/s"};
    EXPECT_EQ(legend(true, true, result()), surface);
    EXPECT_EQ(legend(true, false, result()), surface);
    EXPECT_EQ(legend(false, true, result()), speed);
    EXPECT_FALSE(legend(false, false, result()));
    EXPECT_FALSE(legend(true, true, std::nullopt));
    SimulationResult withoutSurface = result();
    withoutSurface.surfaceField.reset();
    EXPECT_EQ(legend(true, true, withoutSurface), speed);
    EXPECT_FALSE(legend(true, true, SimulationResult()));
}

TEST(Legend, LabelOfAScalar) {
    EXPECT_EQ(legendLabel("Pressure_Coefficient"), "Cp");
    EXPECT_EQ(legendLabel("Pressure"), "p");
    EXPECT_EQ(legendLabel("Temperature"), "T");
    EXPECT_EQ(legendLabel("Mach"), "Mach");
}

TEST(Legend, AsItIsReadOut) {
    EXPECT_EQ(legendName({0, 1, "Cp", ""}), "Cp legend");
    EXPECT_EQ(legendValue({-1.5F, 1, "Cp", ""}), "[-1.50, 1.00]");
    EXPECT_EQ(legendValue({3, 62.5F, "|V|", "m/s"}), "[3.00, 62.50] m/s");
}

TEST(Card, CollapsedToOneLine) {
    EXPECT_EQ(collapsedSummary({{"File", "a"}, {"Cells", "1"}, {"CL", "0.1"}, {"CD", "0.2"}}),
        "CL 0.1 · CD 0.2");
    EXPECT_EQ(collapsedSummary({{"File", "a.stl"}, {"Facets", "12"}}), "File a.stl");
    EXPECT_EQ(collapsedSummary({{"File", "a"}, {"CL / CD", "2"}}), "File a");
    EXPECT_EQ(collapsedSummary({}), std::nullopt);
}

TEST(Card, HeadThatCollapses) {
    EXPECT_EQ(collapseHelp(true), "Show details");
    EXPECT_EQ(collapseHelp(false), "Collapse to one line");
    EXPECT_EQ(collapseValue(true), "Collapsed");
    EXPECT_EQ(collapseValue(false), "Expanded");
    EXPECT_EQ(collapseSymbol(true), "chevron.down");
    EXPECT_EQ(collapseSymbol(false), "chevron.up");
}

TEST(Card, ErrorTitle) {
    EXPECT_EQ(errorTitle("Meshing"), "MESHING FAILED");
    EXPECT_EQ(errorTitle(" solver\t"), "SOLVER FAILED");
    EXPECT_EQ(errorTitle("  "), "RUN FAILED");
    EXPECT_EQ(errorTitle(""), "RUN FAILED");
    EXPECT_EQ(errorTitle("größe"), "GRÖSSE FAILED");
}

TEST(Card, WaterTightRow) {
    EXPECT_EQ(waterTightRow(0), (CardRowModel{"Water-tight", "✓", Tone::success}));
    EXPECT_EQ(waterTightRow(-1), (CardRowModel{"Water-tight", "✓", Tone::success}));
    EXPECT_EQ(waterTightRow(1), (CardRowModel{"Water-tight", "1 open edge", Tone::warning}));
    EXPECT_EQ(
        waterTightRow(1000), (CardRowModel{"Water-tight", "1 000 open edges", Tone::warning}));
}

TEST(Card, SolverRowsStayWhereAValueIsMissing) {
    EXPECT_EQ(solverRows(-3.728, 0.16872, -0.00001, 0.4786),
        (Rows{{"rms[P]", "-3.73"}, {"CL", "0.1687"}, {"CD", "0.0000"}, {"dt", "0.479 s"}}));
    EXPECT_EQ(
        solverRows({}, {}, {}, {}), (Rows{{"rms[P]", "·"}, {"CL", "·"}, {"CD", "·"}, {"dt", "·"}}));
}

TEST(Card, ResultRows) {
    EXPECT_EQ(resultRows({"wing.stl", 315292, figures(), std::pair{-1.5F, 1.0F}, 1234}),
        (Rows{{"File", "wing.stl"}, {"Cells", "315 292"}, {"Solve", "95.4 s · 1200 iter"},
            {"CL", "0.1687"}, {"CD", "0.0388"}, {"CL / CD", "4.35"}, {"Cp", "[-1.50, 1.00]"},
            {"Streams", "1 234"}}));
}

TEST(Card, ResultRowsLeaveOutWhatHasNoValue) {
    EXPECT_EQ(resultRows({}), Rows{});
    RunSummary summary;
    summary.cells = 4321;
    EXPECT_EQ(
        resultRows({{}, {}, summary, {}, {}}), (Rows{{"Cells", "4 321"}, {"Solve", "0.0 s"}}));
    EXPECT_EQ(resultRows({{}, 5, summary, {}, 0}),
        (Rows{{"Cells", "5"}, {"Solve", "0.0 s"}, {"Streams", "0"}}));
    summary.cl = 0.5;
    summary.cd = 0;
    EXPECT_EQ(resultRows({{}, 5, summary, {}, {}}),
        (Rows{{"Cells", "5"}, {"Solve", "0.0 s"}, {"CL", "0.5000"}, {"CD", "0.0000"}}));
    summary.cl = -123.4;
    summary.cd = 10;
    EXPECT_EQ(resultRows({{}, {}, summary, {}, {}}).back(), (CardRowModel{"CL / CD", "-12.3"}));
}

TEST(Card, GeometryRows) {
    EXPECT_EQ(geometryRows({"wing.stl", 19516, "1.00 × 0.12 × 2.00 m", {0, 12.54, -90}, 2}),
        (Rows{{"File", "wing.stl"}, {"Facets", "19 516"}, {"Bounding box", "1.00 × 0.12 × 2.00 m"},
            {"Orientation", "0 · 12.5 · -90°"}, {"Water-tight", "2 open edges", Tone::warning}}));
    EXPECT_EQ(geometryRows({{}, 12, {}, {0, 0, 0}, {}}),
        (Rows{{"Facets", "12"}, {"Orientation", "0 · 0 · 0°"}}));
}

TEST(Card, WhichOneStandsAtTheTopLeft) {
    EXPECT_EQ(topLeftCard(RunPhase::idle(), false, false), TopLeftCard::none);
    EXPECT_EQ(topLeftCard(RunPhase::idle(), false, true), TopLeftCard::geometry);
    EXPECT_EQ(topLeftCard(RunPhase::cancelled(), false, true), TopLeftCard::geometry);
    EXPECT_EQ(topLeftCard(RunPhase::finished(true), true, true), TopLeftCard::result);
    EXPECT_EQ(topLeftCard(RunPhase::idle(), true, false), TopLeftCard::result);
    for (const RunPhase& phase :
        {RunPhase::meshing(), RunPhase::solving(), RunPhase::postProcessing()}) {
        EXPECT_EQ(topLeftCard(phase, true, true), TopLeftCard::solver);
    }
    EXPECT_EQ(topLeftCard(RunPhase::failed("mesh", "x"), true, true), TopLeftCard::error);
}

TEST(Card, TitlesAndWidths) {
    EXPECT_EQ(cardTitle(TopLeftCard::solver), "Solver");
    EXPECT_EQ(cardTitle(TopLeftCard::result), "Result");
    EXPECT_EQ(cardTitle(TopLeftCard::geometry), "Geometry");
    EXPECT_EQ(cardTitle(TopLeftCard::error), "");
    EXPECT_EQ(cardWidth(TopLeftCard::solver), 240);
    EXPECT_EQ(cardWidth(TopLeftCard::result), 280);
    EXPECT_EQ(cardWidth(TopLeftCard::geometry), 320);
}

TEST(Card, TonesHaveNames) {
    EXPECT_EQ(rawValue(Tone::normal), "normal");
    EXPECT_EQ(rawValue(Tone::success), "success");
    EXPECT_EQ(rawValue(Tone::warning), "warning");
}

TEST(ViewControl, HelpOfTheViews) {
    const PlatformWords& mac = PlatformWords::mac();
    const PlatformWords& other = PlatformWords::freedesktop();
    EXPECT_EQ(viewHelp(ViewPreset::iso, mac), "Iso view · ⌥⌘1");
    EXPECT_EQ(viewHelp(ViewPreset::front, mac), "Front view · ⌥⌘2");
    EXPECT_EQ(viewHelp(ViewPreset::side, mac), "Side view · ⌥⌘3");
    EXPECT_EQ(viewHelp(ViewPreset::top, mac), "Top view · ⌥⌘4");
    EXPECT_EQ(viewHelp(ViewPreset::top, other), "Top view · Ctrl+Alt+4");
    EXPECT_EQ(fitHelp(mac), "Fit to view · ⌥⌘0");
    EXPECT_EQ(fitHelp(other), "Fit to view · Ctrl+Alt+0");
    EXPECT_EQ(viewLabel(ViewPreset::side), "Side view");
}

TEST(ViewControl, HelpOfTheFlowAnimation) {
    EXPECT_EQ(animateFlowHelp(true, true), "Stop the flow animation");
    EXPECT_EQ(animateFlowHelp(true, false), "Animate the flow along the streamlines");
    EXPECT_EQ(animateFlowHelp(false, true), "Turn on Streams to animate the flow");
    EXPECT_EQ(animateFlowHelp(false, false), "Turn on Streams to animate the flow");
}

TEST(Viewport, TheWelcomeCardStandsWhereThereIsNothingToShow) {
    EXPECT_TRUE(showsWelcome(false, false, RunPhase::idle(), false));
    EXPECT_TRUE(showsWelcome(false, false, RunPhase::cancelled(), false));
    EXPECT_FALSE(showsWelcome(true, false, RunPhase::idle(), false));
    EXPECT_FALSE(showsWelcome(false, true, RunPhase::idle(), false));
    EXPECT_FALSE(showsWelcome(false, false, RunPhase::solving(), false));
    EXPECT_FALSE(showsWelcome(false, false, RunPhase::idle(), true));
}

TEST(Viewport, AModelCanBeTurnedWhileNothingElseGoesOn) {
    EXPECT_TRUE(canOrient(true, RunPhase::finished(true), false));
    EXPECT_FALSE(canOrient(false, RunPhase::idle(), false));
    EXPECT_FALSE(canOrient(true, RunPhase::meshing(), false));
    EXPECT_FALSE(canOrient(true, RunPhase::idle(), true));
}

TEST(ViewportNotice, ANewerOneOutlivesTheEndOfTheOneBefore) {
    ViewportNotice notice;
    EXPECT_FALSE(notice.current());
    const auto first = notice.show("one");
    const auto second = notice.show("two");
    EXPECT_FALSE(notice.expire(first));
    ASSERT_TRUE(notice.current());
    EXPECT_EQ(notice.current()->text, "two");
    EXPECT_TRUE(notice.expire(second));
    EXPECT_FALSE(notice.current());
    EXPECT_FALSE(notice.expire(second));
}

} // namespace
} // namespace ostrella
