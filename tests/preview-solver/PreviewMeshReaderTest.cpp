#include "Failure.h"
#include "MeshReader.h"
#include "SmallMeshes.h"

#include <gtest/gtest.h>

using namespace ostrella::preview;

namespace {

const std::string triangle = "NDIME= 2\nNELEM= 1\n5 0 1 2 0\nNPOIN= 3\n0 0 0\n1 0 1\n0 1 2\n"
                             "NMARK= 1\nMARKER_TAG= rim\nMARKER_ELEMS= 3\n3 0 1\n3 2 1\n3 2 0\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

std::string reasonFor(const std::string& text) {
    try {
        MeshReader::parse(text);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "accepted";
}

} // namespace

TEST(PreviewMeshReader, readsCellsPointsAndMarkers) {
    const Mesh mesh = MeshReader::parse("% a comment\n" + triangle);
    EXPECT_EQ(mesh.dimensions, 2);
    ASSERT_EQ(mesh.cells.size(), 1u);
    EXPECT_EQ(mesh.cells[0].type, CellType::triangle);
    ASSERT_EQ(mesh.points.size(), 3u);
    EXPECT_EQ(mesh.points[1], Vec3(1, 0, 0));
    ASSERT_EQ(mesh.markers.size(), 1u);
    EXPECT_EQ(mesh.markers[0].name, "rim");
    // Facets follow their cell's direction: the second was told the other way.
    ASSERT_EQ(mesh.markers[0].facets.size(), 3u);
    EXPECT_EQ(mesh.markers[0].facets[1].points[0], 1);
    EXPECT_EQ(mesh.markers[0].facets[1].points[1], 2);
}

TEST(PreviewMeshReader, turnsCellsOfNegativeArea) {
    const Mesh mesh = MeshReader::parse(replaced(triangle, "5 0 1 2", "5 0 2 1"));
    EXPECT_EQ(mesh.cells[0].points[1], 1);
    EXPECT_EQ(mesh.cells[0].points[2], 2);
}

TEST(PreviewMeshReader, refusesEveryKindOfBrokenMesh) {
    EXPECT_NE(reasonFor("").find("lacks"), std::string::npos);
    EXPECT_NE(reasonFor("hello\n").find("Line 1"), std::string::npos);
    EXPECT_EQ(reasonFor(replaced(triangle, "NELEM= 1\n5 0 1 2 0\n", "NELEM= 0\n")),
        "The mesh has no cells.");
    EXPECT_EQ(reasonFor(triangle.substr(0, triangle.find("0 1 2\nNMARK"))),
        "The mesh file ends within its points.");
    EXPECT_EQ(reasonFor(triangle.substr(0, triangle.find("3 2 0"))),
        "The mesh file ends within its markers.");
    EXPECT_EQ(reasonFor(replaced(triangle, "5 0 1 2", "5 0 1 7")),
        "Cell 0 names point 7, but the mesh has only 3 points.");
    EXPECT_EQ(reasonFor(replaced(triangle, "5 0 1 2", "5 0 1 1")), "Cell 0 names point 1 twice.");
    EXPECT_EQ(reasonFor(replaced(triangle, "3 2 1", "3 2 9")),
        "Marker rim names point 9, but the mesh has only 3 points.");
    EXPECT_NE(reasonFor(replaced(triangle, "5 0 1 2", "5 0 1 -2")).find("no point of the mesh"),
        std::string::npos);
    EXPECT_NE(reasonFor(replaced(triangle, "5 0 1 2", "77 0 1 2")).find("no known cell type"),
        std::string::npos);
    EXPECT_NE(reasonFor(replaced(triangle, "5 0 1 2", "10 0 1 2 3")).find("cannot be one of"),
        std::string::npos);
    EXPECT_NE(
        reasonFor(replaced(triangle, "1 0 1", "nan 0 1")).find("not finite"), std::string::npos);
    EXPECT_NE(
        reasonFor(replaced(triangle, "1 0 1", "inf 0 1")).find("not finite"), std::string::npos);
    EXPECT_NE(reasonFor(replaced(triangle, "1 0 1", "1e999 0 1")).find("Line"), std::string::npos);
    EXPECT_NE(reasonFor(replaced(triangle, "1 0 1", "x 0 1")).find("number is expected"),
        std::string::npos);
    EXPECT_NE(reasonFor(replaced(triangle, "NPOIN= 3", "NPOIN= 999999999999")).find("ends within"),
        std::string::npos);
    EXPECT_NE(
        reasonFor(replaced(triangle, "NELEM= 1", "NELEM= -1")).find("negative"), std::string::npos);
    EXPECT_NE(
        reasonFor(replaced(triangle, "NDIME= 2", "NDIME= 4")).find("2 or 3"), std::string::npos);
    EXPECT_NE(
        reasonFor(replaced(triangle, "NPOIN= 3\n", "NPOIN= 4\n5 5\n")).find("belongs to no cell"),
        std::string::npos);
    EXPECT_THROW(MeshReader::read("no/such/mesh.su2"), Failure);
}

TEST(PreviewMeshReader, survivesTheFileCutAnywhere) {
    const std::string text = SmallMeshes::cube(1, SmallMeshes::Filling::tetrahedra);
    for (std::size_t length = 0; length + 2 < text.size(); ++length)
        EXPECT_NE(reasonFor(text.substr(0, length)), "") << length;
}
