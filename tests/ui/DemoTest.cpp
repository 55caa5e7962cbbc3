// The built-in aerofoil from the welcome card to its result.

#include "ui/support/AppUnderTest.h"

namespace ostrella::test {
namespace {

class Demo : public AppUnderTest {};

TEST_F(Demo, runsFromTheWelcomeCardToItsResult) {
    app->appSettings.setDefaultMaxIterations(10);
    click("Run the NACA0012 demo");
    EXPECT_EQ(phase(), RunPhase::Kind::solving) << "its mesh is there already";
    EXPECT_FALSE(find("Load sample Sphere"));
    EXPECT_TRUE(waitFor([this] { return shows("Starting solver…"); }));

    EXPECT_TRUE(waitFor([this] { return find("Residuals") != nullptr; }))
        << "the charts come forward by themselves";
    EXPECT_TRUE(waitFor([this] { return showsLike("Iter [0-9]+ / 10"); }));

    ASSERT_TRUE(waitForPhase(RunPhase::Kind::finished));
    user->settle();
    EXPECT_TRUE(waitFor([this] { return cardKind() == "result" && row("Streams").has_value(); }));
    EXPECT_EQ(row("Cells"), "229 376");
    EXPECT_TRUE(row("CL"));
    EXPECT_TRUE(row("Cp"));
    EXPECT_EQ(row("Streams"), "100");
    EXPECT_FALSE(row("File")) << "no file was loaded";
    EXPECT_TRUE(waitFor([this] { return isChecked("Cp"); }));
    EXPECT_TRUE(waitFor([this] { return isChecked("Streams"); }));
    EXPECT_FALSE(isEnabled("Vortex")) << "there is no vortex in two dimensions";
    EXPECT_TRUE(model().viewport()->legend()->isShown());
    EXPECT_TRUE(showsLike("Stopped at iteration cap · 10 iter · .* s"));
    EXPECT_FALSE(isEnabled("Orient model")) << "there is no model";
}

} // namespace
} // namespace ostrella::test
