#include "core/presentation/PopupPlacement.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

namespace voltaro {
namespace {

constexpr int gapPixels = 4;  // between the item and the popup

ScreenPoint centreOf(const ScreenRect& rect) {
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

long long distanceSquared(ScreenPoint point, const ScreenRect& rect) {
    const long long dx = std::max({rect.x - point.x, 0, point.x - (rect.x + rect.width - 1)});
    const long long dy = std::max({rect.y - point.y, 0, point.y - (rect.y + rect.height - 1)});
    return dx * dx + dy * dy;
}

// The screen holding the point, or the one nearest to it.
const ScreenGeometry* screenFor(ScreenPoint point, const std::vector<ScreenGeometry>& screens) {
    const ScreenGeometry* nearest = nullptr;
    long long nearestDistance = std::numeric_limits<long long>::max();
    for (const ScreenGeometry& screen : screens) {
        const long long distance = distanceSquared(point, screen.bounds);
        if (distance < nearestDistance) {
            nearest = &screen;
            nearestDistance = distance;
        }
    }
    return nearest;
}

int clamped(int value, int low, int high) {
    return high < low ? low : std::clamp(value, low, high);
}

}  // namespace

bool ScreenRect::contains(ScreenPoint point) const {
    return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
}

PanelEdge panelEdge(const ScreenRect& anchor, const ScreenGeometry& screen) {
    const ScreenRect& b = screen.bounds;
    const ScreenRect& a = screen.available;
    const ScreenPoint centre = centreOf(anchor);
    // Space the panels took from each edge; the anchor lies in one of those strips.
    const std::array<std::pair<PanelEdge, bool>, 4> strips = {{
        {PanelEdge::top, a.y > b.y && centre.y < a.y},
        {PanelEdge::bottom, a.y + a.height < b.y + b.height && centre.y >= a.y + a.height},
        {PanelEdge::left, a.x > b.x && centre.x < a.x},
        {PanelEdge::right, a.x + a.width < b.x + b.width && centre.x >= a.x + a.width},
    }};
    for (const auto& [edge, holdsAnchor] : strips) {
        if (holdsAnchor) {
            return edge;
        }
    }
    const std::array<std::pair<PanelEdge, int>, 4> distances = {{
        {PanelEdge::top, centre.y - b.y},
        {PanelEdge::bottom, b.y + b.height - centre.y},
        {PanelEdge::left, centre.x - b.x},
        {PanelEdge::right, b.x + b.width - centre.x},
    }};
    return std::min_element(distances.begin(), distances.end(),
                            [](const auto& l, const auto& r) { return l.second < r.second; })
        ->first;
}

ScreenPoint popupPosition(std::optional<ScreenRect> anchor, ScreenPoint cursor, int popupWidth,
                          int popupHeight, const std::vector<ScreenGeometry>& screens) {
    const ScreenRect item = anchor.value_or(ScreenRect{cursor.x, cursor.y, 0, 0});
    const ScreenGeometry* screen = screenFor(centreOf(item), screens);
    if (screen == nullptr) {
        return {item.x, item.y};
    }
    const ScreenRect& area = screen->available;
    const ScreenPoint centre = centreOf(item);
    ScreenPoint position;
    switch (panelEdge(item, *screen)) {
        case PanelEdge::top:
            position = {centre.x - popupWidth / 2, item.y + item.height + gapPixels};
            break;
        case PanelEdge::bottom:
            position = {centre.x - popupWidth / 2, item.y - popupHeight - gapPixels};
            break;
        case PanelEdge::left:
            position = {item.x + item.width + gapPixels, centre.y - popupHeight / 2};
            break;
        case PanelEdge::right:
            position = {item.x - popupWidth - gapPixels, centre.y - popupHeight / 2};
            break;
    }
    // Wholly inside the free part of the item's screen; a popup larger than it keeps its
    // top-left corner visible.
    position.x = clamped(position.x, area.x, area.x + area.width - popupWidth);
    position.y = clamped(position.y, area.y, area.y + area.height - popupHeight);
    return position;
}

}  // namespace voltaro
