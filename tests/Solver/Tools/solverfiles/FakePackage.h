#pragma once

#include "Models/LogStore.h"
#include "Models/TriangleMesh.h"
#include "Solver/Tools/GMSHRunner.h"
#include "Solver/Tools/RunEnvironment.h"

#include "support/Wait.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ostrella::test {

/// Moves on by two and a half seconds at each look.
class StridingClock final : public Clock {
public:
    Date now() const override { return date_ += std::chrono::milliseconds(2500); }

private:
    mutable Date date_;
};

/// A package in a temporary directory whose gmsh is a small script, and a run directory beside it.
class FakePackage {
public:
    FakePackage();

    const RunEnvironment& environment() const { return environment_; }
    const std::filesystem::path& run() const { return run_; }
    std::filesystem::path gmsh() const { return environment_.bundle.toolsDirectory() / "gmsh"; }
    LogStore& log() { return log_; }

    /// Puts a shell script in the place of gmsh.
    void setGmsh(const std::string& script) const;
    /// Puts a text in the place of the mesher's template.
    void setTemplate(const std::string& text) const;
    void removeTemplate() const { std::filesystem::remove(templateFile()); }

    /// Runs the mesher on a worker.
    GMSHRunner::Output makeMesh(const TriangleMesh& mesh, const CancellationToken& token = {},
        const GMSHRunner::Attempt& attempt = {});
    /// The text of what makeMesh throws.
    std::string failure(const TriangleMesh& mesh, const GMSHRunner::Attempt& attempt = {});

    /// The log's lines as "level: text".
    std::vector<std::string> lines() const;

private:
    std::filesystem::path templateFile() const;

    TemporaryDirectory directory_;
    std::filesystem::path run_;
    StridingClock clock_;
    RunEnvironment environment_;
    LogStore log_;
};

/// The closed box from `min` to `max`, twelve facets, seen from outside against the clock.
TriangleMesh boxMesh(const Vec3& min, const Vec3& max);

} // namespace ostrella::test
