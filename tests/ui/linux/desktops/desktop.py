"""A private desktop for one test: an Xvfb display, a session bus and XDG folders of its own, the
real panels started on them, Voltaro started beside them, and screenshots read as pixels. Nothing
here touches the machine's own display, bus or settings."""

import os
import re
import select
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time

try:
    from PIL import Image
except ImportError:
    print("skipped: python3-pil is not installed (scripts/install-dependencies.sh)")
    sys.exit(77)

SKIP = 77
VOLTARO = os.environ.get("VOLTARO_BINARY", "")
TEST_DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "data")
# The fixture shows 57 % and 8 W.
FIXTURE = os.path.join(TEST_DATA, "sysfs", "asus-zenbook-14-charging")
SCREEN = (1280, 800)


class Skipped(Exception):
    pass


def require(*programs):
    for program in programs:
        if shutil.which(program) is None and not os.path.exists(program):
            raise Skipped(f"{program} is not installed (scripts/install-dependencies.sh)")


def starts():
    """How many times the appearance loops start Voltaro."""
    return int(os.environ.get("VOLTARO_PANEL_STARTS", "5"))


def wait_for(check, seconds, step=0.05):
    """The first true answer of check within the time, else None."""
    deadline = time.monotonic() + seconds
    while True:
        answer = check()
        if answer or time.monotonic() >= deadline:
            return answer or None
        time.sleep(step)


def luma(pixel):
    r, g, b = pixel[:3]
    return 0.299 * r + 0.587 * g + 0.114 * b


def luma_spread(image, box):
    values = sorted(luma(p) for p in image.crop(box).getdata())
    return values[-1] - values[0] if values else 0


def changed_box(before, after, region):
    """The box, in screen coordinates, of the rightmost group of columns inside region whose
    pixels differ between the two images (columns 4 px apart belong to different groups)."""
    from PIL import ImageChops

    diff = ImageChops.difference(before.crop(region).convert("L"), after.crop(region).convert("L"))
    mask = diff.point(lambda v: 255 if v > 24 else 0)
    columns = [x for x in range(mask.width) if mask.crop((x, 0, x + 1, mask.height)).getbbox()]
    groups = []
    for x in columns:
        if groups and x - groups[-1][1] <= 3:
            groups[-1][1] = x
        else:
            groups.append([x, x])
    # Narrower groups are the panels' own handles and separators, never an icon.
    groups = [g for g in groups if g[1] - g[0] >= 5]
    if not groups:
        return None
    left, right = groups[-1]
    rows = mask.crop((left, 0, right + 1, mask.height)).getbbox()
    return (left + region[0], rows[1] + region[1], right + 1 + region[0], rows[3] + region[1])


def read_xwd(data):
    """An XWD screen dump of a true-colour screen, as xwd writes Xvfb's at depth 24, as an image."""
    fields = struct.unpack(">25I", data[:100])
    header_size, width, height, byte_order = fields[0], fields[4], fields[5], fields[7]
    bits_per_pixel, bytes_per_line, colormap_entries = fields[11], fields[12], fields[19]
    # Packed 3 bytes a pixel or padded to 4, depending on the visual xwd finds.
    raw = {24: "BGR", 32: "BGRX"}.get(bits_per_pixel)
    if raw is None:
        raise RuntimeError(f"screen dump with {bits_per_pixel} bits a pixel")
    if byte_order != 0:
        raw = {24: "RGB", 32: "XRGB"}[bits_per_pixel]
    start = header_size + colormap_entries * 12
    return Image.frombuffer("RGB", (width, height), data[start:start + bytes_per_line * height],
                            "raw", raw, bytes_per_line, 1)


