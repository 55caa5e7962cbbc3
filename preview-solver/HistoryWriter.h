#pragma once

#include "Config.h"
#include "Forces.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace ostrella::preview {

/// The residual columns of a run, in order.
std::vector<std::string> residualColumns(const Config& config, int dimensions);
/// All columns of a run's history file, in order.
std::vector<std::string> historyColumns(const Config& config, int dimensions);
/// The header line, quoted and padded as the solver's format has it, with its line feed.
std::string historyHeader(const std::vector<std::string>& columns);
/// One row, with its line feed; a column without a value holds 0.
std::string historyRow(
    const std::vector<std::string>& columns, const std::map<std::string, double>& values);
/// The coefficients by column name.
std::map<std::string, double> coefficientValues(
    const Coefficients& c, const FreeStream& stream, const Config& config);

/// The history file: truncated at the start, flushed with every row.
class HistoryWriter {
public:
    /// Throws Failure where the file cannot be written.
    HistoryWriter(const std::string& path, std::vector<std::string> columns);
    ~HistoryWriter();
    HistoryWriter(const HistoryWriter&) = delete;
    HistoryWriter& operator=(const HistoryWriter&) = delete;

    void write(const std::map<std::string, double>& values);

private:
    void put(const std::string& text);

    std::string path_;
    std::vector<std::string> columns_;
    std::FILE* file_;
};

} // namespace ostrella::preview
