// What users do with any window, done with this one.

#include "ui/support/AppUnderTest.h"

#include "Views/Viewport/ViewportItem.h"

#include <QClipboard>
#include <QGuiApplication>

namespace ostrella::test {
namespace {

class WindowHabits : public AppUnderTest {
protected:
    void load(const std::string& sample, const std::string& file) {
        click("Load sample " + sample);
        waitForModel(file);
    }
    Vec3 camera() { return window->viewport().coordinator()->renderer().camera.eye(); }
};

TEST_F(WindowHabits, aModelLoadedDuringARunLeavesTheRunAlone) {
    load("Sphere", "sphere.stl");
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::solving));
    choose("Samples", "Rounded Box");
    waitForModel("rounded_box.stl");
    EXPECT_TRUE(app->simulation.phase().isActive());
    EXPECT_TRUE(waitFor([this] { return showsLike("Solving.*"); })) << "the status bar stays";
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::finished)) << testing::PrintToString(log());
    EXPECT_EQ(app->simulation.runID(), 1);
    EXPECT_TRUE(waitFor([this] { return showsLike("Not converged · .*"); }))
        << "the model came during the run, and not behind it";
}

TEST_F(WindowHabits, aFileFromOutsideDuringARunIsLeftAside) {
    load("Sphere", "sphere.stl");
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::solving));
    app->openURL(QUrl::fromLocalFile(
        QStringLiteral(OSTRELLA_STAGE_DIR "/share/ostrella/samples/simple_wing.stl")));
    user->settle();
    EXPECT_FALSE(app->parameters.loadingFileName());
    EXPECT_EQ(app->parameters.stlURL()->filename(), "sphere.stl");
}

TEST_F(WindowHabits, cancelWhileResultsAreProcessedLeavesNone) {
    load("Sphere", "sphere.stl");
    // At once as it begins, which no hand is quick enough for.
    QObject::connect(&app->simulation, &SimulationController::phaseChanged, window.get(), [this] {
        if (phase() == RunPhase::Kind::postProcessing) {
            model().footer()->cancel();
        }
    });
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::cancelled)) << testing::PrintToString(log());
    EXPECT_TRUE(waitFor([this] { return shows("Cancelled"); }));
    EXPECT_FALSE(app->parameters.lastRunResult());
    EXPECT_THAT(log(LogStore::Level::warn),
        testing::Contains(testing::StartsWith("Cancelled by user after ")).Times(1));
    EXPECT_TRUE(waitFor([this] { return cardKind() == "geometry"; }));
    EXPECT_FALSE(isEnabled("Export Results"));
    click("Run Simulation");
    EXPECT_TRUE(waitForPhase(RunPhase::Kind::solving)) << "and another run can begin";
}

TEST_F(WindowHabits, openWhileAnAlertWaitsDoesNothing) {
    model().showAlert("Couldn't load STL", "STL file is empty.");
    ASSERT_TRUE(waitFor([this] { return shows("STL file is empty."); }));
    user->settle();
    user->type(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(model().files()->kind(), FilePanels::Kind::None);
    EXPECT_TRUE(shows("STL file is empty."));
    user->type(Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return !shows("STL file is empty."); }));
    user->type(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(model().files()->kind(), FilePanels::Kind::Model);
    user->settle();
    user->type(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return model().files()->kind() == FilePanels::Kind::None; }));
}

TEST_F(WindowHabits, openWhileAnotherPanelIsUpDoesNothing) {
    load("Sphere", "sphere.stl");
    click("Save image");
    ASSERT_TRUE(waitFor([this] { return model().files()->kind() == FilePanels::Kind::Picture; }));
    user->settle();
    user->type(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(model().files()->kind(), FilePanels::Kind::Picture);
    user->type(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return model().files()->kind() == FilePanels::Kind::None; }));
    user->type(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(model().files()->kind(), FilePanels::Kind::Model);
    user->settle();
    user->type(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return model().files()->kind() == FilePanels::Kind::None; }));
}

TEST_F(WindowHabits, theWheelOverACardMovesNoCamera) {
    load("Sphere", "sphere.stl");
    click("Orient model");
    ASSERT_TRUE(waitFor([this] { return find("Face the flow with +X") != nullptr; }));
    drawFrame();
    const Vec3 before = camera();
    for (const char* place : {"Geometry", "Fit to view", "Face the flow with +X"}) {
        user->moveTo(middleOf(item(place)));
        user->wheel(3);
        user->wheel(-1);
        user->wheelSideways(2);
        user->settle();
        EXPECT_EQ(camera(), before) << place;
    }
    user->moveTo(inViewport({window->viewport().width() * 0.7, 200}));
    user->wheel(3);
    user->settle();
    EXPECT_NE(camera(), before) << "beside the cards it does";
}

TEST_F(WindowHabits, theLastRunsFiguresCanBeCopied) {
    load("Sphere", "sphere.stl");
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::finished)) << testing::PrintToString(log());
    ASSERT_TRUE(waitFor([this] { return !model().footer()->summaryHead().isEmpty(); }));
    const QString figures = model().footer()->summaryHead() + model().footer()->summaryParts();
    QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
    click(figures.toStdString());
    user->type(Qt::Key_A, Qt::ControlModifier);
    user->type(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), figures.toStdString());
}

} // namespace
} // namespace ostrella::test
