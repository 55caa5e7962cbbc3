#include "Solver/Flow/FlowFiles.h"

#include "TestLines.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace ostrella {

namespace {

/// Floats of every size and sign, finite or not, the edges of their range among them.
std::vector<float> manyFloats() {
    using Limits = std::numeric_limits<float>;
    std::vector<float> numbers = {0.0F, -0.0F, 1.0F, -1.0F, 0.1F, 100000000.0F, 999999999.0F, 1e9F,
        9999999999.0F, 1e-4F, 1e-5F, 16777216.0F, Limits::max(), Limits::lowest(), Limits::min(),
        Limits::denorm_min(), -Limits::denorm_min(), Limits::infinity(), -Limits::infinity(),
        Limits::quiet_NaN(), -Limits::quiet_NaN()};
    std::mt19937 bits(20240607);
    while (numbers.size() < 100000)
        numbers.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(bits())));
    return numbers;
}

std::string printed(float number) {
    std::array<char, 32> word{};
    std::snprintf(word.data(), word.size(), "%.9g", static_cast<double>(number));
    return word.data();
}

/// The words behind the line `heading`, up to `count` of them.
std::vector<std::string> wordsBehind(
    const std::string& text, const std::string& heading, std::size_t count) {
    const std::size_t at = text.find(heading + "\n");
    EXPECT_NE(at, std::string::npos) << heading;
    std::istringstream stream(text.substr(at + heading.size() + 1));
    std::vector<std::string> words;
    std::string word;
    while (words.size() < count && stream >> word)
        words.push_back(word);
    return words;
}

TEST(FlowFiles, StreamlinesAreLegacyPolydata) {
    const auto lines = test::joined({{0, 0.5F, -1, 60}, {0.25F, 0.5F, -1, 61.5F}, {1e-7F, 2, 3, 0},
                                        {1, 1, 1, 1}, {2, 1, 1, 2}, {3, 1, 1, 3}},
        {0, 1, 3, 4, 4, 5});
    EXPECT_EQ(FlowFiles::streamlinesVTK(lines), "# vtk DataFile Version 3.0\n"
                                                "Streamlines, metres and metres per second\n"
                                                "ASCII\n"
                                                "DATASET POLYDATA\n"
                                                "POINTS 6 float\n"
                                                "0 0.5 -1\n"
                                                "0.25 0.5 -1\n"
                                                "1.00000001e-07 2 3\n"
                                                "1 1 1\n"
                                                "2 1 1\n"
                                                "3 1 1\n"
                                                "LINES 2 7\n"
                                                "2 0 1\n"
                                                "3 3 4 5\n"
                                                "POINT_DATA 6\n"
                                                "SCALARS Speed float 1\n"
                                                "LOOKUP_TABLE default\n"
                                                "60\n"
                                                "61.5\n"
                                                "0\n"
                                                "1\n"
                                                "2\n"
                                                "3\n");
}

TEST(FlowFiles, NoStreamlinesAreAWholeFile) {
    EXPECT_EQ(FlowFiles::streamlinesVTK({}), "# vtk DataFile Version 3.0\n"
                                             "Streamlines, metres and metres per second\n"
                                             "ASCII\n"
                                             "DATASET POLYDATA\n"
                                             "POINTS 0 float\n"
                                             "LINES 0 0\n"
                                             "POINT_DATA 0\n"
                                             "SCALARS Speed float 1\n"
                                             "LOOKUP_TABLE default\n");
}

TEST(FlowFiles, AVertexWithoutASegmentStaysAmongThePoints) {
    const auto text = FlowFiles::streamlinesVTK(test::traced({1, 2}));
    EXPECT_NE(text.find("POINTS 3 float\n"), std::string::npos);
    EXPECT_NE(text.find("LINES 1 3\n2 1 2\n"), std::string::npos);
}

TEST(FlowFiles, ASurfaceIsAPLYWithNormals) {
    IsoSurface surface;
    surface.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, -0.1F}};
    surface.normals = {{0, 0, 1}, {0, 1, 0}, {1, 0, 0}, {-0.0F, 0.6F, -0.8F}};
    surface.indices = {0, 1, 2, 3, 2, 1};
    surface.isoValue = 1234.5F;
    EXPECT_EQ(FlowFiles::isoSurfacePLY(surface),
        "ply\n"
        "format ascii 1.0\n"
        "comment surface of Q = 1234.5 per square second, metres\n"
        "element vertex 4\n"
        "property float x\n"
        "property float y\n"
        "property float z\n"
        "property float nx\n"
        "property float ny\n"
        "property float nz\n"
        "element face 2\n"
        "property list uchar int vertex_indices\n"
        "end_header\n"
        "0 0 0 0 0 1\n"
        "1 0 0 0 1 0\n"
        "0 1 0 1 0 0\n"
        "0 0 -0.100000001 -0 0.600000024 -0.800000012\n"
        "3 0 1 2\n"
        "3 3 2 1\n");
}

TEST(FlowFiles, NumbersAreThoseOfPrintf) {
    const auto numbers = manyFloats();
    std::vector<Vec4> vertices;
    for (const float number : numbers)
        vertices.emplace_back(0, 0, 0, number);
    const auto words = wordsBehind(FlowFiles::streamlinesVTK(test::joined(vertices, {})),
        "LOOKUP_TABLE default", numbers.size());
    ASSERT_EQ(words.size(), numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        ASSERT_EQ(words[i], printed(numbers[i])) << i;
}

TEST(FlowFiles, NumbersComeBackBitByBit) {
    const auto numbers = manyFloats();
    std::vector<Vec3> positions;
    for (std::size_t i = 0; i + 2 < numbers.size(); i += 3)
        positions.emplace_back(numbers[i], numbers[i + 1], numbers[i + 2]);
    IsoSurface surface;
    surface.positions = positions;
    surface.normals = positions;
    const auto words =
        wordsBehind(FlowFiles::isoSurfacePLY(surface), "end_header", 6 * positions.size());
    ASSERT_EQ(words.size(), 6 * positions.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        const float number = positions[i / 6][static_cast<int>(i % 3)];
        char* end = nullptr;
        const float back = std::strtof(words[i].c_str(), &end);
        ASSERT_EQ(*end, '\0') << words[i];
        if (std::isnan(number))
            ASSERT_TRUE(std::isnan(back)) << words[i];
        else
            ASSERT_EQ(std::bit_cast<std::uint32_t>(back), std::bit_cast<std::uint32_t>(number))
                << words[i];
    }
}

} // namespace

} // namespace ostrella
