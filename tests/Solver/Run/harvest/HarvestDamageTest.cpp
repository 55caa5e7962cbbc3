// Files that are missing, cut off, wrong or hostile: each costs its part, one line, and no more.

#include "HarvestFixture.h"

#include <array>
#include <ostream>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using FieldFiles::replaced;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class HarvestOfDamage : public HarvestTest {
protected:
    HarvestOfDamage() { writeWholeRun(); }

    /// The warnings of the harvest.
    std::vector<std::string> warnings() const {
        std::vector<std::string> found;
        for (const TextLine& line : lines()) {
            if (line.second == Level::warn) {
                found.push_back(line.first);
            }
        }
        return found;
    }
};

TEST_F(HarvestOfDamage, WithoutASurfaceFileTracesAroundTheVolumeAndLooksForNoVortex) {
    fs::remove(surface_);
    const SimulationResult result = harvest();
    EXPECT_FALSE(result.surfaceField);
    ASSERT_TRUE(result.volumeField && result.streamlines);
    // A twentieth of the volume's box of 6 by 3 by 3 is not flat: ten by ten seeds.
    EXPECT_EQ(result.streamlines->seedCount, 100U);
    EXPECT_FALSE(result.vortex);
    ASSERT_EQ(lines().size(), 3U);
    EXPECT_EQ(texts()[0], "Volume: 4225 points parsed in 0.0 s");
    EXPECT_EQ(texts()[1], "Generating streamlines…");
    EXPECT_THAT(texts()[2], StartsWith("Streamlines: 100 seeds → "));
}

TEST_F(HarvestOfDamage, WithoutAVolumeFileShowsThePressureAlone) {
    fs::remove(volume_);
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.surfaceField);
    EXPECT_FALSE(result.volumeField || result.streamlines || result.vortex);
    EXPECT_THAT(texts(), ElementsAre("Surface: 8 points, 18 primitives, Cp ∈ [-0.500, 0.500]",
                             "y⁺ on body: min 0.50 · mean 2.25 · p95 3.50 · max 4.00"));
    EXPECT_EQ(result.figures.volumeSeconds, std::nullopt);
}

TEST_F(HarvestOfDamage, WithoutEitherFileFailsWithoutALine) {
    fs::remove(surface_);
    fs::remove(volume_);
    expectNothingReadable();
    EXPECT_THAT(lines(), IsEmpty());
    fs::remove_all(run_);
    expectNothingReadable();
}

TEST_F(HarvestOfDamage, WithTwoUnreadableFilesFailsAfterALineForEach) {
    writeSurface("");
    writeVolume("# vtk DataFile Version 3.0\n");
    expectNothingReadable();
    EXPECT_THAT(lines(),
        ElementsAre(TextLine("Surface parse warning: Not a legacy ASCII VTK file.", Level::warn),
            TextLine("Volume parse warning: Not a legacy ASCII VTK file.", Level::warn)));
}

TEST_F(HarvestOfDamage, ReportsTheWallOfASurfaceThatCannotBeParsed) {
    writeSurface(replaced(cube(), "CELLS 12", "KELLS 12"));
    const SimulationResult result = harvest();
    EXPECT_FALSE(result.surfaceField);
    EXPECT_TRUE(result.streamlines);
    EXPECT_EQ(texts()[0], "Surface parse warning: Malformed VTK: CELLS not found");
    EXPECT_EQ(texts()[1], "y⁺ on body: min 0.50 · mean 2.25 · p95 3.50 · max 4.00");
    EXPECT_EQ(result.figures.surfaceSeconds, std::nullopt);
    EXPECT_EQ(result.figures.wallReportSeconds, 0.0);
}

/// A damage to one of the two files and what the log says of it.
struct Damage {
    const char* name;
    std::string old;
    std::string by;
    std::string words;
};

void PrintTo(const Damage& damage, std::ostream* stream) {
    *stream << damage.name;
}

std::string nameOf(const testing::TestParamInfo<Damage>& info) {
    return info.param.name;
}

