// The fixture laptops' /sys trees read as the binary reads them, compared with the expected
// snapshots; binary_end_to_end.py runs the binary itself on one of them.
#include <gtest/gtest.h>

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

// Every field the expected file names, the health figures' among them.
void expectFields(const nlohmann::json& actual, const nlohmann::json& expected) {
    for (const auto& [field, value] : expected.items()) {
        SCOPED_TRACE(field);
        ASSERT_TRUE(actual.contains(field));
        if (value.is_object()) {
            expectFields(actual.at(field), value);
        } else if (value.is_number_float()) {
            ASSERT_TRUE(actual.at(field).is_number()) << actual.at(field);
            EXPECT_NEAR(actual.at(field).get<double>(), value.get<double>(), 1e-6);
        } else {
            EXPECT_EQ(actual.at(field), value);
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
    expectFields(nlohmann::json::parse(json.at("snapshot").dump()),
                 nlohmann::json::parse(std::ifstream(sysfs / (GetParam() + ".expected.json"))));
}

INSTANTIATE_TEST_SUITE_P(Laptops, SysfsFixtureTest, ::testing::ValuesIn(fixtureNames()),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(c); },
                                 '_');
                             return name;
                         });

}  // namespace
}  // namespace voltaro
