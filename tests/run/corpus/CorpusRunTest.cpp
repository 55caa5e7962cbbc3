// Each nasty body from its file to coefficients, as a user runs it: meshed whatever its defects
// are, by cells that a solver can live with, and solved without diverging. Those without a flow
// around them end with a sentence about the defect and its place.

#include "NastyBodies.h"
#include "StlWriter.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "support/MeshQuality.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <cmath>
#include <ostream>
#include <regex>

namespace ostrella::generators {

/// What a failure shows of a body.
void PrintTo(const NastyBody& body, std::ostream* out) {
    *out << body.name << ": " << body.about;
}

} // namespace ostrella::generators

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using generators::NastyBody;
using testing::HasSubstr;
using testing::Not;

/// What a mesh may take at most. The time is not this test's point; no body may take many times of
/// what is due, though.
constexpr double longestMeshing = 60;

/// A force over the dynamic pressure is an area. Beyond this many squares of a body's extent it is
/// none of a flow: a square plate across the stream has little more than one.
constexpr double mostForceArea = 2;

/// Whether a line tells where something is: by a point, or by how far off all of it is.
bool namesAPlace(const std::string& line) {
    static const std::regex place(R"(\(\S+, \S+, \S+\)|too far from the origin)");
    return std::regex_search(line, place);
}

class CorpusRunTest : public testing::TestWithParam<NastyBody> {
protected:
    int solve() {
        const fs::path model = directory_.path() / (std::string(GetParam().name) + ".stl");
        generators::writeBinaryStl(GetParam().make(), model, GetParam().name);
        batch_.start({model.string(), "--iterations", "200", "--quiet", "--json", json_.string(),
            "--keep-run-directory"});
        return batch_.finish(std::chrono::seconds(240));
    }

    void expectFlow() {
        const auto report = nlohmann::json::parse(readFile(json_));
        EXPECT_EQ(report["phase"], "finished");
        EXPECT_THAT(batch_.output(), Not(HasSubstr("diverged")));
        EXPECT_THAT(batch_.output(), Not(HasSubstr("[ERR]")));
        EXPECT_LE(report["times_s"]["mesh"], longestMeshing);
        ASSERT_TRUE(report["cd"].is_number() && report["cl"].is_number());
        const double cd = report["cd"];
        const double cl = report["cl"];
        const double extent = report["surface"]["fitness"]["extent_m"];
        const double share = double(report["referenceArea_m2"]) / (extent * extent);
        // A stream drags a body along, never forward.
        EXPECT_GT(cd, 0.0);
        EXPECT_LT(cd * share, mostForceArea);
        EXPECT_LT(std::abs(cl) * share, mostForceArea);

        const MeshQuality mesh = MeshQuality::read(fs::path(report["runDirectory"]) / "mesh.su2");
        EXPECT_EQ(mesh.cells, report["cells"]);
        EXPECT_GT(mesh.cells, 1000U);
        EXPECT_EQ(mesh.inverted, 0U);
        EXPECT_GT(mesh.firstPercentileGamma, 0.1);
    }

    void expectSentence(int status) {
        // The model was refused, or nothing could be meshed.
        EXPECT_THAT(status, testing::AnyOf(2, 3));
        EXPECT_THAT(batch_.line("[ERR] "), Not(testing::IsEmpty()));
        std::vector<std::string> told;
        for (const std::string& line : batch_.lines()) {
            if ((line.starts_with("[ERR] ") || line.starts_with("[WARN] ")) && namesAPlace(line)) {
                told.push_back(line);
            }
        }
        EXPECT_THAT(told, Not(testing::IsEmpty()));
    }

    TemporaryDirectory directory_;
    fs::path json_ = directory_.path() / "run.json";
    BatchProcess batch_{stagedProgram()};
};

TEST_P(CorpusRunTest, EndsWithAFlowOrASentence) {
    const int status = solve();
    SCOPED_TRACE(batch_.output() + batch_.errors());
    switch (GetParam().end) {
    case NastyBody::End::coefficients:
        ASSERT_EQ(status, 0);
        expectFlow();
        break;
    case NastyBody::End::sentence:
        expectSentence(status);
        break;
    case NastyBody::End::either:
        if (status == 0) {
            expectFlow();
        } else {
            expectSentence(status);
        }
        break;
    }
}

INSTANTIATE_TEST_SUITE_P(Of, CorpusRunTest, testing::ValuesIn(generators::nastyBodies()),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace ostrella::test
