#include "Views/Format/ViewportLayout.h"

#include <algorithm>
#include <cmath>

namespace ostrella::ViewportLayout {

namespace {

/// How close to an edge a rectangle counts as standing at it.
constexpr double hugging = 32;
/// Kept free between a card and the scene, and the padding of the overlays.
constexpr double gap = 16;
/// Kept free between two overlays.
constexpr double spacing = 8;

/// The orientation gizmo is drawn in this corner of the scene.
constexpr double gizmoWidth = 124;
constexpr double gizmoHeight = 76;

constexpr double leastBarHeight = 72;
constexpr double greatestBarHeight = 220;
/// Of the legend beside its bar: the card's padding and its title.
constexpr double legendPadding = 12;
constexpr double legendTitle = 20;

const LayoutRect* frame(const ViewportLayoutState& state, ViewportOverlay overlay) {
    const auto found = state.frames.find(overlay);
    return found == state.frames.end() ? nullptr : &found->second;
}

LayoutRect canvasOf(const ViewportLayoutState& state) {
    const LayoutRect* canvas = frame(state, ViewportOverlay::canvas);
    return canvas ? *canvas : LayoutRect{0, 0, state.size.width, state.size.height};
}

bool overlapHorizontally(const LayoutRect& a, const LayoutRect& b) {
    return a.minX() < b.maxX() && a.maxX() > b.minX();
}

double wholePoints(double inset, double limit) {
    return std::min(std::ceil(inset), limit);
}

double coveredShare(Edge edge, const LayoutRect& rect, const LayoutSize& size) {
    return edge == Edge::top || edge == Edge::bottom ? rect.width / size.width
                                                     : rect.height / size.height;
}

void claim(Edge edge, const LayoutRect& rect, const LayoutRect& canvas, ViewportInsets& insets) {
    switch (edge) {
    case Edge::top:
        insets.top = std::max(insets.top, rect.maxY() - canvas.minY() + gap);
        return;
    case Edge::leading:
        insets.leading = std::max(insets.leading, rect.maxX() - canvas.minX() + gap);
        return;
    case Edge::bottom:
        insets.bottom = std::max(insets.bottom, canvas.maxY() - rect.minY() + gap);
        return;
    case Edge::trailing:
        insets.trailing = std::max(insets.trailing, canvas.maxX() - rect.minX() + gap);
        return;
    }
}

} // namespace

std::vector<Edge> huggedEdges(const LayoutRect& of, const LayoutSize& in) {
    std::vector<Edge> edges;
    if (of.minX() <= hugging) {
        edges.push_back(Edge::leading);
    }
    if (in.width - of.maxX() <= hugging) {
        edges.push_back(Edge::trailing);
    }
    if (of.minY() <= hugging) {
        edges.push_back(Edge::top);
    }
    if (in.height - of.maxY() <= hugging) {
        edges.push_back(Edge::bottom);
    }
    return edges;
}

ViewportInsets insets(const std::vector<LayoutRect>& rects, const LayoutSize& in,
    const std::optional<LayoutRect>& canvas) {
    const LayoutRect area = canvas.value_or(LayoutRect{0, 0, in.width, in.height});
    ViewportInsets result;
    for (const LayoutRect& rect : rects) {
        if (!(in.width > 0 && in.height > 0) || !rect.hasArea()) {
            continue;
        }
        const std::vector<Edge> edges = huggedEdges(rect, in);
        if (edges.empty()) {
            continue;
        }
        const auto greatest = std::max_element(edges.begin(), edges.end(),
            [&](Edge a, Edge b) { return coveredShare(a, rect, in) < coveredShare(b, rect, in); });
        claim(*greatest, rect, area, result);
    }
    return {wholePoints(result.top, area.height), wholePoints(result.leading, area.width),
        wholePoints(result.bottom, area.height), wholePoints(result.trailing, area.width)};
}

ViewportInsets insets(const ViewportLayoutState& state) {
    std::vector<LayoutRect> rects;
    for (const auto overlay :
        {ViewportOverlay::card, ViewportOverlay::legend, ViewportOverlay::viewControl}) {
        if (const LayoutRect* rect = frame(state, overlay)) {
            rects.push_back(*rect);
        }
    }
    const LayoutRect canvas = canvasOf(state);
    ViewportInsets result = insets(rects, state.size, canvas);
    const LayoutRect* orientCard = frame(state, ViewportOverlay::orientCard);
    if (orientCard && orientCard->hasArea() && canvas.height > 0) {
        // At the foot of the view whatever its shape: it pushes the scene upwards.
        const double demand = std::max(canvas.maxY() - orientCard->minY() + gap, 0.0);
        result.bottom = std::max(result.bottom, wholePoints(demand, canvas.height));
    }
    return result;
}

LayoutRect gizmoRect(const ViewportLayoutState& state) {
    const LayoutRect canvas = canvasOf(state);
    return {canvas.minX(), canvas.maxY() - gizmoHeight, gizmoWidth, gizmoHeight};
}

double orientCardLift(const ViewportLayoutState& state) {
    double foot = state.size.height - gap;
    if (const LayoutRect* viewControl = frame(state, ViewportOverlay::viewControl)) {
        foot = std::min(foot, viewControl->minY() - spacing);
    }
    const LayoutRect gizmo = gizmoRect(state);
    const LayoutRect* orientCard = frame(state, ViewportOverlay::orientCard);
    if (!orientCard || overlapHorizontally(*orientCard, gizmo)) {
        foot = std::min(foot, gizmo.minY() - spacing);
    }
    return std::max(std::ceil(state.size.height - foot), 0.0);
}

double noticeLift(const ViewportLayoutState& state) {
    std::optional<double> top;
    for (const auto overlay : {ViewportOverlay::viewControl, ViewportOverlay::orientCard}) {
        if (const LayoutRect* rect = frame(state, overlay)) {
            top = std::min(top.value_or(rect->minY()), rect->minY());
        }
    }
    return top ? std::max(state.size.height - *top - gap + spacing, 0.0) : 0.0;
}

double bottomReserve(const ViewportLayoutState& state) {
    const double height = state.size.height;
    double reserve = 0;
    if (const LayoutRect* viewControl = frame(state, ViewportOverlay::viewControl)) {
        reserve = height - viewControl->minY();
    }
    if (const LayoutRect* legend = frame(state, ViewportOverlay::legend)) {
        const LayoutRect gizmo = gizmoRect(state);
        for (const LayoutRect* rect : {&gizmo, frame(state, ViewportOverlay::orientCard)}) {
            if (rect && overlapHorizontally(*rect, *legend)) {
                reserve = std::max(reserve, height - rect->minY());
            }
        }
    }
    return std::max(reserve, 0.0);
}

double legendBarHeight(const ViewportLayoutState& state) {
    if (!(state.size.height > 0)) {
        return greatestBarHeight;
    }
    const double room =
        state.size.height - gap - bottomReserve(state) - legendPadding - legendTitle;
    return std::clamp(std::floor(room), leastBarHeight, greatestBarHeight);
}

} // namespace ostrella::ViewportLayout
