#include "Views/Format/ViewportPlacement.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ostrella::ViewportLayout {

namespace {

/// Kept free between a card and the viewport's edge, and between two cards.
constexpr double edge = 16;
constexpr double spacing = 8;
/// Between the welcome and the viewport's edge.
constexpr double welcomeEdge = 24;
constexpr double leastBarHeight = 72;
/// Of the viewport's height, for the body between cards.
constexpr double leastBodyHeight = 32;
/// How far down a card may reach that stands over the middle of the viewport's width.
constexpr double greatestFoot = 0.6;
/// Nothing is drawn smaller than this, whatever the room.
constexpr double leastScale = 0.1;
constexpr double leastOfAll = 0.35;

bool overlapHorizontally(const LayoutRect& a, const LayoutRect& b) {
    return a.minX() < b.maxX() && a.maxX() > b.minX();
}

double scaleToFit(double length, double room) {
    return length > 0 ? std::clamp(room / length, leastScale, 1.0) : 1.0;
}

template <typename Act>
void forEachPlace(OverlayPlaces& places, const Act& act) {
    for (auto* overlay : {&places.card, &places.legend, &places.viewControl, &places.orientCard,
             &places.notice, &places.loading, &places.welcome}) {
        if (*overlay) {
            act(**overlay);
        }
    }
}

bool anyOverlap(OverlayPlaces& places) {
    std::vector<LayoutRect> frames;
    bool any = false;
    forEachPlace(places, [&](const OverlayPlace& overlay) {
        for (const LayoutRect& other : frames) {
            any = any ||
                  (overlapHorizontally(other, overlay.frame) &&
                      other.minY() < overlay.frame.maxY() && other.maxY() > overlay.frame.minY());
        }
        frames.push_back(overlay.frame);
    });
    return any;
}

void shrink(OverlayPlaces& places, double scale) {
    forEachPlace(places, [&](OverlayPlace& overlay) {
        const LayoutRect& frame = overlay.frame;
        overlay.frame = {
            frame.x * scale, frame.y * scale, frame.width * scale, frame.height * scale};
        overlay.scale *= scale;
    });
}

/// Works downwards from what is pinned to an edge to what has to find its place between the others.
class Placing {
public:
    explicit Placing(const OverlayWishes& wishes) : wishes_(wishes) { layout_.size = wishes.size; }

    OverlayPlaces places() {
        placeViewControl();
        startTop();
        placeOrientCard();
        placeNotice();
        placeLoading();
        placeLegend();
        placeCard();
        placeWelcome();
        return places_;
    }

private:
    double width() const { return wishes_.size.width; }
    double height() const { return wishes_.size.height; }

    LayoutRect gizmo() const { return gizmoRect(layout_); }

    void placeViewControl() {
        if (!wishes_.viewControl) {
            return;
        }
        const auto [w, h] = *wishes_.viewControl;
        const double scale = scaleToFit(w, width() - 2 * edge);
        const LayoutRect frame{
            width() - edge - w * scale, height() - edge - h * scale, w * scale, h * scale};
        places_.viewControl = {frame, scale};
        layout_.frames[ViewportOverlay::viewControl] = frame;
    }

    /// What stands at the top takes at least this.
    void startTop() {
        if (wishes_.legend) {
            const auto [w, around] = *wishes_.legend;
            legend_ = LayoutRect{width() - edge - w, edge, w, around + leastBarHeight};
            layout_.frames[ViewportOverlay::legend] = *legend_;
        }
        if (wishes_.card) {
            const double most = mostCardWidth(width(), legend_ ? legend_->width : 0);
            card_ = LayoutRect{
                edge, edge, std::min(wishes_.card->width, most), wishes_.card->leastHeight};
        }
    }

    /// The foot of what can not give way above a card.
    double top(const LayoutRect& below) const {
        double top = 0;
        if (card_ && overlapHorizontally(*card_, below)) {
            top = card_->maxY();
        }
        if (legend_ && overlapHorizontally(*legend_, below)) {
            // It may go back to its usual size.
            top = std::max(top, edge + legend_->height / wishes_.lengthScale);
        }
        return top + spacing;
    }

    LayoutRect centred(const LayoutSize& size, double scale) const {
        const double w = size.width * scale;
        return {std::max(edge, std::round((width() - w) / 2)), 0, w, size.height * scale};
    }

    void placeOrientCard() {
        if (!wishes_.orientCard) {
            return;
        }
        double scale = scaleToFit(wishes_.orientCard->width, width() - 2 * edge);
        LayoutRect frame = centred(*wishes_.orientCard, scale);
        layout_.frames[ViewportOverlay::orientCard] = frame;
        const double foot = height() - orientCardLift(layout_);
        double room = foot - top(frame);
        // Half of it is the body's, as long as the card is no smaller than with texts of usual
        // size.
        const double usual = wishes_.orientCard->height / wishes_.lengthScale;
        double most = std::max(usual, std::floor(room / 2));
        if (wishes_.notice) {
            room -= wishes_.notice->height + spacing;
        }
        most = std::min(most, room - leastBodyHeight);
        scale = std::min(scale, scaleToFit(wishes_.orientCard->height, most));
        frame = centred(*wishes_.orientCard, scale);
        layout_.frames[ViewportOverlay::orientCard] = frame;
        frame.y = height() - orientCardLift(layout_) - frame.height;
        layout_.frames[ViewportOverlay::orientCard] = frame;
        places_.orientCard = {frame, scale};
    }

