// --results: the log, what is missing, and that the folder is only read.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/TerminalRun.h"
#include "support/FieldFiles.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <map>
#include <vector>

#include <sys/resource.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define OSTRELLA_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define OSTRELLA_TEST_SANITIZED 1
#endif
#endif

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using Json = nlohmann::json;

class EarlierRunTest : public testing::Test {
protected:
    /// Writes the files of a run around a cube; its vortex turns about the stream.
    void writeRun() const {
        writeFile(run_ / "surface_flow.vtk", FieldFiles::box(Vec3(-0.5F), Vec3(0.5F)));
        writeFile(run_ / "flow.vtk", FieldFiles::volume(Vec3(-2, -1.5F, -1.5F), Vec3(4, 1.5F, 1.5F),
                                         {25, 13, 13}, FieldFiles::vortexVelocity));
        writeFile(run_ / "history.csv", "\"Inner_Iter\",\"rms[P]\",\"CD\",\"CL\"\n"
                                        "0,-1,0.5,0.25\n1,-2,0.0625,0.125\n");
        writeFile(run_ / "run.cfg", "SOLVER= INC_NAVIER_STOKES\n"
                                    "INC_VELOCITY_INIT= (30.0, 0.0, 40.0)\nAOA= 53.13\n");
    }
    int harvest(std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"--results", run_.string(), "--json", json_.string()});
        const int status = batch_.run(more);
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        EXPECT_EQ(batch_.errors(), "");
        return status;
    }
    Json report() const { return Json::parse(readFile(json_)); }
    std::vector<std::string> warnings() const {
        std::vector<std::string> found;
        for (const std::string& line : batch_.lines()) {
            if (line.starts_with("[WARN] ")) {
                found.push_back(line.substr(7));
            }
        }
        return found;
    }

    TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    fs::path run_ = place_ / "run";
    fs::path json_ = place_ / "run.json";
    BatchProcess batch_{stagedProgram()};
};

TEST_F(EarlierRunTest, TheLogTellsWhatTheHarvestGoesByAndItsParts) {
    writeRun();
    EXPECT_EQ(harvest(), 0);
    EXPECT_THAT(batch_.lines(),
        ElementsAre(StartsWith("[INFO] Ostrella "), StartsWith("[INFO] Awaiting geometry."),
            "[INFO] Results folder: " + run_.string(), "[INFO] V=50.00 m/s, laminar, 3D",
            "[OK] Surface: 8 points, 18 primitives, Cp ∈ [-0.500, 0.500]",
            MatchesRegex("\\[INFO\\] Volume: 4225 points parsed in [0-9.]+ s"),
            "[INFO] Generating streamlines…", StartsWith("[OK] Streamlines: 100 seeds → "),
            "[INFO] Extracting vortex iso-surface (Q-criterion)…", StartsWith("[OK] Vortex: "),
            MatchesRegex("\\[OK\\] Results read · CL 0.1250 · CD 0.0625 · [0-9.]+ s")));
    const Json json = report();
    EXPECT_EQ(json["phase"], "finished");
    EXPECT_EQ(json["iterations"], 2);
    EXPECT_EQ(json["cells"], 1);
    EXPECT_EQ(json["coefficients"], Json({{"CD", 0.0625}, {"CL", 0.125}}));
    EXPECT_EQ(json["inputs"]["alpha_deg"], 53.13);
    EXPECT_EQ(json["inputs"]["beta_deg"], nullptr);
    EXPECT_EQ(json["inputs"]["regime"], "incompressible");
    EXPECT_EQ(json["runDirectory"], run_.string());
    EXPECT_GE(json["times_s"]["results"], 0.0);
    for (const char* part : {"surface", "volume", "streamlines", "vortex"}) {
        EXPECT_GE(json["results"]["times_s"][part], 0.0) << part;
    }
    EXPECT_EQ(json["results"]["times_s"]["yPlus"], nullptr) << "there is no such field";
}

TEST_F(EarlierRunTest, TheFolderIsOnlyRead) {
    writeRun();
    const auto state = [this] {
        std::map<std::string, std::pair<std::string, fs::file_time_type>> all;
        for (const auto& entry : fs::directory_iterator(run_)) {
            all[entry.path().filename()] = {readFile(entry), entry.last_write_time()};
        }
        all["."] = {"", fs::last_write_time(run_)};
        return all;
    };
    const auto before = state();
    EXPECT_EQ(harvest({"--export", (place_ / "out").string(), "--keep-run-directory"}), 0);
    EXPECT_EQ(state(), before);
    writeFile(run_ / "flow.vtk", "rubbish");
    writeFile(run_ / "surface_flow.vtk", "rubbish");
    const auto damaged = state();
    EXPECT_EQ(harvest(), 5);
    EXPECT_EQ(state(), damaged);
}

