#include "Run.h"

#include "Case.h"
#include "HistoryWriter.h"
#include "MeshReader.h"
#include "ResultFields.h"
#include "VtkWriter.h"

#include <fmt/format.h>
#include <omp.h>

#include <chrono>
#include <cmath>
#include <cstdio>

namespace ostrella::preview {

namespace {

void say(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void title(const std::string& text) {
    say(fmt::format("\n{:-^73}", ' ' + text + ' '));
}

void warn(const Config& config) {
    for (const auto& line : config.warnings)
        say("WARNING: " + line);
}

/// The table of iterations: number, seconds an iteration, residuals, CL and CD.
class ScreenTable {
public:
    explicit ScreenTable(std::vector<std::string> residuals) : columns_(std::move(residuals)) {
        columns_.emplace_back("CL");
        columns_.emplace_back("CD");
        std::string head = fmt::format("|{:>12}|{:>12}|", "Inner_Iter", "Time(sec)");
        for (const auto& column : columns_)
            head += fmt::format("{:>12}|", column);
        const std::string rule = '+' + std::string(head.size() - 2, '-') + '+';
        say(rule);
        say(head);
        say(rule);
    }

    void row(const std::map<std::string, double>& values) const {
        std::string line = fmt::format("|{:>12}|{:>12.4e}|",
            static_cast<long>(values.at("Inner_Iter")), values.at("Time(sec)"));
        for (const auto& column : columns_)
            line += fmt::format("{:>12.6f}|", values.at(column));
        say(line);
    }

private:
    std::vector<std::string> columns_;
};

void describe(const Config& config, const Mesh& mesh, const Case& flow) {
    title("Case");
    const FreeStream& stream = flow.stream();
    say(fmt::format("{} flow, {}.", stream.compressible ? "Compressible" : "Incompressible",
        config.turbulent() ? "Spalart-Allmaras"
        : config.viscous() ? "laminar"
                           : "without friction"));
    say(fmt::format("Free stream: {:.6g} m/s, {:.6g} kg/m^3, viscosity {:.6g} Pa s.", stream.speed,
        stream.density, stream.viscosity));
    say(fmt::format("Reference: area {:.6g}, length {:.6g}, moments about ({:g}, {:g}, {:g}).",
        config.refArea, config.refLength, config.refOrigin.x, config.refOrigin.y,
        config.refOrigin.z));
    say(fmt::format("{} dimensions, {} points, {} cells, {} threads.", mesh.dimensions,
        mesh.points.size(), mesh.cells.size(), omp_get_max_threads()));
    for (std::size_t b = 0; b < mesh.markers.size(); ++b) {
        const BoundaryKind kind = flow.boundaries().kinds[b];
        say(fmt::format("Marker {}: {} facets, {}.", mesh.markers[b].name,
            mesh.markers[b].facets.size(),
            kind == BoundaryKind::wall   ? "no-slip wall"
            : kind == BoundaryKind::slip ? "slip wall or symmetry"
                                         : "far field"));
    }
    const double size = [&] {
        double sum = 0;
        for (const double volume : flow.dual().volumes)
            sum += volume;
        return sum;
    }();
    say(fmt::format("Volume of the computational grid: {:.6g}.", size));
}

void printConvergence(const ConvergenceMonitor& monitor) {
    const std::string rule(71, '-');
    say('+' + rule + '+');
    say("|      Convergence Field     |     Value    |   Criterion  |  Converged |");
    say('+' + rule + '+');
    for (const auto& row : monitor.rows())
        say(fmt::format("|{:>28}|{:>14.6g}|{:>14}|{:>12}|", row.field, row.value, row.criterion,
            row.converged ? "Yes" : "No"));
    say('+' + rule + '+');
}

std::string withExtension(const std::string& name, const std::string& extension) {
    return name.ends_with(extension) ? name : name + extension;
}

void writeResults(const Config& config, const Mesh& mesh, Case& flow, bool report) {
    const auto fields = resultFields(
        config, flow.stream(), flow.scales(), flow.dual(), flow.boundaries(), flow.fields());
    if (config.writeVolume) {
        const std::string name = withExtension(config.volumeFile, ".vtk");
        VtkWriter::write(name, VtkWriter::volumeGrid(mesh), fields);
        if (report)
            say("Written: " + name);
    }
    if (config.writeSurface) {
        const std::string name = withExtension(config.surfaceFile, ".vtk");
        VtkWriter::write(name, VtkWriter::surfaceGrid(mesh, config.plottingMarkers), fields);
        if (report)
            say("Written: " + name);
    }
}

} // namespace

int run(const std::string& path) {
    using Clock = std::chrono::steady_clock;
    Config config = Config::read(path);
    const Mesh mesh = MeshReader::read(config.meshFile);
    const auto residuals = residualColumns(config, mesh.dimensions);
    ConvergenceMonitor monitor(config, residuals, config.warnings);
    for (const auto& line : unknownGroups(config))
        config.warnings.push_back(line);
    warn(config);
    Case flow(config, mesh);
    describe(config, mesh, flow);
    HistoryWriter history(
        withExtension(config.historyFile, ".csv"), historyColumns(config, mesh.dimensions));

    title("Iterations");
    const ScreenTable table(residuals);
    const auto start = Clock::now();
    bool converged = false;
    for (int iteration = 0; iteration < config.iterations && !converged; ++iteration) {
        auto values = flow.iterate(iteration);
        values["Time(sec)"] =
            std::chrono::duration<double>(Clock::now() - start).count() / (iteration + 1);
        if (const char* reason = divergence(values, residuals)) {
            title("Error Exit");
            say(reason);
            return 1;
        }
        history.write(values);
        table.row(values);
        converged = monitor.update(iteration, values);
        if (!converged && (iteration + 1) % config.writeFrequency == 0 &&
            iteration + 1 < config.iterations)
            writeResults(config, mesh, flow, false);
    }

    title("Solver Exit");
    say(converged ? "\nAll convergence criteria satisfied."
                  : fmt::format("\nMaximum number of iterations reached (ITER = {}) before "
                                "convergence.",
                        config.iterations));
    printConvergence(monitor);
    writeResults(config, mesh, flow, true);
    title("Preview solver finished");
    return 0;
}

} // namespace ostrella::preview
