// Runs the real binary over copies of the fixture desktops' /proc and lets chosen processes run
// between its refreshes, as a kernel would, to see whom it blames for the energy.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "app/RunningVoltaro.h"

#ifdef __linux__

namespace voltaro {
namespace {

namespace fs = std::filesystem;

const fs::path data = VOLTARO_TEST_DATA;
// The user who owns the fixtures' desktop sessions.
constexpr const char* fixtureUser = "1000";

std::string readText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// The binary reads while the test writes: a file must change at once or not at all.
void replaceText(const fs::path& path, const std::string& text) {
    fs::path fresh = path;
    fresh += ".new";
    std::ofstream(fresh, std::ios::binary | std::ios::trunc) << text;
    fs::rename(fresh, path);
}

// A fixture /proc tree in a temporary directory. Its user's processes become the test's own, since
// the binary lists the processes of the user who runs it, and every other user's become a
// stranger's.
class ProcTree {
  public:
    explicit ProcTree(const fs::path& fixture) {
        std::string pattern = (fs::temp_directory_path() / "voltaro-proc-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
        for (const auto& entry : fs::directory_iterator(fixture)) {
            copyIn(entry.path(), entry.path().filename().string());
        }
    }
    ProcTree(const ProcTree&) = delete;
    ProcTree& operator=(const ProcTree&) = delete;
    ~ProcTree() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    std::string path() const { return path_.string(); }

    // The process uses the CPU for this many clock ticks of user time.
    void run(int pid, std::uint64_t ticks) const {
        const fs::path directory = path_ / std::to_string(pid);
        const std::string stat = readText(directory / "stat");
        const std::size_t nameEnd = stat.rfind(')');
        std::istringstream after(stat.substr(nameEnd + 1));
        std::vector<std::string> fields{std::istream_iterator<std::string>(after), {}};
        constexpr std::size_t userTicks = 11;  // field 14, counted from the state (field 3)
        // A stat cut short keeps its garbage: only its run time moves, so the binary looks again.
        if (fields.size() > userTicks) {
            fields[userTicks] = std::to_string(std::stoull(fields[userTicks]) + ticks);
            std::string text = stat.substr(0, nameEnd + 1);
            for (const std::string& field : fields) {
                text += " " + field;
            }
            replaceText(directory / "stat", text + "\n");
        }
        std::istringstream schedstat(readText(directory / "schedstat"));
        std::uint64_t runNanoseconds = 0, waitNanoseconds = 0, slices = 0;
        schedstat >> runNanoseconds >> waitNanoseconds >> slices;
        runNanoseconds +=
            ticks * 1'000'000'000 / static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
        replaceText(directory / "schedstat", std::to_string(runNanoseconds) + " " +
                                                 std::to_string(waitNanoseconds) + " " +
                                                 std::to_string(slices + ticks) + "\n");
    }

    void exit(int pid) const { fs::remove_all(path_ / std::to_string(pid)); }

    // A new process under this PID, as another fixture has it.
    void start(int pid, const fs::path& fixtureProcess) const {
        const std::string name = std::to_string(pid);
        copyIn(fixtureProcess, ".starting");
        fs::rename(path_ / ".starting", path_ / name);
    }

  private:
    void copyIn(const fs::path& source, const std::string& name) const {
        const fs::path target = path_ / name;
        fs::copy(source, target, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        if (fs::is_regular_file(target / "status")) {
            adopt(target / "status");
        }
    }

    static void adopt(const fs::path& status) {
        const std::string us = std::to_string(::getuid());
        const std::string stranger = ::getuid() == 65534 ? "65533" : "65534";
        std::istringstream lines(readText(status));
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("Uid:")) {
                std::istringstream ids(line.substr(4));
                line = "Uid:";
                for (std::string id; ids >> id;) {
                    line += "\t" + (id == fixtureUser ? us : stranger);
                }
            }
            text += line + "\n";
        }
        replaceText(status, text);
    }

