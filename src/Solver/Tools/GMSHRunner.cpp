#include "Solver/Tools/GMSHRunner.h"

#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Tools/BundledTool.h"
#include "Solver/Tools/LineForwarder.h"
#include "Solver/Tools/ManagedProcess.h"
#include "Solver/Tools/SurfaceRoad.h"
#include "Solver/Tools/TextFile.h"
#include "Solver/Tools/TextTemplate.h"
#include "Solver/Tools/TimeLimit.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view stlFilename = GMSHRunner::filenames[0];
constexpr std::string_view scriptFilename = GMSHRunner::filenames[1];
constexpr std::string_view meshFilename = GMSHRunner::filenames[2];

/// Least length that the box is measured by, m: a body without extent has a box too.
constexpr float leastLength = 1e-6F;

/// The body's length along the flow, the unit of the box.
float chord(const Vec3& size) {
    return std::max(size.x, leastLength);
}

double wide(float value) {
    return value;
}

void replaceModel(const fs::path& file, const TriangleMesh& mesh) {
    removeFile(file);
    try {
        writeBinarySTL(mesh, file);
    } catch (const fs::filesystem_error& error) {
        throw FileError("Cannot write " + file.string(), file, error.code(), elsewhereForRuns);
    }
}

/// The box that the far field is measured by: the body's, but for one without a length along the
/// flow, such as a plate that stands across it. Given a thickness, that would stand out of its own
/// far field.
BoundingBox measuredBox(const TriangleMesh& body, const std::optional<TriangleMesh>& prepared) {
    return prepared && prepared->size().x > 2 * body.size().x ? prepared->boundingBox()
                                                              : body.boundingBox();
}

/// What becomes of the facets in the mesher: those of a prepared surface are kept.
SurfaceRoad roadFor(const TriangleMesh& body, const GMSHRunner::Attempt& attempt,
    const GMSHRunner::FarField& field) {
    if (attempt.prepared) {
        const SurfaceCensus census = surfaceCensus(attempt.prepared->positions().span());
        return {SurfaceRoad::Kind::keep, std::max(census.medianEdge, attempt.facetEdge)};
    }
    return surfaceRoad(body.positions().span(), field.lcMin, field.lcMax);
}

/// Cells of a lower quality than this are made better where that can be done. A prepared surface
/// has kept its awkward places, and the cells beside them want more care than the mesher's own
/// measure.
std::string_view optimizedBelow(const GMSHRunner::Attempt& attempt) {
    return attempt.prepared ? "0.6" : "0.3";
}

std::string filledTemplate(std::string text, const GMSHRunner::FarField& field,
    const SurfaceRoad& road, std::string_view leastQuality) {
    const auto fill = [&text](std::string_view placeholder, std::string_view value) {
        text = replaceAll(text, placeholder, value);
    };
    const auto number = [&fill](std::string_view placeholder, float value) {
        fill(placeholder, fmt::format("{:.6f}", wide(value)));
    };
    fill("{{STL_FILENAME}}", stlFilename);
    number("{{XMIN}}", field.min.x);
    number("{{XMAX}}", field.max.x);
    number("{{YMIN}}", field.min.y);
    number("{{YMAX}}", field.max.y);
    number("{{ZMIN}}", field.min.z);
    number("{{ZMAX}}", field.max.z);
    number("{{LC_MIN}}", field.lcMin);
    number("{{LC_MAX}}", field.lcMax);
    fill("{{SURFACE_ROAD}}", road.scriptValue());
    fill("{{OPTIMIZE_BELOW}}", leastQuality);
    return text;
}

void describe(const RunLog& log, const Vec3& size, const GMSHRunner::FarField& field) {
    const float unit = chord(size);
    log.info(fmt::format("Body extent (solver frame, Z up): {:.2f} × {:.2f} × {:.2f} m",
        wide(size.x), wide(size.y), wide(size.z)));
    log.info(fmt::format(
        "Far-field pads: −{:.2f} / +{:.2f} (X), ±{:.2f} (Y/Z) · {:.1f} c upstream, {:.1f} c down",
        wide(field.padUpstream), wide(field.padDownstream), wide(field.padSide),
        wide(field.padUpstream / unit), wide(field.padDownstream / unit)));
    log.info(fmt::format("Far-field box: [{:.2f}, {:.2f}, {:.2f}] → [{:.2f}, {:.2f}, {:.2f}]",
        wide(field.min.x), wide(field.min.y), wide(field.min.z), wide(field.max.x),
        wide(field.max.y), wide(field.max.z)));
    log.info(fmt::format("Mesh size: lc=[{:.4f}, {:.4f}]", wide(field.lcMin), wide(field.lcMax)));
}

ManagedProcess::Outcome runMesher(const fs::path& gmsh, const fs::path& in,
    LineForwarder& forwarder, const TimeLimit& limit, const GMSHRunner::Attempt& attempt,
    TimerService& timers) {
    const std::vector<std::string> arguments{
        std::string(scriptFilename), "-3", "-o", std::string(meshFilename), "-nopopup"};
    try {
        return ManagedProcess::run(gmsh, arguments, in, forwarder, limit.token(), timers);
    } catch (const CancellationError&) {
        if (limit.isOver()) {
            throw GMSHError::stoppedAfter(attempt.timeLimit.value());
        }
        throw;
    }
}

