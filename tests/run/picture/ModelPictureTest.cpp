// Pictures of models without a run.

#include "Brand/ViewportStyle.h"
#include "run/picture/Picture.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <glm/geometric.hpp>
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

class ModelPictureTest : public testing::Test {
protected:
    ModelPictureTest() { batch_.setVariable("DISPLAY", ""); }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--no-run", "--image", file_.string()});
        return batch_.run(arguments);
    }
    /// The picture of a sample, 320 × 200.
    Picture picture(const std::string& sample, std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), {"--sample", sample, "--size", "320x200"});
        EXPECT_EQ(run(arguments), 0) << batch_.output() << batch_.errors();
        EXPECT_THAT(batch_.lines(),
            Contains(StartsWith("[OK] Picture written to " + file_.string() + " · 320 × 200 · ")));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        return Picture(file_);
    }

    TemporaryDirectory directory_;
    fs::path file_ = directory_.path() / "picture.png";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(ModelPictureTest, IsOfGlassWithARimBeforeTheGround) {
    const Picture glass = picture("sphere", {"--layers", "none"});
    EXPECT_EQ(glass.width(), 320);
    EXPECT_EQ(glass.height(), 200);
    // A ball that fills most of the height; nothing of it is cut off.
    EXPECT_GT(glass.coveredShare(), 0.1);
    EXPECT_LT(glass.coveredShare(), 0.6);
    const int left = glass.firstCoveredColumn();
    EXPECT_GT(left, 40);
    EXPECT_LT(left, 140);
    const Vec3 ground = 255.0F * ViewportStyle::background;
    const Vec3 accent = 255.0F * ViewportStyle::accent;
    const Vec3 middle = glass.color(160, 100);
    const Vec3 rim = glass.color(left + 2, 100);
    EXPECT_GT(glm::distance(middle, ground), 5.0F) << "there is a body";
    EXPECT_LT(glm::distance(middle, ground), 0.5F * glm::distance(middle, accent));
    EXPECT_LT(glm::distance(rim, accent), glm::distance(middle, accent)) << "the rim is lit";
    EXPECT_LT(glass.colorfulShare(), 0.05) << "no colours of a result";
}

TEST_F(ModelPictureTest, ViewLayersAndTurnChangeIt) {
    const Picture plain = picture("simple_wing");
    for (const char* view : {"front", "side", "top"}) {
        EXPECT_GT(plain.differingShare(picture("simple_wing", {"--view", view})), 0.01) << view;
    }
    EXPECT_EQ(plain.differingShare(picture("simple_wing", {"--view", "iso"})), 0.0);
    const Picture bare = picture("simple_wing", {"--layers", "none"});
    EXPECT_LT(bare.coveredShare(), plain.coveredShare()) << "the grid covers some";
    const Picture wires = picture("simple_wing", {"--layers", "wireframe"});
    EXPECT_GT(bare.differingShare(wires), 0.01);
    EXPECT_GT(
        bare.differingShare(picture("simple_wing", {"--layers", "none", "--rotate", "0,40,0"})),
        0.01);
}

TEST_F(ModelPictureTest, AnotherWithTheSameRequestIsTheSameToTheLastByte) {
    picture("rounded_box");
    const std::string first = readFile(file_);
    // It takes the place of the first, which is known for one of ours.
    picture("rounded_box");
    EXPECT_EQ(readFile(file_), first);
}

TEST_F(ModelPictureTest, MayBeTinyOrThin) {
    for (const auto& [width, height] : {std::pair(1, 1), std::pair(4, 4), std::pair(300, 4)}) {
        const std::string size = std::to_string(width) + "x" + std::to_string(height);
        ASSERT_EQ(run({"--sample", "sphere", "--layers", "none", "--size", size}), 0);
        const Picture picture(file_);
        EXPECT_EQ(picture.width(), width);
        EXPECT_EQ(picture.height(), height);
        if (height > 1) {
            EXPECT_GT(picture.coveredShare(), 0.0) << size;
        }
    }
}

TEST_F(ModelPictureTest, TheReportTellsHowItWasTaken) {
    const fs::path json = directory_.path() / "run.json";
    ASSERT_EQ(run({"--sample", "sphere", "--view", "top", "--json", json.string()}), 0);
    const auto report = nlohmann::json::parse(readFile(json));
    EXPECT_EQ(report["phase"], "loaded");
    EXPECT_EQ(report["image"]["file"], file_.string());
    EXPECT_EQ(report["image"]["width"], 1200);
    EXPECT_EQ(report["image"]["view"], "top");
    EXPECT_THAT(report["image"]["device"], Not(""));
    EXPECT_EQ(report["results"], nullptr);
    EXPECT_EQ(report["runDirectory"], nullptr);
}

TEST_F(ModelPictureTest, AFileThatCannotBeWrittenCostsStatusFive) {
    file_ = "/dev/full";
    EXPECT_EQ(run({"--sample", "sphere", "--size", "32x32"}), 5);
    EXPECT_THAT(batch_.lines(), Contains("[ERR] Picture not written · Cannot write /dev/full: No "
                                         "space left on device. Name another file with --image."));
}

TEST_F(ModelPictureTest, OfAModelThatCannotBeLoadedThereIsNone) {
    EXPECT_EQ(run({"none.stl"}), 2);
    EXPECT_THAT(batch_.output(), Not(HasSubstr("Picture")));
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(ModelPictureTest, SomebodyElsesPictureIsNotWrittenOver) {
    QImage photo(8, 8, QImage::Format_RGB32);
    photo.fill(Qt::red);
    ASSERT_TRUE(photo.save(QString::fromStdString(file_.string()), "PNG"));
    const std::string before = readFile(file_);
    EXPECT_EQ(run({"--sample", "sphere"}), 2);
    EXPECT_THAT(batch_.errors(), HasSubstr("is no picture of an earlier run. Name another file."));
    EXPECT_EQ(readFile(file_), before);
}

} // namespace
} // namespace ostrella::test
