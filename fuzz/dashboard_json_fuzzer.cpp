// The JSON that --json prints, from dashboard states built out of the fuzz bytes: any names, not
// UTF-8 included, any doubles, NaN and infinities included, any times. Every line must parse back
// and carry the values it was given: finite numbers exactly, unknown and non-finite ones as null,
// text exactly when it is UTF-8.
#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "FuzzCheck.h"
#include "app/DashboardJson.h"
#include "core/text/Utf8.h"

using namespace voltaro;
using nlohmann::json;
using voltaro::fuzz::check;

namespace {

double anyDouble(FuzzedDataProvider& provider) {
    return std::bit_cast<double>(provider.ConsumeIntegral<std::uint64_t>());
}

std::optional<double> maybeDouble(FuzzedDataProvider& provider) {
    return provider.ConsumeBool() ? std::optional(anyDouble(provider)) : std::nullopt;
}

std::optional<std::int64_t> maybeInteger(FuzzedDataProvider& provider) {
    return provider.ConsumeBool() ? std::optional(provider.ConsumeIntegral<std::int64_t>())
                                  : std::nullopt;
}

std::string anyText(FuzzedDataProvider& provider) {
    return provider.ConsumeRandomLengthString(64);
}

void checkNumber(const json& written, std::optional<double> value) {
    if (!value || !std::isfinite(*value)) {
        check(written.is_null());
    } else {
        check(written.is_number() && written.get<double>() == *value);
    }
}

void checkText(const json& written, const std::string& text) {
    check(written.is_string());
    const auto& read = written.get_ref<const std::string&>();
    check(isValidUtf8(read));
    check(!isValidUtf8(text) || read == text);
}

// Whole milliseconds since the epoch from "YYYY-MM-DDTHH:MM:SS.mmmZ".
std::optional<std::int64_t> millisecondsOf(const std::string& text) {
    std::tm utc{};
    int milliseconds = 0;
    char zone = 0;
    int consumed = 0;
    if (text.size() != 24 ||
        std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d.%3d%c%n", &utc.tm_year, &utc.tm_mon,
                    &utc.tm_mday, &utc.tm_hour, &utc.tm_min, &utc.tm_sec, &milliseconds, &zone,
                    &consumed) != 8 ||
        consumed != 24 || zone != 'Z') {
        return std::nullopt;
    }
    utc.tm_year -= 1900;
    utc.tm_mon -= 1;
    return static_cast<std::int64_t>(timegm(&utc)) * 1000 + milliseconds;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider provider(data, size);
    DashboardState state;
    BatterySnapshot& snapshot = state.snapshot;
    snapshot.level = provider.ConsumeIntegral<std::int64_t>();
    snapshot.systemWatts = maybeDouble(provider);
    snapshot.batteryPowerWatts = maybeDouble(provider);
    snapshot.adapterWatts = maybeDouble(provider);
    snapshot.adapterCapacityWatts = maybeDouble(provider);
    snapshot.temperatureCelsius = maybeDouble(provider);
    snapshot.timeToFullMinutes = maybeInteger(provider);
    snapshot.isConnectedToPower = provider.ConsumeBool();
    snapshot.isCharging = provider.ConsumeBool();
    BatteryHealth& health = snapshot.health;
    health.cycleCount = maybeInteger(provider);
    health.capacityPercent = maybeDouble(provider);
    health.fullChargeWattHours = maybeDouble(provider);
    health.designWattHours = maybeDouble(provider);
    health.fullChargeMilliampHours = maybeDouble(provider);
    health.designMilliampHours = maybeDouble(provider);
    if (provider.ConsumeBool()) {
        health.model = anyText(provider);
    }
    // Years 1678 to 2261: as far as the clock reaches.
    snapshot.updatedAt = WallTime{} + WallTime::duration(provider.ConsumeIntegral<std::int64_t>());
    if (provider.ConsumeBool()) {
        state.lowPowerMode = provider.ConsumeBool();
    }
    state.collectedSeconds = anyDouble(provider);
    const std::size_t applicationCount = provider.ConsumeIntegralInRange<std::size_t>(0, 6);
    for (std::size_t index = 0; index < applicationCount; ++index) {
        AppEnergy application;
        application.id = anyText(provider);
        application.name = anyText(provider);
        application.watts = anyDouble(provider);
        state.applications.push_back(std::move(application));
    }

    const std::string unit = anyText(provider);
    const std::string powerTitle = anyText(provider);
    const DashboardModel model = dashboardModel(state, {unit, powerTitle});
    const std::string line = dashboardJsonLine(state, model);
    check(line.find('\n') == std::string::npos);
    const json written = json::parse(line, nullptr, /*allow_exceptions=*/false);
    check(written.is_object() && written.size() == 5);

    const json& s = written.at("snapshot");
    check(s.size() == 12);
    check(s.at("level").is_number_integer() && s.at("level").get<std::int64_t>() == snapshot.level);
    checkNumber(s.at("systemWatts"), snapshot.systemWatts);
    checkNumber(s.at("batteryPowerWatts"), snapshot.batteryPowerWatts);
    checkNumber(s.at("adapterWatts"), snapshot.adapterWatts);
    checkNumber(s.at("adapterCapacityWatts"), snapshot.adapterCapacityWatts);
    checkNumber(s.at("temperatureCelsius"), snapshot.temperatureCelsius);
    if (snapshot.timeToFullMinutes) {
        check(s.at("timeToFullMinutes").is_number_integer() &&
              s.at("timeToFullMinutes").get<std::int64_t>() == *snapshot.timeToFullMinutes);
    } else {
        check(s.at("timeToFullMinutes").is_null());
    }
    check(s.at("isConnectedToPower") == snapshot.isConnectedToPower);
    check(s.at("isCharging") == snapshot.isCharging);
    const auto milliseconds = millisecondsOf(s.at("updatedAt").get<std::string>());
    check(milliseconds ==
          std::chrono::floor<std::chrono::milliseconds>(snapshot.updatedAt.time_since_epoch())
              .count());
    check(s.at("stateLabel") == snapshot.stateLabel());
    const json& h = s.at("health");
    check(h.size() == 9);
    check(health.cycleCount ? h.at("cycleCount") == *health.cycleCount
                            : h.at("cycleCount").is_null());
    checkNumber(h.at("capacityPercent"), health.capacityPercent);
    checkNumber(h.at("fullChargeWattHours"), health.fullChargeWattHours);
    checkNumber(h.at("designWattHours"), health.designWattHours);
    checkNumber(h.at("fullChargeMilliampHours"), health.fullChargeMilliampHours);
    checkNumber(h.at("designMilliampHours"), health.designMilliampHours);
    if (health.model) {
        checkText(h.at("model"), *health.model);
    } else {
        check(h.at("model").is_null());
    }
    check(written.at("dashboard").at("sections").size() == model.sections.size());

    if (state.lowPowerMode) {
        check(written.at("lowPowerMode") == *state.lowPowerMode);
    } else {
        check(written.at("lowPowerMode").is_null());
    }
    checkNumber(written.at("collectedSeconds"), state.collectedSeconds);

    const json& applications = written.at("applications");
    check(applications.is_array() && applications.size() == state.applications.size());
    for (std::size_t index = 0; index < applications.size(); ++index) {
        const AppEnergy& application = state.applications[index];
        checkText(applications[index].at("id"), application.id);
        checkText(applications[index].at("name"), application.name);
        checkNumber(applications[index].at("watts"), application.watts);
    }
    return 0;
}
