#!/usr/bin/python3
"""Voltaro's item in xfce4-panel's status tray (a StatusNotifier host), on a light and a dark
panel."""

import os
import sys

sys.dont_write_bytecode = True  # keeps the source tree clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import desktop  # noqa: E402

PANEL_HEIGHT = 28
STRIP = (0, 0, desktop.SCREEN[0], PANEL_HEIGHT)
PANEL_XML = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{size}"/>
      <property name="background-style" type="uint" value="1"/>
      <property name="background-rgba" type="array">
        <value type="double" value="{shade}"/><value type="double" value="{shade}"/>
        <value type="double" value="{shade}"/><value type="double" value="1"/>
      </property>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/><value type="int" value="3"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="{tray}"/>
    <property name="plugin-3" type="string" value="separator">
      <property name="style" type="uint" value="0"/>
    </property>
  </property>
</channel>
"""
# GTK draws the panel's text in the theme's colours: a dark theme for the dark panel.
GTK_SETTINGS = "[Settings]\ngtk-application-prefer-dark-theme={dark}\n"


class Xfce(desktop.Desktop):
    def __init__(self, dark=False, tray="systray"):
        desktop.require("xfce4-panel", "xdotool", "openbox")
        super().__init__("xfce")
        self.dark = dark
        channel = self.path("config", "xfce4", "xfconf", "xfce-perchannel-xml")
        os.makedirs(channel)
        with open(os.path.join(channel, "xfce4-panel.xml"), "w") as config:
            config.write(PANEL_XML.format(size=PANEL_HEIGHT, shade=0.16 if dark else 0.94,
                                            tray=tray))
        os.makedirs(self.path("config", "gtk-3.0"))
        with open(self.path("config", "gtk-3.0", "settings.ini"), "w") as settings:
            settings.write(GTK_SETTINGS.format(dark=int(dark)))

    def start_panel(self):
        self.panel = self.spawn(["xfce4-panel", "--disable-wm-check"], log="panel.log")
        # The panel is up once its tray has taken the watcher's name and its strip is drawn.
        assert desktop.wait_for(lambda: "org.kde.StatusNotifierWatcher" in self.bus_names(), 20), \
            "xfce4-panel's status tray did not start"
        desktop.wait_for(lambda: self.screenshot().getpixel((4, 4)) != (0, 0, 0), 10)

    def __enter__(self):
        super().__enter__()
        self.spawn(["openbox"])
        return self


def appears_within_5_s_every_time():
    with Xfce() as session:
        session.start_panel()
        desktop.Item(session, STRIP).appears_on_every_start(flat=True)


def appears_when_the_panel_starts_later():
    desktop.appears_in_a_late_panel(Xfce, STRIP, 200)


def clicks_open_and_close_the_dashboard_under_the_item_and_quit_ends_voltaro():
    with Xfce() as session:
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
        session.click(*centre)
        assert desktop.wait_for(lambda: session.dashboard() is None, 5), "a second click left it"
        # Not at once: a click within 300 ms of closing counts as the one that closed it.
        desktop.wait_for(lambda: False, 0.5)
        session.click(*centre)
        assert desktop.wait_for(session.dashboard, 5), "a third click did not open it again"
        session.click(*centre)
        assert desktop.wait_for(lambda: session.dashboard() is None, 5), "it stayed open"
        # The host's own menu, from the keyboard: its last entry is "Quit Voltaro".
        session.click(*centre, button=3)
        desktop.wait_for(lambda: False, 1)
        session.run("xdotool", "key", "Up", "Return")
        assert desktop.wait_for(lambda: voltaro.poll() is not None, 5), \
            "Quit Voltaro left the process running"
        assert voltaro.returncode == 0, f"Voltaro ended with {voltaro.returncode}"


def a_second_start_opens_the_first_ones_dashboard():
    with Xfce() as session:
        session.start_panel()
        first = session.voltaro()
        desktop.Item(session, STRIP).settled()
        second = session.voltaro()
        assert desktop.wait_for(lambda: second.poll() is not None, 10), "the second one stayed"
        assert second.returncode == 0, f"the second one ended with {second.returncode}"
        assert desktop.wait_for(session.dashboard, 5), "the first one showed no dashboard"
        items = session.registered_items()
        assert len(items) == 1 and first.poll() is None, f"items in the panel: {items}"
        # The command-line modes answer themselves.
        once = session.run(desktop.VOLTARO, "--sysfs-root", desktop.FIXTURE, "--json", "--once")
        assert once.returncode == 0 and '"snapshot"' in once.stdout, once


def glyph_stands_out_from_a_light_and_a_dark_panel():
    spread = {}
    for dark in (False, True):
        with Xfce(dark) as session:
            session.start_panel()
            session.voltaro()
            box, shot = desktop.Item(session, STRIP).settled()
            name = "dark" if dark else "light"
            session.save(shot.crop((desktop.SCREEN[0] - 160, 0, desktop.SCREEN[0], PANEL_HEIGHT))
                         .resize((640, 4 * PANEL_HEIGHT), 0), f"xfce-{name}-panel.png")
            spread[name] = desktop.luma_spread(shot, box)
    assert spread["dark"] >= spread["light"] / 2, f"luma spread inside the item: {spread}"


if __name__ == "__main__":
    desktop.main([appears_within_5_s_every_time, appears_when_the_panel_starts_later,
                  clicks_open_and_close_the_dashboard_under_the_item_and_quit_ends_voltaro,
                  a_second_start_opens_the_first_ones_dashboard,
                  glyph_stands_out_from_a_light_and_a_dark_panel])
