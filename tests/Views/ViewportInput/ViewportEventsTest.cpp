#include "Views/Viewport/ViewportEvents.h"

#include <QPointingDevice>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace ostrella::test {
namespace {

/// Devices that the display server of the tests does not have.
class WheelEvents : public testing::Test {
protected:
    ViewportInput::Scroll scrolled(QPoint pixels, QPoint angle, Qt::ScrollPhase phase,
        const QPointingDevice& device, Qt::KeyboardModifiers modifiers = {},
        bool turnedByAlt = false) {
        const QWheelEvent event({}, {}, pixels, angle, Qt::NoButton, modifiers, phase, false,
            Qt::MouseEventNotSynthesized, &device);
        return ViewportEvents::scroll(event, turnedByAlt);
    }

    QPointingDevice mouse{QStringLiteral("mouse"), 1, QInputDevice::DeviceType::Mouse,
        QPointingDevice::PointerType::Generic, QInputDevice::Capability::Scroll, 1, 3};
    QPointingDevice trackpad{QStringLiteral("trackpad"), 2, QInputDevice::DeviceType::TouchPad,
        QPointingDevice::PointerType::Finger, QInputDevice::Capability::Scroll, 2, 3};
};

TEST_F(WheelEvents, aMouseThatReportsPointsForItsNotchesIsTakenByTheNotch) {
    const auto scroll = scrolled({0, 15}, {0, 120}, Qt::NoScrollPhase, mouse);
    EXPECT_EQ(scroll.pixels, Vec2(0));
    EXPECT_EQ(scroll.angle, Vec2(0, 120));
}

TEST_F(WheelEvents, aTrackpadIsTakenByThePoint) {
    EXPECT_EQ(scrolled({3, -8}, {6, -16}, Qt::NoScrollPhase, trackpad).pixels, Vec2(3, -8));
}

TEST_F(WheelEvents, aStrokeWithPhasesIsTakenByThePoint) {
    EXPECT_EQ(scrolled({3, -8}, {6, -16}, Qt::ScrollUpdate, mouse).pixels, Vec2(3, -8));
    EXPECT_EQ(scrolled({3, -8}, {6, -16}, Qt::ScrollMomentum, mouse).pixels, Vec2(3, -8));
}

TEST_F(WheelEvents, whatAltHasTurnedAsideIsTurnedBackOnlyWhereItWas) {
    const auto turned = scrolled({}, {120, 0}, Qt::NoScrollPhase, mouse, Qt::AltModifier, true);
    EXPECT_EQ(turned.angle, Vec2(0, 120));
    EXPECT_TRUE(turned.modifiers.option);
    EXPECT_EQ(scrolled({}, {120, 0}, Qt::NoScrollPhase, mouse, Qt::AltModifier, false).angle,
        Vec2(120, 0));
    EXPECT_EQ(scrolled({}, {120, 0}, Qt::NoScrollPhase, mouse, {}, true).angle, Vec2(120, 0));
}

} // namespace
} // namespace ostrella::test
