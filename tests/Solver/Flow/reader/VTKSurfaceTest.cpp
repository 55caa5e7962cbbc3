#include "Solver/Flow/VTKParseError.h"
#include "Solver/Flow/reader/VTKLiterals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace ostrella {

namespace {

using Primitive = SurfaceField::Primitive;
using test::failureOf;
using test::header;
using test::surfaceFailure;
using test::surfaceOf;

TEST(VTKSurface, PointsCellsAndOneScalar) {
    const auto surface = surfaceOf(test::square + test::squareFields);
    EXPECT_EQ(surface.positions, (SharedArray<Vec3>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}));
    EXPECT_EQ(surface.scalar, (SharedArray<float>{-1.0F, 0.5F, 1.0F, 0.0F}));
    EXPECT_EQ(surface.indices, (SharedArray<std::uint32_t>{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(surface.primitive, Primitive::triangle);
    EXPECT_EQ(surface.scalarName, "Pressure_Coefficient");
    EXPECT_EQ(surface.scalarMin, -1.0F);
    EXPECT_EQ(surface.scalarMax, 1.0F);
    EXPECT_EQ(surface.boundingMin, Vec3(0, 0, 0));
    EXPECT_EQ(surface.boundingMax, Vec3(1, 1, 0));
}

TEST(VTKSurface, AnyScalarCanBeAskedFor) {
    const auto surface = surfaceOf(test::square + test::squareFields, "Y_Plus");
    EXPECT_EQ(surface.scalar, (SharedArray<float>{4.0F, 3.0F, 2.0F, 1.0F}));
    EXPECT_EQ(surface.scalarName, "Y_Plus");
}

TEST(VTKSurface, NoPointsAndNoCells) {
    const auto surface = surfaceOf(header + "POINTS 0 double\nCELLS 0 0\nCELL_TYPES 0\n"
                                            "SCALARS Pressure_Coefficient double 1\n"
                                            "LOOKUP_TABLE default\n");
    EXPECT_TRUE(surface.positions.empty());
    EXPECT_TRUE(surface.scalar.empty());
    EXPECT_TRUE(surface.indices.empty());
    EXPECT_EQ(surface.scalarMin, 0.0F);
    EXPECT_EQ(surface.scalarMax, 1.0F);
    EXPECT_EQ(surface.boundingMin, Vec3(0, 0, 0));
    EXPECT_EQ(surface.boundingMax, Vec3(0, 0, 0));
    EXPECT_EQ(surface.primitive, Primitive::line);
}

SurfaceField withCells(const std::string& cells) {
    return surfaceOf(header + "POINTS 1 float 0 0 0 " + cells +
                     " SCALARS Pressure_Coefficient float LOOKUP_TABLE t 7");
}

TEST(VTKSurface, OnlyTheFirstCellsTypeCounts) {
    const auto primitive = [](const std::string& types) {
        return withCells("CELLS 0 0 CELL_TYPES " + types).primitive;
    };
    EXPECT_EQ(primitive("3 5 5 5"), Primitive::triangle);
    EXPECT_EQ(primitive("3 5 9 3"), Primitive::triangle);
    EXPECT_EQ(primitive("3 9 5 5"), Primitive::line);
    EXPECT_EQ(primitive("1 3"), Primitive::line);
    EXPECT_EQ(primitive("1 -5"), Primitive::line);
    EXPECT_EQ(primitive("1 +5"), Primitive::triangle);
    EXPECT_EQ(primitive("0"), Primitive::line);
}

TEST(VTKSurface, CellsOfAnySizeAreStrungTogether) {
    const auto surface = withCells("CELLS 4 999 2 7 8 3 1 2 3 0 1 +4294967295 CELL_TYPES 1 5");
    EXPECT_EQ(surface.indices, (SharedArray<std::uint32_t>{7, 8, 1, 2, 3, 4294967295U}));
}

TEST(VTKSurface, TheListsSizeIsNotLookedAt) {
    for (const char* size : {"-1", "0", "x", "1e3", "9223372036854775807", "1000000000000"})
        EXPECT_EQ(withCells(std::string("CELLS 1 ") + size + " 2 0 0 CELL_TYPES 1 3").indices,
            (SharedArray<std::uint32_t>{0, 0}))
            << size;
}

TEST(VTKSurface, ThePointsTypeIsNotLookedAt) {
    EXPECT_EQ(surfaceOf(header + "POINTS 1 rubbish 1 2 3 CELLS 0 0 CELL_TYPES 0 "
                                 "SCALARS Pressure_Coefficient rubbish LOOKUP_TABLE t 7")
                  .positions,
        (SharedArray<Vec3>{{1, 2, 3}}));
}

SurfaceField withScalar(const std::string& scalar) {
    return surfaceOf(header + "POINTS 2 float 0 0 0 1 1 1 CELLS 0 0 CELL_TYPES 0 " + scalar);
}

TEST(VTKSurface, TheComponentCountMayBeMissing) {
    const SharedArray<float> expected{1.5F, 2.5F};
    EXPECT_EQ(
        withScalar("SCALARS Pressure_Coefficient float 1 LOOKUP_TABLE default 1.5 2.5").scalar,
        expected);
    EXPECT_EQ(withScalar("SCALARS Pressure_Coefficient float LOOKUP_TABLE default 1.5 2.5").scalar,
        expected);
    EXPECT_EQ(
        withScalar("SCALARS Pressure_Coefficient float 1.0 LOOKUP_TABLE default 1.5 2.5").scalar,
        expected)
        << "1.0 is no integer";
}

TEST(VTKSurface, OfSeveralComponentsTheFirstIsKept) {
    EXPECT_EQ(withScalar("SCALARS Pressure_Coefficient float 3 LOOKUP_TABLE default "
                         "1 2 3 4 5 6")
                  .scalar,
        (SharedArray<float>{1.0F, 4.0F}));
}

TEST(VTKSurface, TheOtherComponentsMustBeNumbersToo) {
    EXPECT_EQ(failureOf([] {
        withScalar("SCALARS Pressure_Coefficient float 3 LOOKUP_TABLE default 1 2 x 4 5 6");
    }),
        "Malformed VTK: expected float at token 32");
}

TEST(VTKSurface, WithoutComponentsEachPointHasZero) {
    const auto surface = withScalar("SCALARS Pressure_Coefficient float 0 LOOKUP_TABLE default");
    EXPECT_EQ(surface.scalar, (SharedArray<float>{0.0F, 0.0F}));
    EXPECT_EQ(surface.scalarMin, 0.0F);
    EXPECT_EQ(surface.scalarMax, 0.0F);
}

TEST(VTKSurface, TheLookupTableMayComeLater) {
    EXPECT_EQ(withScalar("SCALARS Pressure_Coefficient float more words LOOKUP_TABLE t 1 2").scalar,
        (SharedArray<float>{1.0F, 2.0F}));
}

TEST(VTKSurface, NaNIsPassedOverUnlessItComesFirst) {
    const auto later = withScalar("SCALARS Pressure_Coefficient float LOOKUP_TABLE t 2 nan");
    EXPECT_EQ(later.scalarMin, 2.0F);
    EXPECT_EQ(later.scalarMax, 2.0F);
    const auto first = withScalar("SCALARS Pressure_Coefficient float LOOKUP_TABLE t nan 2");
    EXPECT_TRUE(std::isnan(first.scalarMin));
    EXPECT_TRUE(std::isnan(first.scalarMax));
}

TEST(VTKSurface, AScalarAheadOfTheGeometryIsNotFound) {
    const std::string scalar = "SCALARS Pressure_Coefficient float LOOKUP_TABLE t 1 ";
    const std::string points = "POINTS 1 float 0 0 0 CELLS 0 0 CELL_TYPES 0 ";
    EXPECT_EQ(surfaceFailure(header + scalar + points),
        "VTK missing scalar field 'Pressure_Coefficient'.");
    EXPECT_EQ(surfaceFailure(header + points + scalar), "");
}

TEST(VTKSurface, ANameIsComparedExactly) {
    const std::string file = test::square + test::squareFields;
    EXPECT_EQ(surfaceFailure(file, "pressure_coefficient"),
        "VTK missing scalar field 'pressure_coefficient'.");
    EXPECT_EQ(surfaceFailure(file, "Pressure_Coefficien"),
        "VTK missing scalar field 'Pressure_Coefficien'.");
    EXPECT_EQ(surfaceFailure(file, "Velocity"), "VTK missing scalar field 'Velocity'.");
    EXPECT_EQ(surfaceFailure(file, ""), "VTK missing scalar field ''.");
}

TEST(VTKSurface, AKeywordCanBeAName) {
    EXPECT_EQ(surfaceOf(header + "POINTS 1 f 0 0 0 CELLS 0 0 CELL_TYPES 0 SCALARS SCALARS SCALARS "
                                 "Pressure_Coefficient f LOOKUP_TABLE LOOKUP_TABLE 4")
                  .scalar,
        (SharedArray<float>{4.0F}));
}

TEST(VTKSurface, ANameAsLastWordIsMissing) {
    EXPECT_EQ(failureOf([] { withScalar("SCALARS Pressure_Coefficient"); }),
        "VTK missing scalar field 'Pressure_Coefficient'.");
    EXPECT_EQ(failureOf([] { withScalar("SCALARS Pressure_Coefficient float"); }),
        "Malformed VTK: LOOKUP_TABLE after Pressure_Coefficient missing");
    EXPECT_EQ(failureOf([] { withScalar("SCALARS Pressure_Coefficient float 1"); }),
        "Malformed VTK: LOOKUP_TABLE after Pressure_Coefficient missing");
}

TEST(VTKSurface, SectionsInAWrongOrderAreNotFound) {
    const std::string points = "POINTS 1 float 0 0 0 ";
    EXPECT_EQ(surfaceFailure(header), "Malformed VTK: POINTS not found");
    EXPECT_EQ(surfaceFailure(header + "CELLS 0 0 CELL_TYPES 0 " + points),
        "Malformed VTK: CELLS not found");
    EXPECT_EQ(surfaceFailure(header + points + "CELL_TYPES 0 CELLS 0 0"),
        "Malformed VTK: CELL_TYPES not found");
    EXPECT_EQ(surfaceFailure(header + "points 1 float 0 0 0"), "Malformed VTK: POINTS not found");
    EXPECT_EQ(
        surfaceFailure(header + "POINTS1 float 0 0 0 xPOINTS"), "Malformed VTK: POINTS not found");
}

} // namespace

} // namespace ostrella
