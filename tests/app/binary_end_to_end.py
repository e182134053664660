#!/usr/bin/env python3
"""Runs the real binary: over copies of the fixture desktops' /proc, letting chosen processes run
between its refreshes as a kernel would, to see whom it blames for the energy; and once over a
fixture laptop's /sys, to see the reading reach its output.

Usage: binary_end_to_end.py VOLTARO_BINARY TEST_DATA_FOLDER"""
import concurrent.futures, json, os, select, shutil, subprocess, sys, tempfile, threading

binary, data = sys.argv[1], os.path.abspath(sys.argv[2])  # XDG paths must be absolute
FIXTURE_USER = "1000"  # owns the fixtures' desktop sessions
failures = []
current = threading.local()  # the scenario each thread runs, to name its failures


def replace(path, text):
    # The binary reads while the test writes: a file changes at once or not at all.
    with open(path + ".new", "w") as fresh:
        fresh.write(text)
    os.rename(path + ".new", path)


def adopt(process):
    # The binary lists the processes of the user who runs it: the fixture user's become ours,
    # every other user's a stranger's.
    us, stranger = str(os.getuid()), "65533" if os.getuid() == 65534 else "65534"
    path = os.path.join(process, "status")
    lines = open(path).read().splitlines()
    for at, line in enumerate(lines):
        if line.startswith("Uid:"):
            ids = [us if i == FIXTURE_USER else stranger for i in line[4:].split()]
            lines[at] = "\t".join(["Uid:"] + ids)
    replace(path, "\n".join(lines) + "\n")


class Run:
    def __init__(self, fixture):
        self.tree = tempfile.mkdtemp(prefix="voltaro-proc-")
        shutil.copytree(os.path.join(data, "proc", fixture), self.tree, symlinks=True,
                        dirs_exist_ok=True)
        for name in os.listdir(self.tree):
            if name.isdigit():  # not through the link "self", which would adopt twice
                adopt(os.path.join(self.tree, name))
        apps = os.path.join(data, "applications")
        env = dict(os.environ, LC_ALL="C", XDG_DATA_HOME=os.path.join(apps, "home"),
                   XDG_DATA_DIRS=apps + "/share:" + apps + "/flatpak/exports/share")
        # A laptop that draws 8.342 W.
        self.voltaro = subprocess.Popen(
            [binary, "--watch", "--json", "--proc-root", self.tree, "--sysfs-root",
             os.path.join(data, "sysfs", "thinkpad-t14-discharging")],
            stdout=subprocess.PIPE, env=env, text=True)

    def close(self):
        self.voltaro.kill()
        self.voltaro.wait()
        shutil.rmtree(self.tree)

    def report(self):
        if not select.select([self.voltaro.stdout], [], [], 20)[0]:
            raise AssertionError("no report from the binary")
        return json.loads(self.voltaro.stdout.readline())

    def run(self, ticks_by_pid):
        """Each process uses the CPU for so many clock ticks of user time."""
        for pid, ticks in ticks_by_pid.items():
            folder = os.path.join(self.tree, str(pid))
            stat = open(os.path.join(folder, "stat")).read()
            end = stat.rfind(")")
            fields = stat[end + 1:].split()
            fields[11] = str(int(fields[11]) + ticks)  # field 14, counted from the state
            replace(os.path.join(folder, "stat"), stat[:end + 1] + " " + " ".join(fields) + "\n")
            run_ns, wait_ns, slices = map(int, open(os.path.join(folder, "schedstat")).read().split())
            run_ns += ticks * 1_000_000_000 // os.sysconf("SC_CLK_TCK")
            replace(os.path.join(folder, "schedstat"), f"{run_ns} {wait_ns} {slices + ticks}\n")

    def start(self, pid, fixture_process):
        """A new process under this PID, as another fixture has it; it appears at once."""
        starting = os.path.join(self.tree, ".starting")
        shutil.copytree(fixture_process, starting, symlinks=True)
        adopt(starting)
        os.rename(starting, os.path.join(self.tree, str(pid)))

    def expect_nothing_ranked(self):
        # As after the first refresh, which has one sample per process.
        check(self.report()["applications"] == [], "a first refresh ranks nothing")

    def expect_ranked(self, expected, ticks_of_every_application):
        """The ranking, the shares (every process's ticks weigh alike) and the calibration: all
        estimates together, the unlisted ones included, are scaled down to the measured power."""
        report = self.report()
        apps = report["applications"]
        check([(a["id"], a["name"]) for a in apps] == [(i, n) for i, n, _ in expected],
              json.dumps(apps, indent=1))
        if len(apps) != len(expected):
            return
        for app, (_, _, ticks) in zip(apps, expected):
            close(app["watts"] / apps[0]["watts"], ticks / expected[0][2], 1e-9, app["id"])
        listed_ticks = sum(ticks for _, _, ticks in expected)
        close(sum(a["watts"] for a in apps),
              report["snapshot"]["systemWatts"] * listed_ticks / ticks_of_every_application, 1e-6,
              "the calibrated total")


