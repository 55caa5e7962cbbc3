#include "Views/Format/ViewportPlacement.h"
#include "Rendering/ViewportFraming.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace ostrella {
namespace {

using namespace ViewportLayout;

/// The cards that are on show together.
struct Cards {
    double cardWidth = 0; ///< 0 for none; all at the usual size of texts
    double cardLeast = 36;
    double cardHeight = 36;
    bool legend = false;
    bool viewControl = false;
    bool orientCard = false;
    bool notice = false;
    bool loading = false;
    bool welcome = false;
};

OverlayWishes wishes(const Cards& cards, LayoutSize size, double scale) {
    OverlayWishes wishes;
    wishes.size = size;
    wishes.lengthScale = scale;
    const double legendWidth = 46 + 42 * scale;
    if (cards.legend) {
        wishes.legend = {legendWidth, 32 + 14 * scale};
    }
    if (cards.cardWidth > 0) {
        wishes.card = {cards.cardWidth * scale, cards.cardLeast * scale, cards.cardHeight * scale};
    }
    if (cards.viewControl) {
        wishes.viewControl = LayoutSize{12 + 324 * scale, 12 + 28 * scale};
    }
    if (cards.orientCard) {
        wishes.orientCard = LayoutSize{592 * scale, 65 + 87 * scale};
    }
    if (cards.notice) {
        wishes.notice = LayoutSize{
            std::min(560.0, std::min(48 + 300 * scale, size.width - 32)), 24 + 18 * scale};
    }
    if (cards.loading) {
        wishes.loading = LayoutSize{std::min(480.0, size.width - 48), 24 + 18 * scale};
    }
    if (cards.welcome) {
        wishes.welcome = LayoutSize{496 * scale, 132 + 200 * scale};
    }
    return wishes;
}

/// Every set of cards that the window can come to show.
std::vector<Cards> allSets() {
    std::vector<Cards> sets;
    const std::vector<Cards> heads{{}, {320}, {320, 36, 164}, {280, 36, 236}, {240, 36, 168},
        {320, 110, 146}, {320, 110, 900}};
    for (const Cards& head : heads) {
        for (int bits = 0; bits < 32; ++bits) {
            Cards set = head;
            set.legend = (bits & 1) != 0;
            set.viewControl = true;
            set.orientCard = (bits & 2) != 0;
            set.notice = (bits & 4) != 0;
            set.loading = (bits & 8) != 0;
            set.welcome = (bits & 16) != 0;
            const bool isError = head.cardLeast > 36;
            if (set.welcome) {
                // Nothing is loaded, and nothing on its way.
                set.viewControl = false;
                if (set.legend || set.orientCard || set.loading || (head.cardWidth > 0 && !isError))
                    continue;
            }
            // There is no turning while a file is loaded.
            if (!(set.orientCard && set.loading)) {
                sets.push_back(set);
            }
        }
    }
    return sets;
}

std::map<std::string, OverlayPlace> placed(const OverlayPlaces& places) {
    std::map<std::string, OverlayPlace> all;
    for (const auto& [name, place] : {std::pair("card", places.card),
             std::pair("legend", places.legend), std::pair("view control", places.viewControl),
             std::pair("orientation card", places.orientCard), std::pair("notice", places.notice),
             std::pair("loading card", places.loading), std::pair("welcome", places.welcome)}) {
        if (place) {
            all.emplace(name, *place);
        }
    }
    return all;
}

std::string told(const LayoutRect& rect) {
    return std::to_string(rect.x) + ", " + std::to_string(rect.y) + ", " +
           std::to_string(rect.width) + " x " + std::to_string(rect.height);
}

bool intersect(const LayoutRect& a, const LayoutRect& b) {
    return a.minX() < b.maxX() && a.maxX() > b.minX() && a.minY() < b.maxY() && a.maxY() > b.minY();
}

/// Where the camera puts the middle of the body.
LayoutRect bodyMiddle(const OverlayPlaces& places, const LayoutSize& size) {
    ViewportLayoutState state{size, {}};
    const auto report = [&](ViewportOverlay overlay, const std::optional<OverlayPlace>& place) {
        if (place) {
            state.frames[overlay] = place->frame;
        }
    };
    report(ViewportOverlay::card, places.card);
    report(ViewportOverlay::legend, places.legend);
    report(ViewportOverlay::viewControl, places.viewControl);
    report(ViewportOverlay::orientCard, places.orientCard);
    const ViewportInsets free = ViewportFraming::effectiveInsets(
        Vec2(static_cast<float>(size.width), static_cast<float>(size.height)), insets(state),
        ViewportFraming::cameraFreeFraction);
    return {(free.leading + size.width - free.trailing) / 2 - 1,
        (free.top + size.height - free.bottom) / 2 - 1, 2, 2};
}

struct Room {
    LayoutSize size;
    double scale;
};

class Placement : public testing::TestWithParam<Room> {
protected:
    LayoutSize size() const { return GetParam().size; }
    double scale() const { return GetParam().scale; }
};

TEST_P(Placement, NoCardCoversAnotherOrLeavesTheView) {
    const auto [size, scale] = GetParam();
    for (const Cards& set : allSets()) {
        const auto all = placed(place(wishes(set, size, scale)));
        for (auto one = all.begin(); one != all.end(); ++one) {
            const LayoutRect& frame = one->second.frame;
            EXPECT_TRUE(frame.hasArea());
            EXPECT_GE(frame.minX(), 15.99) << one->first << " at " << told(frame);
            EXPECT_GE(frame.minY(), 15.99) << one->first << " at " << told(frame);
            EXPECT_LE(frame.maxX(), size.width - 15.49) << one->first << " at " << told(frame);
            EXPECT_LE(frame.maxY(), size.height - 15.49) << one->first << " at " << told(frame);
            for (auto other = std::next(one); other != all.end(); ++other) {
                ASSERT_FALSE(intersect(frame, other->second.frame))
                    << one->first << " at " << told(frame) << " and " << other->first << " at "
                    << told(other->second.frame) << " with a card of " << set.cardWidth << " x "
                    << set.cardHeight;
            }
        }
    }
}

TEST_P(Placement, NoCardThatStaysCoversTheMiddleOfTheBody) {
    const auto [size, scale] = GetParam();
    for (const Cards& set : allSets()) {
        if (set.welcome || set.loading || set.notice) {
            continue;
        }
        const OverlayPlaces places = place(wishes(set, size, scale));
        const LayoutRect middle = bodyMiddle(places, size);
        for (const auto& [name, overlay] : placed(places)) {
            EXPECT_FALSE(intersect(overlay.frame, middle))
                << name << " at " << told(overlay.frame) << ", the body at " << told(middle)
                << " with a card of " << set.cardWidth << " x " << set.cardHeight;
        }
    }
}

TEST_P(Placement, TextsAreNoSmallerThanUsual) {
    const auto [size, scale] = GetParam();
    for (const Cards& set : allSets()) {
        for (const auto& [name, overlay] : placed(place(wishes(set, size, scale)))) {
            if (name != "welcome" && name != "orientation card") {
                EXPECT_GE(overlay.scale * scale, 0.99) << name;
            }
        }
    }
}

// Viewports of windows from 1200 x 800 on, with sidebar and panel at their least and their most.
INSTANTIATE_TEST_SUITE_P(Rooms, Placement,
    testing::Values(Room{{800, 360}, 1}, Room{{880, 366}, 1}, Room{{880, 450}, 1},
        Room{{920, 690}, 1}, Room{{1120, 590}, 1}, Room{{1120, 817}, 1}, Room{{2240, 1130}, 1},
        Room{{2160, 980}, 1}, Room{{780, 360}, 1.25}, Room{{800, 400}, 1.25},
        Room{{1100, 700}, 1.25}, Room{{719, 360}, 1.5}, Room{{780, 520}, 1.5},
        Room{{1200, 640}, 1.5}, Room{{1320, 700}, 1.5}, Room{{2080, 1000}, 1.5},
        Room{{800, 500}, 2}, Room{{1920, 900}, 2}));

/// Rooms that no window has, but nothing may lie over another in them either.
class TightPlacement : public Placement {};

TEST_P(TightPlacement, NoCardCoversAnother) {
    const auto [size, scale] = GetParam();
    for (const Cards& set : allSets()) {
        const auto all = placed(place(wishes(set, size, scale)));
        for (auto one = all.begin(); one != all.end(); ++one) {
            EXPECT_TRUE(std::isfinite(one->second.frame.x + one->second.frame.y));
            EXPECT_GT(one->second.scale, 0);
            for (auto other = std::next(one); other != all.end(); ++other) {
                ASSERT_FALSE(intersect(one->second.frame, other->second.frame))
                    << one->first << " at " << told(one->second.frame) << " and " << other->first
                    << " at " << told(other->second.frame);
            }
        }
    }
}

std::vector<Room> tightRooms() {
    std::vector<Room> rooms;
    for (const double width : {600.0, 680.0, 760.0, 900.0, 1300.0}) {
        for (const double height : {360.0, 420.0, 600.0, 1000.0}) {
            for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
                rooms.push_back({{width, height}, scale});
            }
        }
    }
    return rooms;
}

