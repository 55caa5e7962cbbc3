#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace ostrella {

namespace {

std::string templateText(const std::string& name) {
    const auto path =
        std::filesystem::path(OSTRELLA_STAGE_DIR) / "share/ostrella/su2/templates" / name;
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << name << " is not staged";
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> placeholdersOf(const std::string& name) {
    const std::string text = templateText(name);
    const std::regex pattern(R"(\{\{([A-Z_]+)\}\})");
    std::set<std::string> found;
    for (auto at = std::sregex_iterator(text.begin(), text.end(), pattern);
         at != std::sregex_iterator(); ++at) {
        found.insert((*at)[1]);
    }
    return found;
}

/// The options of a configuration, comments and blank lines left out.
std::map<std::string, std::string> optionsOf(const std::string& name) {
    std::istringstream lines(templateText(name));
    std::map<std::string, std::string> options;
    for (std::string line; std::getline(lines, line);) {
        const auto equals = line.find("= ");
        if (line.empty() || line[0] == '%' || equals == std::string::npos) {
            continue;
        }
        EXPECT_TRUE(options.emplace(line.substr(0, equals), line.substr(equals + 2)).second)
            << line << " stands twice";
    }
    return options;
}

const std::set<std::string> shared{"SOLVER", "KIND_TURB_MODEL", "SA_OPTIONS_LINE", "AOA_DEG",
    "BETA_DEG", "ITER", "MESH_FILENAME", "REF_AREA"};

std::set<std::string> sharedAnd(const std::set<std::string>& more) {
    std::set<std::string> all = shared;
    all.insert(more.begin(), more.end());
    return all;
}

TEST(MeshTemplate, AsksForTheBoxTheSizesTheModelAndTheRoad) {
    EXPECT_EQ(placeholdersOf("stl_external_aero.geo"),
        (std::set<std::string>{"STL_FILENAME", "XMIN", "XMAX", "YMIN", "YMAX", "ZMIN", "ZMAX",
            "LC_MIN", "LC_MAX", "SURFACE_ROAD", "OPTIMIZE_BELOW"}));
}

TEST(SolverTemplates, AskForWhatTheApplicationFills) {
    const auto incompressible = sharedAnd({"INC_DENSITY", "VX", "VY", "VZ"});
    EXPECT_EQ(placeholdersOf("incompressible_rans_sa_2d.cfg"), incompressible);
    EXPECT_EQ(placeholdersOf("incompressible_rans_sa_3d.cfg"), incompressible);
    EXPECT_EQ(placeholdersOf("compressible_rans_sa_3d.cfg"),
        sharedAnd({"MACH", "FREESTREAM_PRESSURE", "FREESTREAM_TEMPERATURE"}));
}

class SolverTemplate : public testing::TestWithParam<const char*> {};

TEST_P(SolverTemplate, KeepsTheOptionsOfTheClosureOnALineOfTheirOwn) {
    EXPECT_NE(templateText(GetParam()).find("\n{{SA_OPTIONS_LINE}}\n"), std::string::npos);
}

TEST_P(SolverTemplate, WritesTheFilesThatTheApplicationReads) {
    const auto options = optionsOf(GetParam());
    EXPECT_EQ(options.at("TABULAR_FORMAT"), "CSV");
    EXPECT_EQ(options.at("CONV_FILENAME"), "history");
    EXPECT_EQ(options.at("HISTORY_OUTPUT"), "( ITER, RMS_RES, AERO_COEFF )");
    EXPECT_EQ(options.at("OUTPUT_FILES"), "( PARAVIEW_ASCII, SURFACE_PARAVIEW_ASCII )");
    EXPECT_EQ(options.at("VOLUME_FILENAME"), "flow");
    EXPECT_EQ(options.at("SURFACE_FILENAME"), "surface_flow");
    EXPECT_NE(options.at("VOLUME_OUTPUT").find("PRIMITIVE"), std::string::npos);
    EXPECT_NE(options.at("VOLUME_OUTPUT").find("VORTEX_IDENTIFICATION"), std::string::npos);
}

TEST_P(SolverTemplate, NamesTheMarkersOfTheMeshes) {
    const auto options = optionsOf(GetParam());
    EXPECT_EQ(options.at("MARKER_HEATFLUX"), "( body, 0.0 )");
    EXPECT_EQ(options.at("MARKER_FAR"), "( farfield )");
    EXPECT_EQ(options.at("MARKER_PLOTTING"), "( body )");
    EXPECT_EQ(options.at("MARKER_MONITORING"), "( body )");
}

TEST_P(SolverTemplate, TakesItsReferenceAreaFromTheApplicationAndStatesItsMoments) {
    const auto options = optionsOf(GetParam());
    EXPECT_EQ(options.at("REF_AREA"), "{{REF_AREA}}");
    EXPECT_EQ(options.at("REF_LENGTH"), "1.0");
    EXPECT_TRUE(options.contains("REF_ORIGIN_MOMENT_X"));
    const std::string text = templateText(GetParam());
    EXPECT_NE(text.find("REF_LENGTH,"), std::string::npos) << "no comment on the moments' length";
}

TEST_P(SolverTemplate, StopsWhenTheCoefficientsSettle) {
    const auto options = optionsOf(GetParam());
    EXPECT_EQ(options.at("ITER"), "{{ITER}}");
    EXPECT_EQ(options.at("CONV_FIELD"), "( DRAG, LIFT )");
    EXPECT_GE(std::stoi(options.at("CONV_CAUCHY_ELEMS")), 50);
    const double drift = std::stod(options.at("CONV_CAUCHY_EPS"));
    EXPECT_GT(drift, 0.0);
    EXPECT_LE(drift, 1e-4) << "half a percent in 50 iterations";
}

INSTANTIATE_TEST_SUITE_P(All, SolverTemplate,
    testing::Values("incompressible_rans_sa_2d.cfg", "incompressible_rans_sa_3d.cfg",
        "compressible_rans_sa_3d.cfg"),
    [](const auto& name) {
        const std::string file = name.param;
        return file.substr(0, file.find('_')) + file.substr(file.size() - 6, 2);
    });

} // namespace

} // namespace ostrella
