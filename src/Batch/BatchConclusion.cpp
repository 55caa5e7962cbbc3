#include "Batch/BatchConclusion.h"

#include "Batch/BatchTargets.h"
#include "Batch/ExitStatus.h"
#include "Batch/ResultFiles.h"
#include "Solver/Tools/ResultExporter.h"

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

bool writeReport(const BatchReport& report, const RunLog& log) {
    try {
        BatchTargets::writeFile(*report.options.jsonFile, toJSON(report));
        return true;
    } catch (const fs::filesystem_error& error) {
        log.append(
            fmt::format("JSON not written · Cannot write {}: {}. Name another file with --json.",
                report.options.jsonFile->string(), error.code().message()),
            LogStore::Level::error);
        return false;
    }
}

/// Removes the run's directory unless it is to stay, and tells which.
void tidy(BatchReport& report, bool keepsDirectory, const RunEnvironment& environment,
    const RunLog& log) {
    if (keepsDirectory && report.runDirectory) {
        log.info(fmt::format("Run directory kept · {}", report.runDirectory->string()));
        return;
    }
    std::error_code error;
    fs::remove_all(environment.temporaryDirectory, error);
    if (report.failure && report.runDirectory) {
        log.info("Run directory removed · --keep-run-directory keeps it for a look");
    }
    report.runDirectory.reset();
}

} // namespace

int concludeRun(BatchReport report, int status, const std::optional<SimulationResult>& result,
    BatchPicture* picture, const Vec3& rotation, const RunEnvironment& environment,
    const RunLog& log) {
    bool keepsDirectory = report.options.keepRunDirectory;
    if (result) {
        const bool exported = !report.options.exportFolder || exportFiles(report, *result, log);
        const bool written = ResultFiles::write(report, *result, log);
        if (!exported || !written) {
            status = worsened(status);
            // It holds the only copy of what was wanted.
            keepsDirectory = true;
        }
        if (report.options.jsonFile) {
            report.results = ResultFigures::of(*result);
        }
    }
    if (status != ExitStatus::cancelled && !ResultFiles::writeSurface(report, log)) {
        status = worsened(status);
    }
    if (picture && status != ExitStatus::cancelled && !report.failure &&
        !picture->make(report, rotation, result, log)) {
        status = worsened(status);
        keepsDirectory = true;
    }
    // The folder of a prepared case or of an earlier run is the user's own.
    if (!report.options.prepareFolder && !report.options.resultsFolder) {
        tidy(report, keepsDirectory, environment, log);
    }
    if (report.options.jsonFile && !writeReport(report, log)) {
        status = worsened(status);
    }
    return status;
}

} // namespace ostrella