    fs::path path_;
};

// An application the report should list, with the clock ticks its processes ran since the first
// refresh.
struct Expected {
    std::string id;
    std::string name;
    std::uint64_t ticks;
};

// The ranking, the shares (every process's ticks weigh alike, so the watts keep their
// proportions), and the calibration: the estimates exceed the measured power, so all of them
// together, the unlisted ones included, are scaled down to it.
void expectRanked(const nlohmann::json& report, const std::vector<Expected>& expected,
                  std::uint64_t ticksOfEveryApplication) {
    const nlohmann::json& applications = report.at("applications");
    ASSERT_EQ(applications.size(), expected.size()) << applications.dump(1);
    std::set<std::string> ids;
    std::set<std::string> names;
    double listedWatts = 0;
    std::uint64_t listedTicks = 0;
    const double firstWatts = applications.at(0).at("watts").get<double>();
    for (std::size_t index = 0; index < expected.size(); ++index) {
        const nlohmann::json& application = applications.at(index);
        SCOPED_TRACE(application.dump());
        EXPECT_EQ(application.at("id"), expected[index].id);
        EXPECT_EQ(application.at("name"), expected[index].name);
        EXPECT_TRUE(ids.insert(application.at("id").get<std::string>()).second);
        EXPECT_TRUE(names.insert(application.at("name").get<std::string>()).second);
        const double watts = application.at("watts").get<double>();
        EXPECT_NEAR(
            watts / firstWatts,
            static_cast<double>(expected[index].ticks) / static_cast<double>(expected[0].ticks),
            1e-9);
        listedWatts += watts;
        listedTicks += expected[index].ticks;
    }
    const double systemWatts = report.at("snapshot").at("systemWatts").get<double>();
    EXPECT_NEAR(listedWatts,
                systemWatts * static_cast<double>(listedTicks) /
                    static_cast<double>(ticksOfEveryApplication),
                1e-6);
}

class ProcFixturesEndToEndTest : public ::testing::Test {
  protected:
    // Starts the binary over a copy of the fixture, with its desktop entries and a laptop that
    // draws 8.342 W.
    void start(const fs::path& fixture) {
        tree_ = std::make_unique<ProcTree>(data / "proc" / fixture);
        const fs::path applications = data / "applications";
        testing::RunningVoltaro::Options options;
        options.arguments = {
            "--watch",     "--json",       "--proc-root",
            tree_->path(), "--sysfs-root", (data / "sysfs" / "thinkpad-t14-discharging").string()};
        options.environment = {
            {"LC_ALL", "C"},
            {"XDG_DATA_HOME", (applications / "home").string()},
            {"XDG_DATA_DIRS", (applications / "share").string() + ":" +
                                  (applications / "flatpak/exports/share").string()}};
        voltaro_ = std::make_unique<testing::RunningVoltaro>(std::move(options));
    }

    // The next refresh's report; an empty object when none came, which fails the expectations.
    nlohmann::json nextReport() {
        std::optional<nlohmann::json> report = voltaro_->nextReport();
        EXPECT_TRUE(report) << "no report from the binary";
        return report.value_or(nlohmann::json{{"applications", nullptr}});
    }

    // The first refresh has one sample per process and so nothing to rank.
    void expectFirstReportEmpty() {
        const nlohmann::json first = nextReport();
        EXPECT_EQ(first.at("applications"), nlohmann::json::array()) << first.dump();
    }

    void run(const std::vector<std::pair<int, std::uint64_t>>& ticksByProcess) const {
        for (const auto& [pid, ticks] : ticksByProcess) {
            tree_->run(pid, ticks);
        }
    }

