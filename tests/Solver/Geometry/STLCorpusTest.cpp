#include "Solver/Geometry/ModelFile.h"

#include "Solver/Geometry/FeatureEdges.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/Welding.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

namespace ostrella {

namespace {

namespace fs = std::filesystem;

fs::path corpus() {
    return fs::path(OSTRELLA_TEST_DATA) / "stl";
}

const std::string noVertices = "Invalid ASCII STL: no vertices found";
const std::string undecodable = "Invalid ASCII STL: file is not ASCII/UTF-8 decodable";
const std::string notFinite = "Facet 1 of 1 has a corner that is not a finite number. Export the "
                              "model again, or repair it.";

/// What loading each file gives: "" for a mesh of one facet, otherwise the text of the failure.
const std::map<std::string, std::string> outcomes = {
    {"good_text.stl", ""},
    {"good_crlf_tabs.stl", ""},
    {"good_no_keywords.stl", ""},
    {"good_leading_plus_and_hex.stl", ""},
    {"good_binary_solid_header.stl", ""},
    {"good_binary_no_facets.stl",
        "The model has no facets. Export it again as a triangulated surface."},
    {"bad_empty.stl", "STL file is empty."},
    {"bad_trailing_byte.stl", noVertices},
    {"bad_count_field.stl", undecodable},
    {"bad_truncated_binary.stl", undecodable},
    {"bad_count_wraps_32_bits.stl", noVertices},
    {"bad_capitals.stl", noVertices},
    {"bad_decimal_comma.stl", noVertices},
    {"bad_one_vertex_short.stl", "Invalid ASCII STL: vertex count 5 not divisible by 3"},
    {"bad_truncated_text.stl", "Invalid ASCII STL: vertex count 4 not divisible by 3"},
    {"bad_overlong_utf8.stl", undecodable},
    {"bad_latin1_name.stl", undecodable},
    {"bad_utf16.stl", undecodable},
    {"bad_keyword_only.stl", noVertices},
    {"odd_byte_order_mark.stl", ""},
    {"odd_unicode_line_ends.stl", ""},
    {"odd_nul_bytes.stl", ""},
    {"odd_not_finite.stl", notFinite},
    {"odd_too_far.stl", "The model is too far from the origin for its size: its corners cannot be "
                        "told apart there. Move it to the origin, and export it again."},
    {"odd_long_number.stl", notFinite},
    {"odd_nan_binary.stl", notFinite},
};

std::string outcome(const fs::path& path) {
    try {
        const auto mesh = loadModelFile(path);
        // What is let in passes through all that is done to a model.
        const bool whole = mesh.facetCount() == 1 && openEdgeCount(mesh) == 3 &&
                           FeatureEdges::extract(welded(mesh), 30).boundaryCount == 3;
        return whole ? "" : "not one facet";
    } catch (const std::exception& error) {
        return error.what();
    }
}

TEST(STLCorpus, EveryFileGivesItsOutcome) {
    for (const auto& [name, expected] : outcomes)
        EXPECT_EQ(outcome(corpus() / name), expected) << name;
}

TEST(STLCorpus, EveryFileIsNamed) {
    for (const auto& entry : fs::directory_iterator(corpus()))
        if (entry.path().extension() == ".stl") {
            EXPECT_TRUE(outcomes.contains(entry.path().filename().string())) << entry.path();
        }
}

TEST(STLCorpus, GoodFilesAreAllTheSameFacet) {
    const auto expected = STLParser::parse(corpus() / "good_text.stl");
    for (const char* name : {"good_crlf_tabs.stl", "good_no_keywords.stl",
             "good_leading_plus_and_hex.stl", "good_binary_solid_header.stl",
             "odd_byte_order_mark.stl", "odd_unicode_line_ends.stl", "odd_nul_bytes.stl"})
        EXPECT_EQ(STLParser::parse(corpus() / name), expected) << name;
}

} // namespace

} // namespace ostrella
