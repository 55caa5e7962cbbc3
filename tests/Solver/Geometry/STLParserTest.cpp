#include "Solver/Geometry/STLParser.h"

#include "Solver/Geometry/ModelLoadError.h"
#include "Solver/Geometry/TestMeshes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace ostrella {

namespace {

using test::binarySTL;

TriangleMesh parseText(std::string_view text) {
    return STLParser::parse(test::bytesOf(text));
}

std::string failure(const std::vector<std::byte>& bytes) {
    try {
        STLParser::parse(bytes);
    } catch (const STLParseError& error) {
        return error.what();
    }
    return "no failure";
}

std::string textFailure(std::string_view text) {
    return failure(test::bytesOf(text));
}

const std::string triangle = "vertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n";

TEST(STLParserBinary, RecordsBecomeFacetsWithTheStoredNormalAtEachCorner) {
    const auto mesh = STLParser::parse(binarySTL(2, 2));
    ASSERT_EQ(mesh.facetCount(), 2U);
    EXPECT_EQ(mesh.positions(), SharedArray<Vec3>({{4, 5, 6}, {7, 8, 9}, {10, 11, 12},
                                    {104, 105, 106}, {107, 108, 109}, {110, 111, 112}}));
    const Vec3 first(1, 2, 3);
    const Vec3 second(101, 102, 103);
    EXPECT_EQ(mesh.normals(), SharedArray<Vec3>({first, first, first, second, second, second}));
    EXPECT_EQ(mesh.boundingMin(), Vec3(4, 5, 6));
    EXPECT_EQ(mesh.boundingMax(), Vec3(110, 111, 112));
}

TEST(STLParserBinary, AHeaderThatBeginsWithSolidIsBinaryAllTheSame) {
    EXPECT_EQ(STLParser::parse(binarySTL(1, 1, "solid part")).facetCount(), 1U);
}

TEST(STLParserBinary, TheBufferNeedNotBeAligned) {
    auto bytes = binarySTL(3, 3);
    bytes.insert(bytes.begin(), std::byte{0});
    EXPECT_EQ(STLParser::parse(std::span(bytes).subspan(1)), STLParser::parse(binarySTL(3, 3)));
}

TEST(STLParserBinary, NoFacetsInExactly84BytesIsAnEmptyMesh) {
    EXPECT_TRUE(STLParser::parse(binarySTL(0, 0)).empty());
}

TEST(STLParserBinary, AByteTooManyMakesItText) {
    auto bytes = std::vector<std::byte>(85, std::byte{0});
    EXPECT_EQ(failure(bytes), "Invalid ASCII STL: no vertices found");
}

TEST(STLParserBinary, ATruncatedFileIsText) {
    const auto whole = binarySTL(2, 2);
    const std::vector<std::byte> bytes(whole.begin(), whole.begin() + 150);
    EXPECT_NE(failure(bytes).find("Invalid ASCII STL: "), std::string::npos);
}

TEST(STLParserBinary, AGreatCountDoesNotWrapAround) {
    // 84 + 50 × 0x80000000 is 84 modulo 2³².
    EXPECT_EQ(
        failure(binarySTL(0, 0x80000000U)), "Invalid ASCII STL: file is not ASCII/UTF-8 decodable");
}

TEST(STLParserBinary, ATextWhoseSizeSatisfiesTheRuleIsBinary) {
    std::string text = "solid x\n" + triangle;
    text.resize(134, ' ');
    text.replace(80, 4, std::string("\1\0\0\0", 4));
    EXPECT_EQ(parseText(text).facetCount(), 1U);
    EXPECT_NE(parseText(text), parseText(triangle));
}

TEST(STLParser, NoBytesAtAll) {
    EXPECT_EQ(failure({}), "STL file is empty.");
}

TEST(STLParser, TheReasonsHaveTheirTexts) {
    EXPECT_STREQ(STLParseError::invalidASCII("d").what(), "Invalid ASCII STL: d");
    EXPECT_STREQ(STLParseError::invalidBinary("d").what(), "Invalid binary STL: d");
    EXPECT_STREQ(STLParseError::empty().what(), "STL file is empty.");
    EXPECT_EQ(STLParseError::empty().reason(), STLParseError::Reason::empty);
}

TEST(STLParser, APathIsReadAndParsed) {
    const test::TemporaryDirectory folder;
    EXPECT_EQ(STLParser::parse(test::fileIn(folder, "a.stl", triangle)), parseText(triangle));
    EXPECT_THROW(STLParser::parse(folder.path() / "b.stl"), ModelLoadError);
}

TEST(STLParser, APathGivesWhatItsBytesGive) {
    const test::TemporaryDirectory folder;
    // As large as a portion of the reader's, around it, and several of them.
    for (const std::uint32_t facets : {0U, 1U, 16383U, 16384U, 16385U, 50000U}) {
        const auto bytes = binarySTL(facets, facets);
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        EXPECT_EQ(STLParser::parse(test::fileIn(folder, "m.stl", text)), STLParser::parse(bytes))
            << facets;
    }
    const auto cut = binarySTL(16385, 16386);
    const std::string_view text(reinterpret_cast<const char*>(cut.data()), cut.size());
    EXPECT_THROW(STLParser::parse(test::fileIn(folder, "cut.stl", text)), STLParseError);
}

TEST(STLParserText, AWholeFacetInUnder84Bytes) {
    ASSERT_LT(triangle.size(), 84U);
    const auto mesh = parseText(triangle);
    EXPECT_EQ(mesh.positions(), SharedArray<Vec3>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
}

TEST(STLParserText, BeforeTheFirstFacetLineTheNormalIsPlusZ) {
    for (const Vec3& normal : parseText(triangle).normals())
        EXPECT_EQ(normal, Vec3(0, 0, 1));
}

TEST(STLParserText, AFacetLineSetsTheNormalOfWhatFollows) {
    const auto mesh =
        parseText("facet normal 1 2 3\n" + triangle + "facet normal -1 0 0\n" + triangle);
    EXPECT_EQ(mesh.normals()[2], Vec3(1, 2, 3));
    EXPECT_EQ(mesh.normals()[3], Vec3(-1, 0, 0));
}

TEST(STLParserText, AMalformedFacetLineLeavesTheNormalInForce) {
    for (const char* bad : {"facet normal 4 5 x", "facet normal 4 5", "facet normal",
             "facet  normal 4 5 6", "Facet normal 4 5 6", "facet\tnormal 4 5 6"}) {
        const auto mesh = parseText("facet normal 1 2 3\n" + std::string(bad) + "\n" + triangle);
        EXPECT_EQ(mesh.normals()[0], Vec3(1, 2, 3)) << bad;
    }
}

TEST(STLParserText, CapitalsAreNotRecognised) {
    EXPECT_EQ(textFailure("FACET NORMAL 0 0 1\nVERTEX 0 0 0\nVERTEX 1 0 0\nVERTEX 0 1 0\n"),
        "Invalid ASCII STL: no vertices found");
}

TEST(STLParserText, MoreNumbersThanThreeAreIgnored) {
    EXPECT_EQ(parseText("vertex 1 2 3 4\nvertex 5 6 7 x\nvertex 8 9 10 11 12").positions(),
        SharedArray<Vec3>({{1, 2, 3}, {5, 6, 7}, {8, 9, 10}}));
}

TEST(STLParserText, OneMalformedVertexBreaksTheCount) {
    EXPECT_EQ(textFailure(triangle + "vertex 1 2\nvertex 1 2 3\nvertex 4 5 6\n"),
        "Invalid ASCII STL: vertex count 5 not divisible by 3");
}

TEST(STLParserText, ThreeMalformedVerticesRegroupTheRest) {
    const auto mesh = parseText("vertex 1 0 0\nvertex a 0 0\nvertex 2 0 0\nvertex 3 b 0\n"
                                "vertex 4 0 c\nvertex 5 0 0\n");
    EXPECT_EQ(mesh.positions(), SharedArray<Vec3>({{1, 0, 0}, {2, 0, 0}, {5, 0, 0}}));
}

TEST(STLParserText, LineEndsOfAllKindsAndIndentationMakeNoDifference) {
    const auto plain = parseText(triangle);
    for (const std::string end :
        {"\n", "\r", "\r\n", "\n\n", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        for (const std::string indent : {"", "\t", "  \t ", "\xC2\xA0", "\xE3\x80\x80"}) {
            const std::string text = indent + "vertex 0 0 0" + end + indent + "vertex 1 0 0 " +
                                     end + indent + "vertex\t0 \t1 0\t";
            EXPECT_EQ(parseText(text), plain) << text;
        }
    }
}

TEST(STLParserText, FormFeedsAndVerticalTabsPartWordsButAreNotTrimmed) {
    EXPECT_EQ(parseText("vertex\f0\v0 0\nvertex 1 0 0\nvertex 0 1 0\n"), parseText(triangle));
    EXPECT_EQ(textFailure("\fvertex 0 0 0\n"), "Invalid ASCII STL: no vertices found");
    EXPECT_EQ(parseText("solid \v vertex 9 9 9\n" + triangle), parseText(triangle));
}

TEST(STLParserText, AKeywordMayRunOnIntoItsWord) {
    EXPECT_EQ(parseText("vertexes 0 0 0\nvertex: 1 0 0\nvertex7 0 1 0\n"), parseText(triangle));
}

TEST(STLParserText, NothingChecksTheOrderOfOtherLines) {
    const auto mesh =
        parseText("endsolid\nendloop\n" + triangle + "facet normal 1 0 0\nouter loop\n");
    EXPECT_EQ(mesh, parseText(triangle));
}

TEST(STLParserText, NumbersMayHaveExponentsSignsAndNoWholePart) {
    const auto mesh = parseText("vertex 1.0e-3 1E+2 +.5\nvertex -0.25 5. 0x10\nvertex 1e2 -0 +7\n");
    EXPECT_EQ(
        mesh.positions(), SharedArray<Vec3>({{0.001F, 100, 0.5F}, {-0.25F, 5, 16}, {100, 0, 7}}));
}

TEST(STLParserText, NamesOutsideASCIIArePassedOver) {
    EXPECT_EQ(parseText("solid Flügel \xE2\x9C\x88\n" + triangle), parseText(triangle));
}

TEST(STLParserText, WhatIsNoUTF8IsRefusedWhateverElseItHolds) {
    for (const std::string bad :
        {"\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
        EXPECT_EQ(textFailure(triangle + "solid " + bad),
            "Invalid ASCII STL: file is not ASCII/UTF-8 decodable");
}

TEST(STLParserText, NonFiniteNumbersPassTheParser) {
    const auto mesh = parseText("vertex nan 0 0\nvertex inf 0 0\nvertex 0 -Infinity 1e99\n");
    EXPECT_TRUE(std::isnan(mesh.positions()[0].x));
    EXPECT_TRUE(std::isinf(mesh.positions()[1].x));
    EXPECT_TRUE(std::isinf(mesh.positions()[2].z));
}

TEST(STLParserText, AFileOfBlanksHasNoVertices) {
    EXPECT_EQ(textFailure("   \n\n"), "Invalid ASCII STL: no vertices found");
    EXPECT_EQ(textFailure("vertex"), "Invalid ASCII STL: no vertices found");
    EXPECT_EQ(textFailure(std::string(1000, '\0')), "Invalid ASCII STL: no vertices found");
}

} // namespace

} // namespace ostrella
