#pragma once

#include "Platform/AppBundle.h"

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace ostrella::test {

/// What a child program of the tests does, as lines of a shell script. It starts in the run
/// directory.
namespace Script {

/// Writes a mesh in three dimensions.
extern const std::string mesh;
/// Writes two rows of history: CL 0.3 and CD 0.4 at iteration 1.
extern const std::string history;
/// Writes a surface of one triangle, squeezed to a line along the flow, so without any vortex step,
/// and a field around it.
extern const std::string fields;
/// Opens that triangle in the solver's x and y, so in the x and z of a run in three dimensions.
extern const std::string openTriangle;
/// Says that the limit of iterations was reached, or that the solution converged.
extern const std::string capMessage;
extern const std::string convergedMessage;
/// Says "ready" and runs on until it is stopped.
extern const std::string hang;
/// The same, and deaf to a polite stop.
extern const std::string deaf;

/// A whole mesher and a whole solver that do their work.
extern const std::string goodMesher;
extern const std::string goodSolver;

} // namespace Script

/// A package of the application with child programs of the test's own in its tools directory. As
/// made, both do their work.
class Package {
public:
    explicit Package(const std::filesystem::path& root);
    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    AppBundle bundle() const { return AppBundle(root_); }
    std::filesystem::path tool(const std::string& name) const;
    std::filesystem::path resource(const std::string& path) const;

    void setMesher(const std::string& script) const { setTool("gmsh", script); }
    void setSolver(const std::string& script) const { setTool("SU2_CFD", script); }
    /// Makes SU2_CFD a link to the built-in preview solver.
    void useStandIn() const;

    /// The processes that "gmsh" or "SU2_CFD" was started as.
    std::vector<pid_t> starts(const std::string& name) const;

    /// A line of a script: waits until openGate() was called.
    std::string waitAtGate() const;
    void openGate() const;

private:
    void setTool(const std::string& name, const std::string& script) const;
    std::filesystem::path startsFile(const std::string& name) const;

    std::filesystem::path root_;
    std::filesystem::path gate_;
    int gateDescriptor_;
};

/// True as long as the process exists, be it a zombie.
bool processExists(pid_t pid);

} // namespace ostrella::test
