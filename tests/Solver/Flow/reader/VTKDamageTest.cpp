// Files cut off and changed at every place: the reader always gives what the plain reader gives,
// the number of the word in its errors included, and the process goes on.

#include "Solver/Flow/reader/VTKLiterals.h"
#include "fuzz/PlainVTKReader.h"
#include "fuzz/VTKBodies.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace ostrella {

namespace {

/// Ends the process, and so the test, where the readers disagree.
void readInAllWays(const std::string& contents) {
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(contents.data()), contents.size());
    fuzz::vtkSurface(bytes);
    fuzz::vtkVolume(bytes);
    fuzz::vtkStats(bytes);
}

const std::string whole = test::square + test::squareFields;

TEST(VTKDamage, EveryPrefix) {
    for (std::size_t size = 0; size <= whole.size(); ++size)
        readInAllWays(whole.substr(0, size));
}

TEST(VTKDamage, EveryPrefixWithAnotherEnd) {
    for (std::size_t size = 0; size <= whole.size(); ++size)
        for (const char* end : {" ", "\r\n", "x", "\xC2", "\xC2\xA0"})
            readInAllWays(whole.substr(0, size) + end);
}

TEST(VTKDamage, EveryByteChanged) {
    for (std::size_t place = 0; place < whole.size(); ++place)
        for (const char byte : {' ', 'x', '.', '-', '9', '\0', '\xFF'}) {
            std::string other = whole;
            other[place] = byte;
            readInAllWays(other);
        }
}

TEST(VTKDamage, EveryByteMissing) {
    for (std::size_t place = 0; place < whole.size(); ++place)
        readInAllWays(std::string(whole).erase(place, 1));
}

TEST(VTKDamage, EveryWordReplaced) {
    const auto words = fuzz::PlainVTKReader(whole).words();
    for (std::size_t replaced = 0; replaced < words.size(); ++replaced)
        for (const char* word :
            {"", "-1", "0", "3", "1000000000000000", "1.5", "nan", "1e300", "POINTS", "CELLS",
                "SCALARS", "LOOKUP_TABLE", "4294967295", "99999999999999999999"}) {
            std::string other;
            for (std::size_t i = 0; i < words.size(); ++i)
                other += (i == replaced ? word : words[i]) + "\n";
            readInAllWays(other);
        }
}

/// The failure of the whole file cut off behind `words` words.
std::string cutBehind(std::size_t words) {
    const auto all = fuzz::PlainVTKReader(whole).words();
    std::string file;
    for (std::size_t i = 0; i < words; ++i)
        file += all[i] + " ";
    return test::surfaceFailure(file);
}

TEST(VTKDamage, AFileCutOffInEachSection) {
    EXPECT_EQ(cutBehind(5), "Not a legacy ASCII VTK file.");
    EXPECT_EQ(cutBehind(9), "Not a legacy ASCII VTK file.");
    EXPECT_EQ(cutBehind(10), "Malformed VTK: POINTS not found");
    EXPECT_EQ(cutBehind(11), "Malformed VTK: expected int at token 11");
    EXPECT_EQ(cutBehind(12), "Malformed VTK: expected float at token 13") << "the type is missing";
    EXPECT_EQ(cutBehind(13), "Malformed VTK: expected float at token 13");
    EXPECT_EQ(cutBehind(20), "Malformed VTK: expected float at token 20");
    EXPECT_EQ(cutBehind(25), "Malformed VTK: CELLS not found");
    EXPECT_EQ(cutBehind(26), "Malformed VTK: expected int at token 26");
    EXPECT_EQ(cutBehind(27), "Malformed VTK: expected int at token 28") << "the size is missing";
    EXPECT_EQ(cutBehind(30), "Malformed VTK: expected int at token 30");
    EXPECT_EQ(cutBehind(36), "Malformed VTK: CELL_TYPES not found");
    EXPECT_EQ(cutBehind(37), "Malformed VTK: expected int at token 37");
    EXPECT_EQ(cutBehind(39), "Malformed VTK: expected int at token 39");
    EXPECT_EQ(cutBehind(40), "VTK missing scalar field 'Pressure_Coefficient'.");
    EXPECT_EQ(cutBehind(44), "VTK missing scalar field 'Pressure_Coefficient'.");
    EXPECT_EQ(cutBehind(45), "Malformed VTK: LOOKUP_TABLE after Pressure_Coefficient missing");
    EXPECT_EQ(cutBehind(46), "Malformed VTK: LOOKUP_TABLE after Pressure_Coefficient missing");
    EXPECT_EQ(cutBehind(47), "Malformed VTK: expected float at token 48") << "the table's name";
    EXPECT_EQ(cutBehind(48), "Malformed VTK: expected float at token 48");
    EXPECT_EQ(cutBehind(51), "Malformed VTK: expected float at token 51");
    EXPECT_EQ(cutBehind(52), "");
}

} // namespace

} // namespace ostrella
