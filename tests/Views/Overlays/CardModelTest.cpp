#include "Views/Viewport/CardModel.h"

#include "OverlayBench.h"

namespace ostrella::test {
namespace {

class CardModelTest : public OverlayBench {
protected:
    std::string kind() {
        turn();
        return card.kind().toStdString();
    }
    /// "label: value" of each row, with its tone where that is not the normal one.
    Texts rows() {
        turn();
        Texts rows;
        for (const QVariant& row : card.rows()) {
            const std::string tone = string(row, "tone");
            rows.push_back(string(row, "label") + ": " + string(row, "value") +
                           (tone == "normal" ? "" : " (" + tone + ")"));
        }
        return rows;
    }
    /// A value of each quantity at this iteration.
    void setHistory(std::int64_t iteration, double p, double cl, double cd) {
        app.historyStore.setCoefficientLabels({"CL", "CD"});
        app.historyStore.setCoefficients({{"CL", iteration, cl}, {"CD", iteration, cd}});
        app.historyStore.setResiduals({{"P", iteration, p}});
    }

    CardModel card{shared(), preferences, clock};
};

TEST_F(CardModelTest, NothingToTellNoCard) {
    EXPECT_EQ(kind(), "none");
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(card.title().isEmpty());
    EXPECT_TRUE(card.summary().isEmpty());
}

TEST_F(CardModelTest, AModelHasItsGeometry) {
    placeModel();
    app.parameters.setRotationZ(90);
    app.parameters.setOpenEdgeCount(3);
    ASSERT_TRUE(waitUntil([this] { return rows().size() == 5; }));
    EXPECT_EQ(kind(), "geometry");
    EXPECT_EQ(card.title().toStdString(), "Geometry");
    EXPECT_EQ(card.width(), 320);
    EXPECT_TRUE(waitUntil([this] {
        return rows() == Texts{"File: wing.stl", "Facets: 1", "Bounding box: 2.00 × 1.00 × 0.00 m",
                             "Orientation: 0 · 0 · 90°", "Water-tight: 3 open edges (warning)"};
    }));
}

TEST_F(CardModelTest, WhatIsNotKnownYetOfAModelIsLeftOut) {
    app.parameters.setMesh(TriangleMesh(std::vector<Vec3>{}, std::vector<Vec3>{}));
    turn();
    const Texts all = rows();
    EXPECT_EQ(all.front(), "Facets: 0");
    EXPECT_EQ(all.back(), "Orientation: 0 · 0 · 0°");
}

TEST_F(CardModelTest, AWaterTightModelIsTicked) {
    placeModel();
    app.parameters.setOpenEdgeCount(0);
    EXPECT_EQ(rows().back(), "Water-tight: ✓ (success)");
}

TEST_F(CardModelTest, ARunShowsTheSolverWithADotForWhatIsMissing) {
    placeModel();
    Probe::setPhase(app.simulation, RunPhase::meshing());
    EXPECT_EQ(kind(), "solver");
    EXPECT_EQ(card.title().toStdString(), "Solver");
    EXPECT_EQ(card.width(), 240);
    EXPECT_EQ(rows(), (Texts{"rms[P]: ·", "CL: ·", "CD: ·", "dt: ·"}));
}

TEST_F(CardModelTest, TheSolverCardCountsAlong) {
    Probe::setMaxIterations(app.simulation, 250);
    Probe::setPhase(app.simulation, RunPhase::solving());
    setHistory(0, -1, 0.1, 0.2);
    for (std::int64_t i = 1; i <= 10; ++i) {
        clock.advance(0.125);
        setHistory(i, -2.345, 0.43219, -0.0128);
    }
    EXPECT_EQ(rows(), (Texts{"rms[P]: -2.35", "CL: 0.4322", "CD: -0.0128", "dt: 0.125 s"}));
    EXPECT_NE(card.liveLine().toStdString().find("11"), std::string::npos);
    EXPECT_NE(card.liveLine().toStdString().find("250"), std::string::npos);
    placeModel();
    Probe::setPhase(app.simulation, RunPhase::finished(true));
    EXPECT_EQ(kind(), "geometry");
    EXPECT_TRUE(card.liveLine().isEmpty());
}

TEST_F(CardModelTest, ANewRunMeasuresItsOwnRate) {
    Probe::setPhase(app.simulation, RunPhase::solving());
    setHistory(0, -1, 0, 0);
    clock.advance(1);
    setHistory(1, -1, 0, 0);
    EXPECT_NE(rows().back(), "dt: ·");
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    Probe::setPhase(app.simulation, RunPhase::meshing());
    EXPECT_EQ(rows().back(), "dt: ·");
}

TEST_F(CardModelTest, AResultTellsItsFiguresAndCountsLines) {
    placeModel();
    app.parameters.setLastRunResult(result());
    Probe::setMeshCells(app.simulation, 1234567);
    RunSummary summary;
    summary.elapsedSeconds = 12.34;
    summary.iterations = 250;
    summary.cl = 0.5;
    summary.cd = 0.02;
    Probe::setSummary(app.simulation, summary);
    EXPECT_EQ(kind(), "result");
    EXPECT_EQ(card.width(), 280);
    EXPECT_EQ(rows(),
        (Texts{"File: wing.stl", "Cells: 1 234 567", "Solve: 12.3 s · 250 iter", "CL: 0.5000",
            "CD: 0.0200", "CL / CD: 25.0", "Cp: [-1.50, 1.00]", "Streams: 2"}));
    EXPECT_EQ(card.summary().toStdString(), "CL 0.5000 · CD 0.0200");
}

TEST_F(CardModelTest, AResultWithoutFieldsHasNoRowsOfThem) {
    app.parameters.setLastRunResult(result(false, false));
    EXPECT_EQ(kind(), "result");
    EXPECT_TRUE(rows().empty());
}

TEST_F(CardModelTest, AFailureComesBeforeAnEarlierResult) {
    placeModel();
    app.parameters.setLastRunResult(result());
    Probe::setPhase(app.simulation, RunPhase::failed("Meshing", "gmsh gave up."));
    EXPECT_EQ(kind(), "error");
    EXPECT_EQ(card.errorTitle().toStdString(), "MESHING FAILED");
    EXPECT_EQ(card.message().toStdString(), "gmsh gave up.");
    Probe::setPhase(app.simulation, RunPhase::failed("  ", ""));
    turn();
    EXPECT_EQ(card.errorTitle().toStdString(), "RUN FAILED");
    EXPECT_TRUE(card.message().isEmpty());
    Probe::setPhase(app.simulation, RunPhase::idle());
    EXPECT_EQ(kind(), "result");
}

TEST_F(CardModelTest, ACardThatGoesStaysAsItWas) {
    Probe::setMaxIterations(app.simulation, 250);
    Probe::setPhase(app.simulation, RunPhase::solving());
    setHistory(11, -2.345, 0.43219, -0.0128);
    const Texts before = rows();
    const QString line = card.liveLine();
    EXPECT_EQ(line.toStdString(), "Iter 12 / 250");
    Probe::setPhase(app.simulation, RunPhase::failed("solver", "It diverged."));
    app.historyStore.reset();
    EXPECT_EQ(kind(), "error");
    EXPECT_EQ(card.title().toStdString(), "Solver");
    EXPECT_EQ(card.width(), 240);
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(card.liveLine(), line);
    Probe::setPhase(app.simulation, RunPhase::meshing());
    EXPECT_EQ(kind(), "solver");
    EXPECT_EQ(card.errorTitle().toStdString(), "SOLVER FAILED");
    EXPECT_EQ(card.message().toStdString(), "It diverged.");
    EXPECT_EQ(card.liveLine().toStdString(), "Meshing…");
}

TEST_F(CardModelTest, CollapsingIsSharedAndOutlivesTheCard) {
    EXPECT_FALSE(card.isCollapsed());
    EXPECT_EQ(card.collapseHelp().toStdString(), "Collapse to one line");
    EXPECT_EQ(CardModel::collapseValue(false).toStdString(), "Expanded");
    EXPECT_EQ(card.collapseSymbol().toStdString(), "chevron.up");
    int changes = 0;
    QObject::connect(&card, &CardModel::changed, [&changes] { ++changes; });
    card.setCollapsed(true);
    card.setCollapsed(true);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(card.collapseHelp().toStdString(), "Show details");
    EXPECT_EQ(CardModel::collapseValue(true).toStdString(), "Collapsed");
    EXPECT_EQ(card.collapseSymbol().toStdString(), "chevron.down");
    EXPECT_EQ(preferences.value("viewport.cardsCollapsed"), PreferenceValue(true));
    EXPECT_TRUE(CardModel(shared(), preferences, clock).isCollapsed());
}

TEST_F(CardModelTest, APreferenceOfAnotherKindCountsAsNone) {
    preferences.set("viewport.cardsCollapsed", std::string("yes"));
    EXPECT_FALSE(CardModel(shared(), preferences, clock).isCollapsed());
}

TEST_F(CardModelTest, TellsOfManyChangesOnceATurn) {
    turn();
    int changes = 0;
    QObject::connect(&card, &CardModel::changed, [&changes] { ++changes; });
    for (int i = 0; i < 50; ++i) {
        app.parameters.setOpenEdgeCount(i);
        setHistory(i, -1, 0, 0);
    }
    EXPECT_EQ(changes, 0);
    turn();
    EXPECT_EQ(changes, 1);
}

TEST_F(CardModelTest, TheErrorCardAsksForTheLogOfErrors) {
    std::vector<LogStore::Level> asked;
    const auto token = app.notifications.observe(
        Notifications::showLogRequested, [&asked](const std::any& object) {
            asked.push_back(std::any_cast<LogStore::Level>(object));
        });
    card.openLog();
    EXPECT_EQ(asked, std::vector<LogStore::Level>{LogStore::Level::error});
    EXPECT_EQ(card.showInLog().toStdString(), "Show in log");
    EXPECT_EQ(card.showInLogHelp().toStdString(), "Open the log filtered to errors");
}

} // namespace
} // namespace ostrella::test
