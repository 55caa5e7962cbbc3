#include "Models/SurfacePreparation.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(SurfaceChoice, HasTheNamesOfTheOptions) {
    EXPECT_EQ(rawValue(SurfaceChoice::automatic), "auto");
    EXPECT_EQ(rawValue(SurfaceChoice::asIs), "as-is");
    EXPECT_EQ(rawValue(SurfaceChoice::prepared), "prepared");
}

TEST(SurfaceChoice, IsFoundByItsNameOnly) {
    for (const SurfaceChoice choice : allSurfaceChoices) {
        EXPECT_EQ(surfaceChoiceFromRawValue(rawValue(choice)), choice);
    }
    EXPECT_EQ(surfaceChoiceFromRawValue("automatic"), std::nullopt);
    EXPECT_EQ(surfaceChoiceFromRawValue("Auto"), std::nullopt);
    EXPECT_EQ(surfaceChoiceFromRawValue(""), std::nullopt);
}

} // namespace
} // namespace ostrella