    std::unique_ptr<ProcTree> tree_;
    std::unique_ptr<testing::RunningVoltaro> voltaro_;
};

TEST_F(ProcFixturesEndToEndTest, GnomeApplicationsTakeTheirHelpersAndJobsAndStayApartFromTheShell) {
    start("gnome");
    expectFirstReportEmpty();

    run({// the browser and three of its helpers, launched by the shell in its own scope
         {2810, 40},
         {3012, 120},
         {2870, 20},
         {3150, 20},
         // the terminal server; make, the compiler and sudo in its shell's scope
         {3300, 20},
         {3401, 20},
         {3420, 120},
         {3450, 20},
         // the shell, the X server it started, and an application it launched
         {1610, 80},
         {1702, 60},
         {4100, 40},
         // another user's shell is not ours to rank
         {4000, 1000}});
    expectRanked(nextReport(),
                 {{"firefox-esr", "Firefox ESR (work profile)", 200},
                  {"org.gnome.Terminal", "Terminal", 180},
                  {"process:/usr/bin/gnome-shell", "gnome-shell", 80},
                  {"process:/usr/bin/Xwayland", "Xwayland", 60},
                  {"org.gnome.Calculator", "Calculator", 40}},
                 560);

    run({// a Flatpak application and its sandbox
         {3598, 200},
         {3610, 600},
         // started by the user's service manager: over D-Bus, and the manager itself
         {3500, 400},
         {1490, 300}});
    // Ranked over both rounds; the shell, Xwayland and Calculator fall off the five.
    expectRanked(nextReport(),
                 {{"org.gnome.Weather", "Weather", 800},
                  {"org.gnome.Nautilus", "Files", 400},
                  {"process:/usr/lib/systemd/systemd", "systemd", 300},
                  {"firefox-esr", "Firefox ESR (work profile)", 200},
                  {"org.gnome.Terminal", "Terminal", 180}},
                 2060);
}

TEST_F(ProcFixturesEndToEndTest, KdeApplicationsRunAsServicesApartFromThePlasmaShell) {
    start("kde");
    expectFirstReportEmpty();

    run({// the terminal, its shell and htop in its service
         {2100, 20},
         {2130, 10},
         {2190, 170},
         // the browser's unit spelt with an unescaped dash, and its content process
         {2400, 40},
         {2410, 120},
         // the Plasma shell, and two applications it launched
         {1460, 80},
         {2600, 60},
         {2200, 40}});
    expectRanked(nextReport(),
                 {{"org.kde.konsole", "Konsole", 200},
                  {"firefox-esr", "Firefox ESR (work profile)", 160},
                  {"process:/usr/bin/plasmashell", "plasmashell", 80},
                  {"kde4-okular", "Okular", 60},
                  {"org.kde.dolphin", "Dolphin", 40}},
                 540);

    // An autostarted daemon without a desktop entry, and the service manager that started it.
    run({{1700, 600}, {1400, 300}});
    expectRanked(nextReport(),
                 {{"org.kde.kdeconnect.daemon", "org.kde.kdeconnect.daemon", 600},
                  {"process:/usr/lib/systemd/systemd", "systemd", 300},
                  {"org.kde.konsole", "Konsole", 200},
                  {"firefox-esr", "Firefox ESR (work profile)", 160},
                  {"process:/usr/bin/plasmashell", "plasmashell", 80}},
                 1440);
}

TEST_F(ProcFixturesEndToEndTest, WithoutScopesParentsGatherTheirChildrenUpToTheSession) {
    start("no-scopes");
    expectFirstReportEmpty();

    run({// the browser and its content process, started from the panel
         {1100, 60},
         {1120, 300},
         // the terminal, its shell and vim
         {1200, 30},
         {1220, 30},
         {1240, 120},
         // the session's window manager and panel, and the session bus
         {1050, 120},
         {1060, 60},
         {1300, 20}});
    expectRanked(nextReport(),
                 {{"process:/usr/lib/firefox-esr/firefox-esr", "firefox-esr", 360},
                  {"process:/usr/bin/xfce4-terminal", "xfce4-terminal", 180},
                  {"process:/usr/bin/xfwm4", "xfwm4", 120},
                  {"process:/usr/bin/xfce4-panel", "xfce4-panel", 60},
                  {"process:/usr/bin/dbus-daemon", "dbus-daemon", 20}},
                 740);
}

TEST_F(ProcFixturesEndToEndTest, AReusedPIDIsNotBlamedOnItsFormerProgram) {
    const fs::path after = data / "proc/pid-reuse/after";
    start("pid-reuse/before");
    expectFirstReportEmpty();

    run({{500, 400}, {501, 200}});  // bash and the sleep it started
    expectRanked(nextReport(), {{"process:/usr/bin/bash", "bash", 600}}, 600);

    // Both end; python3 gets PID 500 and starts a sleep of its own.
    tree_->exit(501);
    tree_->exit(500);
    tree_->start(500, after / "500");
    tree_->start(502, after / "502");
    const nlohmann::json restarted = nextReport();
    EXPECT_EQ(restarted.at("applications"), nlohmann::json::array()) << restarted.dump();

    run({{500, 400}, {502, 200}});
    expectRanked(nextReport(), {{"process:/usr/bin/python3.11", "python3", 600}}, 600);
}

TEST_F(ProcFixturesEndToEndTest, NamesWithSpacesAndParenthesesKeepTheirCounters) {
    start("odd-names");
    expectFirstReportEmpty();

    // 779's stat is cut short: looked at again, and still left out.
    run({{777, 600}, {710, 200}, {779, 50}});
    expectRanked(nextReport(),
                 {{"process:/tmp/evil", "evil) S 1 (x", 600},
                  {"process:/usr/bin/tmux", "tmux: server", 200}},
                 800);
}

}  // namespace
}  // namespace voltaro

#endif  // __linux__
