#!/usr/bin/python3
"""Voltaro's item in lxqt-panel's Status Notifier plugin, at LXQt's 16 px icon size."""

import os
import sys

sys.dont_write_bytecode = True  # keeps the source tree clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import desktop  # noqa: E402

PANEL_HEIGHT = 28
ICON_SIZE = 16
STRIP = (0, 0, desktop.SCREEN[0], PANEL_HEIGHT)
PANEL_CONF = f"""[General]
__userfile__=true
panels=panel1

[panel1]
plugins=spacer,statusnotifier
position=Top
panelSize={PANEL_HEIGHT}
iconSize={ICON_SIZE}
lineCount=1
desktop=0
alignment=-1
width=100
width-percent=true

[spacer]
type=spacer
expandable=true

[statusnotifier]
alignment=Right
type=statusnotifier
"""


class Lxqt(desktop.Desktop):
    def __init__(self, theme="light"):
        desktop.require("lxqt-panel", "xdotool", "openbox")
        super().__init__("lxqt")
        os.makedirs(self.path("config", "lxqt"))
        with open(self.path("config", "lxqt", "panel.conf"), "w") as config:
            config.write(PANEL_CONF)
        with open(self.path("config", "lxqt", "lxqt.conf"), "w") as config:
            config.write(f"[General]\ntheme={theme}\n")

    def __enter__(self):
        super().__enter__()
        self.spawn(["openbox"])
        return self

    def start_panel(self):
        # The plugin is the watcher: the panel is up once it holds the name and has drawn.
        self.panel = self.spawn(["lxqt-panel"], log="panel.log")
        assert desktop.wait_for(lambda: "org.kde.StatusNotifierWatcher" in self.bus_names(), 20), \
            "lxqt-panel's status notifier did not start"
        desktop.wait_for(lambda: self.screenshot().getpixel((4, 4)) != (0, 0, 0), 10)


def column_spans(image, box, background):
    """For each column of the box, the rows whose pixels differ from the panel's background."""
    spans = []
    for x in range(box[0], box[2]):
        rows = [y for y in range(box[1], box[3])
                if abs(desktop.luma(image.getpixel((x, y))) - desktop.luma(background)) > 40]
        spans.append((min(rows), max(rows)) if rows else None)
    return spans


def appears_within_5_s_every_time():
    with Lxqt() as session:
        session.start_panel()
        desktop.Item(session, STRIP).appears_on_every_start(flat=True)


def appears_when_the_panel_starts_later():
    desktop.appears_in_a_late_panel(Lxqt, STRIP, 100)


def glyph_at_16_px_reaches_its_right_edge_and_tip():
    with Lxqt() as session:
        session.start_panel()
        session.voltaro()
        box, shot = desktop.Item(session, STRIP).settled()
        session.save(shot.crop((desktop.SCREEN[0] - 120, 0, desktop.SCREEN[0], PANEL_HEIGHT))
                     .resize((480, 4 * PANEL_HEIGHT), 0), "lxqt-16px.png")
        width, height = box[2] - box[0], box[3] - box[1]
        assert width >= ICON_SIZE - 3, f"the glyph is {width} px wide in a {ICON_SIZE} px icon"
        assert height >= 6, f"the glyph is {height} px high"
        background = shot.getpixel((2, (box[1] + box[3]) // 2))
        spans = [s for s in column_spans(shot, box, background) if s]
        top, bottom = min(s[0] for s in spans), max(s[1] for s in spans)
        body = bottom - top
        # The battery's tip: a short stub centred on its right side, just past the body's edge.
        tip = spans[-1]
        assert tip[1] - tip[0] < body / 2, f"no tip at the right: last column {tip}, body {body}"
        assert abs((tip[0] + tip[1]) - (top + bottom)) <= 3, \
            f"the tip {tip} is not centred on the body {top}-{bottom}"
        assert any(s[1] - s[0] >= body * 0.7 for s in spans[-5:-1]), \
            f"no right edge of the body before the tip: {spans[-5:]}, body {body}"


def click_opens_the_dashboard_under_the_item():
    with Lxqt() as session:
        session.start_panel()
        voltaro = session.voltaro()
        box, _ = desktop.Item(session, STRIP).settled()
        centre = ((box[0] + box[2]) // 2, (box[1] + box[3]) // 2)
        session.click(*centre)
        window = desktop.wait_for(session.dashboard, 5)
        assert window, "a click opened no dashboard"
        _, _, width, _, x, y = window
        assert y == PANEL_HEIGHT, f"dashboard at y {y}, the panel ends at {PANEL_HEIGHT}"
        assert x <= centre[0] <= x + width, f"dashboard {window} not under the item {box}"
        assert voltaro.poll() is None


if __name__ == "__main__":
    desktop.main([appears_within_5_s_every_time, appears_when_the_panel_starts_later,
                  glyph_at_16_px_reaches_its_right_edge_and_tip,
                  click_opens_the_dashboard_under_the_item])
