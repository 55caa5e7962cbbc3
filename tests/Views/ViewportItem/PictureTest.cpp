#include "Views/ViewportItem/ItemWindow.h"
#include "golden/GoldenBodies.h"
#include "golden/PictureCompare.h"
#include "support/Wait.h"

#include <QSGSimpleRectNode>

namespace ostrella::test {
namespace {

class ItemPicture : public ItemWindow {};

/// Something red above the viewport.
class Card final : public QQuickItem {
public:
    explicit Card(QQuickItem* parent) : QQuickItem(parent) { setFlag(ItemHasContents); }

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override {
        auto* node = static_cast<QSGSimpleRectNode*>(old);
        if (node == nullptr)
            node = new QSGSimpleRectNode;
        node->setColor(Qt::red);
        node->setRect(boundingRect());
        return node;
    }
};

TEST_F(ItemPicture, isThatOfTheScene) {
    showWindow();
    settle();
    expectPicture();
    loadBallWithResult();
    settings->setFlowAnimation(false);
    settle();
    expectPicture();
    EXPECT_EQ(item->deviceProblem(), QString());
}

TEST_F(ItemPicture, followsTheSizeOfTheItem) {
    parameters->setSTLURL("vehicle.stl");
    parameters->setMesh(golden::vehicle());
    showWindow();
    settle();
    window->resize(211, 333);
    ASSERT_TRUE(waitUntil([&] { return item->height() == 333; }));
    settle();
    expectPicture();
    const double ratio = window->effectiveDevicePixelRatio();
    EXPECT_FLOAT_EQ(renderer().viewportSize().x, static_cast<float>(211 * ratio));
    EXPECT_FLOAT_EQ(renderer().viewportSize().y, static_cast<float>(333 * ratio));
    EXPECT_EQ(renderer().viewSizePoints(), Vec2(211, 333));
}

TEST_F(ItemPicture, survivesAStormOfSizes) {
    loadBallWithResult();
    settings->setFlowAnimation(false);
    showWindow();
    for (int i = 0; i < 200; ++i) {
        const QSize size(1 + (i * 37) % 400, 1 + (i * 53) % 300);
        window->resize(size);
        ASSERT_TRUE(waitUntil([&] { return item->size() == QSizeF(size); }));
    }
    EXPECT_EQ(item->deviceProblem(), QString());
    window->resize(320, 200);
    settle();
    expectPicture();
}

TEST_F(ItemPicture, comesBackAfterASizeThatTheDeviceRefuses) {
    window->setColor(Qt::white);
    showWindow();
    settle();
    item->setWidth(device()->resourceLimit(QRhi::TextureSizeMax) + 1);
    ASSERT_TRUE(waitUntil([&] { return !item->deviceProblem().isEmpty(); }));
    EXPECT_TRUE(item->deviceProblem().contains(QStringLiteral("no room")));
    EXPECT_EQ(shown().pixelColor(5, 5), QColor(Qt::white));
    item->setWidth(320);
    settle();
    EXPECT_EQ(item->deviceProblem(), QString());
    expectPicture();
}

TEST_F(ItemPicture, isUnderTheItemsAboveIt) {
    showWindow();
    auto* card = new Card(window->contentItem());
    card->setSize({40, 30});
    settle();
    const QImage seen = shown();
    const double ratio = window->effectiveDevicePixelRatio();
    const QSize covered = QSize(40, 30) * ratio;
    EXPECT_EQ(seen.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(seen.pixelColor(covered.width() - 1, covered.height() - 1), QColor(Qt::red));
    const QRect below(0, covered.height(), seen.width(), seen.height() - covered.height());
    EXPECT_TRUE(PictureDifference::between(seen.copy(below), expected().copy(below)).isSame());
}

TEST_F(ItemPicture, isEmptyWithoutItsModel) {
    window->setColor(Qt::white);
    loadBallWithResult();
    showWindow();
    EXPECT_NE(shown().pixelColor(5, 5), QColor(Qt::white));
    parameters.reset();
    EXPECT_EQ(item->coordinator(), nullptr);
    ASSERT_TRUE(waitUntil([&] { return shown().pixelColor(5, 5) == QColor(Qt::white); }));
    EXPECT_FALSE(item->isAnimating());
    parameters.emplace();
    item->setModel(*parameters, *settings, [this] { return now; });
    settle();
    expectPicture();
    settings.reset();
    EXPECT_EQ(item->coordinator(), nullptr);
    settings.emplace();
}

TEST_F(ItemPicture, mayGoBeforeItsModelAndItsWindow) {
    window->setColor(Qt::white);
    loadBallWithResult();
    showWindow();
    delete item;
    parameters->setAlpha(3);
    settings->setWireframe(true);
    EXPECT_EQ(shown().pixelColor(5, 5), QColor(Qt::white));
}

TEST_F(ItemPicture, movesToAnotherWindow) {
    loadBallWithResult();
    settings->setFlowAnimation(false);
    showWindow();
    auto second = std::make_unique<QQuickWindow>();
    second->resize(window->size());
    item->setParent(second->contentItem()); // who owns it
    item->setParentItem(second->contentItem());
    std::swap(window, second);
    showWindow();
    second.reset();
    settings->setWireframe(true);
    settle();
    expectPicture();
}

} // namespace
} // namespace ostrella::test
