#include "app/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

#include "core/history/HistoryDuration.h"

namespace voltaro {
namespace {

constexpr const char* previewWindowSwitch = "--preview-window";

// An existing folder, with nothing added to the option's DIR in the help.
CLI::Validator existingFolder() {
    return CLI::Validator(CLI::ExistingDirectory).description("");
}

CLI::Validator historyDuration() {
    return CLI::Validator(
        [](const std::string& text) -> std::string {
            return parseHistoryDuration(text)
                       ? std::string()
                       : "'" + text + "' is not a duration like 90m, 24h or 7d";
        },
        "", "");
}

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
    bool history = false;
    std::string since;
    CLI::Option* historyFlag =
        app.add_flag("--history", history, "Print the stored power history and exit")
            ->excludes("--once")
            ->excludes("--watch");
    app.add_option("--since", since, "With --history: how far back, like 90m, 24h or 7d")
        ->type_name("DURATION")
        ->check(historyDuration())
        ->needs(historyFlag);
    app.add_flag("--json", result.json, "Print one JSON object per line instead of text");
    app.add_flag("--csv", result.csv, "With --history: print comma-separated values")
        ->needs(historyFlag)
        ->excludes("--json");
    app.add_option("--sysfs-root", sysfsRoot, "Read power supplies under DIR instead of /sys")
        ->type_name("DIR")
        ->check(existingFolder());
    std::string procRoot;
    app.add_option("--proc-root", procRoot, "Read processes under DIR instead of /proc")
        ->type_name("DIR")
        ->check(existingFolder());
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
    std::vector<std::string> unknown;
    if (!arguments.empty()) {
        std::copy_if(arguments.rbegin(), std::prev(arguments.rend()), std::back_inserter(reversed),
                     [&unknown](const std::string& argument) {
                         if (argument.starts_with(previewWindowSwitch + std::string("="))) {
                             unknown.insert(unknown.begin(), argument);
                             return false;
                         }
                         return true;
                     });
    }
    try {
        app.parse(reversed);
        const std::vector<std::string> extras = app.remaining();
        unknown.insert(unknown.begin(), extras.begin(), extras.end());
        const bool asksForAMode = once || watch || history || result.json || !lowPower.empty() ||
                                  !sysfsRoot.empty() || !procRoot.empty();
        if (asksForAMode && !unknown.empty()) {
            // The error joins its list last one first.
            throw CLI::ExtrasError(std::vector<std::string>(unknown.rbegin(), unknown.rend()));
        }
    } catch (const CLI::CallForHelp&) {
        result.immediateOutput = app.help();
        return result;
    } catch (const CLI::ParseError& error) {
        result.immediateOutput = std::string(error.what()) + "\n" + app.help();
        result.exitCode = 2;
        return result;
    }
    if (!unknown.empty()) {
        std::string names;
        for (const std::string& argument : unknown) {
            names += " " + argument;
        }
        result.warning = "voltaro: ignoring unknown arguments:" + names;
    }
    if (version) {
        result.immediateOutput =
            std::string("Voltaro ") + VOLTARO_VERSION + " (" + VOLTARO_BUILD_NUMBER + ")\n";
        return result;
    }
    result.previewWindow =
        std::find(arguments.begin(), arguments.end(), previewWindowSwitch) != arguments.end();
    result.mode = once      ? CommandLine::Mode::once
                  : watch   ? CommandLine::Mode::watch
                  : history ? CommandLine::Mode::history
                            : CommandLine::Mode::dashboard;
    if (!since.empty()) {
        result.historySince = *parseHistoryDuration(since);
    }
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
