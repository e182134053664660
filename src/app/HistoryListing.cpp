#include "app/HistoryListing.h"

#include <ctime>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>

#include "app/DashboardJson.h"
#include "platform/storage/HistoryLocation.h"
#include "platform/storage/SqliteHistoryStore.h"

namespace voltaro {
namespace {

std::string fixed(double value, int digits) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << value;
    return text.str();
}

std::string localTime(WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

std::string jsonLine(const HistoryRecord& record) {
    const nlohmann::ordered_json json = {
        {"time", iso8601(record.time)},
        {"chargePercent", record.chargePercent},
        {"systemWatts", orNull(record.systemWatts)},
        {"batteryWatts", orNull(record.batteryWatts)},
        {"isConnectedToPower", record.isConnectedToPower},
        {"isCharging", record.isCharging},
        {"isLowPowerModeEnabled", record.isLowPowerModeEnabled},
        {"applications", applicationsJson(record.applications)},
    };
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// A field quoted when it holds a comma, a quote or a line break, quotes doubled.
std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

std::string csvLine(const HistoryRecord& record) {
    const auto optional = [](const std::optional<double>& watts) {
        return watts ? fixed(*watts, 3) : std::string();
    };
    std::string applications;
    for (const HistoryApplication& application : record.applications) {
        applications += (applications.empty() ? "" : ";") + application.name + "=" +
                        fixed(application.watts, 3);
    }
    return iso8601(record.time) + "," + std::to_string(record.chargePercent) + "," +
           optional(record.systemWatts) + "," + optional(record.batteryWatts) + "," +
           (record.isConnectedToPower ? "1" : "0") + "," + (record.isCharging ? "1" : "0") + "," +
           (record.isLowPowerModeEnabled ? "1" : "0") + "," + csvField(applications);
}

std::string textLine(const HistoryRecord& record) {
    const auto watts = [](const std::optional<double>& value) {
        return value ? fixed(*value, 1) + " W" : std::string("— W");
    };
    std::string line = localTime(record.time) + "  " + std::to_string(record.chargePercent) +
                       "%  system " + watts(record.systemWatts) + "  battery " +
                       watts(record.batteryWatts);
    line += record.isCharging ? "  charging" : (record.isConnectedToPower ? "  adapter" : "");
    line += record.isLowPowerModeEnabled ? "  low power" : "";
    for (std::size_t i = 0; i < record.applications.size(); ++i) {
        line += (i == 0 ? "  | " : ", ") + record.applications[i].name + " " +
                fixed(record.applications[i].watts, 1) + " W";
    }
    return line;
}

}  // namespace

void writeHistory(const std::vector<HistoryRecord>& records, const CommandLine& commandLine,
                  std::ostream& out) {
    if (commandLine.csv) {
        out << "time,charge_percent,system_watts,battery_watts,adapter_connected,charging,"
               "low_power_mode,applications\n";
    }
    for (const HistoryRecord& record : records) {
        out << (commandLine.csv    ? csvLine(record)
                : commandLine.json ? jsonLine(record)
                                   : textLine(record))
            << '\n';
    }
    out.flush();
}

int printHistory(const CommandLine& commandLine, std::ostream& out, std::ostream& err) {
    const std::optional<std::filesystem::path> file = platform::historyFile();
    if (!file) {
        err << "voltaro: neither XDG_STATE_HOME nor HOME is set; no history to read\n";
        return 1;
    }
    const platform::HistoryOpening opening = platform::SqliteHistoryStore::openForReading(*file);
    if (opening.status == platform::HistoryOpening::Status::missing) {
        err << opening.message << '\n';
        writeHistory({}, commandLine, out);
        return 0;
    }
    if (!opening.store) {
        err << opening.message << '\n';
        return 1;
    }
    const WallTime since = std::chrono::system_clock::now() - commandLine.historySince;
    writeHistory(opening.store->recordsSince(since), commandLine, out);
    return out ? 0 : 1;
}

HistoryArchive::StoreOpener userHistoryOpener() {
    return [](std::string& message) -> std::unique_ptr<HistoryStore> {
        const std::optional<std::filesystem::path> file = platform::historyFile();
        if (!file) {
            message = "voltaro: neither XDG_STATE_HOME nor HOME is set; running without history";
            return nullptr;
        }
        platform::HistoryOpening opening =
            platform::SqliteHistoryStore::openForWriting(*file, std::chrono::system_clock::now());
        message = opening.message;
        return std::move(opening.store);
    };
}

}  // namespace voltaro