class DamagedSurface : public HarvestOfDamage, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedSurface, CostsTheSurfaceAndItsVortexAndOneLine) {
    writeSurface(replaced(cube(), GetParam().old, GetParam().by));
    const SimulationResult result = harvest();
    EXPECT_FALSE(result.surfaceField);
    EXPECT_TRUE(result.volumeField);
    EXPECT_TRUE(result.streamlines);
    EXPECT_FALSE(result.vortex);
    EXPECT_THAT(warnings(), ElementsAre("Surface parse warning: " + GetParam().words));
}

INSTANTIATE_TEST_SUITE_P(By, DamagedSurface,
    testing::Values(Damage{"binary", "ASCII", "BINARY", "Not a legacy ASCII VTK file."},
        Damage{
            "anotherGrid", "UNSTRUCTURED_GRID", "STRUCTURED_GRID", "Not a legacy ASCII VTK file."},
        Damage{"aRenamedField", "Pressure_Coefficient", "pressure_coefficient",
            "VTK missing scalar field 'Pressure_Coefficient'."},
        // 13 words are ahead of the first coordinate, and 24 coordinates ahead of "CELLS".
        Damage{
            "aCountTooMany", "POINTS 8", "POINTS 9", "Malformed VTK: expected float at token 37"},
        Damage{"aNegativeCount", "POINTS 8", "POINTS -8",
            "Malformed VTK: negative number of points (-8) at token 11"},
        Damage{"aHugeCount", "POINTS 8", "POINTS 4000000000",
            "Malformed VTK: expected float at token 37"},
        Damage{"aCountBeyondAll", "POINTS 8", "POINTS 9223372036854775807",
            "Malformed VTK: expected float at token 37"},
        Damage{"aFractionOfACount", "POINTS 8", "POINTS 8.0",
            "Malformed VTK: expected int at token 11"},
        Damage{"aNegativeId", "3 0 3 1", "3 0 -3 1",
            "Malformed VTK: negative point id (-3) at token 42"},
        Damage{"anIdBeyond32Bits", "3 0 3 1", "3 0 4294967296 1",
            "Malformed VTK: point id beyond 32 bits (4294967296) at token 42"},
        Damage{"anIdBeyondThePoints", "3 0 3 1", "3 0 8 1",
            "Malformed VTK: a cell has the point id 8, but there are 8 points"},
        Damage{"aCoordinateThatIsNone", "-0.5 -0.5 -0.5", "-0.5 nan -0.5",
            "1 of 8 points has a coordinate that is not finite or beyond 1e+12; the first is point "
            "0, counted from 0"},
        Damage{"aCoordinateWithoutEnd", "-0.5 0.5 0.5", "-0.5 inf 0.5",
            "1 of 8 points has a coordinate that is not finite or beyond 1e+12; the first is point "
            "6, counted from 0"},
        Damage{"aNumberWithTwoPoints", "0.125\n", "0.1.25\n",
            "Malformed VTK: expected float at token 112"}),
    nameOf);

