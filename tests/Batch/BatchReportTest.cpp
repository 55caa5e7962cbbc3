#include "Batch/BatchReport.h"
#include "Batch/RunFigures.h"
#include "Platform/AppBundle.h"
#include "support/Wait.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <limits>
#include <set>

namespace ostrella {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;
using testing::Pair;

Json written(const BatchReport& report) {
    return Json::parse(toJSON(report));
}

BatchReport finishedReport() {
    BatchReport report;
    report.options.sample = "simple_wing";
    report.options.inputs.velocity = 60;
    report.options.inputs.alpha = 5;
    report.options.inputs.turbulenceModel = TurbulenceModel::sst;
    report.options.inputs.regime = FlowRegime::compressible;
    report.options.rotationY = 90;
    report.phase = "finished";
    report.stopReason = StopReason::converged();
    report.converged = true;
    report.iterations = 321;
    report.cells = 123456;
    report.coefficients = {{"CD", 0.05}, {"CL", 0.4}, {"CSF", 0}, {"CMx", 1}, {"CMy", 2},
        {"CMz", 3}, {"CFx", 4}, {"CFy", 5}, {"CFz", 6}, {"CEff", 8}};
    report.referenceArea = 2;
    report.openEdges = 0;
    report.times = {{"mesh", 1.5}, {"solver", 30}, {"results", 0.25}};
    report.tools = ToolFacts{"gmsh 4.8.4 (GPL)", "SU2 8.3.0 (x86_64, LGPL)", false};
    report.exported = {"/out/flow.vtk"};
    return report;
}

TEST(BatchReport, AFinishedRunTellsInputsFiguresTimesAndTools) {
    const Json json = written(finishedReport());
    EXPECT_EQ(json["application"], "Ostrella " + AppBundle::version());
    EXPECT_EQ(json["inputs"]["sample"], "simple_wing");
    EXPECT_EQ(json["inputs"]["model"], nullptr);
    EXPECT_EQ(json["inputs"]["demo"], false);
    EXPECT_EQ(json["inputs"]["velocity_m_s"], 60.0);
    EXPECT_EQ(json["inputs"]["alpha_deg"], 5.0);
    EXPECT_EQ(json["inputs"]["beta_deg"], 0.0);
    EXPECT_EQ(json["inputs"]["density_kg_m3"], 1.225);
    EXPECT_EQ(json["inputs"]["rotation_deg"], Json({0.0, 90.0, 0.0}));
    EXPECT_EQ(json["inputs"]["regime"], "compressible");
    EXPECT_EQ(json["inputs"]["turbulenceModel"], "sst");
    EXPECT_EQ(json["inputs"]["saRotationCorrection"], false);
    EXPECT_EQ(json["inputs"]["saTransition"], false);
    EXPECT_EQ(json["inputs"]["maxIterations"], 200);
    EXPECT_EQ(json["inputs"]["streamlineUpstreamFactor"], 0.5);
    EXPECT_EQ(json["inputs"]["streamlineDownstreamFactor"], 2.0);
    EXPECT_EQ(json["inputs"]["streamlineSeedCount"], 100);
    EXPECT_EQ(json["phase"], "finished");
    EXPECT_EQ(json["failure"], nullptr);
    EXPECT_EQ(json["stopReason"]["kind"], "converged");
    EXPECT_EQ(json["stopReason"]["iterations"], nullptr);
    EXPECT_EQ(json["converged"], true);
    EXPECT_EQ(json["iterations"], 321);
    EXPECT_EQ(json["cells"], 123456);
    EXPECT_EQ(json["cl"], 0.4);
    EXPECT_EQ(json["cd"], 0.05);
    EXPECT_EQ(json["coefficients"].size(), 10U);
    EXPECT_EQ(json["coefficients"]["CEff"], 8.0);
    EXPECT_EQ(json["referenceArea_m2"], 2.0);
    EXPECT_EQ(json["openEdges"], 0);
    EXPECT_EQ(json["surfaceIsOpen"], false);
    EXPECT_EQ(json["times_s"], Json({{"mesh", 1.5}, {"solver", 30.0}, {"results", 0.25}}));
    EXPECT_EQ(json["tools"]["mesher"], "gmsh 4.8.4 (GPL)");
    EXPECT_EQ(json["tools"]["solver"], "SU2 8.3.0 (x86_64, LGPL)");
    EXPECT_EQ(json["tools"]["solverIsStandIn"], false);
    EXPECT_EQ(json["runDirectory"], nullptr);
    EXPECT_EQ(json["exported"], Json({"/out/flow.vtk"}));
}

TEST(BatchReport, AResultTellsItsCountsRangesTimesAndFingerprints) {
    BatchReport report = finishedReport();
    ResultFigures figures;
    figures.surface = {8, 18, SurfaceField::Primitive::triangle, -0.5F, 1};
    figures.volumePoints = 4225;
    figures.streamlines = {100, 3000, 2900, 99, 0.25F, 61.5F, "aa"};
    figures.ribbons = {2999, 5800, "bb"};
    figures.vortex = {60, 100, 2561.5F, "cc"};
    figures.harvest = {ScalarFieldStats{8, 0.5F, 4, 2.25F, 3.5F}, 0.125, 0.25, 0.5, 1, 2};
    report.results = figures;
    report.streamlinesFile = "/out/lines.vtk";
    report.vortexFile = "/out/vortex.ply";
    const Json json = written(report);
    EXPECT_EQ(json["results"], Json::parse(R"({
        "surface": {"points": 8, "primitives": 18, "kind": "triangle", "cpMin": -0.5, "cpMax": 1.0},
        "yPlus": {"count": 8, "min": 0.5, "mean": 2.25, "p95": 3.5, "max": 4.0},
        "volume": {"points": 4225},
        "streamlines": {"seeds": 100, "vertices": 3000, "segments": 2900, "lines": 99,
            "speedMin_m_s": 0.25, "speedMax_m_s": 61.5, "sha256": "aa"},
        "ribbons": {"points": 2999, "triangles": 5800, "sha256": "bb"},
        "vortex": {"vertices": 60, "triangles": 100, "isoValue": 2561.5, "sha256": "cc"},
        "times_s": {"surface": 0.125, "yPlus": 0.25, "volume": 0.5, "streamlines": 1.0,
            "vortex": 2.0}})"));
    EXPECT_EQ(json["streamlinesFile"], "/out/lines.vtk");
    EXPECT_EQ(json["vortexFile"], "/out/vortex.ply");
}

TEST(BatchReport, WhatAResultLacksIsNull) {
    BatchReport report = finishedReport();
    report.results = ResultFigures();
    EXPECT_EQ(written(report)["results"], Json::parse(R"({
        "surface": null, "yPlus": null, "volume": null, "streamlines": null, "ribbons": null,
        "vortex": null, "times_s": {"surface": null, "yPlus": null, "volume": null,
            "streamlines": null, "vortex": null}})"));
}

TEST(BatchReport, AnEarlierRunTellsOfItsInputsWhatIsKnown) {
    BatchReport report;
    report.options.resultsFolder = "/runs/wing";
    ConfiguredInputs inputs;
    inputs.velocity = 60;
    inputs.regime = FlowRegime::compressible;
    inputs.streamlineSeedCount = 50;
    report.earlierInputs = inputs;
    const Json json = written(report)["inputs"];
    EXPECT_EQ(json["results"], "/runs/wing");
    EXPECT_EQ(json["velocity_m_s"], 60.0);
    EXPECT_EQ(json["regime"], "compressible");
    EXPECT_EQ(json["streamlineSeedCount"], 50);
    for (const char* key : {"model", "sample", "rotation_deg", "alpha_deg", "beta_deg",
             "density_kg_m3", "turbulenceModel", "saRotationCorrection", "saTransition",
             "maxIterations", "streamlineUpstreamFactor", "streamlineDownstreamFactor"}) {
        EXPECT_EQ(json.at(key), nullptr) << key;
    }
    EXPECT_EQ(written(finishedReport())["inputs"]["results"], nullptr);
}

/// The keys of an object and of the objects in it, but for those of the user's own making.
std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items()) {
        keys.push_back(key);
        if (value.is_object() && key != "inputs" && key != "coefficients") {
            const auto inner = keysOf(value);
            keys.insert(keys.end(), inner.begin(), inner.end());
        }
    }
    return keys;
}

