#!/usr/bin/python3
"""Voltaro in an XEmbed tray: trayer, with no StatusNotifierWatcher on the bus, so Voltaro
docks an icon window of its own."""

import os
import sys

sys.dont_write_bytecode = True  # keeps the source tree clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import desktop  # noqa: E402

TRAY_HEIGHT = 28
STRIP = (0, 0, desktop.SCREEN[0], TRAY_HEIGHT)


class Trayer(desktop.Desktop):
    def __init__(self):
        desktop.require("trayer", "/usr/libexec/xdg-desktop-portal")
        super().__init__("trayer")
        # A dark tray on a desktop that prefers dark: the real settings portal (gtk backend)
        # hands the preference over from the session's own settings.
        os.makedirs(self.path("config", "glib-2.0", "settings"))
        with open(self.path("config", "glib-2.0", "settings", "keyfile"), "w") as keyfile:
            keyfile.write("[org/gnome/desktop/interface]\ncolor-scheme='prefer-dark'\n")

    def start_tray(self):
        # Dark, as trayer is mostly set up, across the top of the screen.
        self.spawn(["trayer", "--edge", "top", "--align", "right", "--widthtype", "percent",
                    "--width", "100", "--height", str(TRAY_HEIGHT), "--transparent", "true",
                    "--alpha", "0", "--tint", "0x262626", "--SetDockType", "true"], log="tray.log")
        assert desktop.wait_for(lambda: self.screenshot().getpixel((4, 4)) != (0, 0, 0), 10), \
            "trayer did not start"


def check_glyph_alone(session):
    item = desktop.Item(session, STRIP)
    box, _ = item.wait_shown(5)
    docked = any(w[1] == "Voltaro" and w[4] > 0 and w[5] >= 0 and w[2] > 1
                 for w in session.windows())
    assert box, f"no visible icon in the tray within 5 s ({'a' if docked else 'no'} docked window)"
    desktop.wait_for(lambda: False, 0.5)
    shot = session.screenshot()
    box = item.box(shot)
    session.save(shot.crop((desktop.SCREEN[0] - 120, 0, desktop.SCREEN[0], TRAY_HEIGHT))
                 .resize((480, 4 * TRAY_HEIGHT), 0), "trayer.png")
    width, height = box[2] - box[0], box[3] - box[1]
    # The glyph alone, drawn for a square of the tray's height: wider than high, never a strip.
    assert width <= TRAY_HEIGHT and height >= TRAY_HEIGHT / 4 and width >= TRAY_HEIGHT / 2, \
        f"the icon's drawing is {width} × {height} px in a {TRAY_HEIGHT} px tray"
    spread = desktop.luma_spread(shot, box)
    assert spread >= 120, f"the icon barely stands out from the dark tray: luma spread {spread}"


def shows_the_glyph_alone_at_the_trays_size_and_follows_the_desktops_scheme():
    with Trayer() as session:
        session.start_tray()
        voltaro = session.voltaro()
        check_glyph_alone(session)
        item = desktop.Item(session, STRIP)

        def brightest():
            shot = session.screenshot()
            box = item.box(shot)
            return box and max(desktop.luma(p) for p in shot.crop(box).getdata())

        # Changed while Voltaro runs; without a preference the glyph takes the palette's dark
        # text.
        for scheme, light_glyph in (("prefer-light", False), ("prefer-dark", True),
                                    ("default", False)):
            session.run("gsettings", "set", "org.gnome.desktop.interface", "color-scheme",
                        scheme)
            assert desktop.wait_for(lambda: (brightest() > 200) == light_glyph, 5), \
                f"{scheme}: brightest luma {brightest()} in the glyph"
        assert voltaro.poll() is None


def joins_a_tray_that_starts_later():
    with Trayer() as session:
        voltaro = session.voltaro()
        desktop.wait_for(lambda: "io.voltaro.Voltaro" in session.bus_names(), 10)
        desktop.wait_for(lambda: False, 1)
        session.start_tray()
        check_glyph_alone(session)
        assert voltaro.poll() is None


if __name__ == "__main__":
    desktop.main([shows_the_glyph_alone_at_the_trays_size_and_follows_the_desktops_scheme,
                  joins_a_tray_that_starts_later])
