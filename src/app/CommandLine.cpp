#include "app/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

namespace voltaro {
namespace {

constexpr const char* previewWindowSwitch = "--preview-window";

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    CommandLine result;
    CLI::App app{
        "Voltaro shows the laptop's battery, its power flows and the applications that "
        "draw the most power.",
        "voltaro"};
    app.allow_extras();
    bool once = false;
    bool watch = false;
    bool version = false;
    std::string sysfsRoot;
    app.add_flag("--once", once, "Refresh twice, 2 s apart, print once and exit");
    app.add_flag("--watch", watch, "Print the dashboard at every refresh until interrupted");
    app.add_flag("--json", result.json, "Print one JSON object per line instead of text");
    app.add_option("--sysfs-root", sysfsRoot, "Read power supplies under DIR instead of /sys")
        ->type_name("DIR");
    std::string procRoot;
    app.add_option("--proc-root", procRoot, "Read processes under DIR instead of /proc")
        ->type_name("DIR");
    std::string lowPower;
    app.add_option("--low-power", lowPower, "Switch the low power mode, print the outcome, exit")
        ->type_name("on|off")
        ->check(CLI::IsMember({"on", "off"}));
    app.add_flag(previewWindowSwitch)->description("Also show the dashboard in an ordinary window");
    app.add_flag("--trace-refreshes", result.traceRefreshes)->group("");
    app.add_flag("--version", version, "Print the version and exit");

    // CLI11 takes the arguments after the program name, last one first. It would also read
    // "--preview-window=…" as the switch, which is only ever the exact word.
    std::vector<std::string> reversed;
    if (!arguments.empty()) {
        std::copy_if(arguments.rbegin(), std::prev(arguments.rend()), std::back_inserter(reversed),
                     [](const std::string& argument) {
                         return !argument.starts_with(previewWindowSwitch + std::string("="));
                     });
    }
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        result.immediateOutput = app.help();
        return result;
    } catch (const CLI::ParseError& error) {
        result.immediateOutput = std::string(error.what()) + "\n" + app.help();
        result.exitCode = 2;
        return result;
    }
    if (version) {
        result.immediateOutput =
            std::string("Voltaro ") + VOLTARO_VERSION + " (" + VOLTARO_BUILD_NUMBER + ")\n";
        return result;
    }
    result.previewWindow =
        std::find(arguments.begin(), arguments.end(), previewWindowSwitch) != arguments.end();
    result.mode = once ? CommandLine::Mode::once
                       : (watch ? CommandLine::Mode::watch : CommandLine::Mode::dashboard);
    if (!sysfsRoot.empty()) {
        result.sysfsRoot = sysfsRoot;
    }
    if (!procRoot.empty()) {
        result.procRoot = procRoot;
    }
    if (!lowPower.empty()) {
        result.switchLowPowerModeTo = lowPower == "on";
    }
    return result;
}

}  // namespace voltaro