INSTANTIATE_TEST_SUITE_P(Rooms, TightPlacement, testing::ValuesIn(tightRooms()));

TEST(Place, KeepsToTheRulesOfTheLayoutWhereThereIsRoom) {
    const Cards set{.cardWidth = 280,
        .cardHeight = 236,
        .legend = true,
        .viewControl = true,
        .orientCard = true,
        .notice = true};
    const OverlayPlaces places = place(wishes(set, {1120, 817}, 1));
    EXPECT_EQ(places.card, (OverlayPlace{{16, 16, 280, 236}, 1}));
    EXPECT_EQ(places.legend, (OverlayPlace{{1016, 16, 88, 266}, 1}));
    EXPECT_EQ(places.barHeight, 220);
    EXPECT_EQ(places.viewControl, (OverlayPlace{{768, 761, 336, 40}, 1}));
    // 8 above the view control, and the notice 8 above it.
    EXPECT_EQ(places.orientCard, (OverlayPlace{{264, 601, 592, 152}, 1}));
    EXPECT_EQ(places.notice, (OverlayPlace{{386, 551, 348, 42}, 1}));
    EXPECT_FALSE(places.cardIsSqueezed);
}

TEST(Place, PutsTheWelcomeAndALoadingCardInTheMiddle) {
    const LayoutSize size{1120, 590};
    EXPECT_EQ(
        place(wishes({.welcome = true}, size, 1)).welcome, (OverlayPlace{{312, 129, 496, 332}, 1}));
    EXPECT_EQ(
        place(wishes({.loading = true}, size, 1)).loading, (OverlayPlace{{320, 274, 480, 42}, 1}));
}

