#include "Views/Format/ViewportLayout.h"

#include <gtest/gtest.h>

#include <vector>

namespace ostrella {
namespace {

using namespace ViewportLayout;
using Edges = std::vector<Edge>;
using Overlay = ViewportOverlay;

constexpr LayoutSize view{1000, 800};

ViewportInsets margins(double top, double leading, double bottom, double trailing) {
    return {top, leading, bottom, trailing};
}

ViewportLayoutState state(std::map<Overlay, LayoutRect> frames, LayoutSize size = view) {
    return {size, std::move(frames)};
}

TEST(HuggedEdges, AreThoseWithin32Points) {
    EXPECT_EQ(huggedEdges({16, 16, 320, 100}, view), (Edges{Edge::leading, Edge::top}));
    EXPECT_EQ(huggedEdges({32, 400, 10, 10}, view), Edges{Edge::leading});
    EXPECT_EQ(huggedEdges({32.5, 400, 10, 10}, view), Edges{});
    EXPECT_EQ(huggedEdges({868, 668, 100, 100}, view), (Edges{Edge::trailing, Edge::bottom}));
    EXPECT_EQ(huggedEdges({867.5, 667.5, 100, 100}, view), Edges{});
    EXPECT_EQ(huggedEdges({0, 0, 1000, 800}, view),
        (Edges{Edge::leading, Edge::trailing, Edge::top, Edge::bottom}));
}

TEST(Insets, ACardClaimsTheEdgeThatItFillsMost) {
    EXPECT_EQ(insets({{16, 16, 320, 100}}, view), margins(132, 0, 0, 0));
    EXPECT_EQ(insets({{16, 16, 100, 700}}, view), margins(0, 132, 0, 0));
    EXPECT_EQ(insets({{884, 16, 100, 700}}, view), margins(0, 0, 0, 132));
    EXPECT_EQ(insets({{200, 700, 600, 84}}, view), margins(0, 0, 116, 0));
}

TEST(Insets, OnATieTheFirstEdgeStays) {
    // 0.25 of the width and of the height.
    EXPECT_EQ(insets({{16, 16, 250, 200}}, view), margins(0, 282, 0, 0));
}

TEST(Insets, TheGreatestOfAnEdgeCountsInWholePoints) {
    EXPECT_EQ(insets({{16, 16, 320, 100}, {400, 16, 300, 150.25}}, view),
        margins(183, 0, 0, 0)); // 166.25 + 16, rounded up
}

TEST(Insets, NothingIsClaimedByWhatHugsNoEdgeOrHasNoArea) {
    EXPECT_EQ(insets({{300, 300, 100, 100}}, view), margins(0, 0, 0, 0));
    EXPECT_EQ(
        insets({{16, 16, 0, 100}, {16, 16, 100, 0}, {16, 16, -5, -5}}, view), margins(0, 0, 0, 0));
    EXPECT_EQ(insets({}, view), margins(0, 0, 0, 0));
    EXPECT_EQ(insets({{16, 16, 320, 100}}, {0, 0}), margins(0, 0, 0, 0));
    EXPECT_EQ(insets({{16, 16, 320, 100}}, {1000, 0}), margins(0, 0, 0, 0));
}

TEST(Insets, AreMeasuredFromTheCanvasAndNotGreaterThanIt) {
    const LayoutRect canvas{10, 20, 500, 100};
    EXPECT_EQ(insets({{16, 16, 320, 60}}, view, canvas), margins(72, 0, 0, 0));
    EXPECT_EQ(insets({{16, 16, 320, 400}}, view, canvas), margins(0, 342, 0, 0));
    EXPECT_EQ(insets({{16, 16, 900, 300}}, view, canvas), margins(100, 0, 0, 0));
}

TEST(Insets, OfAViewportCountCardLegendAndViewControl) {
    const auto overlays =
        state({{Overlay::card, {16, 16, 320, 100}}, {Overlay::legend, {900, 16, 84, 270}},
            {Overlay::viewControl, {600, 744, 384, 40}}, {Overlay::canvas, {0, 0, 1000, 800}}});
    EXPECT_EQ(insets(overlays), margins(132, 0, 72, 116));
    EXPECT_EQ(insets(ViewportLayoutState()), margins(0, 0, 0, 0));
}

TEST(Insets, TheOrientationCardPushesUpwardsWhateverItsShape) {
    EXPECT_EQ(insets(state({{Overlay::orientCard, {300, 500.5, 100, 200}}})),
        margins(0, 0, 316, 0)); // 299.5 + 16, rounded up
    EXPECT_EQ(insets(state({{Overlay::orientCard, {300, 600, 0, 100}}})), margins(0, 0, 0, 0));
    EXPECT_EQ(insets(state({{Overlay::orientCard, {300, -100, 100, 200}}})), margins(0, 0, 800, 0));
    EXPECT_EQ(insets(state({{Overlay::orientCard, {300, 900, 100, 200}}})), margins(0, 0, 0, 0));
    // The greater demand at the foot counts.
    EXPECT_EQ(insets(state({{Overlay::orientCard, {300, 760, 100, 20}},
                  {Overlay::viewControl, {600, 744, 384, 40}}})),
        margins(0, 0, 72, 0));
}

TEST(OrientCardLift, ClearsViewControlAndGizmo) {
    // Without a frame of its own it is taken to stand over the gizmo: 76 + 8.
    EXPECT_EQ(orientCardLift(state({})), 84);
    EXPECT_EQ(orientCardLift(state({{Overlay::orientCard, {204, 600, 592, 100}}})), 16);
    EXPECT_EQ(orientCardLift(state({{Overlay::orientCard, {124, 600, 592, 100}}})), 16);
    EXPECT_EQ(orientCardLift(state({{Overlay::orientCard, {123.5, 600, 592, 100}}})), 84);
    EXPECT_EQ(orientCardLift(state({{Overlay::orientCard, {204, 600, 592, 100}},
                  {Overlay::viewControl, {600, 744, 384, 40}}})),
        64); // 56 + 8
    EXPECT_EQ(orientCardLift(state({{Overlay::orientCard, {100, 600, 592, 100}},
                  {Overlay::viewControl, {600, 700.5, 384, 40}}})),
        108); // 99.5 + 8, rounded up
}

TEST(OrientCardLift, FollowsTheCanvas) {
    const LayoutRect canvas{200, 0, 800, 700};
    // The gizmo lies from 200 to 324, and its top at 624.
    EXPECT_EQ(orientCardLift(
                  state({{Overlay::orientCard, {0, 600, 200, 100}}, {Overlay::canvas, canvas}})),
        16);
    EXPECT_EQ(orientCardLift(
                  state({{Overlay::orientCard, {0, 600, 201, 100}}, {Overlay::canvas, canvas}})),
        184);
}

TEST(NoticeLift, StandsAboveTheHighestAtTheFoot) {
    EXPECT_EQ(noticeLift(state({})), 0);
    EXPECT_EQ(noticeLift(state({{Overlay::viewControl, {600, 744, 384, 40}}})), 48);
    EXPECT_EQ(noticeLift(state({{Overlay::viewControl, {600, 744, 384, 40}},
                  {Overlay::orientCard, {204, 600, 592, 100}}})),
        192);
    EXPECT_EQ(noticeLift(state({{Overlay::viewControl, {600, 799, 384, 40}}})), 0);
}

TEST(BottomReserve, IsWhatTheLegendLeavesFree) {
    EXPECT_EQ(bottomReserve(state({})), 0);
    EXPECT_EQ(bottomReserve(state({{Overlay::viewControl, {600, 744, 384, 40}}})), 56);
    EXPECT_EQ(bottomReserve(state({{Overlay::legend, {900, 16, 84, 270}},
                  {Overlay::orientCard, {204, 600, 592, 100}}})),
        0);
    EXPECT_EQ(bottomReserve(state({{Overlay::legend, {700, 16, 84, 270}},
                  {Overlay::orientCard, {204, 600, 592, 100}}})),
        200);
    // A legend over the gizmo.
    EXPECT_EQ(bottomReserve(state({{Overlay::legend, {100, 16, 84, 270}}})), 76);
    EXPECT_EQ(bottomReserve(state({{Overlay::viewControl, {600, 900, 384, 40}}})), 0);
}

TEST(LegendBarHeight, StaysBetween72And220) {
    EXPECT_EQ(legendBarHeight(ViewportLayoutState()), 220);
    EXPECT_EQ(legendBarHeight(state({})), 220);
    EXPECT_EQ(legendBarHeight(state({}, {1000, 100})), 72);
    // 200.5 - 16 - 12 - 20, in whole points.
    EXPECT_EQ(legendBarHeight(state({}, {1000, 200.5})), 152);
    EXPECT_EQ(legendBarHeight(state({{Overlay::viewControl, {600, 304, 384, 40}}}, {1000, 360})),
        220); // 360 - 16 - 56 - 12 - 20 = 256
    EXPECT_EQ(
        legendBarHeight(state({{Overlay::viewControl, {600, 244, 384, 40}}}, {1000, 300})), 196);
}

} // namespace
} // namespace ostrella