TEST(BatchReport, EveryKeyIsExplained) {
    BatchReport report = finishedReport();
    report.failure = {"mesh", "gmsh is missing."};
    ResultFigures figures;
    figures.surface = ResultFigures::Surface{};
    figures.volumePoints = 1;
    figures.streamlines = ResultFigures::Lines{};
    figures.ribbons = ResultFigures::Ribbons{};
    figures.vortex = ResultFigures::Vortex{};
    figures.harvest.yPlus = ScalarFieldStats{};
    report.results = figures;
    report.image = {"wing.png", "OpenGL"};
    const std::string pages = test::readFile(OSTRELLA_SOURCE_DIR "/docs/report.md");
    const auto keys = keysOf(written(report));
    EXPECT_GT(keys.size(), 40U);
    const std::set<std::string> toldInWords{"mesher", "solver", "solverIsStandIn"};
    for (const std::string& key : keys) {
        EXPECT_TRUE(toldInWords.contains(key) || pages.find('`' + key + '`') != std::string::npos)
            << key;
    }
}

TEST(BatchReport, CoefficientsKeepTheSolversOrder) {
    const auto json = nlohmann::ordered_json::parse(toJSON(finishedReport()));
    std::vector<std::string> names;
    for (const auto& [name, value] : json["coefficients"].items()) {
        names.push_back(name);
    }
    EXPECT_THAT(
        names, ElementsAre("CD", "CL", "CSF", "CMx", "CMy", "CMz", "CFx", "CFy", "CFz", "CEff"));
}

