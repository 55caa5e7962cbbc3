#pragma once

#include "Models/LogStore.h"
#include "Solver/Run/Harvest.h"
#include "support/FieldFiles.h"
#include "support/ManualClock.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace ostrella::test {

/// A line of the log without its date and identity.
using TextLine = std::pair<std::string, LogStore::Level>;

/// A run directory of the test's own, and its harvest on a worker. The clock stands still.
class HarvestTest : public testing::Test {
protected:
    using Level = LogStore::Level;

    /// Writes the files of a run around a cube of side 1 m, whose wake has a vortex.
    void writeWholeRun() const;
    void writeSurface(const std::string& text) const { writeFile(surface_, text); }
    void writeVolume(const std::string& text) const { writeFile(volume_, text); }

    SimulationResult harvest(int dimensions = 3);
    /// The same of another directory.
    SimulationResult harvestOf(const std::filesystem::path& directory, int dimensions = 3);
    /// Expects the harvest to fail for want of anything readable.
    void expectNothingReadable(int dimensions = 3);

    std::vector<TextLine> lines() const;
    std::vector<std::string> texts() const;
    /// The lines that begin so.
    std::vector<TextLine> linesWith(const std::string& beginning) const;

    /// The surface and the volume of the whole run.
    static std::string cube();
    static std::string wake();

    TemporaryDirectory directory_;
    std::filesystem::path run_ = directory_.path() / "run";
    std::filesystem::path surface_ = run_ / "surface_flow.vtk";
    std::filesystem::path volume_ = run_ / "flow.vtk";
    SimulationInputs inputs_;
    ManualClock clock_;
    LogStore log_{clock_};
    CancellationSource cancellation_;
};

} // namespace ostrella::test
