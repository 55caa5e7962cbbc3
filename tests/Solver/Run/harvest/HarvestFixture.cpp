#include "HarvestFixture.h"

namespace ostrella::test {

std::string HarvestTest::cube() {
    return FieldFiles::box(Vec3(-0.5F), Vec3(0.5F)) +
           FieldFiles::scalars("Y_Plus", {0.5F, 1, 1.5F, 2, 2.5F, 3, 3.5F, 4});
}

std::string HarvestTest::wake() {
    return FieldFiles::volume(
        Vec3(-2, -1.5F, -1.5F), Vec3(4, 1.5F, 1.5F), {25, 13, 13}, FieldFiles::vortexVelocity);
}

void HarvestTest::writeWholeRun() const {
    writeSurface(cube());
    writeVolume(wake());
}

SimulationResult HarvestTest::harvest(int dimensions) {
    return harvestOf(run_, dimensions);
}

SimulationResult HarvestTest::harvestOf(const std::filesystem::path& directory, int dimensions) {
    SimulationResult result;
    onWorker([&, log = RunLog(log_)] {
        result = harvestResult(directory, {StopReason::iterationCap(200), 12.5}, 1234, dimensions,
            inputs_, log, cancellation_.token(), clock_);
    });
    return result;
}

void HarvestTest::expectNothingReadable(int dimensions) {
    try {
        harvest(dimensions);
        ADD_FAILURE() << "something was readable";
    } catch (const SolverError& error) {
        EXPECT_EQ(error.kind(), SolverError::Kind::noReadableOutput);
    }
}

std::vector<TextLine> HarvestTest::lines() const {
    std::vector<TextLine> all;
    for (const auto& line : log_.lines()) {
        all.emplace_back(line.text, line.level);
    }
    return all;
}

std::vector<std::string> HarvestTest::texts() const {
    std::vector<std::string> all;
    for (const TextLine& line : lines()) {
        all.push_back(line.first);
    }
    return all;
}

std::vector<TextLine> HarvestTest::linesWith(const std::string& beginning) const {
    std::vector<TextLine> found;
    for (const TextLine& line : lines()) {
        if (line.first.starts_with(beginning)) {
            found.push_back(line);
        }
    }
    return found;
}

} // namespace ostrella::test