TEST_F(EarlierRunTest, ARelativeNameAndAFolderOfOddNameWillDo) {
    writeRun();
    fs::rename(run_, place_ / "Läufe 'A'");
    batch_.setWorkingDirectory(place_);
    EXPECT_EQ(batch_.run({"--results", "Läufe 'A'", "--quiet"}), 0);
    EXPECT_THAT(batch_.lines(), Contains("[INFO] Results folder: Läufe 'A'"));
}

TEST_F(EarlierRunTest, WhereNothingCanBeReadTheStatusIsFive) {
    fs::create_directory(run_);
    EXPECT_EQ(harvest(), 5);
    EXPECT_EQ(batch_.lines().back(), "[ERR] Results failed · SU2_CFD finished but neither "
                                     "surface_flow.vtk nor flow.vtk could be read");
    EXPECT_EQ(report()["phase"], "failed");
    EXPECT_EQ(report()["failure"]["stage"], "results");
    EXPECT_EQ(report()["results"], nullptr);
    writeFile(run_ / "surface_flow.vtk", "# vtk DataFile Version 3.0\nBINARY\n");
    EXPECT_EQ(harvest(), 5);
    EXPECT_THAT(warnings(), Contains("Surface parse warning: Not a legacy ASCII VTK file."));
}

TEST_F(EarlierRunTest, AFolderThatIsNoneIsWrongUsage) {
    EXPECT_EQ(batch_.run({"--results", run_.string()}), 2);
    EXPECT_EQ(batch_.errors(), "--results wants a folder: " + run_.string() + " is none.\n");
    EXPECT_EQ(batch_.output(), "");
}

