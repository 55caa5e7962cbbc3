// When a run may start, what a start sets, and what reaches the controller by notification.

#include "RunFixture.h"

namespace ostrella::test {
namespace {

using testing::SizeIs;

class Starting : public RunTest {};

TEST_F(Starting, needsAModel) {
    EXPECT_FALSE(app_->simulation.canRun());
    app_->simulation.run();
    EXPECT_EQ(phase(), RunPhase::idle());
    placeCube();
    EXPECT_TRUE(app_->simulation.canRun());
}

TEST_F(Starting, waitsForALoadUnderWay) {
    placeCube();
    app_->parameters.setLoadingFileName("other.stl");
    EXPECT_FALSE(app_->simulation.canRun());
    app_->simulation.run();
    EXPECT_EQ(phase(), RunPhase::idle());
    EXPECT_EQ(app_->simulation.runID(), 0);
}

TEST_F(Starting, needsTheModelsFile) {
    app_->parameters.setMesh(cube());
    EXPECT_TRUE(app_->simulation.canRun());
    app_->simulation.run();
    EXPECT_EQ(phase(), RunPhase::idle());
}

TEST_F(Starting, isForOneRunAtATime) {
    placeCube();
    package_.setMesher(Script::hang);
    runUntilReady();
    EXPECT_FALSE(app_->simulation.canRun());
    app_->simulation.run();
    app_->simulation.runDemo();
    app_->notifications.post(Notifications::runDemoRequested);
    EXPECT_EQ(app_->simulation.runID(), 1);
    EXPECT_EQ(phase(), RunPhase::meshing());
}

TEST_F(Starting, needsEverySharedObject) {
    const auto startsWithout = [this](auto forget) {
        NotificationCenter notifications;
        auto parameters = std::make_unique<SimulationParameters>();
        auto log = std::make_unique<LogStore>();
        auto render = std::make_unique<RenderSettings>();
        auto history = std::make_unique<HistoryStore>();
        auto settings = std::make_unique<AppSettings>(preferences_);
        SimulationController controller(environment(), notifications);
        controller.configure(*parameters, *log, *render, *history, *settings);
        forget(parameters, log, render, history, settings);
        controller.runDemo();
        return controller.phase() != RunPhase::idle() || controller.startedAt();
    };
    EXPECT_FALSE(startsWithout([](auto& parameters, auto&...) { parameters.reset(); }));
    EXPECT_FALSE(startsWithout([](auto&, auto& log, auto&...) { log.reset(); }));
    EXPECT_FALSE(startsWithout([](auto&, auto&, auto& render, auto&...) { render.reset(); }));
    EXPECT_FALSE(startsWithout([](auto&, auto&, auto&, auto& history, auto&) { history.reset(); }));
    EXPECT_FALSE(
        startsWithout([](auto&, auto&, auto&, auto&, auto& settings) { settings.reset(); }));
}

TEST_F(Starting, doesNothingAheadOfTheConfiguration) {
    NotificationCenter notifications;
    SimulationController controller(environment(), notifications);
    EXPECT_FALSE(controller.canRun());
    controller.run();
    controller.runDemo();
    controller.cancel();
    EXPECT_EQ(controller.phase(), RunPhase::idle());
}

TEST_F(Starting, freezesTheInputsAndClearsTheLastOutcome) {
    placeCube();
    package_.setMesher(Script::hang);
    app_->appSettings.setDefaultMaxIterations(120);
    clock_.advance(1000);
    app_->simulation.run();
    EXPECT_EQ(app_->parameters.maxIterations(), 120);
    EXPECT_EQ(app_->simulation.maxIterations(), 120);
    EXPECT_EQ(app_->simulation.startedAt(), clock_.now());
    EXPECT_FALSE(app_->simulation.summary());
    EXPECT_FALSE(app_->simulation.meshCells());
    EXPECT_FALSE(app_->simulation.isCancelling());
    EXPECT_EQ(app_->simulation.runID(), 1);
}

TEST_F(Starting, emptiesTheChartsOfTheLastRun) {
    placeCube();
    runToEnd();
    EXPECT_TRUE(app_->historyStore.hasData());
    package_.setMesher(Script::hang);
    runUntilReady();
    EXPECT_FALSE(app_->historyStore.hasData());
    EXPECT_TRUE(app_->historyStore.coefficients().empty());
}

TEST_F(Starting, keepsTheMomentAfterTheRun) {
    placeCube();
    const Date start = clock_.now();
    QObject::connect(
        &app_->simulation, &SimulationController::phaseChanged, [this] { clock_.advance(10); });
    runToEnd();
    EXPECT_EQ(app_->simulation.startedAt(), start);
}

TEST_F(Starting, handsTheTurnedModelToTheMesherAndLeavesTheLoadedOneAlone) {
    placeCube();
    // A quarter turn about the stream's axis: the model's y becomes its z, the solver's −y.
    app_->parameters.setRotationX(90);
    package_.setMesher("cp input.stl seen.stl\n" + Script::goodMesher);
    runToEnd();
    EXPECT_EQ(app_->parameters.mesh(), cube());
    // The application's (x, y, z) in 0…1 is (x, −z, y) in −1…0 after the turn, and (x, −y, −z) in
    // the solver's frame: y and z in −1…0.
    bool found = false;
    for (const std::string& text : texts()) {
        found = found || text == "Far-field box: [-5.00, -5.00, -5.00] → [16.00, 4.00, 4.00]";
    }
    EXPECT_TRUE(found);
}

using Notified = Starting;

TEST_F(Notified, runStartsTheRun) {
    placeCube();
    package_.setMesher(Script::hang);
    app_->notifications.post(Notifications::runSimulationRequested);
    EXPECT_EQ(phase(), RunPhase::meshing());
}

TEST_F(Notified, demoStartsTheDemo) {
    package_.setSolver(Script::hang);
    app_->notifications.post(Notifications::runDemoRequested);
    EXPECT_EQ(phase(), RunPhase::solving());
}

TEST_F(Notified, cancelStopsTheRun) {
    placeCube();
    package_.setMesher(Script::hang);
    runUntilReady();
    app_->notifications.post(Notifications::cancelSimulationRequested);
    EXPECT_TRUE(app_->simulation.isCancelling());
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(phase(), RunPhase::cancelled());
}

TEST_F(Notified, geometryLoadedLogsTheModel) {
    placeCube();
    app_->parameters.setOpenEdgeCount(0);
    app_->notifications.post(Notifications::geometryLoaded, &app_->parameters);
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("Loaded cube.stl · 12 facets · 1.00 × 1.00 × 1.00 m", Level::info),
            TextLine("Ready. Press Ctrl+R to run.", Level::info)));
}