TEST(Place, SqueezesTheCardAtTheTopWhereTheOrientationCardNeedsItsRoom) {
    const Cards set{.cardWidth = 280, .cardHeight = 236, .viewControl = true, .orientCard = true};
    const OverlayPlaces places = place(wishes(set, {800, 360}, 1));
    EXPECT_TRUE(places.cardIsSqueezed);
    EXPECT_EQ(places.card->frame, (LayoutRect{16, 16, 280, 36}));
}

TEST(Place, ShortensACardThatWouldReachWhatStandsBelow) {
    const Cards set{.cardWidth = 320, .cardLeast = 110, .cardHeight = 900, .viewControl = true};
    const OverlayPlaces places = place(wishes(set, {1120, 590}, 1));
    EXPECT_EQ(places.mostCardHeight, 590 - 76 - 8 - 16); // clear of the gizmo
    EXPECT_EQ(places.card->frame.height, places.mostCardHeight);
}

TEST(Place, HasAnAnswerForNoRoomAtAll) {
    for (const Cards& set : allSets()) {
        for (const auto& [name, overlay] : placed(place(wishes(set, {0, 0}, 1)))) {
            EXPECT_TRUE(std::isfinite(overlay.frame.x) && std::isfinite(overlay.frame.y) &&
                        std::isfinite(overlay.frame.width) && std::isfinite(overlay.frame.height))
                << name;
        }
    }
}

TEST(MostCardWidth, LeavesTheLegendItsRoom) {
    EXPECT_EQ(mostCardWidth(720, 0), 688);
    EXPECT_EQ(mostCardWidth(720, 97), 583);
    EXPECT_EQ(mostCardWidth(20, 97), 0);
}

} // namespace
} // namespace ostrella