TEST(BatchReport, WhatIsNotKnownIsNull) {
    BatchReport report;
    report.options.model = "body.stl";
    report.phase = "failed";
    report.failure = {"mesh", "gmsh is missing."};
    const Json json = written(report);
    EXPECT_EQ(json["inputs"]["model"], "body.stl");
    EXPECT_EQ(json["failure"]["stage"], "mesh");
    EXPECT_EQ(json["failure"]["message"], "gmsh is missing.");
    for (const char* key : {"stopReason", "converged", "iterations", "cells", "cl", "cd",
             "referenceArea_m2", "openEdges", "surfaceIsOpen", "results", "tools", "runDirectory",
             "streamlinesFile", "vortexFile", "image"}) {
        ASSERT_TRUE(json.contains(key)) << key;
        EXPECT_EQ(json[key], nullptr) << key;
    }
    EXPECT_EQ(json["coefficients"], Json::object());
    EXPECT_EQ(json["exported"], Json::array());
}

TEST(BatchReport, APictureTellsHowItWasTaken) {
    BatchReport report = finishedReport();
    report.options.picture = {640, 480, ViewPreset::side, {true, false, false, false, true}};
    report.image = {"/out/wing.png", "OpenGL · llvmpipe"};
    const Json image = written(report)["image"];
    EXPECT_EQ(image["file"], "/out/wing.png");
    EXPECT_EQ(image["width"], 640);
    EXPECT_EQ(image["height"], 480);
    EXPECT_EQ(image["view"], "side");
    EXPECT_EQ(image["layers"], (Json{"cp", "wireframe"}));
    EXPECT_EQ(image["device"], "OpenGL · llvmpipe");
}

TEST(BatchReport, TheIterationCapHasItsCount) {
    BatchReport report = finishedReport();
    report.stopReason = StopReason::iterationCap(200);
    const Json json = written(report);
    EXPECT_EQ(json["stopReason"]["kind"], "iterationCap");
    EXPECT_EQ(json["stopReason"]["iterations"], 200);
}

TEST(BatchReport, AnOpenSurfaceIsSaidSo) {
    BatchReport report = finishedReport();
    report.openEdges = 9;
    EXPECT_EQ(written(report)["openEdges"], 9);
    EXPECT_EQ(written(report)["surfaceIsOpen"], true);
}

TEST(BatchReport, TheBuiltInCaseIsIncompressibleWhateverWasAskedFor) {
    BatchReport report = finishedReport();
    report.options.sample.reset();
    report.options.demo = true;
    EXPECT_EQ(written(report)["inputs"]["regime"], "incompressible");
}

TEST(BatchReport, IsValidJSONWithOddNumbersAndNames) {
    BatchReport report = finishedReport();
    report.coefficients = {{"CL", std::numeric_limits<double>::quiet_NaN()},
        {"CD", std::numeric_limits<double>::infinity()}};
    report.options.model = "a\xFF \"quoted\"\nname é.stl";
    const Json json = written(report);
    EXPECT_EQ(json["cl"], nullptr);
    EXPECT_EQ(json["coefficients"]["CD"], nullptr);
    EXPECT_EQ(json["inputs"]["model"], "a\uFFFD \"quoted\"\nname é.stl");
}

TEST(BatchReport, BeginsAsAnEarlierReportIsKnown) {
    EXPECT_TRUE(toJSON(finishedReport()).starts_with(reportBeginning));
    EXPECT_TRUE(toJSON({}).starts_with(reportBeginning));
}

TEST(RunFigures, EachStageLastsUntilTheNextBegins) {
    const Date start{};
    const auto at = [&start](int seconds) { return start + std::chrono::seconds(seconds); };
    EXPECT_THAT(RunFigures::stageTimes({{RunPhase::meshing(), at(0)}, {RunPhase::solving(), at(3)},
                    {RunPhase::postProcessing(), at(33)}, {RunPhase::finished(true), at(34)}}),
        ElementsAre(Pair("mesh", 3.0), Pair("solver", 30.0), Pair("results", 1.0)));
    EXPECT_THAT(RunFigures::stageTimes({{RunPhase::solving(), at(1)},
                    {RunPhase::failed("solver", "It crashed."), at(6)}}),
        ElementsAre(Pair("solver", 5.0)));
    EXPECT_THAT(RunFigures::stageTimes({}), testing::IsEmpty());
}

} // namespace
} // namespace ostrella
