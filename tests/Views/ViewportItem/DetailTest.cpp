#include "Views/Viewport/ViewportDetail.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using Duration = ViewportDetail::Duration;

void draw(ViewportDetail& detail, int frames, double milliseconds) {
    for (int i = 0; i < frames; ++i)
        detail.frameTook(Duration(milliseconds));
}

TEST(ViewportDetail, hasSmoothEdgesAtFirst) {
    EXPECT_EQ(ViewportDetail().samples(), 4);
}

TEST(ViewportDetail, leavesEdgesJaggedAfterSixSlowFramesInARow) {
    ViewportDetail detail;
    draw(detail, 5, 40);
    EXPECT_EQ(detail.samples(), 4);
    draw(detail, 1, 30);
    draw(detail, 5, 40);
    EXPECT_EQ(detail.samples(), 4) << "one in between was in time";
    draw(detail, 1, 40);
    EXPECT_EQ(detail.samples(), 1);
}

TEST(ViewportDetail, smoothesThemAgainAfterASecondOfQuickFrames) {
    ViewportDetail detail;
    draw(detail, 6, 40);
    draw(detail, 500, 12);
    EXPECT_EQ(detail.samples(), 1) << "smooth, they would be slow again";
    draw(detail, 59, 5);
    EXPECT_EQ(detail.samples(), 1);
    draw(detail, 1, 5);
    EXPECT_EQ(detail.samples(), 4);
}

} // namespace
} // namespace ostrella::test
