// The fixture laptops' /sys trees read as the binary reads them, compared with the expected
// snapshots; binary_end_to_end.py runs the binary itself on one of them.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/DashboardJson.h"
#include "core/telemetry/BatteryReader.h"
#include "core/telemetry/UnavailableSMCController.h"
#include "platform/linux/SysfsBatteryRegistry.h"
#include "support/ManualScheduler.h"

namespace voltaro {
namespace {

namespace fs = std::filesystem;
const fs::path sysfs = fs::path(VOLTARO_TEST_DATA) / "sysfs";

std::vector<std::string> fixtureNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sysfs)) {
        if (entry.path().extension() == ".json") {
            names.push_back(entry.path().stem().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

void expectSnapshot(const nlohmann::json& snapshot, const std::string& fixture) {
    const auto expected =
        nlohmann::json::parse(std::ifstream(sysfs / (fixture + ".expected.json")));
    for (const auto& [field, value] : expected.items()) {
        SCOPED_TRACE(field);
        ASSERT_TRUE(snapshot.contains(field));
        if (value.is_number_float()) {
            ASSERT_TRUE(snapshot.at(field).is_number()) << snapshot.at(field);
            EXPECT_NEAR(snapshot.at(field).get<double>(), value.get<double>(), 1e-6);
        } else {
            EXPECT_EQ(snapshot.at(field), value);
        }
    }
}

class SysfsFixtureTest : public ::testing::TestWithParam<std::string> {};

TEST_P(SysfsFixtureTest, ReadsTheExpectedSnapshot) {
    platform::SysfsBatteryRegistry registry(sysfs / GetParam());
    UnavailableSMCController smc;
    testing::ManualScheduler clock;
    BatteryReader reader(registry, smc, clock);
    const nlohmann::ordered_json json = dashboardJson({.snapshot = reader.read()}, {});
    expectSnapshot(nlohmann::json::parse(json.at("snapshot").dump()), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Laptops, SysfsFixtureTest, ::testing::ValuesIn(fixtureNames()),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(c); },
                                 '_');
                             return name;
                         });

TEST(SysfsFixtureHealthTest, EveryTreeGivesItsHealthFigures) {
    // Cycles, capacity percent, manufacturer, model, technology.
    const std::pair<const char*, const char*> cases[] = {
        {"asus-zenbook-14-charging", R"([211, 96.9, "ASUSTeK", "ASUS Battery", "Li-ion"])"},
        {"chromebook-plus-sbs-charging", R"([187, 94.2, "SDI", "PA-SD", "Li-ion"])"},
        {"dell-xps-13-full-on-ac", R"([null, 95.9, "SMP", "DELL 9C3X6", "Li-poly"])"},  // 0 cycles
        {"desktop-no-power-supplies", "[null, null, null, null, null]"},
        {"framework-13-usb-pd-charging", R"([89, 97.0, "NVT", "FRANGWA", "Li-ion"])"},
        {"garbled-firmware", "[null, null, null, null, null]"},
        {"ideapad-5-with-bluetooth-mouse", R"([264, 96.3, "Celxpert", "L19C4PF4", "Li-ion"])"},
        {"thinkpad-t14-discharging", R"([143, 93.5, "SMP", "5B10W13930", "Li-poly"])"},
        {"thinkpad-t480-two-batteries-charging",
         R"([402, 91.6, "SANYO, LGC", "01AV421, 01AV427", "Li-poly, Li-ion"])"},
        {"thinkpad-x1-carbon-not-charging", R"([312, 98.0, "Celxpert", "5B10W13975", "Li-poly"])"},
    };
    ASSERT_EQ(std::size(cases), fixtureNames().size());
    for (const auto& [fixture, expected] : cases) {
        platform::SysfsBatteryRegistry registry(sysfs / fixture);
        UnavailableSMCController smc;
        testing::ManualScheduler clock;
        auto health = dashboardJson({.snapshot = BatteryReader(registry, smc, clock).read()},
                                    {})["snapshot"]["health"];
        if (auto& percent = health["capacityPercent"]; percent.is_number()) {
            percent = std::round(percent.get<double>() * 10) / 10;
        }
        EXPECT_EQ(nlohmann::ordered_json::array({health["cycleCount"], health["capacityPercent"],
                                                 health["manufacturer"], health["model"],
                                                 health["technology"]}),
                  nlohmann::ordered_json::parse(expected))
            << fixture;
    }
}

}  // namespace
}  // namespace voltaro
