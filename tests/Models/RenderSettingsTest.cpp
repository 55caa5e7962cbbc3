#include "Models/RenderSettings.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using testing::ElementsAre;

/// Stands for a picture; only its address is handed on.
const QImage* somePicture() {
    static const int place = 0;
    return reinterpret_cast<const QImage*>(&place);
}

TEST(ViewPreset, isListedAndNamed) {
    EXPECT_THAT(allViewPresets,
        ElementsAre(ViewPreset::iso, ViewPreset::front, ViewPreset::side, ViewPreset::top));
    EXPECT_EQ(rawValue(ViewPreset::iso), "iso");
    EXPECT_EQ(rawValue(ViewPreset::front), "front");
    EXPECT_EQ(rawValue(ViewPreset::side), "side");
    EXPECT_EQ(rawValue(ViewPreset::top), "top");
    EXPECT_EQ(viewPresetFromRawValue("side"), ViewPreset::side);
    EXPECT_EQ(viewPresetFromRawValue("back"), std::nullopt);
}

TEST(ViewPreset, hasAPose) {
    EXPECT_EQ(pose(ViewPreset::iso).azimuth, 0.785398126F);
    EXPECT_EQ(pose(ViewPreset::iso).elevation, 0.5654867F);
    EXPECT_EQ(pose(ViewPreset::front).azimuth, -1.57079625F);
    EXPECT_EQ(pose(ViewPreset::front).elevation, 0.0F);
    EXPECT_EQ(pose(ViewPreset::side).azimuth, 0.0F);
    EXPECT_EQ(pose(ViewPreset::side).elevation, 0.0F);
    EXPECT_EQ(pose(ViewPreset::top).azimuth, 0.0F);
    EXPECT_EQ(pose(ViewPreset::top).elevation, 1.57079625F);
}

TEST(RenderSettings, beginWithTheDefaults) {
    const RenderSettings settings;
    EXPECT_FALSE(settings.wireframe());
    EXPECT_TRUE(settings.showGrid());
    EXPECT_FALSE(settings.colormapEnabled());
    EXPECT_FALSE(settings.streamlinesEnabled());
    EXPECT_FALSE(settings.vortexEnabled());
    EXPECT_FALSE(settings.orientMode());
    EXPECT_TRUE(settings.flowAnimation());
    EXPECT_EQ(settings.viewportInsets(), (ViewportInsets{0, 0, 0, 0}));
    EXPECT_FALSE(settings.reframeRequestID().isNull());
    EXPECT_EQ(settings.viewPreset(), ViewPreset::iso);
    EXPECT_FALSE(settings.viewPresetRequestID());
    EXPECT_TRUE(settings.viewPresetIsCurrent());
    EXPECT_FALSE(settings.snapshotRequestID());
}

TEST(RenderSettings, haveAReframeRequestOfTheirOwn) {
    EXPECT_NE(RenderSettings().reframeRequestID(), RenderSettings().reframeRequestID());
}

TEST(RenderSettings, keepWhatIsSetAndNotifyEachTime) {
    RenderSettings settings;
    int count = 0;
    using S = RenderSettings;
    for (const auto signal : {&S::wireframeChanged, &S::showGridChanged, &S::colormapEnabledChanged,
             &S::streamlinesEnabledChanged, &S::vortexEnabledChanged, &S::orientModeChanged,
             &S::flowAnimationChanged, &S::viewportInsetsChanged, &S::reframeRequestIDChanged,
             &S::viewPresetIsCurrentChanged}) {
        QObject::connect(&settings, signal, [&count] { ++count; });
    }
    const QUuid request = QUuid::createUuid();
    for (int round = 1; round <= 2; ++round) {
        settings.setWireframe(true);
        settings.setShowGrid(false);
        settings.setColormapEnabled(true);
        settings.setStreamlinesEnabled(true);
        settings.setVortexEnabled(true);
        settings.setOrientMode(true);
        settings.setFlowAnimation(false);
        settings.setViewportInsets({1, 2, 3, 4});
        settings.setReframeRequestID(request);
        settings.setViewPresetIsCurrent(false);
        EXPECT_EQ(count, 10 * round);
    }
    EXPECT_TRUE(settings.wireframe());
    EXPECT_FALSE(settings.showGrid());
    EXPECT_TRUE(settings.colormapEnabled());
    EXPECT_TRUE(settings.streamlinesEnabled());
    EXPECT_TRUE(settings.vortexEnabled());
    EXPECT_TRUE(settings.orientMode());
    EXPECT_FALSE(settings.flowAnimation());
    EXPECT_EQ(settings.viewportInsets(), (ViewportInsets{1, 2, 3, 4}));
    EXPECT_EQ(settings.reframeRequestID(), request);
    EXPECT_FALSE(settings.viewPresetIsCurrent());
}

