#include "Views/ViewportItem/BareWindow.h"

namespace ostrella::test {
namespace {

TEST(OldDevice, drawsTheWindowButNotTheScene) {
    qputenv("QSG_RHI_BACKEND", "opengl");
    qputenv("MESA_GL_VERSION_OVERRIDE", "4.2");
    BareWindow bare;
    bare.expectNoScene();
    EXPECT_NE(ViewportNode::deviceOf(bare.window), nullptr);
}

} // namespace
} // namespace ostrella::test
