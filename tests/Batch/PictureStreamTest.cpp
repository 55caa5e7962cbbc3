#include "Batch/PictureStream.h"

#include "Batch/PictureDrawer.h"
#include "Platform/FileDescriptor.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <future>

#include <sys/socket.h>
#include <unistd.h>

namespace ostrella {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class PictureStreamTest : public testing::Test {
protected:
    PictureStreamTest() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        one_ = FileDescriptor(ends[0]);
        other_ = FileDescriptor(ends[1]);
    }

    FileDescriptor one_;
    FileDescriptor other_;
};

/// A scene that no socket takes in one go.
PictureScene scene() {
    PictureScene scene;
    scene.width = 640;
    scene.height = 400;
    scene.samples = 2;
    scene.frame.clearColor = {0.1F, 0.2F, 0.3F};
    scene.frame.uniforms.resize(3);
    scene.frame.uniforms[1].baseColor = {1, 2, 3, 4};
    DrawCommand draw;
    draw.pipeline = Pipeline::ribbon;
    draw.indices = SceneBuffer::ribbonIndices;
    draw.count = 7;
    draw.uniforms = 2;
    draw.extra = RibbonUniforms{{5, 6, 7, 8}, {}, {}, {}, {}};
    draw.box = PixelRect{1, 2, 3, 4};
    scene.frame.draws = {DrawCommand{}, draw};
    std::vector<std::byte> bytes(3'000'001);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(i * 31 % 251);
    }
    scene.buffers.replace(SceneBuffer::ribbonPoints, std::move(bytes));
    scene.buffers.replace(SceneBuffer::gridMajor, std::vector<std::byte>(5, std::byte{9}));
    return scene;
}

TEST_F(PictureStreamTest, ASceneComesOutAsItWentIn) {
    const PictureScene sent = scene();
    auto sending =
        std::async(std::launch::async, [&] { return PictureStream::sendScene(one_.get(), sent); });
    const auto received = PictureStream::receiveScene(other_.get());
    EXPECT_TRUE(sending.get());
    ASSERT_TRUE(received);
    EXPECT_EQ(received->width, 640);
    EXPECT_EQ(received->height, 400);
    EXPECT_EQ(received->samples, 2);
    EXPECT_EQ(received->frame.clearColor, sent.frame.clearColor);
    ASSERT_EQ(received->frame.uniforms.size(), 3U);
    EXPECT_EQ(received->frame.uniforms[1].baseColor, Vec4(1, 2, 3, 4));
    ASSERT_EQ(received->frame.draws.size(), 2U);
    const DrawCommand& draw = received->frame.draws[1];
    EXPECT_EQ(draw.pipeline, Pipeline::ribbon);
    EXPECT_EQ(draw.indices, SceneBuffer::ribbonIndices);
    EXPECT_EQ(draw.count, 7U);
    EXPECT_EQ(draw.uniforms, 2U);
    ASSERT_TRUE(std::holds_alternative<RibbonUniforms>(draw.extra));
    EXPECT_EQ(std::get<RibbonUniforms>(draw.extra).view, Vec4(5, 6, 7, 8));
    EXPECT_EQ(draw.box, (PixelRect{1, 2, 3, 4}));
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        const auto buffer = static_cast<SceneBuffer>(i);
        EXPECT_EQ(received->buffers[buffer].bytes, sent.buffers[buffer].bytes) << i;
    }
}

TEST_F(PictureStreamTest, MessagesKeepTheirKindAndEveryByte) {
    const std::string bytes("\x89PNG\0\xFF", 6);
    EXPECT_TRUE(PictureStream::sendMessage(one_.get(), PictureStream::Kind::info, ""));
    EXPECT_TRUE(PictureStream::sendMessage(one_.get(), PictureStream::Kind::picture, bytes));
    const auto first = PictureStream::receiveMessage(other_.get());
    const auto second = PictureStream::receiveMessage(other_.get());
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->kind, PictureStream::Kind::info);
    EXPECT_THAT(first->text, IsEmpty());
    EXPECT_EQ(second->kind, PictureStream::Kind::picture);
    EXPECT_EQ(second->text, bytes);
}

TEST_F(PictureStreamTest, AnEndThatHasGoneIsNoticedOnBothSides) {
    EXPECT_FALSE(PictureStream::waitForMessage(one_.get(), std::chrono::milliseconds(0)));
    ASSERT_EQ(write(other_.get(), "half", 4), 4);
    other_.close();
    EXPECT_TRUE(PictureStream::waitForMessage(one_.get(), std::chrono::milliseconds(0)));
    EXPECT_EQ(PictureStream::receiveMessage(one_.get()), std::nullopt);
    EXPECT_FALSE(PictureStream::sendScene(one_.get(), scene()));
    EXPECT_EQ(PictureStream::receiveScene(one_.get()), std::nullopt);
}

TEST_F(PictureStreamTest, ASizeThatCannotBeIsNoMessage) {
    const std::string nonsense(64, '\xFF');
    ASSERT_EQ(write(other_.get(), nonsense.data(), nonsense.size()), 64);
    EXPECT_EQ(PictureStream::receiveMessage(one_.get()), std::nullopt);
}

class PictureDrawerTest : public testing::Test {
protected:
    PictureDrawer::Outcome drawnBy(const std::filesystem::path& program) {
        PictureDrawer drawer(program);
        return drawer.draw(scene(), [this](const std::string& line) { lines_.push_back(line); });
    }

    std::vector<std::string> lines_;
};

TEST_F(PictureDrawerTest, AProgramThatIsMissingIsNamed) {
    const auto outcome = drawnBy("none/ostrella-picture");
    EXPECT_FALSE(outcome.png);
    EXPECT_THAT(outcome.failure, HasSubstr("Cannot start "));
    EXPECT_THAT(outcome.failure, HasSubstr("none/ostrella-picture"));
}

TEST_F(PictureDrawerTest, AProgramThatFallsOverCostsThePictureAlone) {
    test::TemporaryDirectory directory;
    const auto program = directory.path() / "picture";
    for (const char* last : {"exit 0", "kill -SEGV $$", "head -c 100 <&1 >&2; exit 3"}) {
        test::writeFile(program, std::string("#!/bin/sh\n") + last + "\n");
        std::filesystem::permissions(program, std::filesystem::perms(0755));
        const auto outcome = drawnBy(program);
        EXPECT_FALSE(outcome.png) << last;
        EXPECT_EQ(outcome.failure, "the drawing program ended unexpectedly") << last;
    }
    EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(PictureDrawerTest, OneThatNothingIsAskedOfEndsByItself) {
    // Listens until there is nothing more to hear, and says so.
    test::TemporaryDirectory directory;
    const auto program = directory.path() / "picture";
    const auto mark = directory.path() / "ended";
    test::writeFile(
        program, "#!/bin/sh\ncat <&1 >'" + mark.string() + "'\necho >>'" + mark.string() + "'\n");
    std::filesystem::permissions(program, std::filesystem::perms(0755));
    {
        PictureDrawer drawer(program);
        drawer.start();
        drawer.start();
    }
    EXPECT_EQ(test::readFile(mark), "\n");
}

} // namespace
} // namespace ostrella