TEST(RequestView, setsThePresetAndAsksForIt) {
    RenderSettings settings;
    settings.setViewPresetIsCurrent(false);
    std::vector<std::string> order;
    QObject::connect(
        &settings, &RenderSettings::viewPresetChanged, [&order] { order.emplace_back("preset"); });
    QObject::connect(&settings, &RenderSettings::viewPresetIsCurrentChanged,
        [&order] { order.emplace_back("current"); });
    QObject::connect(&settings, &RenderSettings::viewPresetRequestIDChanged,
        [&order] { order.emplace_back("request"); });
    settings.requestView(ViewPreset::top);
    EXPECT_EQ(settings.viewPreset(), ViewPreset::top);
    EXPECT_TRUE(settings.viewPresetIsCurrent());
    EXPECT_TRUE(settings.viewPresetRequestID());
    EXPECT_THAT(order, ElementsAre("preset", "current", "request"));
}

TEST(RequestView, isANewRequestForThePresetAlreadyShown) {
    RenderSettings settings;
    settings.requestView(ViewPreset::side);
    const auto first = settings.viewPresetRequestID();
    settings.requestView(ViewPreset::side);
    EXPECT_TRUE(settings.viewPresetRequestID());
    EXPECT_NE(settings.viewPresetRequestID(), first);
}

TEST(RequestSnapshot, isDeliveredOnce) {
    RenderSettings settings;
    std::vector<const QImage*> received;
    settings.requestSnapshot([&](const QImage* image) { received.push_back(image); });
    EXPECT_TRUE(settings.snapshotRequestID());
    EXPECT_TRUE(received.empty());
    settings.deliverSnapshot(somePicture());
    EXPECT_FALSE(settings.snapshotRequestID());
    settings.deliverSnapshot(somePicture());
    EXPECT_THAT(received, ElementsAre(somePicture()));
}

TEST(RequestSnapshot, tellsThatNoPictureCouldBeMade) {
    RenderSettings settings;
    std::vector<const QImage*> received;
    settings.requestSnapshot([&](const QImage* image) { received.push_back(image); });
    settings.deliverSnapshot(nullptr);
    EXPECT_THAT(received, ElementsAre(nullptr));
}

TEST(RequestSnapshot, dropsAPendingOneWithoutACall) {
    RenderSettings settings;
    std::vector<std::string> called;
    settings.requestSnapshot([&](const QImage*) { called.emplace_back("first"); });
    const auto first = settings.snapshotRequestID();
    settings.requestSnapshot([&](const QImage*) { called.emplace_back("second"); });
    EXPECT_NE(settings.snapshotRequestID(), first);
    settings.deliverSnapshot(somePicture());
    EXPECT_THAT(called, ElementsAre("second"));
}

TEST(DeliverSnapshot, letsTheReceiverAskAgain) {
    RenderSettings settings;
    int count = 0;
    settings.requestSnapshot([&](const QImage*) {
        ++count;
        settings.requestSnapshot([&](const QImage*) { count += 10; });
    });
    settings.deliverSnapshot(somePicture());
    EXPECT_TRUE(settings.snapshotRequestID());
    settings.deliverSnapshot(somePicture());
    EXPECT_EQ(count, 11);
    EXPECT_FALSE(settings.snapshotRequestID());
}

TEST(DeliverSnapshot, withoutARequestDoesNoHarm) {
    RenderSettings settings;
    settings.deliverSnapshot(somePicture());
    EXPECT_FALSE(settings.snapshotRequestID());
}

} // namespace
} // namespace ostrella
