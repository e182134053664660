#!/usr/bin/python3
"""Voltaro's item in GNOME Shell's top bar through the AppIndicator extension. The shell runs
as the X11 compositor of a private Xvfb display, with a private session bus, an empty private
system bus and its settings in a keyfile of the session's own."""

import os
import sys

sys.dont_write_bytecode = True  # keeps the source tree clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import desktop  # noqa: E402

EXTENSION = "ubuntu-appindicators@ubuntu.com"
# Right of the clock, left of the system menu: where the extension puts the items.
STRIP = (760, 0, desktop.SCREEN[0] - 60, 30)
SETTINGS = f"""[org/gnome/shell]
enabled-extensions=['{EXTENSION}']
welcome-dialog-last-shown-version='999'
"""


class Gnome(desktop.Desktop):
    def __init__(self):
        desktop.require("gnome-shell", f"/usr/share/gnome-shell/extensions/{EXTENSION}",
                        "xdotool")
        super().__init__("gnome")
        os.makedirs(self.path("config", "glib-2.0", "settings"))
        with open(self.path("config", "glib-2.0", "settings", "keyfile"), "w") as keyfile:
            keyfile.write(SETTINGS)

    def __enter__(self):
        super().__enter__()
        self.env["DBUS_SYSTEM_BUS_ADDRESS"] = self.start_bus("system")
        return self

    def start_panel(self):
        self.spawn(["gnome-shell", "--x11", "--replace"], log="shell.log")
        assert desktop.wait_for(lambda: "org.kde.StatusNotifierWatcher" in self.bus_names(), 60),\
            "the shell's AppIndicator extension did not start"
        # The shell opens in the overview, whose top bar is see-through; out of it the bar is
        # opaque and still.
        def settled():
            self.run("xdotool", "key", "Escape")
            first = self.screenshot().crop(STRIP)
            desktop.wait_for(lambda: False, 0.3)
            second = self.screenshot()
            return first.tobytes() == second.crop(STRIP).tobytes() and \
                second.getpixel((300, 2)) == second.getpixel((STRIP[0] + 2, 2)) and \
                desktop.luma(second.getpixel((300, 2))) < 20 and \
                abs(desktop.luma(second.getpixel((300, 400))) -
                    desktop.luma(second.getpixel((300, 2)))) > 20 and second

        self.settled_shot = desktop.wait_for(settled, 30)
        assert self.settled_shot, "the top bar did not settle"

    def bar_height(self, shot):
        top = shot.getpixel((300, 2))
        return next(y for y in range(1, 80) if shot.getpixel((300, y)) != top)


def appears_within_5_s_every_time():
    with Gnome() as session:
        session.start_panel()
        item = desktop.Item(session, STRIP, baseline=session.settled_shot)
        item.appears_on_every_start()


def appears_when_the_panel_starts_later():
    desktop.appears_in_a_late_panel(Gnome, STRIP, 300)


def open_dashboard_and_a_double_click_open_it_under_the_item():
    with Gnome() as session:
        session.start_panel()
        item = desktop.Item(session, STRIP, baseline=session.settled_shot)
        voltaro = session.voltaro()
        box, shot = item.wait_shown(5)
        assert box, "no item"
        desktop.wait_for(lambda: False, 0.5)
        shot = session.screenshot()
        box = item.box(shot)
        bar = session.bar_height(shot)
        session.save(shot.crop((desktop.SCREEN[0] - 240, 0, desktop.SCREEN[0], bar)),
                     "gnome-shell.png")
        centre = ((box[0] + box[2]) // 2, (box[1] + box[3]) // 2)
        # The extension opens the item's menu on a click (a double click activates it).
        session.click(*centre)
        desktop.wait_for(lambda: False, 1)
        session.run("xdotool", "key", "Down", "Return")

        def check_under_item(window, way):
            assert window, f"{way} opened no dashboard"
            _, _, width, _, x, y = window
            assert y == bar, f"{way}: dashboard at y {y}, the top bar ends at {bar}"
            assert x <= centre[0] <= x + width, f"{way}: dashboard {window} not under {box}"

        check_under_item(desktop.wait_for(session.dashboard, 5), "Open Dashboard")
        # A click elsewhere closes it; the extension's activation is a double click.
        session.click(300, 400)
        assert desktop.wait_for(lambda: session.dashboard() is None, 5), "it stayed open"
        desktop.wait_for(lambda: False, 0.5)
        session.run("xdotool", "mousemove", str(centre[0]), str(centre[1]),
                    "click", "--repeat", "2", "--delay", "80", "1")
        check_under_item(desktop.wait_for(session.dashboard, 5), "a double click")
        assert voltaro.poll() is None


if __name__ == "__main__":
    desktop.main([appears_within_5_s_every_time, appears_when_the_panel_starts_later,
                  open_dashboard_and_a_double_click_open_it_under_the_item])
