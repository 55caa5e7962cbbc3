#include "Solver/Flow/VTKLegacyParser.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include <sys/resource.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define OSTRELLA_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define OSTRELLA_TEST_SANITIZED 1
#endif
#endif

namespace ostrella {

namespace {

void repeat(std::ostream& stream, const std::string& text, int times) {
    for (int i = 0; i < times; ++i)
        stream << text;
    stream << '\n';
}

/// A file of 50 MB with the proportions of the solver's: 5.6 tetrahedra for each point, and some of
/// its fields.
void writeLargeFile(const std::filesystem::path& path) {
    constexpr int points = 150000;
    constexpr int cells = 840000;
    const std::string number = "-1.234567e+01\t";
    const std::string triple = number + number + number;
    std::ofstream file(path, std::ios::binary);
    file << "# vtk DataFile Version 3.0\nvtk output\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS "
         << points << " double\n";
    repeat(file, triple, points);
    file << "CELLS " << cells << '\t' << 5 * cells << '\n';
    repeat(file, "4\t10000\t10001\t10002\t10003\t", cells);
    file << "CELL_TYPES " << cells << '\n';
    repeat(file, "10\t", cells);
    file << "POINT_DATA " << points << '\n';
    for (const char* name : {"Velocity", "Vorticity"}) {
        file << "VECTORS " << name << " double\n";
        repeat(file, triple, points);
    }
    for (const char* name : {"Pressure_Coefficient", "Density", "Y_Plus"}) {
        file << "SCALARS " << name << " double 1\nLOOKUP_TABLE default\n";
        repeat(file, number, points);
    }
}

/// The largest memory that this process ever had, in bytes.
double peakMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
    return static_cast<double>(usage.ru_maxrss);
#else
    return static_cast<double>(usage.ru_maxrss) * 1024;
#endif
}

TEST(VTKMemory, ReadingTakesLittleMoreThanTheFile) {
#ifdef OSTRELLA_TEST_SANITIZED
    GTEST_SKIP() << "sanitizers keep freed memory";
#endif
    const test::TemporaryDirectory folder;
    const auto path = folder.path() / "flow.vtk";
    writeLargeFile(path);
    const auto size = static_cast<double>(std::filesystem::file_size(path));
    ASSERT_GT(size, 40e6);
    const auto takesLittle = [&](const std::function<void()>& read, double share) {
        const double before = peakMemory();
        read();
        std::fprintf(stderr, "%.2f times the file\n", (peakMemory() - before) / size);
        ::_exit(peakMemory() - before < share * size ? 0 : 1);
    };
    // Each in a process of its own, whose peak starts at what it holds.
    EXPECT_EXIT(takesLittle([&] { VTKLegacyParser::parseVolume(path, "Velocity"); }, 1.2),
        testing::ExitedWithCode(0), "times the file");
    EXPECT_EXIT(
        takesLittle([&] { VTKLegacyParser::parseSurface(path, "Pressure_Coefficient"); }, 1.5),
        testing::ExitedWithCode(0), "times the file");
    EXPECT_EXIT(takesLittle([&] { VTKLegacyParser::extractScalarStats(path, "Y_Plus"); }, 1.2),
        testing::ExitedWithCode(0), "times the file");
}

} // namespace

} // namespace ostrella
