#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/reader/VTKLiterals.h"
#include "fuzz/STLBody.h"
#include "fuzz/VTKBodies.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace ostrella {

namespace {

namespace fs = std::filesystem;

fs::path corpus() {
    return fs::path(OSTRELLA_TEST_DATA) / "vtk";
}

/// The failures of surface, volume and wall distance; "" where they can be computed with.
struct Outcome {
    std::string surface;
    std::string volume;
    std::string stats;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << outcome.surface << " | " << outcome.volume << " | " << outcome.stats;
}

const std::string good;
const std::string notLegacy = "Not a legacy ASCII VTK file.";
const std::string notUTF8 = "Cannot read it: Invalid or incomplete multibyte or wide character";
const std::string noPressure = "VTK missing scalar field 'Pressure_Coefficient'.";
const std::string noVelocity = "VTK missing vector field 'Velocity'.";
const std::string noWallDistance = "VTK missing scalar field 'Y_Plus'.";

std::string malformed(const std::string& payload) {
    return "Malformed VTK: " + payload;
}

std::string expectedInt(int token) {
    return malformed(fmt::format("expected int at token {}", token));
}

std::string expectedFloat(int token) {
    return malformed(fmt::format("expected float at token {}", token));
}

std::string notFinite(int count, const std::string& what, int first) {
    return fmt::format("{} of 4 points {} a {} that is not finite or beyond 1e+12; the first is "
                       "point {}, counted from 0",
        count, count == 1 ? "has" : "have", what, first);
}

const std::map<std::string, Outcome>& outcomes() {
    static const std::map<std::string, Outcome> all = {
        {"good_component_count_missing", {good, good, good}},
        {"good_no_last_line_end", {good, good, good}},
        {"good_one_line", {good, good, good}},
        {"good_other_fields_between", {good, good, good}},
        {"good_square", {good, good, good}},
        {"good_unicode_spaces", {good, good, good}},
        {"good_windows_line_ends", {good, good, good}},
        {"odd_huge_coordinate",
            {notFinite(1, "coordinate", 1), notFinite(1, "coordinate or velocity", 1), good}},
        {"odd_id_beyond_points",
            {malformed("a cell has the point id 4, but there are 4 points"), good, good}},
        {"odd_infinite_velocity", {good, notFinite(1, "coordinate or velocity", 1), good}},
        {"odd_list_size_wrong", {good, good, good}},
        {"odd_mixed_cells", {good, good, good}},
        {"odd_nan_coordinate",
            {notFinite(1, "coordinate", 1), notFinite(1, "coordinate or velocity", 1), good}},
        {"odd_nan_field", {good, notFinite(4, "coordinate or velocity", 0), good}},
        {"odd_no_components", {good, good, good}},
        {"odd_no_points", {good, good, noWallDistance}},
        {"odd_plus_and_hexadecimal", {good, good, good}},
        {"odd_quads", {good, good, good}},
        {"odd_three_components", {good, good, good}},
        {"bad_binary", {notUTF8, notUTF8, notUTF8}},
        {"bad_binary_of_zeros", {notLegacy, notLegacy, notLegacy}},
        {"bad_cell_of_many_ids", {expectedInt(36), expectedInt(36), good}},
        {"bad_cell_types_count_too_large", {expectedInt(40), expectedInt(40), good}},
        {"bad_cells_count_too_large", {expectedInt(36), expectedInt(36), good}},
        {"bad_components_beyond_memory", {expectedFloat(52), good, expectedFloat(77)}},
        {"bad_decimal_comma", {expectedFloat(13), expectedFloat(13), expectedFloat(73)}},
        {"bad_empty", {notLegacy, notLegacy, notLegacy}},
        {"bad_fields_before_points", {noPressure, noVelocity, good}},
        {"bad_five_words", {notLegacy, notLegacy, notLegacy}},
        {"bad_header_alone", {malformed("POINTS not found"), malformed("POINTS not found"),
                                 malformed("POINTS not found")}},
        {"bad_id_beyond_32_bits",
            {malformed("point id beyond 32 bits (4294967296) at token 35"),
                malformed("point id beyond 32 bits (4294967296) at token 35"), good}},
        {"bad_latin1_title", {notUTF8, notUTF8, notUTF8}},
        {"bad_negative_cell_size",
            {malformed("negative number of point ids (-3) at token 28"),
                malformed("negative number of point ids (-3) at token 28"), good}},
        {"bad_negative_cell_types",
            {malformed("negative number of cell types (-2) at token 37"),
                malformed("negative number of cell types (-2) at token 37"), good}},
        {"bad_negative_cells", {malformed("negative number of cells (-2) at token 26"),
                                   malformed("negative number of cells (-2) at token 26"), good}},
        {"bad_negative_components",
            {malformed("negative number of components (-1) at token 45"), good,
                malformed("negative number of components (-1) at token 70")}},
        {"bad_negative_id", {malformed("negative point id (-1) at token 35"),
                                malformed("negative point id (-1) at token 35"), good}},
        {"bad_negative_points", {malformed("negative number of points (-4) at token 11"),
                                    malformed("negative number of points (-4) at token 11"),
                                    malformed("negative number of points (-4) at token 11")}},
        {"bad_no_cell_types",
            {malformed("CELL_TYPES not found"), malformed("CELL_TYPES not found"), good}},
        {"bad_no_cells", {malformed("CELLS not found"), malformed("CELLS not found"), good}},
        {"bad_no_lookup_table", {malformed("LOOKUP_TABLE after Pressure_Coefficient missing"), good,
                                    malformed("LOOKUP_TABLE after Y_Plus missing")}},
        {"bad_no_points", {malformed("POINTS not found"), malformed("POINTS not found"),
                              malformed("POINTS not found")}},
        {"bad_points_count_a_float", {expectedInt(11), expectedInt(11), expectedInt(11)}},
        {"bad_points_count_beyond_64_bits", {expectedInt(11), expectedInt(11), expectedInt(11)}},
        {"bad_points_count_beyond_memory",
            {expectedFloat(25), expectedFloat(25), expectedFloat(77)}},
        {"bad_points_count_too_large", {expectedFloat(25), expectedFloat(25), expectedFloat(77)}},
        {"bad_points_count_too_small",
            {malformed("a cell has the point id 3, but there are 3 points"), good, good}},
        {"bad_renamed_fields", {noPressure, noVelocity, noWallDistance}},
        {"bad_small_letters", {notLegacy, notLegacy, notLegacy}},
        {"bad_structured_grid", {notLegacy, notLegacy, notLegacy}},
        {"bad_truncated_before_fields", {noPressure, noVelocity, noWallDistance}},
        {"bad_truncated_cell_types", {expectedInt(39), expectedInt(39), noWallDistance}},
        {"bad_truncated_cells", {expectedInt(35), expectedInt(35), noWallDistance}},
        {"bad_truncated_in_a_number",
            {malformed("CELLS not found"), malformed("CELLS not found"), noWallDistance}},
        {"bad_truncated_last_scalar", {good, good, expectedFloat(76)}},
        {"bad_truncated_points", {expectedFloat(22), expectedFloat(22), noWallDistance}},
        {"bad_truncated_scalar", {expectedFloat(51), noVelocity, noWallDistance}},
        {"bad_truncated_vector", {good, expectedFloat(66), noWallDistance}},
        {"bad_two_points_in_a_number", {expectedFloat(49), expectedFloat(62), expectedFloat(74)}},
        {"bad_utf16", {notUTF8, notUTF8, notUTF8}},
        {"bad_word_among_ids", {expectedInt(34), expectedInt(34), good}},
    };
    return all;
}

std::string failure(const fs::path& path, const std::function<void()>& read) {
    std::string text = test::failureOf(read);
    if (const auto place = text.find(path.string()); place != std::string::npos)
        text.replace(place, path.string().size(), "it");
    return text;
}

Outcome outcome(const fs::path& path) {
    return {failure(path, [&] { FlowScreen::parseSurface(path, "Pressure_Coefficient"); }),
        failure(
            path, [&] { FlowScreen::requireFinite(FlowScreen::parseVolume(path, "Velocity")); }),
        failure(path, [&] { FlowScreen::extractScalarStats(path, "Y_Plus"); })};
}

TEST(VTKCorpus, EveryFileGivesItsOutcome) {
    for (const auto& [name, expected] : outcomes())
        EXPECT_EQ(outcome(corpus() / (name + ".vtk")), expected) << name;
}

TEST(VTKCorpus, EveryFileIsNamed) {
    for (const auto& entry : fs::directory_iterator(corpus()))
        if (entry.path().extension() == ".vtk") {
            EXPECT_TRUE(outcomes().contains(entry.path().stem().string())) << entry.path();
        }
}

TEST(VTKCorpus, GoodFilesAreAllTheSameFields) {
    for (const auto& [name, expected] : outcomes()) {
        if (!name.starts_with("good_"))
            continue;
        const auto path = corpus() / (name + ".vtk");
        const auto surface = FlowScreen::parseSurface(path, "Pressure_Coefficient");
        EXPECT_EQ(
            surface.positions, (SharedArray<Vec3>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}))
            << name;
        EXPECT_EQ(surface.scalar, (SharedArray<float>{-1.0F, 0.5F, 1.0F, 0.0F})) << name;
        EXPECT_EQ(surface.indices, (SharedArray<std::uint32_t>{0, 1, 2, 0, 2, 3})) << name;
        EXPECT_EQ(surface.primitive, SurfaceField::Primitive::triangle) << name;
        EXPECT_EQ(FlowScreen::parseVolume(path, "Velocity").velocity,
            (SharedArray<Vec3>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {-10, -11, -12}}))
            << name;
        EXPECT_EQ(FlowScreen::extractScalarStats(path, "Y_Plus"),
            (ScalarFieldStats{4, 1.0F, 4.0F, 2.5F, 3.0F}))
            << name;
    }
}

std::vector<std::uint8_t> bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Ends the process, and so the test, at what a fuzz target would call a finding.
std::size_t replay(const fs::path& folder, void (*body)(std::span<const std::uint8_t>)) {
    std::size_t count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) {
            body(bytesOf(entry.path()));
            ++count;
        }
    return count;
}

TEST(FuzzCorpus, NothingIsFoundInSurfaces) {
    EXPECT_GE(replay(corpus(), fuzz::vtkSurface), outcomes().size());
}

TEST(FuzzCorpus, NothingIsFoundInVolumesAndWhatIsMadeOfThem) {
    EXPECT_GE(replay(corpus(), fuzz::vtkVolume), outcomes().size());
}

TEST(FuzzCorpus, NothingIsFoundInFigures) {
    EXPECT_GE(replay(corpus(), fuzz::vtkStats), outcomes().size());
}

TEST(FuzzCorpus, NothingIsFoundInModels) {
    EXPECT_GE(replay(fs::path(OSTRELLA_TEST_DATA) / "stl", fuzz::stl), 20U);
}

} // namespace

} // namespace ostrella
