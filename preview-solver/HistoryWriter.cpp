#include "HistoryWriter.h"

#include "Failure.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>

namespace ostrella::preview {

std::vector<std::string> residualColumns(const Config& config, int dimensions) {
    std::vector<std::string> columns;
    if (config.regime == Regime::compressible) {
        columns = {"rms[Rho]", "rms[RhoU]", "rms[RhoV]"};
        if (dimensions == 3)
            columns.emplace_back("rms[RhoW]");
        columns.emplace_back("rms[RhoE]");
    } else {
        columns = {"rms[P]", "rms[U]", "rms[V]"};
        if (dimensions == 3)
            columns.emplace_back("rms[W]");
    }
    if (config.turbulent())
        columns.emplace_back("rms[nu]");
    return columns;
}

std::vector<std::string> historyColumns(const Config& config, int dimensions) {
    std::vector<std::string> columns{"Time_Iter", "Outer_Iter", "Inner_Iter"};
    const auto wants = [&](const char* group) { return config.historyOutput.contains(group); };
    if (wants("WALL_TIME"))
        columns.emplace_back("Time(sec)");
    if (wants("RMS_RES"))
        for (const auto& column : residualColumns(config, dimensions))
            columns.push_back(column);
    if (wants("AERO_COEFF")) {
        for (const char* name :
            {"RefForce", "CD", "CL", "CSF", "CMx", "CMy", "CMz", "CFx", "CFy", "CFz", "CEff"})
            columns.emplace_back(name);
        if (config.regime == Regime::compressible && config.viscous())
            columns.emplace_back("Buffet");
    }
    if (wants("LINSOL"))
        for (const char* name : {"Linear_Solver_Iterations", "Linear_Solver_Residual"})
            columns.emplace_back(name);
    if (wants("CFL_NUMBER"))
        for (const char* name : {"Min CFL", "Max CFL", "Avg CFL"})
            columns.emplace_back(name);
    return columns;
}

namespace {

bool isCounter(const std::string& column) {
    return column == "Time_Iter" || column == "Outer_Iter" || column == "Inner_Iter";
}

} // namespace

std::string historyHeader(const std::vector<std::string>& columns) {
    std::string line;
    for (const auto& column : columns) {
        if (!line.empty())
            line += ',';
        const std::string quoted = '"' + column + '"';
        if (isCounter(column)) {
            line += quoted;
            continue;
        }
        // Centred in 18 places, the odd blank to the left.
        const std::size_t blanks = quoted.size() < 18 ? 18 - quoted.size() : 0;
        line += std::string(blanks - blanks / 2, ' ') + quoted + std::string(blanks / 2, ' ');
    }
    return line + '\n';
}

std::string historyRow(
    const std::vector<std::string>& columns, const std::map<std::string, double>& values) {
    std::string line;
    for (const auto& column : columns) {
        const auto found = values.find(column);
        const double value = found == values.end() ? 0.0 : found->second;
        if (isCounter(column))
            line += fmt::format("{}{:>{}}", line.empty() ? "" : ", ", static_cast<long>(value), 11);
        else
            line += fmt::format(", {:>17.10g}", value);
    }
    return line + '\n';
}

std::map<std::string, double> coefficientValues(
    const Coefficients& c, const FreeStream& stream, const Config& config) {
    double force = stream.dynamicPressure() * config.refArea;
    if (config.units == OutputUnits::incompressibleInitial)
        force = 0.5 * config.refArea;
    return {{"RefForce", force}, {"CD", c.cd}, {"CL", c.cl}, {"CSF", c.csf}, {"CMx", c.cmx},
        {"CMy", c.cmy}, {"CMz", c.cmz}, {"CFx", c.cfx}, {"CFy", c.cfy}, {"CFz", c.cfz},
        {"CEff", c.efficiency}, {"Buffet", c.buffet}};
}

HistoryWriter::HistoryWriter(const std::string& path, std::vector<std::string> columns)
    : path_(path), columns_(std::move(columns)), file_(std::fopen(path.c_str(), "wb")) {
    if (!file_)
        throw Failure(fmt::format("{} cannot be written: {}.", path, std::strerror(errno)));
    put(historyHeader(columns_));
}

HistoryWriter::~HistoryWriter() {
    if (file_)
        std::fclose(file_);
}

void HistoryWriter::put(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size() || std::fflush(file_) != 0)
        throw Failure(fmt::format("{} cannot be written: {}.", path_, std::strerror(errno)));
}

void HistoryWriter::write(const std::map<std::string, double>& values) {
    put(historyRow(columns_, values));
}

} // namespace ostrella::preview
