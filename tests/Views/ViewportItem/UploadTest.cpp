// A body too large for the device to take with one frame.
#include "Views/ViewportItem/ItemWindow.h"
#include "golden/GoldenBodies.h"
#include "golden/PictureCompare.h"
#include "support/Wait.h"

#include <cmath>
#include <numbers>

namespace ostrella::test {
namespace {

using namespace std::chrono_literals;

/// A sphere by latitude and longitude, of 4 rings² facets, those without area among them.
TriangleMesh sphere(int rings, float radius) {
    const auto point = [&](int ring, int sector) {
        const double polar = std::numbers::pi * ring / rings;
        const double around = std::numbers::pi * (sector % (2 * rings)) / rings;
        return Vec3(std::sin(polar) * std::cos(around), std::cos(polar),
            std::sin(polar) * std::sin(around));
    };
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    for (int ring = 0; ring < rings; ++ring) {
        for (int sector = 0; sector < 2 * rings; ++sector) {
            for (const auto& [r, s] : {std::pair{0, 0}, {0, 1}, {1, 0}, {1, 0}, {0, 1}, {1, 1}}) {
                normals.push_back(point(ring + r, sector + s));
                positions.push_back(radius * normals.back());
            }
        }
    }
    return {std::move(positions), std::move(normals)};
}

class ItemUpload : public ItemWindow {
protected:
    ItemUpload() {
        QObject::connect(
            window.get(), &QQuickWindow::frameSwapped, item, [this] { ++windowFrames; });
    }

    void place(const TriangleMesh& mesh, const char* file) {
        parameters->setSTLURL(file);
        parameters->setMesh(mesh);
    }

    /// Until the scene has this body, of which nothing is drawn yet.
    void waitForModel(float radius) {
        ASSERT_TRUE(waitUntil([&] {
            return renderer().hasModel() &&
                   std::abs(renderer().contents().meshBounds.max.y - radius) < 1e-3F;
        }));
    }

    int windowFrames = 0;
    // 1.2 million facets: 34 MB, of which each frame takes half.
    TriangleMesh large = sphere(550, 1);
};

TEST_F(ItemUpload, leavesThePictureBeforeUntilTheBodyIsThere) {
    place(golden::vehicle(), "vehicle.stl");
    showWindow();
    settle();
    const QImage before = shown();
    std::vector<QImage> seen;
    const std::uint64_t drawn = item->frameCount();
    place(large, "large.stl");
    waitForModel(1);
    ASSERT_EQ(item->frameCount(), drawn) << "the frame is still to come";
    while (item->frameCount() == drawn && seen.size() < 20)
        seen.push_back(shown());
    ASSERT_GE(seen.size(), 3U);
    const QImage after = seen.back();
    seen.pop_back();
    EXPECT_NE(after, before);
    for (const QImage& picture : seen)
        EXPECT_EQ(PictureDifference::between(picture, before).largest, 0);
    settle();
    expectPicture();
    const int frames = windowFrames;
    EXPECT_EQ(framesDuring(500ms), 0U);
    EXPECT_EQ(windowFrames, frames);
}

TEST_F(ItemUpload, asksForItsFramesByItself) {
    showWindow();
    settle();
    place(large, "large.stl");
    waitForModel(1);
    const int frames = windowFrames;
    const std::uint64_t drawn = item->frameCount();
    ASSERT_TRUE(waitForFrames(1));
    EXPECT_GE(windowFrames, frames + 2);
    EXPECT_EQ(item->frameCount(), drawn + 1);
    settle();
    expectPicture();
}

TEST_F(ItemUpload, showsTheSurroundingsWhereThereIsNoPictureBefore) {
    place(large, "large.stl");
    waitForModel(1);
    window->show();
    ASSERT_TRUE(waitUntil([&] { return windowFrames > 0; }));
    ASSERT_EQ(item->frameCount(), 0U);
    const QImage first = shown();
    ASSERT_TRUE(waitForFrames(1));
    settle();
    expectPicture();
    // The body in the middle is all that is missing.
    const QImage whole = shown();
    const QPoint middle = whole.rect().center();
    EXPECT_NE(first.pixelColor(middle), whole.pixelColor(middle));
    const QRect gizmo(QPoint(whole.width() * 3 / 4, 0), whole.rect().bottomRight());
    EXPECT_TRUE(PictureDifference::between(first.copy(gizmo), whole.copy(gizmo)).isSame());
}

TEST_F(ItemUpload, dropsABodyOnItsWayForTheNextOne) {
    showWindow();
    settle();
    place(large, "large.stl");
    waitForModel(1);
    const std::uint64_t drawn = item->frameCount();
    const QImage before = shown();
    ASSERT_EQ(item->frameCount(), drawn);
    place(golden::vehicle(), "vehicle.stl");
    ASSERT_TRUE(waitForFrames(1));
    settle();
    EXPECT_NE(shown(), before);
    expectPicture();
}

TEST_F(ItemUpload, givesAWholePictureWhileTheBodyIsOnItsWay) {
    showWindow();
    settle();
    place(large, "large.stl");
    waitForModel(1);
    const std::uint64_t drawn = item->frameCount();
    shown();
    ASSERT_EQ(item->frameCount(), drawn) << "not there yet";
    const QImage picture = captured();
    ASSERT_FALSE(picture.isNull());
    EXPECT_TRUE(PictureDifference::between(picture, expected(false)).isSame());
    settle();
    expectPicture();
}

} // namespace
} // namespace ostrella::test
