#include "RunFixture.h"

#include "Solver/Tools/ManagedProcess.h"

#include <algorithm>
#include <array>

namespace ostrella::test {

namespace fs = std::filesystem;

RunTest::RunTest() {
    fs::create_directories(runs_);
    app_ = std::make_unique<OstrellaApp>(environment(), preferences_,
        LogStore::BootFacts{"1.0", 6, 1, "OpenGL"},
        [this](const std::string& message, const std::string& text) {
            alerts_.emplace_back(message, text);
        });
    bootLineCount_ = app_->logStore.lines().size();
    QObject::connect(&app_->simulation, &SimulationController::phaseChanged,
        [this] { phases_.push_back(app_->simulation.phase()); });
    app_->start();
}

RunTest::~RunTest() {
    if (!app_->simulation.phase().isActive() || !app_->parameters.isRunning()) {
        return;
    }
    app_->simulation.cancel();
    EXPECT_TRUE(waitUntil([this] {
        timers_.advance(ManagedProcess::killDelay);
        return !app_->parameters.isRunning();
    })) << "the run does not end";
}

RunEnvironment RunTest::environment() {
    return {package_.bundle(), runs_, &PlatformWords::freedesktop(), &clock_, &timers_};
}

void RunTest::placeCube() {
    app_->parameters.setSTLURL(directory_.path() / "cube.stl");
    app_->parameters.setMesh(cube());
}

void RunTest::runToEnd() {
    app_->simulation.run();
    ASSERT_TRUE(app_->parameters.isRunning());
    ASSERT_TRUE(waitForEnd());
}

void RunTest::runDemoToEnd() {
    app_->simulation.runDemo();
    ASSERT_TRUE(app_->parameters.isRunning());
    ASSERT_TRUE(waitForEnd());
}

void RunTest::runUntilReady() {
    app_->simulation.run();
    waitForLine("ready");
}

void RunTest::runDemoUntilReady() {
    app_->simulation.runDemo();
    waitForLine("ready");
}

bool RunTest::waitForEnd() {
    return waitUntil([this] { return !app_->parameters.isRunning(); });
}

void RunTest::waitForLine(const std::string& text) {
    ASSERT_TRUE(waitUntil([&] {
        const auto all = texts();
        return std::find(all.begin(), all.end(), text) != all.end();
    })) << "no line reads \""
        << text << "\"";
}

void RunTest::cancelToEnd() {
    app_->simulation.cancel();
    ASSERT_TRUE(waitForEnd());
}

std::vector<TextLine> RunTest::lines() const {
    std::vector<TextLine> all;
    const auto& lines = app_->logStore.lines();
    for (std::size_t i = bootLineCount_; i < lines.size(); ++i) {
        all.emplace_back(lines[i].text, lines[i].level);
    }
    return all;
}

std::vector<std::string> RunTest::texts() const {
    std::vector<std::string> all;
    for (const TextLine& line : lines()) {
        all.push_back(line.first);
    }
    return all;
}

fs::path RunTest::runDirectory() const {
    const auto names = runDirectoryNames();
    EXPECT_EQ(names.size(), 1U);
    return names.empty() ? fs::path() : runs_ / names.front();
}

std::vector<std::string> RunTest::runDirectoryNames() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(runs_)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

fs::path RunTest::makeOldRun(const std::string& digits) const {
    fs::path old = runs_ / ("Ostrella-" + digits);
    fs::create_directory(old);
    return old;
}

void RunTest::expectNoChildLeft() const {
    for (const char* name : {"gmsh", "SU2_CFD"}) {
        for (const pid_t pid : package_.starts(name)) {
            EXPECT_FALSE(processExists(pid)) << name << " runs on as process " << pid;
        }
    }
}

TriangleMesh cube(std::size_t missing) {
    const std::array<Vec3, 8> corners{Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(1, 1, 0), Vec3(0, 1, 0),
        Vec3(0, 0, 1), Vec3(1, 0, 1), Vec3(1, 1, 1), Vec3(0, 1, 1)};
    // Two facets a side, seen from outside in the order of the hands of a clock turned back.
    constexpr std::array<std::size_t, 36> facets{0, 2, 1, 0, 3, 2, 4, 5, 6, 4, 6, 7, 0, 1, 5, 0, 5,
        4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7};
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    for (std::size_t i = 0; i < facets.size() - 3 * missing; ++i) {
        positions.push_back(corners[facets[i]]);
        normals.emplace_back(0, 0, 1);
    }
    return {SharedArray<Vec3>(std::move(positions)), SharedArray<Vec3>(std::move(normals))};
}

void whenPhase(
    SimulationController& controller, const RunPhase& wanted, std::function<void()> action) {
    auto pending = std::make_shared<std::function<void()>>(std::move(action));
    QObject::connect(
        &controller, &SimulationController::phaseChanged, [&controller, wanted, pending] {
            if (*pending && controller.phase() == wanted) {
                std::exchange(*pending, nullptr)();
            }
        });
}

} // namespace ostrella::test
