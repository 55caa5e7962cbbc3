#include "Views/ViewportInput/ViewportWindow.h"

#include "Solver/Geometry/ModelFile.h"
#include "support/Wait.h"

#include <QKeyEvent>

#include <cmath>
#include <filesystem>
#include <numbers>

namespace ostrella::test {

namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;

} // namespace

void KeyCounter::keyPressEvent(QKeyEvent* event) {
    ++count;
    event->accept();
}

ViewportWindow::ViewportWindow() : window(std::make_unique<QQuickWindow>()) {
    window->setGeometry(120, 100, 400, 300);
    item = new ViewportItem(window->contentItem());
    item->setSize({400, 300});
    item->setModel(*parameters, *settings, [this] { return now; });
    load("sphere");
    window->show();
    user.emplace(*window);
    user->moveTo(outside);
    finishTweens();
    noteCamera();
}

ViewportWindow::~ViewportWindow() {
    user.reset();
    window.reset();
}

void ViewportWindow::load(const std::string& sample) {
    const auto file = std::filesystem::path(OSTRELLA_STAGE_DIR) / "share" / "ostrella" / "samples" /
                      (sample + ".stl");
    parameters->setSTLURL(file);
    parameters->setMesh(loadModelFile(file));
    ASSERT_TRUE(waitUntil([&] { return renderer().hasModel(); }));
}

void ViewportWindow::finishTweens() {
    now += 10;
    ASSERT_TRUE(waitUntil([&] { return view().isPaused() && !item->isAnimating(); }));
    ASSERT_TRUE(waitUntil([&] { return item->frameCount() > 0; }));
}

void ViewportWindow::advance(double seconds) {
    ASSERT_TRUE(item->isAnimating());
    now += seconds;
    const auto drawn = item->frameCount();
    ASSERT_TRUE(waitUntil([&] { return item->frameCount() > drawn; }));
}

void ViewportWindow::resizeTo(int width, int height) {
    window->resize(width, height);
    ASSERT_TRUE(waitUntil([&] { return window->size() == QSize(width, height); }));
    item->setSize(window->size());
    const auto drawn = item->frameCount();
    user->settle();
    ASSERT_TRUE(drawsMoreThan(drawn));
}

void ViewportWindow::enterOrientMode() {
    user->click(onBody);
    ASSERT_TRUE(settings->orientMode());
    finishTweens();
    noteCamera();
}

void ViewportWindow::takeZRing() {
    enterOrientMode();
    user->moveTo(onZRing);
    user->press();
    ASSERT_EQ(renderer().activeRing, OrientationAxis::z);
}

QPointF ViewportWindow::around(double degrees) {
    const QPointF arm = onZRing - ringCentre;
    const double angle = -degrees / degreesPerRadian; // y points down here
    return {std::round(ringCentre.x() + arm.x() * std::cos(angle) - arm.y() * std::sin(angle)),
        std::round(ringCentre.y() + arm.x() * std::sin(angle) + arm.y() * std::cos(angle))};
}

double ViewportWindow::angleTo(QPointF point) {
    const auto direction = [](QPointF p) {
        return std::atan2(ringCentre.y() - p.y(), p.x() - ringCentre.x());
    };
    return std::remainder((direction(point) - direction(onZRing)) * degreesPerRadian, 360);
}

double ViewportWindow::metresPerPoint() const {
    return 2 * double(before.distance) * std::tan(std::numbers::pi / 8) / item->height();
}

Vec3 ViewportWindow::targetAfter(double right, double up) const {
    const auto r = Vec3(0.70710678F, 0.0F, -0.70710678F);
    const auto u = Vec3(-0.37888677F, 0.84432791F, -0.37888677F);
    const auto metres = [&](double points) {
        return static_cast<float>(points * metresPerPoint());
    };
    return before.target + metres(right) * r + metres(up) * u;
}

bool ViewportWindow::drawsMoreThan(std::uint64_t frames) const {
    return waitUntil([&] { return item->frameCount() > frames; });
}

Vec3 ViewportWindow::rotation() const {
    return {static_cast<float>(parameters->rotationX()),
        static_cast<float>(parameters->rotationY()), static_cast<float>(parameters->rotationZ())};
}

} // namespace ostrella::test