    void placeNotice() {
        if (!wishes_.notice) {
            return;
        }
        const double foot = height() - edge - noticeLift(layout_);
        double scale = scaleToFit(wishes_.notice->width, width() - 2 * edge);
        scale = std::min(
            scale, scaleToFit(wishes_.notice->height, foot - top(centred(*wishes_.notice, scale))));
        LayoutRect frame = centred(*wishes_.notice, scale);
        frame.y = foot - frame.height;
        places_.notice = {frame, scale};
    }

    void placeLoading() {
        if (!wishes_.loading) {
            return;
        }
        double scale = scaleToFit(wishes_.loading->width, width() - 2 * edge);
        LayoutRect frame = centred(*wishes_.loading, scale);
        const double least = top(frame);
        const double foot = obstacle(frame, false);
        scale = std::min(scale, scaleToFit(wishes_.loading->height, foot - least));
        frame = centred(*wishes_.loading, scale);
        const double middle = std::round((height() - frame.height) / 2);
        frame.y = std::max(least, std::min(middle, foot - frame.height));
        places_.loading = {frame, scale};
    }

    /// Where a card of these sides has to end, above all that stands lower.
    double obstacle(const LayoutRect& sides, bool loadingCounts) const {
        double foot = height() - edge;
        const auto pass = [&](const std::optional<OverlayPlace>& other) {
            if (other && overlapHorizontally(other->frame, sides)) {
                foot = std::min(foot, other->frame.minY() - spacing);
            }
        };
        pass(places_.viewControl);
        pass(places_.orientCard);
        pass(places_.notice);
        if (loadingCounts) {
            pass(places_.loading);
        }
        return foot;
    }

    void placeLegend() {
        places_.barHeight = legendBarHeight(layout_);
        if (!legend_) {
            return;
        }
        const double room = obstacle(*legend_, true) - edge;
        const double around = wishes_.legend->heightAroundBar;
        const double bar =
            std::max(leastBarHeight, std::min(places_.barHeight, std::floor(room - around)));
        const double scale = scaleToFit(around + bar, room);
        places_.barHeight = bar;
        const double w = legend_->width * scale;
        places_.legend = {{width() - edge - w, edge, w, (around + bar) * scale}, scale};
    }

    void placeCard() {
        if (!card_) {
            return;
        }
        double foot = obstacle(*card_, true);
        if (overlapHorizontally(*card_, gizmo())) {
            foot = std::min(foot, gizmo().minY() - spacing);
        }
        if (card_->maxX() > width() / 2) {
            foot = std::min(foot, std::floor(greatestFoot * height()));
        }
        const bool isOverOrientCard =
            places_.orientCard && overlapHorizontally(places_.orientCard->frame, *card_);
        if (isOverOrientCard) {
            foot = std::min(foot, places_.orientCard->frame.minY() - spacing - leastBodyHeight);
        }
        const double room = std::max(foot - edge, card_->height);
        const double height = wishes_.card->height;
        places_.mostCardHeight = room;
        places_.cardIsSqueezed = height > room && isOverOrientCard;
        LayoutRect frame = *card_;
        if (!places_.cardIsSqueezed) {
            frame.height = std::min(height, room);
        }
        places_.card = {frame, 1};
    }

    void placeWelcome() {
        if (!wishes_.welcome) {
            return;
        }
        const double foot =
            places_.notice ? places_.notice->frame.minY() - spacing : height() - welcomeEdge;
        const LayoutRect room{
            welcomeEdge, welcomeEdge, width() - 2 * welcomeEdge, foot - welcomeEdge};
        const OverlayPlace whole = welcomeWithin(room);
        places_.welcome = whole;
        if (!places_.card) {
            return;
        }
        const LayoutRect& card = places_.card->frame;
        if (!overlapHorizontally(whole.frame, card) ||
            whole.frame.minY() >= card.maxY() + spacing) {
            return;
        }
        const double right = card.maxX() + spacing;
        const double below = card.maxY() + spacing;
        const OverlayPlace beside =
            welcomeWithin({right, room.y, room.maxX() - right, room.height});
        const OverlayPlace under = welcomeWithin({room.x, below, room.width, foot - below});
        places_.welcome = beside.scale >= under.scale ? beside : under;
    }

    /// As near to the viewport's middle as the room allows.
    OverlayPlace welcomeWithin(const LayoutRect& room) const {
        const double scale = std::min(scaleToFit(wishes_.welcome->width, room.width),
            scaleToFit(wishes_.welcome->height, room.height));
        const double w = wishes_.welcome->width * scale;
        const double h = wishes_.welcome->height * scale;
        const double x = std::max(room.minX(), std::min((width() - w) / 2, room.maxX() - w));
        const double y = std::max(room.minY(), std::min((height() - h) / 2, room.maxY() - h));
        return {{std::round(x), std::round(y), w, h}, scale};
    }

    const OverlayWishes& wishes_;
    OverlayPlaces places_;
    ViewportLayoutState layout_;
    std::optional<LayoutRect> card_;   ///< at its least height
    std::optional<LayoutRect> legend_; ///< with the least bar
};

} // namespace

double mostCardWidth(double viewWidth, double legendWidth) {
    const double legend = legendWidth > 0 ? legendWidth + spacing : 0;
    return std::max(viewWidth - 2 * edge - legend, 0.0);
}

OverlayPlaces place(const OverlayWishes& wishes) {
    OverlayWishes larger = wishes;
    double scale = 1;
    OverlayPlaces places = Placing(wishes).places();
    // Where the least of everything is too much, all is drawn smaller: as if the room were larger.
    while (anyOverlap(places) && scale > leastOfAll) {
        scale -= 0.1;
        larger.size = {wishes.size.width / scale, wishes.size.height / scale};
        larger.lengthScale = std::max(wishes.lengthScale * scale, 1.0);
        places = Placing(larger).places();
    }
    shrink(places, scale);
    return places;
}

} // namespace ostrella::ViewportLayout
