#pragma once

#include "Models/Cancellation.h"
#include "Models/PlatformWords.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"
#include "Solver/Tools/RunEnvironment.h"
#include "Solver/Tools/RunLog.h"
#include "Solver/Tools/SU2Output.h"

#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// The mesher's failures; what() is the text the user reads.
class GMSHError final : public std::exception {
public:
    enum class Kind { meshNotProduced, binaryNotFound, templateNotFound, emptyVolumeMesh };

    /// `detail` is the first error line of the mesher's own, if it printed one.
    static GMSHError meshNotProduced(
        std::int32_t exitCode, const std::optional<std::string>& detail);
    static GMSHError binaryNotFound(const PlatformWords& words);
    static GMSHError templateNotFound();
    static GMSHError emptyVolumeMesh();
    /// Of the kind `meshNotProduced`, for a mesher that was stopped when its time was over.
    static GMSHError stoppedAfter(double seconds);

    /// Whether another surface might be meshed where this one was not.
    bool isOfSurface() const noexcept {
        return kind_ == Kind::meshNotProduced || kind_ == Kind::emptyVolumeMesh;
    }
    Kind kind() const noexcept { return kind_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    GMSHError(Kind kind, std::string text);

    Kind kind_;
    std::string text_;
};

/// Builds the volume mesh around a body with gmsh. Everything is in the solver's frame of axes, x
/// along the flow and z up, in metres.
class GMSHRunner {
public:
    /// The box around the body and the limits of the mesh size.
    struct FarField {
        Vec3 min;
        Vec3 max;
        /// Distances from the body to the box: towards −x, towards +x, and on each side in y and z.
        float padUpstream = 0;
        float padDownstream = 0;
        float padSide = 0;
        float lcMin = 0;
        float lcMax = 0;

        bool operator==(const FarField&) const = default;
    };

    struct Output {
        std::filesystem::path meshURL;
        /// Absent if the mesh file's counts could not be read.
        std::optional<SU2Output::MeshHeader> header;

        bool operator==(const Output&) const = default;
    };

    /// What sets an attempt apart from the first one with the body as it is.
    struct Attempt {
        /// A surface in the place of the body's own, in the same frame of axes; its facets are kept
        /// as they are. The box and the limits of the mesh size stay the body's.
        std::optional<TriangleMesh> prepared = std::nullopt;
        /// The size that those facets were made for, m. Where thin shapes made most of them smaller
        /// than that, the cells grow to this size at once off the surface.
        float facetEdge = 0;
        /// Seconds after which the mesher is stopped, which counts as no mesh.
        std::optional<double> timeLimit = std::nullopt;
        /// One after another that failed: what that left is removed, and the log is not told of the
        /// mesher and of the body again.
        bool isFurther = false;
    };

    /// The environment must outlive the runner.
    explicit GMSHRunner(const RunEnvironment& environment);

    /// The files that an attempt writes: the model, the script and the mesh.
    static constexpr std::array<std::string_view, 3> filenames{"input.stl", "mesh.geo", "mesh.su2"};

    /// Where gmsh is. Throws GMSHError::binaryNotFound.
    std::filesystem::path mesher() const;

    /// Writes "input.stl" and "mesh.geo" into the directory, runs gmsh there and judges what came
    /// out; returns "mesh.su2". For a worker: log lines hop to the main thread, and the calls of
    /// one runner wait for each other. Throws GMSHError, CancellationError, or the error of a file
    /// that could not be read or written.
    Output makeMesh(const TriangleMesh& solverMesh, const std::filesystem::path& in,
        const RunLog& log, const CancellationToken& token, const Attempt& attempt);
    Output makeMesh(const TriangleMesh& solverMesh, const std::filesystem::path& in,
        const RunLog& log, const CancellationToken& token);

    /// The box for a body's bounding box, in multiples of its length along x.
    static FarField farField(const Vec3& boundingMin, const Vec3& boundingMax);

    /// The warning that follows "Mesh built" for a body whose surface has open edges.
    static std::string openSurfaceLine(std::int64_t count);

private:
    const RunEnvironment& environment_;
    std::mutex mutex_;
};

} // namespace ostrella
