// Pictures after a run, and of an earlier run's files.

#include "run/picture/Picture.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ResultPictureTest : public testing::Test {
protected:
    ResultPictureTest() {
        batch_.setVariable("DISPLAY", "");
        package_.scriptGoodTools();
        package_.script("SU2_CFD", ToolScripts::writingHistory(3) + ToolScripts::vortexFields);
    }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--size", "320x200", "--image", file_.string()});
        return batch_.run(arguments);
    }
    /// The picture of the earlier run with some layers.
    Picture earlier(const std::string& layers) {
        EXPECT_EQ(run({"--results", results_.string(), "--layers", layers}), 0) << batch_.output();
        return Picture(file_);
    }

    TemporaryDirectory directory_;
    fs::path file_ = directory_.path() / "picture.png";
    fs::path results_ = directory_.path() / "results";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(ResultPictureTest, EachLayerShowsInIt) {
    ASSERT_EQ(run({"--sample", "sphere", "--export", results_.string()}), 0) << batch_.output();
    const Picture whole(file_);
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
    EXPECT_GT(whole.colorfulShare(), 0.01) << "the colour map";

    // The earlier run has no body of its own: the layers alone.
    EXPECT_EQ(earlier("none").coveredShare(), 0.0);
    const Picture surface = earlier("cp");
    EXPECT_GT(surface.colorfulShare(), 0.02);
    const Picture lines = earlier("streams");
    EXPECT_GT(lines.coveredShare(), 0.001);
    EXPECT_GT(surface.differingShare(lines), 0.01);
    EXPECT_GT(lines.differingShare(earlier("streams,vortex")), 0.001);
    EXPECT_GT(lines.differingShare(earlier("streams,grid")), 0.001);
}

TEST_F(ResultPictureTest, WithoutTheColourMapTheBodyIsShaded) {
    ASSERT_EQ(run({"--sample", "sphere", "--layers", "none"}), 0) << batch_.output();
    const Picture shaded(file_);
    EXPECT_GT(shaded.coveredShare(), 0.1);
    ASSERT_EQ(run({"--sample", "sphere", "--layers", "none", "--no-run"}), 0) << batch_.output();
    const Picture glass(file_);
    EXPECT_NEAR(shaded.coveredShare(), glass.coveredShare(), 0.01) << "the same ball";
    const auto brightness = [](const Picture& picture) {
        const Vec3 color = picture.color(160, 100);
        return color.x + color.y + color.z;
    };
    EXPECT_GT(brightness(shaded), 2 * brightness(glass));
}

TEST_F(ResultPictureTest, ALayerThatWasNamedAndIsNotThereIsTold) {
    package_.scriptGoodTools(); // Its surface is a triangle squeezed to a line.
    ASSERT_EQ(run({"--sample", "sphere", "--layers", "streams,vortex"}), 0);
    EXPECT_THAT(batch_.lines(),
        Contains("[WARN] Layer vortex left out of the picture · the body is flat in z"));
    ASSERT_EQ(run({"--sample", "sphere"}), 0);
    EXPECT_THAT(batch_.output(), Not(HasSubstr("left out of the picture")));
}

TEST_F(ResultPictureTest, ARunThatFailsHasNone) {
    package_.script("SU2_CFD", "exit 1\n");
    EXPECT_EQ(run({"--sample", "sphere"}), 4);
    EXPECT_THAT(batch_.output(), Not(HasSubstr("Picture")));
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(ResultPictureTest, ADrawingProgramThatIsMissingOrFallsOverCostsThePictureAlone) {
    const fs::path json = directory_.path() / "run.json";
    fs::remove(package_.tool("ostrella-picture"));
    EXPECT_EQ(run({"--sample", "sphere", "--json", json.string()}), 0);
    EXPECT_THAT(batch_.lines(), Contains(StartsWith("[WARN] Picture not drawn · Cannot start ")));
    EXPECT_EQ(nlohmann::json::parse(readFile(json))["image"], nullptr);
    EXPECT_EQ(nlohmann::json::parse(readFile(json))["phase"], "finished");
    package_.script("ostrella-picture", "kill -SEGV $$\n");
    EXPECT_EQ(run({"--sample", "sphere"}), 0);
    EXPECT_THAT(batch_.lines(),
        Contains("[WARN] Picture not drawn · the drawing program ended unexpectedly"));
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(ResultPictureTest, ARunWithoutAPictureStartsNothing) {
    const fs::path started = directory_.path() / "started";
    fs::remove(package_.tool("ostrella-picture"));
    package_.script("ostrella-picture", ">'" + started.string() + "'\n");
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 0);
    EXPECT_FALSE(fs::exists(started));
    EXPECT_EQ(run({"--sample", "sphere"}), 0);
    EXPECT_TRUE(fs::exists(started));
}

} // namespace
} // namespace ostrella::test
