#pragma once

#include <QSettings>
#include <QTemporaryDir>
#include <QWidget>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/CrossThreadExecutor.h"
#include "support/FakeMonitorServices.h"
#include "support/ManualScheduler.h"
#include "ui/application/DisplayPreferencesStore.h"
#include "ui/views/DashboardView.h"

namespace voltaro::ui::testing {

// What the battery reports, in the registry's own units.
struct Battery {
    std::int64_t level = 57;
    bool connected = false;
    std::optional<std::int64_t> systemMilliwatts = std::nullopt;
    std::optional<std::int64_t> batteryMilliwatts = std::nullopt;  // positive while charging
    std::optional<std::int64_t> inputMilliwatts = std::nullopt;
    std::optional<double> ratedWatts = std::nullopt;
    std::optional<std::int64_t> timeToFullMinutes = std::nullopt;
    std::optional<std::int64_t> decikelvin = std::nullopt;
    PropertyDictionary more = {};  // further keys, such as the health figures
};

struct Application {
    std::string name;
    double watts = 0;
    std::optional<ApplicationIcon> icon = std::nullopt;
};

// A monitor over fakes, the temperature unit in a file of its own, and the dashboard over both.
class DashboardHarness : public voltaro::testing::FakeMonitorServices {
  public:
    DashboardHarness()
        : preferences_(std::make_unique<QSettings>(directory_.filePath("voltaro.conf"),
                                                   QSettings::IniFormat)) {}

    DashboardView& view() {
        if (!view_) {
            view_ = std::make_unique<DashboardView>(
                monitor, preferences_, "Power usage",
                DashboardActions{.openSettings = [] {}, .openBatterySettings = {}});
        }
        return *view_;
    }
    DisplayPreferencesStore& preferences() { return preferences_; }

    void setBattery(const Battery& battery) {
        const auto setKnown = [](PropertyDictionary& dictionary, const char* key, auto value) {
            if (value) {
                dictionary.set(key, *value);
            }
        };
        PropertyDictionary telemetry;
        setKnown(telemetry, "SystemLoad", battery.systemMilliwatts);
        setKnown(telemetry, "BatteryPower", battery.batteryMilliwatts);
        setKnown(telemetry, "SystemPowerIn", battery.inputMilliwatts);
        PropertyDictionary properties{{"CurrentCapacity", battery.level},
                                      {"ExternalConnected", battery.connected},
                                      {"PowerTelemetryData", telemetry}};
        if (battery.ratedWatts) {
            properties.set("AdapterDetails", PropertyDictionary{{"Watts", *battery.ratedWatts}});
        }
        setKnown(properties, "AvgTimeToFull", battery.timeToFullMinutes);
        setKnown(properties, "Temperature", battery.decikelvin);
        for (const auto& entry : battery.more.entries()) {
            properties.set(entry.key, entry.value);
        }
        registry.dictionary = properties;
        registry.powerSourceType = battery.connected ? "AC Power" : "Battery Power";
        refresh();
    }

    // Lets each application use its power for the next two seconds, and refreshes twice so the
    // ranking has a window to measure over.
    void runApplications(const std::vector<Application>& applications) {
        ProcessID pid = 100;
        for (const auto& application : applications) {
            processes.add(pid, 1, "/usr/bin/" + application.name, application.name);
            if (application.icon) {
                catalog.runningIcons[pid] = *application.icon;
            }
            ++pid;
        }
        refresh();
        scheduler.spend(std::chrono::seconds(2));
        pid = 100;
        for (const auto& application : applications) {
            processes.addEnergy(pid++, application.watts * 2);
        }
        refresh();
    }

    void refresh() {
        scheduler.spend(std::chrono::milliseconds(10));  // a new reading, never an equal one
        monitor.refreshNow();
    }

    // Ends a pending low power change, as the main loop would when its result arrives.
    void finishLowPowerChange() {
        executor.waitForPosts(++lowPowerPosts_);
        executor.runPosted();
    }

    voltaro::testing::ManualScheduler scheduler;
    voltaro::testing::CrossThreadExecutor executor{scheduler};
    BatteryMonitor monitor{on(executor, scheduler)};

  private:
    QTemporaryDir directory_;
    DisplayPreferencesStore preferences_;
    std::size_t lowPowerPosts_ = 0;
    std::unique_ptr<DashboardView> view_;  // last, so it goes before the monitor it observes
};

}  // namespace voltaro::ui::testing
