#include "Views/Format/BoundingBoxText.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <memory>

namespace ostrella {
namespace {

/// One triangle with the legs `x` along x and `y` along y.
TriangleMesh triangle(float x, float y) {
    const Vec3 up(0, 0, 1);
    return {std::vector<Vec3>{{0, 0, 0}, {x, 0, 0}, {0, y, 0}}, std::vector<Vec3>{up, up, up}};
}

TEST(BoundingBoxText, OfAnUnturnedModelComesAtOnce) {
    int changes = 0;
    BoundingBoxText box([&changes] { ++changes; });
    EXPECT_EQ(box.text(), std::nullopt);
    box.refresh(triangle(1, 2), {0, 0, 0});
    EXPECT_EQ(box.text(), "1.00 × 2.00 × 0.00 m");
    EXPECT_EQ(changes, 1);
    box.refresh(std::nullopt, {0, 0, 0});
    EXPECT_EQ(box.text(), std::nullopt);
    EXPECT_EQ(changes, 2);
}

TEST(BoundingBoxText, OfATurnedModelComesLaterAndTheOldTextStandsMeanwhile) {
    BoundingBoxText box([] {});
    const TriangleMesh mesh = triangle(1, 2);
    box.refresh(mesh, {0, 0, 0});
    box.refresh(mesh, {0, 0, 90});
    EXPECT_EQ(box.text(), "1.00 × 2.00 × 0.00 m");
    EXPECT_TRUE(test::waitUntil([&box] { return box.text() == "2.00 × 1.00 × 0.00 m"; }));
}

TEST(BoundingBoxText, OfAnotherModelTheOldTextDoesNotStand) {
    BoundingBoxText box([] {});
    box.refresh(triangle(1, 2), {0, 0, 0});
    box.refresh(triangle(3, 4), {0, 0, 90});
    EXPECT_EQ(box.text(), std::nullopt);
    EXPECT_TRUE(test::waitUntil([&box] { return box.text() == "4.00 × 3.00 × 0.00 m"; }));
}

TEST(BoundingBoxText, TheNewestQuestionWins) {
    BoundingBoxText box([] {});
    const TriangleMesh mesh = triangle(1, 2);
    for (int degrees = 1; degrees <= 90; ++degrees) {
        box.refresh(mesh, {0, 0, degrees});
    }
    EXPECT_TRUE(test::waitUntil([&box] { return box.text() == "2.00 × 1.00 × 0.00 m"; }));
}

TEST(BoundingBoxText, AnAnswerThatComesTooLateCountsNoMore) {
    BoundingBoxText box([] {});
    BoundingBoxText later([] {});
    const TriangleMesh mesh = triangle(1, 2);
    box.refresh(mesh, {0, 0, 90});
    box.refresh(mesh, {0, 0, 0});
    EXPECT_EQ(box.text(), "1.00 × 2.00 × 0.00 m");
    // Once a later question has been answered, the earlier one has too.
    later.refresh(mesh, {0, 0, 90});
    EXPECT_TRUE(test::waitUntil([&later] { return later.text().has_value(); }));
    box.refresh(std::nullopt, {0, 0, 0});
    box.refresh(mesh, {0, 0, 45});
    EXPECT_TRUE(test::waitUntil([&box] { return box.text() == "2.12 × 1.41 × 0.00 m"; }));
}

TEST(BoundingBoxText, MayGoWhileItIsBeingMade) {
    bool hasChanged = false;
    auto box = std::make_unique<BoundingBoxText>([&hasChanged] { hasChanged = true; });
    BoundingBoxText later([] {});
    box->refresh(triangle(1, 2), {0, 0, 90});
    box.reset();
    later.refresh(triangle(1, 2), {0, 0, 90});
    EXPECT_TRUE(test::waitUntil([&later] { return later.text().has_value(); }));
    EXPECT_FALSE(hasChanged);
}

} // namespace
} // namespace ostrella
