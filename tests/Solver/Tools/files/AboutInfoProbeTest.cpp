#include "Solver/Tools/AboutInfo.h"
#include "support/ManualTimers.h"
#include "support/OrdinaryUser.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include <csignal>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

#ifdef __aarch64__
const std::string nativeLine = "SU2 8.5.0 (arm64, LGPL)";
#else
const std::string nativeLine = "SU2 8.5.0 (x86_64, LGPL)";
#endif

class AboutInfoProbeTest : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(bundle.toolsDirectory()); }

    void installScript(const std::string& name, const std::string& script) const {
        test::writeFile(bundle.toolsDirectory() / name, "#!/bin/sh\n" + script + "\n");
        fs::permissions(bundle.toolsDirectory() / name, fs::perms::owner_all);
    }

    /// Installs one of the small child programs.
    void installProgram(const std::string& name, const std::string& program) const {
        fs::create_symlink(
            fs::path(OSTRELLA_TEST_PROGRAMS) / program, bundle.toolsDirectory() / name);
    }

    std::string probeSU2() const {
        return AboutInfo::probeSU2(bundle, PlatformWords::freedesktop());
    }

    std::string probeGMSH() {
        std::string line;
        test::onWorker([&] { line = AboutInfo::probeGMSH(bundle, timers); });
        return line;
    }

    const test::TemporaryDirectory directory;
    const AppBundle bundle{directory.path()};
    test::ManualTimers timers;
};

TEST_F(AboutInfoProbeTest, missesTheTools) {
    EXPECT_EQ(probeSU2(), "SU2 8.5.0 (LGPL) · not found");
    EXPECT_EQ(probeGMSH(), "gmsh missing · reinstall Ostrella");
}

TEST_F(AboutInfoProbeTest, readsTheSolversHeader) {
    installProgram("SU2_CFD", "say");
    EXPECT_EQ(probeSU2(), nativeLine);
}

TEST_F(AboutInfoProbeTest, missesASolverThatMayNotBeRead) {
    installScript("SU2_CFD", "exit 0");
    fs::permissions(bundle.toolsDirectory() / "SU2_CFD", fs::perms(0111));
    const test::OrdinaryUser user(directory.path());
    EXPECT_EQ(probeSU2(), "SU2 8.5.0 (LGPL) · not found");
}

TEST_F(AboutInfoProbeTest, takesAScriptForASolverOfNoArchitecture) {
    installScript("SU2_CFD", "exit 0");
    EXPECT_EQ(probeSU2(), "SU2 8.5.0 (LGPL)");
}

TEST_F(AboutInfoProbeTest, saysTheReleaseThatWasPackaged) {
    installScript("SU2_CFD", "exit 0");
    test::writeFile(bundle.resourcesDirectory() / "su2" / "release.txt", "8.3.0\n");
    EXPECT_EQ(probeSU2(), "SU2 8.3.0 (LGPL)");
}

TEST_F(AboutInfoProbeTest, neverPassesTheBuiltInSolverOffAsSU2) {
    installScript("ostrella-preview-solver", "exit 0");
    fs::create_symlink("ostrella-preview-solver", bundle.toolsDirectory() / "SU2_CFD");
    EXPECT_EQ(probeSU2(), "Built-in preview solver · SU2 not packaged");
}

TEST_F(AboutInfoProbeTest, asksGmshOnEitherStream) {
    installScript("gmsh", R"([ "$*" = --version ] && echo 4.15.2 >&2)");
    EXPECT_EQ(probeGMSH(), "gmsh 4.15.2 (GPL)");
    installScript("gmsh", "echo 4.8.4");
    EXPECT_EQ(probeGMSH(), "gmsh 4.8.4 (GPL)");
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(AboutInfoProbeTest, givesGmshNoInput) {
    installScript("gmsh", "cat && echo 4.8.4");
    EXPECT_EQ(probeGMSH(), "gmsh 4.8.4 (GPL)");
}

TEST_F(AboutInfoProbeTest, doesWithoutAVersion) {
    installScript("gmsh", "echo hello");
    EXPECT_EQ(probeGMSH(), "gmsh (GPL)");
    test::writeFile(bundle.toolsDirectory() / "gmsh", "no program at all");
    EXPECT_EQ(probeGMSH(), "gmsh (GPL)");
}

TEST_F(AboutInfoProbeTest, looksAtTheFirstKilobytesOnly) {
    // 4092 characters, so that only 4 of the version's 6 are within the first 4096.
    installScript("gmsh", "printf '%4091s' x; printf ' 4.15.2'; printf '%100000s' x");
    EXPECT_EQ(probeGMSH(), "gmsh 4.15 (GPL)");
    installScript("gmsh", "printf '%4100s' x; echo ' 4.15.2'");
    EXPECT_EQ(probeGMSH(), "gmsh (GPL)");
}

/// A probe of a gmsh that does not end by itself.
class HangingGMSHTest : public AboutInfoProbeTest {
protected:
    void begin() {
        worker_ = std::thread([this] {
            line = AboutInfo::probeGMSH(bundle, timers);
            done = true;
        });
        ASSERT_TRUE(test::waitUntil([&] { return timers.pending().size() == 2; }));
        EXPECT_THAT(timers.pending(), ElementsAre(3.0, 6.0));
    }

    void TearDown() override {
        EXPECT_TRUE(test::waitUntil([&] { return done.load(); }));
        worker_.join();
        EXPECT_EQ(line, "gmsh (GPL)");
        EXPECT_THAT(timers.pending(), IsEmpty());
    }

    std::atomic<bool> done = false;
    std::string line;

private:
    std::thread worker_;
};

TEST_F(HangingGMSHTest, isTerminatedAfterThreeSeconds) {
    installProgram("gmsh", "slow");
    begin();
    timers.advance(2.999);
    EXPECT_FALSE(done);
    timers.advance(0.001);
}

TEST_F(HangingGMSHTest, isNotWaitedForByADescendantOfIt) {
    // The shell ends with SIGTERM, its child holds the pipe open.
    const fs::path identity = directory.path() / "descendant";
    installScript("gmsh", "\"" + std::string(OSTRELLA_TEST_PROGRAMS) + "/slow\" & echo $! > '" +
                              identity.string() + "'; wait");
    begin();
    ASSERT_TRUE(test::waitUntil(
        [&] { return fs::exists(identity) && test::readFile(identity).ends_with('\n'); }));
    timers.advance(3.0);
    EXPECT_TRUE(test::waitUntil([&] { return done.load(); }));
    EXPECT_EQ(::kill(std::stoi(test::readFile(identity)), SIGKILL), 0) << "it still ran";
}

TEST_F(HangingGMSHTest, isKilledIfItIsDeaf) {
    // Says nothing before it is deaf, since nobody else can tell when it is.
    const fs::path sign = directory.path() / "deaf";
    installScript("gmsh", "trap '' TERM; : > '" + sign.string() + "'; exec \"" +
                              std::string(OSTRELLA_TEST_PROGRAMS) + "/deaf\"");
    begin();
    ASSERT_TRUE(test::waitUntil([&] { return fs::exists(sign); }));
    timers.advance(3.0);
    EXPECT_FALSE(done);
    timers.advance(3.0);
}

} // namespace
} // namespace ostrella