TEST_F(EarlierRunTest, WithoutAConfigurationTheDefaultsAreTakenAndSaid) {
    writeRun();
    fs::remove(run_ / "run.cfg");
    EXPECT_EQ(harvest(), 0);
    EXPECT_THAT(warnings(),
        ElementsAre("No free-stream speed in run.cfg · 50 m/s is taken · --velocity tells another",
            "No turbulence model in run.cfg · spalartAllmaras is taken · --turbulence tells "
            "another"));
    EXPECT_EQ(report()["inputs"]["regime"], nullptr);
    EXPECT_EQ(harvest({"--velocity", "50", "--turbulence", "sst"}), 0);
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(EarlierRunTest, AConfigurationThatIsNoTextIsLeftOut) {
    writeRun();
    writeFile(run_ / "run.cfg", "SOLVER= \xFF\xFE\n");
    EXPECT_EQ(harvest(), 0);
    EXPECT_THAT(warnings(), Contains(StartsWith("run.cfg left out · Cannot read ")));
}

TEST_F(EarlierRunTest, AHistoryThatIsNoTextIsLeftOut) {
    writeRun();
    fs::remove(run_ / "history.csv");
    fs::create_directory(run_ / "history.csv");
    EXPECT_EQ(harvest(), 0);
    EXPECT_THAT(warnings(), ElementsAre("history.csv left out · Cannot read " +
                                        (run_ / "history.csv").string() + ": Is a directory"));
    EXPECT_EQ(report()["coefficients"], Json::object());
}

TEST_F(EarlierRunTest, WithoutAHistoryItHasNoFigures) {
    writeRun();
    fs::remove(run_ / "history.csv");
    EXPECT_EQ(harvest(), 0);
    EXPECT_THAT(batch_.lines().back(), MatchesRegex("\\[OK\\] Results read · [0-9.]+ s"));
    EXPECT_EQ(report()["iterations"], nullptr);
    EXPECT_EQ(report()["coefficients"], Json::object());
}

TEST_F(EarlierRunTest, TheUserMayKnowTheDimensionsBetter) {
    writeRun();
    EXPECT_EQ(harvest({"--dimensions", "2"}), 0);
    EXPECT_THAT(batch_.lines(), Contains("[INFO] V=50.00 m/s, laminar, 2D"));
}

TEST_F(EarlierRunTest, AVolumeThatDivergedCostsItsLinesAndOneWarning) {
    writeRun();
    const std::string volume = readFile(run_ / "flow.vtk");
    writeFile(run_ / "flow.vtk", FieldFiles::replaced(volume, "double\n50 ", "double\nnan "));
    EXPECT_EQ(harvest({"--write-streamlines", (place_ / "lines.vtk").string(), "--write-vortex",
                  (place_ / "vortex.ply").string()}),
        0);
    EXPECT_THAT(warnings(),
        ElementsAre(StartsWith("Volume parse warning: 1 of 4225 points has a coordinate or "
                               "velocity that is not finite"),
            "Streamlines not written · the volume's numbers are not finite",
            "Vortex surface not written · the volume's numbers are not finite"));
    EXPECT_EQ(report()["results"]["volume"]["points"], 4225);
    EXPECT_EQ(report()["results"]["streamlines"], nullptr);
    EXPECT_EQ(report()["results"]["vortex"], nullptr);
    EXPECT_FALSE(fs::exists(place_ / "lines.vtk"));
    EXPECT_FALSE(fs::exists(place_ / "vortex.ply"));
}

TEST_F(EarlierRunTest, AFileBeyondTheMemoryCostsItsPart) {
#ifdef OSTRELLA_TEST_SANITIZED
    GTEST_SKIP() << "a sanitizer wants more room than is left here";
#endif
    writeRun();
    std::error_code error;
    constexpr std::uintmax_t size = std::uintmax_t{64} << 30;
    fs::resize_file(run_ / "flow.vtk", size, error);
    if (error) {
        GTEST_SKIP() << "this disk holds no files with holes";
    }
    batch_.setPreparation([] {
        constexpr rlim_t most = rlim_t{4} << 30;
        const rlimit limit{most, most};
        setrlimit(RLIMIT_AS, &limit);
    });
    EXPECT_EQ(harvest(), 0);
    EXPECT_THAT(warnings(), ElementsAre(StartsWith("Volume parse warning: ")));
    EXPECT_THAT(warnings()[0], HasSubstr("memory"));
    EXPECT_EQ(report()["results"]["surface"]["points"], 8);
}

/// A run whose points all lie at two far corners, so that whoever looks for those near the body
/// searches the whole of the empty space between: minutes of work.
class LongHarvestTest : public EarlierRunTest, public testing::WithParamInterface<int> {
protected:
    LongHarvestTest() {
        writeRun();
        constexpr int count = 8000;
        std::vector<Vec3> points;
        for (int i = 0; i < count; ++i) {
            const float side = i % 2 == 0 ? 1000 : -1000;
            points.emplace_back(side + 0.01F * static_cast<float>(i % 7),
                side + 0.01F * static_cast<float>(i % 11),
                side + 0.01F * static_cast<float>(i % 13));
        }
        writeFile(run_ / "flow.vtk",
            FieldFiles::grid(points, {{0, 1, 2, 3}}, 10) + FieldFiles::pointData(points.size()) +
                FieldFiles::vectors("Velocity", std::vector<Vec3>(count, Vec3(50, 0, 0))));
    }

    /// Sends the signal as soon as the log has the line, and expects the end to be near.
    void cancelAt(const std::string& line, const std::string& seedCount) {
        batch_.start({"--results", run_.string(), "--seed-count", seedCount, "--json",
            json_.string(), "--write-streamlines", (place_ / "lines.vtk").string()});
        ASSERT_TRUE(batch_.waitForOutput(line)) << batch_.output();
        const auto asked = std::chrono::steady_clock::now();
        batch_.signal(GetParam());
        EXPECT_EQ(batch_.finish(), 130);
        EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(3));
        EXPECT_THAT(
            batch_.lines().back(), MatchesRegex("\\[WARN\\] Cancelled by user after [0-9]+ s"));
        EXPECT_EQ(report()["phase"], "cancelled");
        EXPECT_EQ(report()["results"], nullptr);
        EXPECT_THAT(BatchProcess::contents(place_), ElementsAre("run", "run.json"));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
    }
};

TEST_P(LongHarvestTest, IsCancelledDuringTheStreamlines) {
    cancelAt("Generating streamlines…", "500");
}

TEST_P(LongHarvestTest, IsCancelledDuringTheVortex) {
    cancelAt("Extracting vortex iso-surface (Q-criterion)…", "20");
}

INSTANTIATE_TEST_SUITE_P(By, LongHarvestTest, testing::Values(SIGINT, SIGTERM),
    [](const auto& test) { return std::string(sigabbrev_np(test.param)); });

TEST_F(LongHarvestTest, IsCancelledByControlCAtATerminal) {
    TerminalRun run(stagedProgram(), {"--results", run_.string(), "--seed-count", "500"},
        batch_.temporary(), 80);
    ASSERT_TRUE(run.waitForOutput("Processing results… · 0 s elapsed")) << run.output();
    run.type("\x03");
    EXPECT_EQ(run.finish(), 130);
    EXPECT_THAT(run.output(), HasSubstr("[WARN] Cancelled by user after "));
}

} // namespace
} // namespace ostrella::test
