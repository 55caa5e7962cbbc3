#include "Rendering/Tween.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(Tween, ofNoDurationIsAtItsEndInItsFirstFrame) {
    for (const double duration : {0.0, -1.0}) {
        const Tween<float> tween{1, 2, 10, duration};
        EXPECT_EQ(tween.progress(10), 1.0);
        EXPECT_EQ(tween.progress(9), 1.0);
        EXPECT_EQ(tween.eased(10), 1.0F);
    }
}

TEST(Tween, slowsDownTowardsItsEnd) {
    const Tween<float> tween{0, 1, 10, 2};
    EXPECT_EQ(tween.eased(10), 0.0F);
    EXPECT_FLOAT_EQ(tween.eased(11), 0.875F); // 1 - 0.5³
    EXPECT_EQ(tween.eased(12), 1.0F);
    EXPECT_EQ(tween.eased(9), 0.0F);
    EXPECT_EQ(tween.eased(13), 1.0F);
}

} // namespace
} // namespace ostrella
