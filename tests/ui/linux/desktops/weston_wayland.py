#!/usr/bin/python3
"""Voltaro in a native Wayland session: weston's headless backend, no X server anywhere. The
item goes to the StatusNotifierWatcher over D-Bus as on X11 (ayatana-indicator-application's
service stands in for the panel's), and a click opens the dashboard as an ordinary, decorated
Wayland window."""

import os
import re
import sys

sys.dont_write_bytecode = True  # keeps the source tree clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import ayatana  # noqa: E402
import desktop  # noqa: E402

PLUGIN = "/usr/lib/x86_64-linux-gnu/qt6/plugins/platforms/libqwayland-generic.so"


def dashboard_opens_as_a_native_wayland_window():
    desktop.require("weston", PLUGIN, ayatana.SERVICE)
    with desktop.Desktop("weston", x_server=False) as session:
        session.spawn(["weston", "--backend=headless-backend.so", "--socket=wayland-panels",
                       "--idle-time=0"], log="weston.log")
        socket = session.path("runtime", "wayland-panels")
        assert desktop.wait_for(lambda: os.path.exists(socket), 10), "weston did not start"
        session.spawn([ayatana.SERVICE], log="service.log")
        assert desktop.wait_for(lambda: "org.kde.StatusNotifierWatcher" in session.bus_names(),
                                10), "no watcher"
        wayland = {"WAYLAND_DISPLAY": "wayland-panels", "QT_QPA_PLATFORM": "wayland",
                   "WAYLAND_DEBUG": "1"}
        voltaro = session.voltaro(env=wayland, log="voltaro.log")
        item = desktop.wait_for(
            lambda: [a for a in ayatana.applications(session) if a["id"] == "voltaro"], 10)
        assert item, "the item did not reach the watcher"
        names = session.bus_names()
        assert item[0]["address"] in names, item
        reply = session.run("dbus-send", "--session", "--print-reply",
                            f"--dest={item[0]['address']}", "/StatusNotifierItem",
                            "org.kde.StatusNotifierItem.Activate", "int32:0", "int32:0")
        assert reply.returncode == 0, reply.stderr

        def log():
            with open(session.path("voltaro.log"), errors="replace") as text:
                return text.read()

        # A toplevel of our own, titled, configured by weston and then given a buffer.
        toplevel = r"-> xdg_surface@(\d+)\.get_toplevel\(new id xdg_toplevel@(\d+)\)"

        def shown():
            text = log()
            for _, top in re.findall(toplevel, text):
                configured = re.search(rf"xdg_toplevel@{top}\.configure\(", text)
                if re.search(rf"-> xdg_toplevel@{top}\.set_title\(\"Voltaro\"\)", text) and \
                        configured and ".attach(wl_buffer" in text[configured.end():]:
                    return True
            return False

        assert desktop.wait_for(shown, 10), "no Voltaro toplevel\n" + log()[-3000:]
        assert "xdg_popup" not in log(), "the dashboard went out as a popup"
        # An ordinary window wears a title bar above the 382 × 552 dashboard; a frameless popup
        # turned toplevel would not.
        geometry = re.findall(
            r"-> xdg_surface@\d+\.set_window_geometry\(-?\d+, -?\d+, (\d+), (\d+)\)", log())
        assert geometry and int(geometry[-1][1]) > 552, f"window geometry {geometry}"
        assert voltaro.poll() is None, "Voltaro ended"


if __name__ == "__main__":
    desktop.main([dashboard_opens_as_a_native_wayland_window])