class DamagedVolume : public HarvestOfDamage, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedVolume, CostsTheVolumeAndWhatIsMadeOfItAndOneLine) {
    writeVolume(replaced(wake(), GetParam().old, GetParam().by));
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.surfaceField);
    EXPECT_FALSE(result.volumeField || result.streamlines || result.vortex);
    EXPECT_THAT(warnings(), ElementsAre("Volume parse warning: " + GetParam().words));
    EXPECT_THAT(linesWith("Generating"), IsEmpty());
    EXPECT_THAT(linesWith("Extracting"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(By, DamagedVolume,
    testing::Values(Damage{"binary", "ASCII", "BINARY", "Not a legacy ASCII VTK file."},
        Damage{"aRenamedField", "VECTORS Velocity", "VECTORS Speed",
            "VTK missing vector field 'Velocity'."},
        Damage{"aScalarOfThatName", "VECTORS Velocity", "SCALARS Velocity",
            "VTK missing vector field 'Velocity'."},
        Damage{"aNegativeCount", "POINTS 4225", "POINTS -1",
            "Malformed VTK: negative number of points (-1) at token 11"},
        Damage{"aNegativeCell", "4 0 1 2 3", "-4 0 1 2 3",
            "Malformed VTK: negative number of point ids (-4) at token 12691"},
        Damage{"anIdBeyond32Bits", "4 0 1 2 3", "4 0 1 2 99999999999",
            "Malformed VTK: point id beyond 32 bits (99999999999) at token 12695"}),
    nameOf);

class VolumeThatDiverged : public HarvestOfDamage, public testing::WithParamInterface<Damage> {};

TEST_P(VolumeThatDiverged, IsKeptWithoutLinesAndVortexForOneLine) {
    writeVolume(replaced(wake(), GetParam().old, GetParam().by));
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.surfaceField);
    EXPECT_TRUE(result.volumeField);
    EXPECT_FALSE(result.streamlines || result.vortex);
    EXPECT_THAT(warnings(), ElementsAre("Volume parse warning: " + GetParam().words));
    EXPECT_EQ(texts()[3], "Generating streamlines…");
    EXPECT_THAT(linesWith("Extracting"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(By, VolumeThatDiverged,
    testing::Values(
        Damage{"aVelocityThatIsNone", "double\n50 ", "double\nnan ",
            "1 of 4225 points has a coordinate or velocity that is not finite or beyond 1e+12; the "
            "first is point 0, counted from 0"},
        Damage{"aVelocityWithoutEnd", "double\n50 ", "double\n-inf ",
            "1 of 4225 points has a coordinate or velocity that is not finite or beyond 1e+12; the "
            "first is point 0, counted from 0"},
        Damage{"aVelocityBeyondAll", "double\n50 ", "double\n1e30 ",
            "1 of 4225 points has a coordinate or velocity that is not finite or beyond 1e+12; the "
            "first is point 0, counted from 0"},
        Damage{"aCoordinateThatIsNone", "-1.75 -1.5 -1.5", "-1.75 nan -1.5",
            "1 of 4225 points has a coordinate or velocity that is not finite or beyond 1e+12; the "
            "first is point 1, counted from 0"}),
    nameOf);

TEST_F(HarvestOfDamage, ScalarsThatAreNoNumbersAreSomebodyElsesMatter) {
    // A diverged solver leaves them; positions and cells are as good as ever.
    writeSurface(replaced(cube(), "0.25\n", "nan\n"));
    const SimulationResult result = harvest();
    ASSERT_TRUE(result.surfaceField);
    EXPECT_TRUE(result.vortex);
    EXPECT_EQ(texts()[0], "Surface: 8 points, 18 primitives, Cp ∈ [-0.500, 0.500]");
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(HarvestOfDamage, WindowsLineEndsAreAsGoodAsAny) {
    const SimulationResult before = harvest();
    const auto withCarriageReturns = [](std::string text) {
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
            text.replace(at, 1, "\r\n");
        }
        return text;
    };
    writeSurface(withCarriageReturns(cube()));
    writeVolume(withCarriageReturns(wake()));
    const SimulationResult after = harvest();
    EXPECT_EQ(after.streamlines->interleavedVertices, before.streamlines->interleavedVertices);
    EXPECT_EQ(after.vortex->positions, before.vortex->positions);
    EXPECT_EQ(after.figures.yPlus, before.figures.yPlus);
    EXPECT_THAT(warnings(), IsEmpty());
}

/// A section of a file, in which the file ends.
class CutOff : public HarvestOfDamage, public testing::WithParamInterface<const char*> {
protected:
    /// `text` up to the middle of the section that begins with `keyword`.
    static std::string cut(const std::string& text, const std::string& keyword) {
        const std::size_t start = text.find(keyword);
        EXPECT_NE(start, std::string::npos);
        const std::array<std::string, 6> keywords{
            "POINTS ", "CELLS ", "CELL_TYPES ", "POINT_DATA ", "SCALARS ", "VECTORS "};
        std::size_t end = text.size();
        for (const std::string& next : keywords) {
            end = std::min(end, text.find(next, start + keyword.size()));
        }
        return text.substr(0, start + (end - start) / 2);
    }
};

class CutSurface : public CutOff {};

TEST_P(CutSurface, CostsTheSurfaceAndOneLine) {
    writeSurface(cut(cube(), GetParam()));
    const SimulationResult result = harvest();
    EXPECT_FALSE(result.surfaceField);
    EXPECT_TRUE(result.streamlines);
    ASSERT_EQ(warnings().size(), 1U);
    EXPECT_THAT(warnings()[0], StartsWith("Surface parse warning: "));
}

INSTANTIATE_TEST_SUITE_P(In, CutSurface,
    testing::Values("# vtk", "POINTS ", "CELLS ", "CELL_TYPES ", "POINT_DATA ",
        "SCALARS Pressure_Coefficient "));

class CutVolume : public CutOff {};

TEST_P(CutVolume, CostsTheVolumeAndOneLine) {
    writeVolume(cut(wake(), GetParam()));
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.surfaceField);
    EXPECT_FALSE(result.volumeField || result.streamlines || result.vortex);
    ASSERT_EQ(warnings().size(), 1U);
    EXPECT_THAT(warnings()[0], StartsWith("Volume parse warning: "));
}

INSTANTIATE_TEST_SUITE_P(In, CutVolume,
    testing::Values("# vtk", "POINTS ", "CELLS ", "CELL_TYPES ", "POINT_DATA ", "VECTORS "));

TEST_F(HarvestOfDamage, ACutInTheWallsFieldCostsTheWallReportAlone) {
    writeSurface(cube().substr(0, cube().size() - 10));
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.surfaceField);
    EXPECT_TRUE(result.vortex);
    EXPECT_EQ(result.figures.yPlus, std::nullopt);
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(HarvestOfDamage, BytesThatAreNoTextCostTheirPart) {
    writeSurface(replaced(cube(), "vtk output", "vtk \xFF\xFE"));
    writeVolume(std::string("\0\x01\x02", 3));
    expectNothingReadable();
    ASSERT_EQ(warnings().size(), 2U);
    EXPECT_THAT(warnings()[0],
        AllOf(StartsWith("Surface parse warning: Cannot read "), HasSubstr("surface_flow.vtk")));
    EXPECT_EQ(warnings()[1], "Volume parse warning: Not a legacy ASCII VTK file.");
}

TEST_F(HarvestOfDamage, FoldersInThePlaceOfFilesCostTheirPart) {
    fs::remove(surface_);
    fs::create_directory(surface_);
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.streamlines);
    EXPECT_THAT(warnings(), ElementsAre("Surface parse warning: Cannot read " + surface_.string() +
                                        ": Is a directory"));
}

TEST_F(HarvestOfDamage, FilesWithoutPointsGiveEmptyParts) {
    writeSurface(FieldFiles::grid({}, {}, 5) + FieldFiles::pointData(0) +
                 FieldFiles::scalars("Pressure_Coefficient", {}));
    writeVolume(FieldFiles::grid({}, {}, 10) + FieldFiles::pointData(0) +
                FieldFiles::vectors("Velocity", {}));
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.surfaceField && result.volumeField);
    EXPECT_THAT(
        texts(), ElementsAre("Surface: 0 points, 0 primitives, Cp ∈ [0.000, 1.000]",
                     "Volume: 0 points parsed in 0.0 s", "Generating streamlines…",
                     "Streamlines: 0 seeds → 0 segments in 0.00 s, |V| ∈ [0.00, 1.00] m/s"));
}

TEST_F(HarvestOfDamage, ABodySoFarOffThatItsVortexFallsIntoOnePointCostsTheVortexAlone) {
    // At a thousand kilometres 32 bits tell a sixteenth of a metre; the body measures a metre.
    const Vec3 far(1e6F, 0, 0);
    writeSurface(FieldFiles::box(far - Vec3(0.5F), far + Vec3(0.5F)));
    writeVolume(FieldFiles::volume(far - Vec3(2, 1.5F, 1.5F), far + Vec3(4, 1.5F, 1.5F),
        {25, 13, 13}, [&far](const Vec3& p) { return FieldFiles::vortexVelocity(p - far); }));
    const SimulationResult result = harvest();
    EXPECT_TRUE(result.streamlines);
    EXPECT_FALSE(result.vortex);
    EXPECT_THAT(warnings(),
        ElementsAre("Volume parse warning: The vortex surface is so small and so far from the "
                    "origin that its vertices cannot be told apart. Move the model closer to the "
                    "origin."));
}

} // namespace
} // namespace ostrella::test
