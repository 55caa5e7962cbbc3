#include "Batch/ExitStatus.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(ExitStatus, EachStageHasItsOwn) {
    EXPECT_EQ(ExitStatus::ofStage("mesh"), 3);
    EXPECT_EQ(ExitStatus::ofStage("solver"), 4);
    EXPECT_EQ(ExitStatus::ofStage("results"), 5);
}

} // namespace
} // namespace ostrella