class Desktop:
    """One private session. Use as a context manager; every process it started ends with it."""

    def __init__(self, name, size=SCREEN, x_server=True):
        require("dbus-daemon", *(("Xvfb", "xwd") if x_server else ()))
        self.x_server = x_server
        if not os.access(VOLTARO, os.X_OK):
            raise Skipped("VOLTARO_BINARY does not name the built voltaro")
        self.name = name
        self.size = size
        self.root = tempfile.mkdtemp(prefix=f"voltaro-panels-{name}-")
        self.processes = []
        self.env = {k: v for k, v in os.environ.items()
                    if not k.startswith(("DBUS_", "XDG_", "WAYLAND", "QT_", "GNOME", "GTK"))
                    and k not in ("DISPLAY", "XAUTHORITY")}
        for folder in ("config", "data", "cache", "runtime", "home", "state"):
            os.makedirs(os.path.join(self.root, folder), mode=0o700)
        self.env.update({
            "HOME": self.path("home"),
            "XDG_CONFIG_HOME": self.path("config"),
            "XDG_DATA_HOME": self.path("data"),
            "XDG_CACHE_HOME": self.path("cache"),
            "XDG_STATE_HOME": self.path("state"),
            "XDG_RUNTIME_DIR": self.path("runtime"),
            "XDG_CURRENT_DESKTOP": name,
            "LC_ALL": "C.UTF-8",
            "LANGUAGE": "",
            "NO_AT_BRIDGE": "1",
            "GSETTINGS_BACKEND": "keyfile",
            "QT_QPA_PLATFORM": "xcb",
        })

    def path(self, *parts):
        return os.path.join(self.root, *parts)

    def __enter__(self):
        if self.x_server:
            self.display = self._start_x_server()
            self.env["DISPLAY"] = self.display
        self.bus = self.start_bus("session")
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.bus
        return self

    def __exit__(self, kind, *_):
        for process in reversed(self.processes):
            self.stop(process)
        if self.x_server:
            os.close(self.display_pipe)
        # The document portal, started with the settings portal, mounts a folder here.
        if os.path.ismount(self.path("runtime", "doc")):
            subprocess.run(["fusermount", "-uz", self.path("runtime", "doc")], check=False)
        if kind is not None:
            for log in sorted(f for f in os.listdir(self.root) if f.endswith(".log")):
                with open(self.path(log), errors="replace") as text:
                    print(f"--- {log}\n{text.read()[-3000:]}", flush=True)
        shutil.rmtree(self.root, ignore_errors=True)

    def _start_x_server(self):
        # Numbers from our own range; a number in use fails at once and the next is tried.
        base = int(os.environ.get("VOLTARO_DISPLAY_BASE", "130"))
        for number in range(base, base + 20):
            if os.path.exists(f"/tmp/.X{number}-lock"):
                continue
            ready, told = os.pipe()
            server = subprocess.Popen(
                ["Xvfb", f":{number}", "-displayfd", str(told), "-nolisten", "tcp", "-screen", "0",
                 f"{self.size[0]}x{self.size[1]}x24"], pass_fds=(told,),
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
            os.close(told)
            # Xvfb writes its number once it accepts clients, or closes the pipe as it fails.
            answer = b""
            if select.select([ready], [], [], 20)[0]:
                answer = os.read(ready, 16)
            self.processes.append(server)
            if answer.strip() == str(number).encode():
                # Open as long as the server runs: it may write again, and a closed pipe kills it.
                self.display_pipe = ready
                return f":{number}"
            os.close(ready)
            self.stop(server)
        raise RuntimeError("no free display number for Xvfb")

    def start_bus(self, kind):
        """A private bus of dbus-daemon's session configuration; its address."""
        socket_path = self.path(f"{kind}-bus")
        daemon = self.spawn(["dbus-daemon", "--session", "--nofork", "--nopidfile",
                             f"--address=unix:path={socket_path}"], quiet=True)
        if not wait_for(lambda: os.path.exists(socket_path), 10):
            raise RuntimeError(f"dbus-daemon did not start: {daemon.poll()}")
        return f"unix:path={socket_path}"

    def spawn(self, arguments, env=None, quiet=False, log=None):
        environment = dict(self.env)
        environment.update(env or {})
        output = subprocess.DEVNULL
        if log is not None:
            output = open(self.path(log), "wb")
        elif not quiet and os.environ.get("VOLTARO_DESKTOP_VERBOSE"):
            output = None
        process = subprocess.Popen(arguments, env=environment, stdout=output, stderr=output,
                                   stdin=subprocess.DEVNULL, start_new_session=True)
        self.processes.append(process)
        return process

    def stop(self, process, seconds=5):
        if process.poll() is None:
            try:
                os.killpg(process.pid, signal.SIGTERM)
            except ProcessLookupError:
                pass
            try:
                process.wait(seconds)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
        if process in self.processes:
            self.processes.remove(process)

    def voltaro(self, *arguments, fixture=FIXTURE, env=None, log=None):
        return self.spawn([VOLTARO, "--sysfs-root", fixture, *arguments], env=env, log=log)

    def run(self, *arguments, env=None):
        environment = dict(self.env)
        environment.update(env or {})
        return subprocess.run(arguments, env=environment, capture_output=True, text=True,
                              timeout=30)

    def screenshot(self):
        for _ in range(3):
            dump = subprocess.run(["xwd", "-root", "-silent", "-display", self.display],
                                  capture_output=True, timeout=30)
            if dump.returncode == 0:
                return read_xwd(dump.stdout)
        raise RuntimeError(f"xwd: {dump.stderr.decode(errors='replace')}")

    def save(self, image, file_name):
        """Keeps a screenshot for the README where VOLTARO_SCREENSHOT_DIR asks for it."""
        folder = os.environ.get("VOLTARO_SCREENSHOT_DIR")
        if folder:
            os.makedirs(folder, exist_ok=True)
            image.save(os.path.join(folder, file_name))

    def windows(self):
        """(id, name, width, height, x, y) of the windows on the display, in absolute place."""
        tree = self.run("xwininfo", "-root", "-tree").stdout
        found = []
        for match in re.finditer(r'(0x[0-9a-f]+) "([^"]*)":.*?(\d+)x(\d+)\+-?\d+\+-?\d+\s+'
                                 r'\+(-?\d+)\+(-?\d+)', tree):
            found.append((match[1], match[2], int(match[3]), int(match[4]), int(match[5]),
                          int(match[6])))
        return found

    def dashboard(self):
        """The dashboard popup's window while it is mapped, else None."""
        for window in self.windows():
            if window[1] == "Voltaro" and window[2:4] == (382, 552):
                state = self.run("xwininfo", "-id", window[0]).stdout
                if "IsViewable" in state:
                    return window
        return None

    def click(self, x, y, button=1):
        self.run("xdotool", "mousemove", str(x), str(y), "click", str(button))

    def bus_strings(self, destination, path, method, *arguments):
        """The strings of a D-Bus call's reply on the session's bus."""
        reply = self.run("dbus-send", "--session", "--print-reply", f"--dest={destination}", path,
                         method, *arguments).stdout
        return re.findall(r'string "([^"]+)"', reply)

    def bus_names(self):
        return self.bus_strings("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                "org.freedesktop.DBus.ListNames")

    def registered_items(self):
        """The items the panel's StatusNotifierWatcher lists."""
        return self.bus_strings("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                "org.freedesktop.DBus.Properties.Get",
                                "string:org.kde.StatusNotifierWatcher",
                                "string:RegisteredStatusNotifierItems")


class Item:
    """Where Voltaro's item shows in a panel: what differs inside the panel's strip from the
    strip before Voltaro came (baseline), or from the panel's own background."""

    def __init__(self, desktop, strip, baseline=None):
        self.desktop = desktop
        self.strip = strip
        self.baseline = baseline

    def box(self, shot):
        reference = self.baseline
        if reference is None:
            # The panel's background, from a column at its left end, across its whole length:
            # panels are flat or shaded from top to bottom.
            column = shot.crop((self.strip[0] + 2, 0, self.strip[0] + 3, shot.height))
            reference = column.resize(shot.size, Image.NEAREST)
        return changed_box(reference, shot, self.strip)

    def wait_shown(self, seconds=5):
        """The item's box and the screenshot it shows in, or (None, None)."""
        def look():
            shot = self.desktop.screenshot()
            box = self.box(shot)
            return (box, shot) if box else None

        return wait_for(look, seconds, step=0.1) or (None, None)

    def wait_gone(self, seconds=5):
        return wait_for(lambda: self.box(self.desktop.screenshot()) is None, seconds, step=0.1)

    def settled(self):
        """The item's box and a screenshot once it has settled in the panel."""
        box, _ = self.wait_shown(5)
        assert box, "no item within 5 s"
        wait_for(lambda: False, 0.5)
        shot = self.desktop.screenshot()
        return self.box(shot), shot

    def appears_on_every_start(self, flat=False):
        """Voltaro started again and again beside the running panel: the item within 5 s each
        time, and gone once Voltaro ends. A flat panel must show nothing before."""
        assert not flat or self.box(self.desktop.screenshot()) is None, \
            "the empty panel is not flat"
        for start in range(starts()):
            voltaro = self.desktop.voltaro()
            box, _ = self.wait_shown(5)
            assert box, f"start {start + 1}: no item within 5 s"
            self.desktop.stop(voltaro)
            assert self.wait_gone(), f"start {start + 1}: the item stayed after Voltaro ended"


def appears_in_a_late_panel(new_session, strip, right_margin):
    """Voltaro first, the panel after, on every start: the item joins the panel at its right
    end."""
    for start in range(starts()):
        with new_session() as session:
            voltaro = session.voltaro()
            wait_for(lambda: "io.voltaro.Voltaro" in session.bus_names(), 10)
            session.start_panel()
            box, _ = Item(session, strip).wait_shown(5)
            assert box and box[2] > SCREEN[0] - right_margin, \
                f"start {start + 1}: no item in the late panel: {box}"
            assert voltaro.poll() is None


def main(cases):
    """Runs the cases in order, or those named on the command line; exits 0, 1 on a failure,
    77 when nothing could run."""
    chosen = sys.argv[1:]
    unknown = set(chosen) - {case.__name__ for case in cases}
    if unknown:
        sys.exit(f"no such case: {', '.join(sorted(unknown))}")
    failures, ran = [], 0
    for case in (c for c in cases if not chosen or c.__name__ in chosen):
        started = time.monotonic()
        try:
            case()
            ran += 1
            print(f"ok    {case.__name__} ({time.monotonic() - started:.1f} s)", flush=True)
        except Skipped as reason:
            print(f"skip  {case.__name__}: {reason}", flush=True)
        except (AssertionError, RuntimeError, OSError, subprocess.SubprocessError) as fault:
            ran += 1
            failures.append(case.__name__)
            print(f"FAIL  {case.__name__} ({time.monotonic() - started:.1f} s): {fault}",
                  flush=True)
    print(f"{ran - len(failures)} passed, {len(failures)} failed")
    sys.exit(1 if failures else (0 if ran else SKIP))
