#pragma once

#include "Models/Vector.h"

#include "Body.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace ostrella::test {

/// A tetrahedral mesh read from the solver's native format.
struct VolumeMesh {
    std::vector<glm::dvec3> points;
    std::vector<std::array<std::size_t, 4>> cells;
    std::vector<std::array<std::size_t, 3>> body;
    std::vector<std::array<std::size_t, 3>> farField;

    static VolumeMesh read(const std::filesystem::path& file);

    double volume() const;
    /// The body's edges, ascending; each once for every facet it belongs to.
    std::vector<double> bodyEdges() const;
    /// Ratio of the linear sizes of neighbouring cells, the larger over the smaller, ascending.
    std::vector<double> neighbourRatios() const;
    /// Linear size (of the regular tetrahedron of equal volume) of the cell whose middle is nearest
    /// to the point.
    double cellSizeNear(const glm::dvec3& point) const;
};

/// One run of the mesher over the staged template, in a directory of its own that goes with it.
class MeshCase {
public:
    /// Fills the template for a body of the application's frame as a run does, and runs gmsh with
    /// the arguments of a run; it is killed after `seconds`.
    MeshCase(const generators::Body& body, int seconds);
    ~MeshCase();
    MeshCase(const MeshCase&) = delete;
    MeshCase& operator=(const MeshCase&) = delete;

    bool timedOut() const { return timedOut_; }
    int status() const { return status_; }
    /// What gmsh wrote, at most its first megabyte.
    const std::string& output() const { return output_; }
    std::uintmax_t outputSize() const { return outputSize_; }
    /// The first line that begins with "Error", or nothing.
    std::string firstError() const;
    std::filesystem::path meshFile() const { return directory_ / "mesh.su2"; }
    float lcMin() const { return lcMin_; }
    float lcMax() const { return lcMax_; }
    double boxVolume() const { return boxVolume_; }

private:
    std::filesystem::path directory_;
    bool timedOut_ = false;
    int status_ = 0;
    std::string output_;
    std::uintmax_t outputSize_ = 0;
    float lcMin_ = 0;
    float lcMax_ = 0;
    double boxVolume_ = 0;
};

} // namespace ostrella::test
