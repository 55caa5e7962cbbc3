#pragma once

#include "Models/ViewPreset.h"

#include <map>
#include <optional>
#include <vector>

namespace ostrella {

/// What reports a frame in the viewport.
enum class ViewportOverlay { card, legend, viewControl, orientCard, canvas };

/// A size in points.
struct LayoutSize {
    double width = 0;
    double height = 0;

    bool operator==(const LayoutSize&) const = default;
};

/// A rectangle in points, in the viewport's own coordinates, y downwards.
struct LayoutRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double minX() const { return x; }
    double minY() const { return y; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    /// True where it covers any area.
    bool hasArea() const { return width > 0 && height > 0; }

    bool operator==(const LayoutRect&) const = default;
};

/// The frames last reported, and the size of the viewport.
struct ViewportLayoutState {
    LayoutSize size;
    std::map<ViewportOverlay, LayoutRect> frames;

    bool operator==(const ViewportLayoutState&) const = default;
};

/// How the cards over the viewport keep clear of one another and of the body. Points; every
/// function has an answer for every input.
namespace ViewportLayout {

enum class Edge { top, leading, bottom, trailing };

/// The edges within 32 points of which a rectangle stands: leading, trailing, top, bottom.
std::vector<Edge> huggedEdges(const LayoutRect& of, const LayoutSize& in);

/// The margins that keep the scene clear of the rectangles. Each claims the one edge along which it
/// fills the greatest part, so that a card in a corner does not take room from two sides.
ViewportInsets insets(const std::vector<LayoutRect>& rects, const LayoutSize& in,
    const std::optional<LayoutRect>& canvas = std::nullopt);

/// The margins for the frames of a viewport.
ViewportInsets insets(const ViewportLayoutState& state);

/// The room of the orientation gizmo, in the lower left corner of the canvas.
LayoutRect gizmoRect(const ViewportLayoutState& state);

/// How far above the viewport's foot the orientation card stands, clear of view control and gizmo.
double orientCardLift(const ViewportLayoutState& state);

/// How far a notice is lifted, on top of its padding.
double noticeLift(const ViewportLayoutState& state);

/// What the legend must leave free at the foot.
double bottomReserve(const ViewportLayoutState& state);

/// Height of the legend's bar.
double legendBarHeight(const ViewportLayoutState& state);

} // namespace ViewportLayout

} // namespace ostrella
