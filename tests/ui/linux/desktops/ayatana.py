#!/usr/bin/python3
"""Voltaro's item in an icon-name host: xfce4-panel's indicator plugin over
ayatana-indicator-application, whose service is the StatusNotifierWatcher and hands the plugin
each item's icon name, icon folder and label."""

import os
import shutil
import sys

sys.dont_write_bytecode = True  # keeps the source tree clean
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import desktop  # noqa: E402
import xfce_panel  # noqa: E402

SERVICE = "/usr/libexec/ayatana-indicator-application/ayatana-indicator-application-service"
PLUGIN = "/usr/lib/x86_64-linux-gnu/xfce4/panel/plugins/libindicator-plugin.so"


def applications(session):
    """What the service hands the panel: one dictionary per item."""
    import dbus

    bus = dbus.bus.BusConnection(session.bus)
    try:
        service = bus.get_object("org.ayatana.indicator.application",
                                 "/org/ayatana/indicator/application/service")
        rows = service.GetApplications(
            dbus_interface="org.ayatana.indicator.application.service")
    except dbus.DBusException:
        return []
    finally:
        bus.close()
    fields = ("icon", "position", "address", "menu", "theme_path", "label", "guide",
              "description", "id", "title")
    return [dict(zip(fields, (str(v) for v in row))) for row in rows]


def icon_file(name, theme_path):
    """The file an icon name stands for in the item's own icon folder, or None."""
    for folder, _, files in os.walk(theme_path or "/nonexistent"):
        for extension in (".svg", ".png"):
            if name + extension in files:
                return os.path.join(folder, name + extension)
    return None


def icon_name_resolves_and_the_label_follows_the_battery():
    desktop.require(SERVICE, PLUGIN)
    try:
        import dbus  # noqa: F401
    except ImportError:
        raise desktop.Skipped("python3-dbus is not installed (scripts/install-dependencies.sh)")
    with xfce_panel.Xfce(tray="indicator") as session:
        # A laptop drawing 8.3 W from its battery, its charge set as the case goes on.
        fixture = session.path("sysfs")
        shutil.copytree(os.path.join(desktop.TEST_DATA, "sysfs", "thinkpad-t14-discharging"),
                        fixture)
        capacity = os.path.join(fixture, "class", "power_supply", "BAT0", "capacity")
        with open(capacity, "w") as f:
            f.write("57\n")
        session.spawn([SERVICE], log="service.log")
        session.start_panel()
        voltaro = session.voltaro(fixture=fixture)

        def ours():
            found = [a for a in applications(session) if a["id"] == "voltaro"]
            return found[0] if found else None

        def labelled(text):
            return lambda: (ours() or {}).get("label") == text and ours()

        item = desktop.wait_for(labelled("57% · 8 W"), 10)
        assert item, f"label {(ours() or {}).get('label')!r}, not '57% · 8 W'"
        with open(capacity, "w") as f:
            f.write("80\n")
        assert desktop.wait_for(labelled("80% · 8 W"), 10), \
            f"label {(ours() or {}).get('label')!r} after the charge rose to 80 %"
        item = ours()
        assert (item["title"], item["guide"], item["menu"]) == \
            ("Voltaro", "100% · 000 W", "/MenuBar"), item
        found = icon_file(item["icon"], item["theme_path"])
        assert item["icon"] and found and os.path.getsize(found) > 0, \
            f"icon name {item['icon']!r} has no file under {item['theme_path']!r}"
        assert voltaro.poll() is None


if __name__ == "__main__":
    desktop.main([icon_name_resolves_and_the_label_follows_the_battery])
