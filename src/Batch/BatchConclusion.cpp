#include "Batch/BatchConclusion.h"

#include "Batch/ExitStatus.h"
#include "Solver/Tools/RunLog.h"
#include "Solver/Tools/AboutInfo.h"
#include "Solver/Tools/ResultExporter.h"
#include "Solver/Tools/TextFile.h"

#include <fmt/format.h>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

/// A failure to write what was asked for makes a good run a failed one, and leaves a failed one be.
int worsened(int status) {
    return status == ExitStatus::finished ? ExitStatus::resultsFailed : status;
}

bool exportFiles(BatchReport& report, const SimulationResult& result, const RunLog& log) {
    try {
        report.exported = ResultExporter::exportResult(result, *report.options.exportFolder);
        log.append(
            ResultExporter::successMessage(report.exported.size(), *report.options.exportFolder),
            report.exported.empty() ? LogStore::Level::warn : LogStore::Level::ok);
        return true;
    } catch (const std::exception& error) {
        log.append(fmt::format("Export failed · {}", error.what()), LogStore::Level::error);
        return false;
    }
}

bool writeReport(BatchReport& report, const RunEnvironment& environment, const RunLog& log) {
    report.mesher = AboutInfo::probeGMSH(environment.bundle, *environment.timers);
    report.solver = AboutInfo::probeSU2(environment.bundle, *environment.words);
    report.solverIsStandIn = environment.bundle.solverIsStandIn();
    try {
        writeTextAtomically(*report.options.jsonFile, toJSON(report));
        return true;
    } catch (const std::exception& error) {
        log.append(fmt::format("JSON not written · {}", error.what()), LogStore::Level::error);
        return false;
    }
}

void removeRunDirectory(const fs::path& parent) {
    std::error_code error;
    fs::remove_all(parent, error);
}

} // namespace

int concludeRun(BatchReport report, int status, const std::optional<SimulationResult>& result,
    const RunEnvironment& environment, LogStore& log) {
    const RunLog runLog(log);
    if (report.options.exportFolder && result && !exportFiles(report, *result, runLog)) {
        status = worsened(status);
    }
    const bool isPrepared = report.options.prepareFolder.has_value();
    if (!isPrepared) {
        if (!report.options.keepRunDirectory) {
            removeRunDirectory(environment.temporaryDirectory);
            report.runDirectory.reset();
        } else if (report.runDirectory) {
            runLog.info(fmt::format("Run directory kept · {}", report.runDirectory->string()));
        }
    }
    if (report.options.jsonFile && !writeReport(report, environment, runLog)) {
        status = worsened(status);
    }
    return status;
}

} // namespace ostrella
