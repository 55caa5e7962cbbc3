#pragma once

#include "Views/Format/ViewportLayout.h"

#include <optional>

namespace ostrella::ViewportLayout {

/// How large the cards over the viewport would like to be, in points; none for those that are not
/// on show.
struct OverlayWishes {
    /// A card at the top, which can be shortened to `leastHeight`.
    struct Card {
        double width = 0;
        double leastHeight = 0;
        double height = 0;
    };
    /// `heightAroundBar` is that of the legend less its bar.
    struct Legend {
        double width = 0;
        double heightAroundBar = 0;
    };

    LayoutSize size; ///< of the viewport
    /// How much larger than usual all lengths are, since the texts are.
    double lengthScale = 1;
    std::optional<Card> card;
    std::optional<Legend> legend;
    std::optional<LayoutSize> viewControl;
    std::optional<LayoutSize> orientCard;
    std::optional<LayoutSize> notice;
    std::optional<LayoutSize> loading;
    std::optional<LayoutSize> welcome;
};

/// Where a card stands, and how far it is drawn smaller than it wishes to be.
struct OverlayPlace {
    LayoutRect frame;
    double scale = 1;

    bool operator==(const OverlayPlace&) const = default;
};

struct OverlayPlaces {
    std::optional<OverlayPlace> card;
    std::optional<OverlayPlace> legend;
    std::optional<OverlayPlace> viewControl;
    std::optional<OverlayPlace> orientCard;
    std::optional<OverlayPlace> notice;
    std::optional<OverlayPlace> loading;
    std::optional<OverlayPlace> welcome;
    /// Height of the legend's bar, before the legend's scale.
    double barHeight = 0;
    /// The most that the card at the top may have of the height, before its scale.
    double mostCardHeight = 0;
    /// The orientation card stands where the rows of the card at the top would be.
    bool cardIsSqueezed = false;
};

/// The most that the card at the top may have of the width; `legendWidth` is 0 without a legend.
double mostCardWidth(double viewWidth, double legendWidth);

/// Places the cards so that none covers another or leaves the viewport. Where there is little room,
/// the card at the top is shortened first, and then what stands below it is drawn smaller.
OverlayPlaces place(const OverlayWishes& wishes);

} // namespace ostrella::ViewportLayout
