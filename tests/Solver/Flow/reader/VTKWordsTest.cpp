#include "Models/FileError.h"
#include "Solver/Flow/reader/VTKLiterals.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <system_error>

#include <sys/stat.h>

namespace ostrella {

namespace {

namespace fs = std::filesystem;
using test::failureOf;
using test::header;
using test::statsFailure;
using test::surfaceFailure;
using test::surfaceOf;
using test::volumeFailure;
using test::volumeOf;

const std::string notLegacy = "Not a legacy ASCII VTK file.";

TEST(VTKHeader, SixWordsAreTheFewest) {
    for (const auto& failure : {surfaceFailure("a b c ASCII UNSTRUCTURED_GRID"),
             volumeFailure("a b c ASCII UNSTRUCTURED_GRID"),
             statsFailure("a b c ASCII UNSTRUCTURED_GRID"), surfaceFailure(""),
             surfaceFailure(" \n")})
        EXPECT_EQ(failure, notLegacy);
    for (const auto& failure : {surfaceFailure("a b c d ASCII UNSTRUCTURED_GRID"),
             volumeFailure("a b c d ASCII UNSTRUCTURED_GRID"),
             statsFailure("a b c d ASCII UNSTRUCTURED_GRID")})
        EXPECT_EQ(failure, "Malformed VTK: POINTS not found");
}

TEST(VTKHeader, BothWordsAreNeededWhole) {
    for (const char* words : {"a b c d ASCII STRUCTURED_GRID", "a b c d ASCII POLYDATA",
             "a b c d BINARY UNSTRUCTURED_GRID", "a b c d ascii UNSTRUCTURED_GRID",
             "a b c d ASCIIX UNSTRUCTURED_GRID", "a b c d ASCII xUNSTRUCTURED_GRID",
             "a b c d ASCII UNSTRUCTURED_GRIDS"})
        EXPECT_EQ(surfaceFailure(words), notLegacy) << words;
}

TEST(VTKHeader, TheWordsMayStandAnywhere) {
    EXPECT_EQ(volumeOf("POINTS 1 f 1 2 3 CELLS 0 0 CELL_TYPES 0 VECTORS Velocity f 4 5 6 "
                       "UNSTRUCTURED_GRID ASCII")
                  .velocity[0],
        Vec3(4, 5, 6));
}

TEST(VTKHeader, ABinaryFile) {
    // What it brings behind its header is either no UTF-8 or no field.
    const std::string binary = "# vtk DataFile Version 3.0\nvtk output\nBINARY\n"
                               "DATASET UNSTRUCTURED_GRID\nPOINTS 1 float\n";
    EXPECT_EQ(surfaceFailure(binary + std::string(12, '\0')), notLegacy);
}

TEST(VTKWords, EveryWhiteSpaceParts) {
    for (const std::string space : {" ", "\t", "\n", "\v", "\f", "\r", "\r\n", "\xC2\x85",
             "\xC2\xA0", "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x8A", "\xE2\x80\xA8",
             "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80", " \xE3\x80\x80\t "}) {
        std::string file = header + "POINTS 1 f 1 2 3 CELLS 1 2 1 0 CELL_TYPES 1 5 SCALARS "
                                    "Pressure_Coefficient f LOOKUP_TABLE t 7 ";
        for (std::size_t at = 0; (at = file.find_first_of(" \n", at)) != std::string::npos;
             at += space.size())
            file.replace(at, 1, space);
        const auto surface = surfaceOf(space + file);
        EXPECT_EQ(surface.positions, (SharedArray<Vec3>{{1, 2, 3}}));
        EXPECT_EQ(surface.scalar, (SharedArray<float>{7.0F}));
    }
}

TEST(VTKWords, OtherCharactersPartNothing) {
    // A zero-width space, a byte order mark, NUL and U+001C are none of the white space.
    for (const std::string other : {"\xE2\x80\x8B", "\xEF\xBB\xBF", "\x1C", "\xC3\xA4"})
        EXPECT_EQ(volumeFailure(header + "POINTS 1 f 1" + other + "2 3 4"),
            "Malformed VTK: expected float at token 13");
    EXPECT_EQ(volumeFailure(header + "POINTS 1 f 1" + std::string(1, '\0') + " 2 3"),
        "Malformed VTK: expected float at token 13");
}

TEST(VTKWords, NamesMayHaveAnyLetters) {
    EXPECT_EQ(
        surfaceOf(header + "POINTS 1 f 1 2 3 CELLS 0 0 CELL_TYPES 0 SCALARS Gr\xC3\xB6\xC3\x9F"
                           "e f LOOKUP_TABLE t 7",
            "Gr\xC3\xB6\xC3\x9F"
            "e")
            .scalar,
        (SharedArray<float>{7.0F}));
}

TEST(VTKWords, WindowsLineEnds) {
    std::string file = test::square + test::squareFields;
    for (std::size_t at = 0; (at = file.find('\n', at)) != std::string::npos; at += 2)
        file.replace(at, 1, "\r\n");
    EXPECT_EQ(surfaceOf(file).scalar, surfaceOf(test::square + test::squareFields).scalar);
    EXPECT_EQ(volumeOf(file).velocity, volumeOf(test::square + test::squareFields).velocity);
}

/// What becomes of `word` as point count; the count is 0 where it is read.
std::string asInteger(const std::string& word) {
    return volumeFailure(
        header + "POINTS " + word + " f CELLS 0 0 CELL_TYPES 0 VECTORS Velocity f");
}

TEST(VTKWords, Integers) {
    for (const char* word : {"0", "+0", "-0", "000", "+00000000000000000000000000000"})
        EXPECT_EQ(asInteger(word), "") << word;
    for (const char* word : {"1.0", "0.", "0e0", "0x0", "+", "-", "++0", "+-0", "-+0", "0+", "zero",
             "9223372036854775808", "-9223372036854775809", "0,", "\xD9\xA0"})
        EXPECT_EQ(asInteger(word), "Malformed VTK: expected int at token 11") << word;
}

TEST(VTKWords, IntegersOfAnyLength) {
    const auto type = [](const std::string& word) {
        return surfaceFailure(header + "POINTS 0 f CELLS 0 0 CELL_TYPES 1 " + word +
                              " SCALARS Pressure_Coefficient f LOOKUP_TABLE t");
    };
    std::string digits;
    for (int size = 1; size <= 18; ++size) {
        digits += "7";
        EXPECT_EQ(type(digits), "");
        EXPECT_EQ(type("-" + digits), "");
        EXPECT_EQ(type(digits + "x"), "Malformed VTK: expected int at token 18");
    }
    EXPECT_EQ(type("9223372036854775807"), "");
    EXPECT_EQ(type("-9223372036854775808"), "");
}

/// The float that `word` is as a coordinate.
float asFloat(const std::string& word) {
    return volumeOf(header + "POINTS 1 f " + word +
                    " 0 0 CELLS 0 0 CELL_TYPES 0 "
                    "VECTORS Velocity f 0 0 0")
        .positions[0]
        .x;
}

TEST(VTKWords, Floats) {
    EXPECT_EQ(asFloat("+1.5"), 1.5F);
    EXPECT_EQ(asFloat("-1.500000e+01"), -15.0F);
    EXPECT_EQ(asFloat(".5"), 0.5F);
    EXPECT_EQ(asFloat("5."), 5.0F);
    EXPECT_EQ(asFloat("1E2"), 100.0F);
    EXPECT_EQ(asFloat("0x1p3"), 8.0F);
    EXPECT_EQ(asFloat("0x.8"), 0.5F);
    EXPECT_EQ(asFloat("1e-50"), 0.0F);
    EXPECT_EQ(asFloat("1e-45"), 1.40129846e-45F);
    EXPECT_EQ(asFloat("1e50"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(asFloat("inf"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(asFloat("-Infinity"), -std::numeric_limits<float>::infinity());
    for (const char* word : {"nan", "NaN", "-nan", "nan(abc)"})
        EXPECT_TRUE(std::isnan(asFloat(word))) << word;
    EXPECT_TRUE(std::signbit(asFloat("-0")));
    EXPECT_EQ(asFloat("16777217"), 16777216.0F) << "half-way, to even";
    EXPECT_EQ(asFloat("16777217.0000001"), 16777218.0F);
}

TEST(VTKWords, NoFloats) {
    for (const char* word : {"1.2.3", "1,5", "1.5abc", "e5", ".", "+", "-", "1e", "1e+", "--1",
             "0x", "1.0f", "infinit", "na", "nan(", "1_000"})
        EXPECT_EQ(failureOf([&] { asFloat(word); }), "Malformed VTK: expected float at token 13")
            << word;
}

TEST(VTKWords, TheTokenOfAFaultIsCountedFromZero) {
    // "1.0.0" is word number 16: the second point's x.
    EXPECT_EQ(surfaceFailure(header + "POINTS 2 f 0 0 0 1.0.0 0 0"),
        "Malformed VTK: expected float at token 16");
}

class VTKFile : public testing::Test {
protected:
    static void expectFailure(const fs::path& path, std::errc reason, const std::string& words) {
        for (const auto& read : {std::function<void()>([&] {
                                     VTKLegacyParser::parseSurface(path, "Pressure_Coefficient");
                                 }),
                 std::function<void()>([&] { VTKLegacyParser::parseVolume(path, "Velocity"); }),
                 std::function<void()>(
                     [&] { VTKLegacyParser::extractScalarStats(path, "Y_Plus"); })}) {
            try {
                read();
                FAIL() << "nothing was thrown";
            } catch (const FileError& error) {
                EXPECT_EQ(error.code(), reason);
                EXPECT_EQ(error.what(), "Cannot read " + path.string() + ": " + words);
            }
        }
    }

    test::TemporaryDirectory folder_;
};

TEST_F(VTKFile, WhatIsNotThere) {
    expectFailure(folder_.path() / "flow.vtk", std::errc::no_such_file_or_directory,
        "No such file or directory");
}

TEST_F(VTKFile, FoldersPipesAndDevicesAreNoFiles) {
    expectFailure(folder_.path(), std::errc::is_a_directory, "Is a directory");
    expectFailure("/dev/zero", std::errc::not_supported, "Operation not supported");
    const auto pipe = folder_.path() / "flow.vtk";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectFailure(pipe, std::errc::not_supported, "Operation not supported");
}

TEST_F(VTKFile, BytesThatAreNoUTF8) {
    const auto path = folder_.path() / "flow.vtk";
    std::ofstream(path, std::ios::binary) << test::square << test::squareFields << "\xFF";
    expectFailure(path, std::errc::illegal_byte_sequence,
        "Invalid or incomplete multibyte or wide character");
}

} // namespace

} // namespace ostrella
