#include "Views/Sidebar/SidebarModel.h"

#include "support/ViewBench.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ostrella {
namespace {

using test::Probe;

class SidebarModelTest : public testing::Test, protected test::ViewBench {
protected:
    SidebarModelTest() {
        QObject::connect(&sidebar, &SidebarModel::changed, [this] { ++changes; });
    }

    /// A fixed text.
    std::string text(const char* name) const {
        return sidebar.texts().value(QString::fromLatin1(name)).toString().toStdString();
    }
    std::string text(const char* name, const char* part) const {
        const QVariantMap map = sidebar.texts().value(QString::fromLatin1(name)).toMap();
        return map.value(QString::fromLatin1(part)).toString().toStdString();
    }

    SidebarModel sidebar{shared(), PlatformWords::freedesktop()};
    int changes = 0;
};

TEST_F(SidebarModelTest, WithoutAModel) {
    EXPECT_FALSE(sidebar.hasMesh());
    EXPECT_EQ(sidebar.geometryText().toStdString(), "No STL loaded");
    EXPECT_TRUE(sidebar.fileName().isEmpty());
    EXPECT_TRUE(sidebar.facets().isEmpty());
    EXPECT_TRUE(sidebar.boundingBox().isEmpty());
    EXPECT_TRUE(sidebar.canLoad());
    EXPECT_FALSE(sidebar.canOrient());
}

TEST_F(SidebarModelTest, WhileAFileLoads) {
    app.parameters.setLoadingFileName("wing.stl");
    EXPECT_EQ(sidebar.geometryText().toStdString(), "Loading wing.stl…");
    EXPECT_FALSE(sidebar.canLoad());
    placeModel();
    EXPECT_TRUE(sidebar.geometryText().isEmpty());
    EXPECT_FALSE(sidebar.canOrient());
}

TEST_F(SidebarModelTest, RowsOfAModel) {
    placeModel();
    turn();
    EXPECT_TRUE(sidebar.hasMesh());
    EXPECT_EQ(sidebar.fileName().toStdString(), "wing.stl");
    EXPECT_EQ(sidebar.facets().toStdString(), "1");
    EXPECT_EQ(sidebar.boundingBox().toStdString(), "1.00 × 2.00 × 0.00 m");
    EXPECT_TRUE(sidebar.canOrient());
}

TEST_F(SidebarModelTest, TheBoundingBoxIsOfTheTurnedModel) {
    placeModel();
    app.parameters.setRotationZ(90);
    EXPECT_TRUE(test::waitUntil(
        [this] { return sidebar.boundingBox().toStdString() == "2.00 × 1.00 × 0.00 m"; }));
    app.parameters.setMesh(std::nullopt);
    turn();
    EXPECT_TRUE(sidebar.boundingBox().isEmpty());
}

TEST_F(SidebarModelTest, ARunTakesTheControlsAway) {
    placeModel();
    for (const RunPhase& phase :
        {RunPhase::meshing(), RunPhase::solving(), RunPhase::postProcessing()}) {
        Probe::setPhase(app.simulation, phase);
        EXPECT_FALSE(sidebar.isEnabled());
        EXPECT_FALSE(sidebar.canLoad());
        EXPECT_FALSE(sidebar.canOrient());
    }
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    EXPECT_TRUE(sidebar.isEnabled());
    EXPECT_TRUE(sidebar.canLoad());
    EXPECT_TRUE(sidebar.canOrient());
}

TEST_F(SidebarModelTest, NotifiesOnceATurn) {
    placeModel();
    sidebar.setVelocity(20);
    sidebar.setAlpha(3);
    EXPECT_EQ(changes, 0);
    turn();
    EXPECT_EQ(changes, 1);
    turn();
    EXPECT_EQ(changes, 1);
}

TEST_F(SidebarModelTest, TypedValuesAreBroughtIntoTheirRange) {
    sidebar.setVelocity(600);
    EXPECT_EQ(app.parameters.velocity(), 500);
    sidebar.setAlpha(-91);
    EXPECT_EQ(app.parameters.alpha(), -90);
    sidebar.setBeta(91);
    EXPECT_EQ(app.parameters.beta(), 90);
    sidebar.setDensity(0);
    EXPECT_EQ(app.parameters.density(), 0.01);
    sidebar.setRotationX(181);
    EXPECT_EQ(app.parameters.rotationX(), 180);
    sidebar.setRotationY(-181);
    EXPECT_EQ(app.parameters.rotationY(), -180);
    sidebar.setRotationZ(std::nan(""));
    EXPECT_EQ(app.parameters.rotationZ(), -180);
}

TEST_F(SidebarModelTest, AlsoThoseThatSomebodyElseSets) {
    app.parameters.setVelocity(std::numeric_limits<double>::infinity());
    EXPECT_EQ(app.parameters.velocity(), 0.01);
    app.parameters.setDensity(20);
    EXPECT_EQ(app.parameters.density(), 10);
    app.parameters.setRotationY(270);
    EXPECT_EQ(sidebar.rotationY(), 180);
}

TEST_F(SidebarModelTest, NumberFields) {
    const QVariantMap velocity = sidebar.velocityField();
    EXPECT_EQ(velocity.value(QStringLiteral("label")).toString(), QStringLiteral("Velocity"));
    EXPECT_EQ(velocity.value(QStringLiteral("unit")).toString(), QStringLiteral("m/s"));
    EXPECT_EQ(velocity.value(QStringLiteral("from")).toDouble(), 0.01);
    EXPECT_EQ(velocity.value(QStringLiteral("to")).toDouble(), 500);
    EXPECT_EQ(velocity.value(QStringLiteral("fewestDigits")).toInt(), 1);
    EXPECT_EQ(velocity.value(QStringLiteral("mostDigits")).toInt(), 4);
    const QVariantMap rotation = sidebar.rotationYField();
    EXPECT_EQ(rotation.value(QStringLiteral("label")).toString(), QStringLiteral("Y rotation"));
    EXPECT_EQ(rotation.value(QStringLiteral("unit")).toString(), QStringLiteral("°"));
    EXPECT_EQ(rotation.value(QStringLiteral("from")).toDouble(), -180);
    EXPECT_EQ(rotation.value(QStringLiteral("to")).toDouble(), 180);
    EXPECT_EQ(rotation.value(QStringLiteral("mostDigits")).toInt(), 2);
}

TEST_F(SidebarModelTest, FreeStreamFieldsNameTheirValuesAndUnits) {
    const auto shown = [](const QVariantMap& field) {
        return (field.value(QStringLiteral("label")).toString() + QStringLiteral(" ") +
                field.value(QStringLiteral("unit")).toString())
            .toStdString();
    };
    EXPECT_EQ(shown(sidebar.alphaField()), "Angle of attack °");
    EXPECT_EQ(shown(sidebar.betaField()), "Sideslip °");
    EXPECT_EQ(shown(sidebar.densityField()), "Density kg/m³");
    EXPECT_EQ(shown(sidebar.rotationXField()), "X rotation °");
    EXPECT_EQ(shown(sidebar.rotationZField()), "Z rotation °");
}

TEST_F(SidebarModelTest, ResetGoesOnceNothingIsTurned) {
    EXPECT_FALSE(sidebar.isRotated());
    app.parameters.setRotationZ(5);
    EXPECT_TRUE(sidebar.isRotated());
    app.parameters.setRotationX(-5);
    sidebar.resetOrientation();
    EXPECT_FALSE(sidebar.isRotated());
    EXPECT_EQ(app.parameters.rotationX(), 0);
}

TEST_F(SidebarModelTest, OrientMode) {
    EXPECT_EQ(sidebar.orientButtonText().toStdString(), "Orient…");
    sidebar.toggleOrientMode();
    EXPECT_TRUE(app.renderSettings.orientMode());
    EXPECT_EQ(sidebar.orientButtonText().toStdString(), "Done");
    sidebar.toggleOrientMode();
    EXPECT_FALSE(app.renderSettings.orientMode());
}

TEST_F(SidebarModelTest, LoadAsksForTheFileDialog) {
    int requests = 0;
    const auto token = app.notifications.observe(
        Notifications::openSTLRequested, [&requests](const std::any&) { ++requests; });
    sidebar.load();
    EXPECT_EQ(requests, 1);
}

TEST_F(SidebarModelTest, Regime) {
    EXPECT_EQ(sidebar.regimes(), (QStringList{QStringLiteral("Incompressible (M < 0.3)"),
                                     QStringLiteral("Compressible (transonic+)")}));
    EXPECT_EQ(sidebar.regime(), 0);
    sidebar.setRegime(1);
    EXPECT_EQ(app.parameters.regime(), FlowRegime::compressible);
    EXPECT_EQ(sidebar.regime(), 1);
    sidebar.setRegime(2);
    sidebar.setRegime(-1);
    EXPECT_EQ(app.parameters.regime(), FlowRegime::compressible);
}

TEST_F(SidebarModelTest, TheSwitchesBelongToOneModelOfTurbulence) {
    EXPECT_EQ(sidebar.turbulenceModels(),
        (QStringList{QStringLiteral("Spalart-Allmaras (RANS)"), QStringLiteral("k-ω SST (RANS)"),
            QStringLiteral("Laminar")}));
    EXPECT_TRUE(sidebar.showsSwitches());
    sidebar.setTurbulenceModel(1);
    EXPECT_EQ(app.parameters.turbulenceModel(), TurbulenceModel::sst);
    EXPECT_FALSE(sidebar.showsSwitches());
    sidebar.setTurbulenceModel(2);
    EXPECT_EQ(app.parameters.turbulenceModel(), TurbulenceModel::laminar);
    EXPECT_FALSE(sidebar.showsSwitches());
    sidebar.setTurbulenceModel(7);
    EXPECT_EQ(sidebar.turbulenceModel(), 2);
}

TEST_F(SidebarModelTest, Switches) {
    sidebar.setRotationCorrection(true);
    sidebar.setTransition(true);
    EXPECT_TRUE(app.parameters.saRotationCorrection());
    EXPECT_TRUE(app.parameters.saTransition());
    EXPECT_EQ(text("rotationCorrection", "title"), "Rotation correction");
    EXPECT_EQ(text("rotationCorrection", "suffix"), "SA-R");
    EXPECT_EQ(text("rotationCorrection", "label"), "Rotation correction (SA-R)");
    EXPECT_EQ(text("rotationCorrection", "help"),
        "Spalart-Shur correction for swirling or rotating flows");
    EXPECT_EQ(text("transition", "title"), "Transition");
    EXPECT_EQ(text("transition", "suffix"), "BCM");
    EXPECT_EQ(text("transition", "label"), "Transition (BCM)");
    EXPECT_EQ(
        text("transition", "help"), "Bas-Cakmakcioglu algebraic laminar to turbulent transition");
}

TEST_F(SidebarModelTest, FixedTexts) {
    EXPECT_EQ(text("geometry"), "Geometry");
    EXPECT_EQ(text("orientation"), "Orientation");
    EXPECT_EQ(text("freeStream"), "Free Stream");
    EXPECT_EQ(text("turbulence"), "Turbulence");
    EXPECT_EQ(text("file"), "File");
    EXPECT_EQ(text("facets"), "Facets");
    EXPECT_EQ(text("boundingBox"), "Bounding box");
    EXPECT_EQ(text("load"), "Load STL…");
    EXPECT_EQ(text("loadHelp"), "Open an STL file (Ctrl+O)");
    EXPECT_EQ(text("angles"), "X · Y · Z");
    EXPECT_EQ(text("anglesSuffix"), "°");
    EXPECT_EQ(text("orientHint"), "Or click the model to rotate it in the viewport.");
    EXPECT_EQ(text("reset"), "Reset");
    EXPECT_EQ(text("resetHelp"), "Reset orientation to 0 · 0 · 0");
    EXPECT_EQ(text("resetName"), "Reset orientation");
    EXPECT_EQ(text("resetMenuItem"), "Reset Orientation");
    EXPECT_EQ(text("regime"), "Regime");
    EXPECT_EQ(text("model"), "Model");
    EXPECT_EQ(text("modelHelp"), "Turbulence model");
}

} // namespace
} // namespace ostrella