def check(condition, what):
    if not condition:
        failures.append(f"{current.scenario}: {what}")


def close(actual, expected, tolerance, what):
    check(abs(actual - expected) <= tolerance, f"{what}: {actual} is not {expected}")


def gnome_apps_take_their_helpers_and_jobs_and_stay_apart_from_the_shell(run):
    run.expect_nothing_ranked()
    run.run({2810: 40, 3012: 120, 2870: 20, 3150: 20})  # the browser and three helpers
    run.run({3300: 20, 3401: 20, 3420: 120, 3450: 20})  # the terminal; make, cc1plus, sudo
    run.run({1610: 80, 1702: 60, 4100: 40})  # the shell, its X server, an app it launched
    run.run({4000: 1000})  # another user's shell is not ours to rank
    run.expect_ranked([("firefox-esr", "Firefox ESR (work profile)", 200),
                       ("org.gnome.Terminal", "Terminal", 180),
                       ("process:/usr/bin/gnome-shell", "gnome-shell", 80),
                       ("process:/usr/bin/Xwayland", "Xwayland", 60),
                       ("org.gnome.Calculator", "Calculator", 40)], 560)
    run.run({3598: 200, 3610: 600})  # a Flatpak application and its sandbox
    run.run({3500: 400, 1490: 300})  # started by the user's service manager, and the manager
    # Ranked over both rounds; the shell, Xwayland and Calculator fall off the five.
    run.expect_ranked([("org.gnome.Weather", "Weather", 800),
                       ("org.gnome.Nautilus", "Files", 400),
                       ("process:/usr/lib/systemd/systemd", "systemd", 300),
                       ("firefox-esr", "Firefox ESR (work profile)", 200),
                       ("org.gnome.Terminal", "Terminal", 180)], 2060)


def a_reused_pid_is_not_blamed_on_its_former_program(run):
    run.expect_nothing_ranked()
    # bash and the sleep it started end; python3 gets PID 500 and starts a sleep of its own.
    for pid in (501, 500):
        shutil.rmtree(os.path.join(run.tree, str(pid)))
    after = os.path.join(data, "proc", "pid-reuse", "after")
    run.start(500, os.path.join(after, "500"))
    run.start(502, os.path.join(after, "502"))
    run.expect_nothing_ranked()
    run.run({500: 400, 502: 200})
    run.expect_ranked([("process:/usr/bin/python3.11", "python3", 600)], 600)


def once_json_prints_one_line_with_the_fixtures_snapshot():
    fixture = os.path.join(data, "sysfs", "thinkpad-t480-two-batteries-charging")
    output = subprocess.run([binary, "--once", "--json", "--sysfs-root", fixture],
                            capture_output=True, text=True, timeout=20).stdout
    check(output.count("\n") == 1, "not one line: " + output)
    snapshot = json.loads(output)["snapshot"]
    for field, value in json.load(open(fixture + ".expected.json")).items():
        if isinstance(value, float):
            close(snapshot[field], value, 1e-6, field)
        else:
            check(snapshot[field] == value, f"{field}: {snapshot[field]} is not {value}")


def json_lines_reach_a_pipe_at_once():
    # The first report, well before the second refresh; the data folder holds no power supplies.
    voltaro = subprocess.Popen([binary, "--watch", "--json", "--sysfs-root", data],
                               stdout=subprocess.PIPE, text=True)
    try:
        check(select.select([voltaro.stdout], [], [], 1.5)[0], "no report within 1.5 s")
        snapshot = json.loads(voltaro.stdout.readline())["snapshot"]
        check((snapshot["level"], snapshot["stateLabel"]) == (0, "On battery"), str(snapshot))
    finally:
        voltaro.kill()
        voltaro.wait()


def outcome(fixture, scenario):
    run, current.scenario = None, scenario.__name__
    try:
        run = Run(fixture) if fixture else None
        scenario(run) if run else scenario()
    except (AssertionError, KeyError, ValueError, subprocess.TimeoutExpired) as error:
        check(False, repr(error))
    finally:
        if run:
            run.close()
    return scenario.__name__


# Each waits for the binary's refreshes: side by side they take as long as the longest.
scenarios = [(None, once_json_prints_one_line_with_the_fixtures_snapshot),
             (None, json_lines_reach_a_pipe_at_once),
             ("gnome", gnome_apps_take_their_helpers_and_jobs_and_stay_apart_from_the_shell),
             ("pid-reuse/before", a_reused_pid_is_not_blamed_on_its_former_program)]
with concurrent.futures.ThreadPoolExecutor(len(scenarios)) as pool:
    print("ran", ", ".join(pool.map(lambda s: outcome(*s), scenarios)))
for failure in failures:
    print("FAILED " + failure)
sys.exit(1 if failures else 0)
