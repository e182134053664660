#pragma once

#include <optional>
#include <vector>

namespace voltaro {

struct ScreenPoint {
    int x = 0;
    int y = 0;
    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

// In the desktop's coordinates: y grows downwards.
struct ScreenRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool contains(ScreenPoint point) const;
    friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};

struct ScreenGeometry {
    ScreenRect bounds;
    ScreenRect available;  // without the panels
};

enum class PanelEdge { top, bottom, left, right };

// Where the dashboard's top-left corner goes so that it opens beside the tray item: away from the
// panel the item sits in, centred on the item along the panel, and wholly on the item's screen.
// The anchor is the item's rectangle, or only the point that was clicked (a point-sized
// rectangle); without one, the popup opens at the cursor.
ScreenPoint popupPosition(std::optional<ScreenRect> anchor, ScreenPoint cursor, int popupWidth,
                          int popupHeight, const std::vector<ScreenGeometry>& screens);

// The panel edge an anchor on this screen belongs to: the edge where the screen lost space to a
// panel, or without that, the edge nearest to the anchor.
PanelEdge panelEdge(const ScreenRect& anchor, const ScreenGeometry& screen);

}  // namespace voltaro