TEST_F(Notified, geometryLoadedWarnsAboutAnOpenModel) {
    app_->parameters.setMesh(cube(1));
    app_->parameters.setOpenEdgeCount(3);
    app_->notifications.post(Notifications::geometryLoaded, &app_->parameters);
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("Loaded geometry · 11 facets · 1.00 × 1.00 × 1.00 m", Level::info),
            TextLine("STL is not water-tight · 3 open edges", Level::warn),
            TextLine("Ready. Press Ctrl+R to run.", Level::info)));
}

TEST_F(Notified, geometryLoadedWithoutAModelLogsNothing) {
    app_->notifications.post(Notifications::geometryLoaded, &app_->parameters);
    EXPECT_THAT(lines(), SizeIs(0));
}

using Configuration = Starting;

TEST_F(Configuration, happensOnce) {
    SimulationParameters others;
    LogStore otherLog;
    RenderSettings otherRender;
    HistoryStore otherHistory;
    app_->simulation.configure(others, otherLog, otherRender, otherHistory, app_->appSettings);
    EXPECT_EQ(Probe::observerCount(app_->simulation), 4U);
    placeCube();
    app_->notifications.post(Notifications::geometryLoaded, &app_->parameters);
    EXPECT_THAT(lines(), SizeIs(2)) << "the first log still counts, and each line comes once";
    EXPECT_THAT(otherLog.lines(), SizeIs(0));
    others.setSTLURL("other.stl");
    app_->parameters.setMesh(std::nullopt);
    others.setMesh(cube());
    EXPECT_FALSE(app_->simulation.canRun());
}

} // namespace
} // namespace ostrella::test