/// What gmsh left, judged by its files first: it exits 0 without a mesh and 1 with a good one.
GMSHRunner::Output judged(const ManagedProcess::Outcome& outcome, const fs::path& meshFile,
    double elapsedSeconds, const RunLog& log) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(meshFile, error);
    if (error || size == 0) {
        throw GMSHError::meshNotProduced(outcome.status,
            outcome.keptLines.empty() ? std::nullopt : std::optional(outcome.keptLines.front()));
    }
    if (outcome.status != 0) {
        log.append(fmt::format("gmsh exited with code {} · non-fatal warnings, mesh still produced",
                       outcome.status),
            LogStore::Level::warn);
    }
    const auto header = SU2Output::readMeshHeader(meshFile);
    if (header && header->elements == 0) {
        throw GMSHError::emptyVolumeMesh();
    }
    log.append(header ? fmt::format("Mesh built · {} cells · {}D · {:.1f} s",
                            LogStore::grouped(header->elements), header->dimensions, elapsedSeconds)
                      : fmt::format("Mesh built · {:.1f} MB · {:.1f} s",
                            static_cast<double>(size) / 1048576, elapsedSeconds),
        LogStore::Level::ok);
    return {meshFile, header};
}

} // namespace

GMSHError::GMSHError(Kind kind, std::string text) : kind_(kind), text_(std::move(text)) {}

GMSHError GMSHError::meshNotProduced(
    std::int32_t exitCode, const std::optional<std::string>& detail) {
    return {
        Kind::meshNotProduced, fmt::format("gmsh exited with code {} and produced no usable mesh{}",
                                   exitCode, detail ? fmt::format(" ({})", *detail) : "")};
}

GMSHError GMSHError::binaryNotFound(const PlatformWords& words) {
    return {Kind::binaryNotFound,
        fmt::format("gmsh is missing from {}. The app is incomplete; download and install "
                    "Ostrella again.",
            words.toolsPlace)};
}

GMSHError GMSHError::templateNotFound() {
    return {Kind::templateNotFound, "STL meshing template missing from app bundle."};
}

GMSHError GMSHError::emptyVolumeMesh() {
    return {Kind::emptyVolumeMesh,
        "gmsh produced a mesh with no volume cells; the surface is probably not closed"};
}

GMSHError GMSHError::stoppedAfter(double seconds) {
    return {Kind::meshNotProduced,
        fmt::format("gmsh produced no mesh within {:.0f} s and was stopped", seconds)};
}

GMSHRunner::GMSHRunner(const RunEnvironment& environment) : environment_(environment) {}

GMSHRunner::FarField GMSHRunner::farField(const Vec3& boundingMin, const Vec3& boundingMax) {
    const Vec3 size = boundingMax - boundingMin;
    const float unit = chord(size);
    const float lateral = std::max({size.y, size.z, leastLength});
    const float extent = std::max({size.x, size.y, size.z});
    FarField field;
    field.padUpstream = 5 * unit;
    field.padDownstream = 15 * unit;
    field.padSide = std::max(2.5F * lateral, 4 * unit);
    field.min = boundingMin - Vec3(field.padUpstream, field.padSide, field.padSide);
    field.max = boundingMax + Vec3(field.padDownstream, field.padSide, field.padSide);
    field.lcMin = std::max(0.05F * extent, 0.001F);
    field.lcMax = extent;
    return field;
}

fs::path GMSHRunner::mesher() const {
    const auto gmsh = BundledTools::locate(BundledTool::gmsh, environment_.bundle);
    if (!gmsh) {
        throw GMSHError::binaryNotFound(*environment_.words);
    }
    return *gmsh;
}

GMSHRunner::Output GMSHRunner::makeMesh(const TriangleMesh& solverMesh, const fs::path& in,
    const RunLog& log, const CancellationToken& token) {
    return makeMesh(solverMesh, in, log, token, {});
}

GMSHRunner::Output GMSHRunner::makeMesh(const TriangleMesh& solverMesh, const fs::path& in,
    const RunLog& log, const CancellationToken& token, const Attempt& attempt) {
    const std::lock_guard oneAtATime(mutex_);
    const fs::path gmsh = mesher();
    if (!attempt.isFurther) {
        log.info("Using gmsh: " + gmsh.string());
    }
    const auto script = environment_.bundle.resource("stl_external_aero", "geo", "su2/templates");
    if (!script) {
        throw GMSHError::templateNotFound();
    }
    std::string text = readText(*script);

    const BoundingBox box = measuredBox(solverMesh, attempt.prepared);
    FarField field = farField(box.min, box.max);
    const FarField ofBody = farField(solverMesh.boundingMin(), solverMesh.boundingMax());
    field.lcMin = ofBody.lcMin;
    field.lcMax = ofBody.lcMax;
    replaceModel(in / stlFilename, attempt.prepared ? *attempt.prepared : solverMesh);
    writeTextAtomically(
        in / scriptFilename, filledTemplate(std::move(text), field,
                                 roadFor(solverMesh, attempt, field), optimizedBelow(attempt)));
    if (attempt.isFurther) {
        removeFile(in / meshFilename);
    } else {
        describe(log, box.max - box.min, field);
    }
    log.info("gmsh · external aero volume mesh");

    LineForwarder forwarder(log, LogStore::Level::su2,
        [](const std::string& line) { return line.starts_with("Error"); });
    const Date start = environment_.clock->now();
    const TimeLimit limit(token, attempt.timeLimit, *environment_.timers);
    const auto outcome = runMesher(gmsh, in, forwarder, limit, attempt, *environment_.timers);
    const double elapsed = secondsBetween(start, environment_.clock->now());
    return judged(outcome, in / meshFilename, elapsed, log);
}

std::string GMSHRunner::openSurfaceLine(std::int64_t count) {
    return fmt::format("Open surface · {} open {} · the inside may be meshed too, so the figures "
                       "are not to be trusted. Close the surface and run again.",
        LogStore::grouped(count), count == 1 ? "edge" : "edges");
}

} // namespace ostrella
