// What pictures are drawn on: display servers and drivers, where they are and where they are not.

#include "Platform/VirtualDisplay.h"
#include "run/picture/Picture.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <QProcess>
#include <QTcpServer>

#include <gmock/gmock.h>

#include <cstdlib>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* withoutDisplay =
    "[INFO] No display server · the picture is drawn on an Xvfb of its own";
constexpr const char* withoutDriver = "[INFO] No graphics driver for the display server · the "
                                      "picture is drawn on an Xvfb of its own";
constexpr const char* noXvfb = "[WARN] Picture not drawn · there is no display server, and no Xvfb "
                               "on the search path that starts";

/// A display server that answers, and whose palette of 256 colours no OpenGL driver draws with.
class PaletteDisplay {
public:
    PaletteDisplay() {
        server_.start(QStringLiteral("Xvfb"),
            {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                QStringLiteral("0"), QStringLiteral("64x64x8"), QStringLiteral("-nolisten"),
                QStringLiteral("tcp")});
        while (!server_.canReadLine() && server_.waitForReadyRead()) {
        }
        name_ = ":" + server_.readLine().trimmed().toStdString();
    }
    ~PaletteDisplay() {
        server_.terminate();
        server_.waitForFinished();
    }
    PaletteDisplay(const PaletteDisplay&) = delete;
    PaletteDisplay& operator=(const PaletteDisplay&) = delete;

    const std::string& name() const { return name_; }

private:
    QProcess server_;
    std::string name_;
};

class DisplayPictureTest : public testing::Test {
protected:
    DisplayPictureTest() { batch_.setVariable("DISPLAY", ""); }

    void hideVulkan() {
        batch_.setVariable("VK_ICD_FILENAMES", "/nonexistent.json");
        batch_.setVariable("VK_DRIVER_FILES", "/nonexistent.json");
    }
    void hideXvfb() { batch_.setVariable("PATH", "/nonexistent"); }

    int run() {
        fs::remove(file_);
        return batch_.run(
            {"--sample", "sphere", "--size", "320x200", "--no-run", "--image", file_.string()});
    }
    /// Draws the picture and looks whether the ball is on it.
    void expectPicture() {
        ASSERT_EQ(run(), 0) << batch_.output() << batch_.errors();
        const Picture picture(file_);
        EXPECT_GT(picture.coveredShare(), 0.1);
        EXPECT_LT(picture.coveredShare(), 0.9);
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
    }
    void expectNoPicture(const std::string& line) {
        EXPECT_EQ(run(), 0) << batch_.output();
        EXPECT_THAT(batch_.lines(), Contains(line));
        EXPECT_THAT(batch_.output(), Not(HasSubstr("the picture is drawn")));
        EXPECT_FALSE(fs::exists(file_));
    }

    TemporaryDirectory directory_;
    fs::path file_ = directory_.path() / "picture.png";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(DisplayPictureTest, WithoutADisplayAnXvfbOfItsOwnIsStartedAndGoesWithIt) {
    // In the place of Xvfb, one that notes its number on the way.
    const fs::path noted = directory_.path() / "number";
    const fs::path folder = directory_.path() / "bin";
    const std::string path = std::getenv("PATH");
    writeFile(folder / "Xvfb",
        "#!/bin/sh\necho $$ >'" + noted.string() + "'\nPATH='" + path + "' exec Xvfb \"$@\"\n");
    fs::permissions(folder / "Xvfb", fs::perms(0755));
    batch_.setVariable("PATH", folder.string() + ":" + path);
    expectPicture();
    EXPECT_THAT(batch_.lines(), Contains(withoutDisplay));
    EXPECT_FALSE(isAlive(noted));
}

TEST_F(DisplayPictureTest, ADisplayThatAnswersIsUsed) {
    const auto display = VirtualDisplay::start();
    ASSERT_TRUE(display);
    batch_.setVariable("DISPLAY", display->name());
    hideXvfb(); // There is no second one to be had.
    expectPicture();
    EXPECT_THAT(batch_.output(), Not(HasSubstr("the picture is drawn")));
}

TEST_F(DisplayPictureTest, ADisplayThatIsNotThereIsNone) {
    for (const char* display : {":4711", "nonsense", "/nonexistent"}) {
        batch_.setVariable("DISPLAY", display);
        expectPicture();
        EXPECT_THAT(batch_.lines(), Contains(withoutDisplay)) << display;
    }
}

TEST_F(DisplayPictureTest, AServerThatTakesTheConnectionAndHangsIsGivenUp) {
    QTcpServer deaf;
    // The display's number is the port's above 6000.
    ASSERT_TRUE(deaf.listen(QHostAddress::LocalHost));
    ASSERT_GT(deaf.serverPort(), 6000);
    batch_.setVariable("DISPLAY", "127.0.0.1:" + std::to_string(deaf.serverPort() - 6000));
    expectPicture();
    EXPECT_THAT(batch_.lines(), Contains(withoutDisplay));
}

TEST_F(DisplayPictureTest, WhereNothingCanDrawALineSaysSoAndTheRunEndsWell) {
    hideXvfb();
    for (const char* display : {"", ":4711", "nonsense"}) {
        batch_.setVariable("DISPLAY", display);
        expectNoPicture(noXvfb);
    }
}

TEST_F(DisplayPictureTest, WithoutAUsableOpenGLVulkanDraws) {
    const auto display = VirtualDisplay::start();
    ASSERT_TRUE(display);
    for (const std::string& name : {display->name(), std::string()}) {
        batch_.setVariable("DISPLAY", name);
        batch_.setVariable("MESA_GL_VERSION_OVERRIDE", "4.2");
        expectPicture();
        EXPECT_THAT(batch_.output(), HasSubstr(" · Vulkan · ")) << name;
    }
    batch_.setVariable("MESA_GL_VERSION_OVERRIDE", "");
    batch_.setVariable("LIBGL_DRIVERS_PATH", "/nonexistent");
    expectPicture();
    EXPECT_THAT(batch_.output(), HasSubstr(" · Vulkan · "));
}

TEST_F(DisplayPictureTest, ADisplayWithoutADriverIsLeftForOneOfItsOwn) {
    const PaletteDisplay display;
    batch_.setVariable("DISPLAY", display.name());
    hideVulkan();
    expectPicture();
    EXPECT_THAT(batch_.lines(), Contains(withoutDriver));
    hideXvfb();
    expectNoPicture("[WARN] Picture not drawn · no graphics driver here has OpenGL 4.3 or Vulkan, "
                    "and no Xvfb on the search path starts");
}

TEST_F(DisplayPictureTest, DriversThatAreAllTooOldAreTold) {
    const auto display = VirtualDisplay::start();
    ASSERT_TRUE(display);
    batch_.setVariable("MESA_GL_VERSION_OVERRIDE", "4.2");
    hideVulkan();
    for (const std::string& name : {display->name(), std::string()}) {
        batch_.setVariable("DISPLAY", name);
        expectNoPicture(
            "[WARN] Picture not drawn · no graphics driver here has OpenGL 4.3 or Vulkan");
    }
}

} // namespace
} // namespace ostrella::test
