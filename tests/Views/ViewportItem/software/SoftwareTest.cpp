#include "Views/ViewportItem/BareWindow.h"

namespace ostrella::test {
namespace {

TEST(SoftwareSceneGraph, showsNothingAndSaysWhatIsMissing) {
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
    BareWindow bare;
    EXPECT_EQ(bare.item->deviceProblem(), QString()) << "not known yet";
    int changes = 0;
    QObject::connect(bare.item, &ViewportItem::deviceProblemChanged, bare.item, [&] { ++changes; });
    bare.expectNoScene();
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace ostrella::test
