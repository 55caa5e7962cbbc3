#include "Views/Viewport/LegendModel.h"

#include "OverlayBench.h"

#include <QColor>

namespace ostrella::test {
namespace {

class LegendModelTest : public OverlayBench {
protected:
    LegendModelTest() {
        app.renderSettings.setColormapEnabled(true);
        app.renderSettings.setStreamlinesEnabled(true);
    }
    void showField(const std::string& name) {
        SimulationResult shown = result();
        shown.surfaceField->scalarName = name;
        app.parameters.setLastRunResult(shown);
        legend.refresh();
    }
    Texts ticks() const {
        Texts ticks;
        for (const QString& tick : legend.ticks()) {
            ticks.push_back(tick.toStdString());
        }
        return ticks;
    }

    LegendModel legend{shared()};
};

TEST_F(LegendModelTest, WithoutAResultNone) {
    EXPECT_FALSE(legend.isShown());
    EXPECT_TRUE(legend.label().isEmpty());
    EXPECT_TRUE(legend.ticks().isEmpty());
}

TEST_F(LegendModelTest, OfTheSurface) {
    app.parameters.setLastRunResult(result());
    legend.refresh();
    EXPECT_TRUE(legend.isShown());
    EXPECT_EQ(legend.label().toStdString(), "Cp");
    EXPECT_TRUE(legend.unit().isEmpty());
    EXPECT_EQ(legend.name().toStdString(), "Cp legend");
    EXPECT_EQ(legend.value().toStdString(), "[-1.50, 1.00]");
    // A quarter of the range of 2.5 between two ticks.
    EXPECT_EQ(ticks(), (Texts{"+1.00", "+0.38", "-0.25", "-0.88", "-1.50"}));
}

TEST_F(LegendModelTest, NamesOfTheSurfacesQuantities) {
    showField("Pressure");
    EXPECT_EQ(legend.label().toStdString(), "p");
    showField("Temperature");
    EXPECT_EQ(legend.label().toStdString(), "T");
    showField("Y_Plus");
    EXPECT_EQ(legend.label().toStdString(), "Y_Plus");
}

TEST_F(LegendModelTest, OfTheStreamlinesWhereTheSurfaceIsNotColoured) {
    app.parameters.setLastRunResult(result());
    app.renderSettings.setColormapEnabled(false);
    legend.refresh();
    EXPECT_EQ(legend.label().toStdString(), "|V|");
    EXPECT_EQ(legend.unit().toStdString(), "m/s");
    EXPECT_EQ(legend.value().toStdString(), "[10.00, 30.00] m/s");
    app.renderSettings.setStreamlinesEnabled(false);
    int changes = 0;
    QObject::connect(&legend, &LegendModel::changed, [&changes] { ++changes; });
    legend.refresh();
    EXPECT_FALSE(legend.isShown());
    EXPECT_EQ(legend.label().toStdString(), "|V|") << "while it goes";
    legend.refresh();
    EXPECT_EQ(changes, 1);
    app.renderSettings.setStreamlinesEnabled(true);
    legend.refresh();
    EXPECT_TRUE(legend.isShown());
    EXPECT_EQ(changes, 2);
}

TEST_F(LegendModelTest, AShortBarHasThreeTicks) {
    app.parameters.setLastRunResult(result());
    legend.refresh();
    int changes = 0;
    QObject::connect(&legend, &LegendModel::changed, [&changes] { ++changes; });
    legend.setBarHeight(140);
    EXPECT_EQ(ticks().size(), 5U);
    legend.setBarHeight(139);
    EXPECT_EQ(ticks(), (Texts{"+1.00", "-0.25", "-1.50"}));
    legend.setBarHeight(139);
    legend.refresh();
    EXPECT_EQ(changes, 2);
}

TEST_F(LegendModelTest, TheBarsColoursFromTopToFoot) {
    const QVariantList stops = legend.stops();
    ASSERT_EQ(stops.size(), 7);
    const std::vector<double> places{0, 0.2, 0.35, 0.5, 0.65, 0.8, 1};
    for (int i = 0; i < 7; ++i) {
        EXPECT_NEAR(stops[i].toMap().value(QStringLiteral("location")).toDouble(), places[i], 1e-6);
    }
    const auto top = stops.front().toMap().value(QStringLiteral("color")).value<QColor>();
    EXPECT_NEAR(top.redF(), 0.48, 1e-4);
    EXPECT_NEAR(top.greenF(), 0.016, 1e-4);
    EXPECT_NEAR(top.blueF(), 0.012, 1e-4);
    const auto foot = stops.back().toMap().value(QStringLiteral("color")).value<QColor>();
    EXPECT_NEAR(foot.redF(), 0.19, 1e-4);
    EXPECT_NEAR(foot.blueF(), 0.235, 1e-4);
}

} // namespace
} // namespace ostrella::test
