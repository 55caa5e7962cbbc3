#include "Solver/Tools/SU2Output.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using SU2Output::MeshHeader;
using SU2Output::readMeshHeader;
using SU2Output::stopReason;

class MeshHeaderTest : public testing::Test {
protected:
    std::optional<MeshHeader> headerOf(const std::string& text) const {
        test::writeFile(directory_.path() / "mesh.su2", text);
        return readMeshHeader(directory_.path() / "mesh.su2");
    }
    const fs::path& folder() const { return directory_.path(); }

private:
    test::TemporaryDirectory directory_;
};

TEST_F(MeshHeaderTest, givesTheCounts) {
    EXPECT_EQ(headerOf("NDIME= 3\nNELEM= 1234\n"), (MeshHeader{3, 1234}));
}

TEST_F(MeshHeaderTest, ignoresWhatFollowsTheDigits) {
    EXPECT_EQ(headerOf("NDIME=3\nNELEM=5\t% comment\n"), (MeshHeader{3, 5}));
    EXPECT_EQ(headerOf("NDIME=2.5\nNELEM=12cells"), (MeshHeader{2, 12}));
}

TEST_F(MeshHeaderTest, trimsBlanksAroundLinesAndValues) {
    EXPECT_EQ(headerOf(" \tNDIME=\t 3 \r\n\u00A0\u2003NELEM=\u00A0 7\r\n"), (MeshHeader{3, 7}));
}

TEST_F(MeshHeaderTest, takesTheFirstValuesOnly) {
    EXPECT_EQ(headerOf("NDIME= 3\nNDIME= 2\nNELEM= 5\nNELEM= 6\n"), (MeshHeader{3, 5}));
}

TEST_F(MeshHeaderTest, takesTheValuesInAnyOrder) {
    EXPECT_EQ(headerOf("NELEM= 5\nNPOIN= 9\nNDIME= 2\n"), (MeshHeader{2, 5}));
}

TEST_F(MeshHeaderTest, goesOnWhereALineHasNoValue) {
    EXPECT_EQ(headerOf("NDIME= 3\nNELEM=abc\nNELEM=\nNELEM= -4\nNELEM=8\n"), (MeshHeader{3, 8}));
}

TEST_F(MeshHeaderTest, countsNoCellsAsACount) {
    EXPECT_EQ(headerOf("NDIME= 3\nNELEM=0\n"), (MeshHeader{3, 0}));
}

TEST_F(MeshHeaderTest, knowsCountsBeyond32Bits) {
    EXPECT_EQ(headerOf("NDIME= 3\nNELEM= 5000000000\n"), (MeshHeader{3, 5000000000}));
}

TEST_F(MeshHeaderTest, isNothingWithoutBothCounts) {
    EXPECT_EQ(headerOf(""), std::nullopt);
    EXPECT_EQ(headerOf("NPOIN=10\nNMARK=2\n"), std::nullopt);
    EXPECT_EQ(headerOf("NDIME= 3\n"), std::nullopt);
    EXPECT_EQ(headerOf("NELEM= 3\n"), std::nullopt);
    EXPECT_EQ(headerOf("NDIME= 3\nNELEM= 99999999999999999999\n"), std::nullopt);
}

TEST_F(MeshHeaderTest, readsTheHeadOfTheFileOnly) {
    const std::string start = "NDIME= 3\n";
    const std::string last = "NELEM= 1";
    const std::string filler(65536 - start.size() - last.size() - 1, 'x');
    EXPECT_EQ(headerOf(start + filler + "\n" + last), (MeshHeader{3, 1})) << "just within";
    EXPECT_EQ(headerOf(start + filler + "xxxxxxxx\n" + last), std::nullopt) << "beyond";
    EXPECT_EQ(headerOf(start + filler + "\n" + last + "2345"), (MeshHeader{3, 1}))
        << "cut at the 65 536th byte";
}

TEST_F(MeshHeaderTest, isNothingWithoutAFile) {
    EXPECT_EQ(readMeshHeader(folder() / "missing.su2"), std::nullopt);
    EXPECT_EQ(readMeshHeader(folder()), std::nullopt) << "a directory";
}

TEST(MeshHeaderCorpus, isReadAsItsNamesSay) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(OSTRELLA_TEST_DATA) / "mesh-header")) {
        const std::string name = entry.path().filename().string();
        if (!name.ends_with(".su2")) {
            continue;
        }
        ++count;
        EXPECT_EQ(readMeshHeader(entry.path()).has_value(), name.starts_with("good_")) << name;
    }
    EXPECT_GE(count, 13U);
    const fs::path folder = fs::path(OSTRELLA_TEST_DATA) / "mesh-header";
    EXPECT_EQ(readMeshHeader(folder / "good_blanks_and_comments.su2"), (MeshHeader{2, 32768}));
    EXPECT_EQ(readMeshHeader(folder / "good_elements_first.su2"), (MeshHeader{3, 7}));
}

TEST(StopReasonText, ofConvergence) {
    EXPECT_EQ(stopReason("All convergence criteria satisfied."), StopReason::converged());
    EXPECT_EQ(stopReason("All windowed time-averaged convergence criteria are fullfilled."),
        StopReason::converged());
    EXPECT_EQ(stopReason("  -> All convergence criteria satisfied. <-"), StopReason::converged());
}

TEST(StopReasonText, ofTheIterationLimit) {
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER = 200)."),
        StopReason::iterationCap(200));
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER = 2500) before convergence."),
        StopReason::iterationCap(2500));
    EXPECT_EQ(stopReason("Maximum number of iterations reached =7"), StopReason::iterationCap(7));
}

TEST(StopReasonText, ofTheIterationLimitWithoutACount) {
    const StopReason uncounted = StopReason::iterationCap(std::nullopt);
    EXPECT_EQ(stopReason("Maximum number of iterations reached."), uncounted);
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER = )"), uncounted);
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER ="), uncounted);
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER = many)"), uncounted);
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER = -5)"), uncounted);
    EXPECT_EQ(stopReason("Maximum number of iterations reached (ITER = 99999999999999999999)"),
        uncounted);
}

TEST(StopReasonText, seeksTheCountBehindTheWordsOnly) {
    EXPECT_EQ(stopReason("ITER = 5\nMaximum number of iterations reached\nITER = 9"),
        StopReason::iterationCap(9));
    EXPECT_EQ(stopReason("ITER = 5\nMaximum number of iterations reached"),
        StopReason::iterationCap(std::nullopt));
}

TEST(StopReasonText, prefersConvergenceWhereverItStands) {
    const std::string cap = "Maximum number of iterations reached (ITER = 5).\n";
    const std::string converged = "All convergence criteria satisfied.\n";
    EXPECT_EQ(stopReason(cap + converged), StopReason::converged());
    EXPECT_EQ(stopReason(converged + cap), StopReason::converged());
}

TEST(StopReasonText, isNothingInOrdinaryLines) {
    EXPECT_EQ(stopReason(""), std::nullopt);
    EXPECT_EQ(stopReason("|        199|   -3.627831|    0.022697|    0.543618|"), std::nullopt);
    EXPECT_EQ(stopReason("Maximum number of solver subiterations: 300."), std::nullopt);
    EXPECT_EQ(stopReason("Convergence criteria of the linear solver: 0.01."), std::nullopt);
    EXPECT_EQ(stopReason("all convergence criteria satisfied."), std::nullopt);
    EXPECT_EQ(stopReason("All convergence criteria satisfied"), std::nullopt);
}

} // namespace
} // namespace ostrella
