// Whole power_supply trees: SysfsPowerSupplies::read over a directory built from the input, then
// the smart-battery dictionary and the power source type made of what it read.
//
// Input: "[NAME]" starts a supply, "attribute=value" lines below it become attribute files holding
// value and a newline ("<directory>" makes a directory instead, which cannot be read). Only the
// attributes the reader looks at are written. The tree lives under /dev/shm and is kept between
// runs; each run rewrites only what differs from the run before.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "platform/linux/SmartBatteryProperties.h"
#include "platform/linux/SysfsAttributes.h"
#include "platform/linux/SysfsPowerSupplies.h"

using namespace voltaro;
using namespace voltaro::platform;
using voltaro::fuzz::check;
namespace fs = std::filesystem;

namespace {

constexpr std::string_view directoryMarker = "<directory>";
constexpr std::size_t maximumSupplies = 6;
constexpr std::array<std::string_view, 18> knownAttributes = {
    "type",        "scope",       "present",     "status",           "capacity",
    "energy_now",  "energy_full", "charge_now",  "charge_full",      "voltage_now",
    "current_now", "power_now",   "temp",        "time_to_full_avg", "time_to_full_now",
    "online",      "voltage_max", "current_max",
};

using Supply = std::map<std::string, std::string>;  // attribute → file content
using Tree = std::map<std::string, Supply>;

bool isUsableName(std::string_view name) {
    return !name.empty() && name.size() <= 32 && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

Tree treeOf(std::string_view text) {
    Tree tree;
    Supply* supply = nullptr;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.size() >= 2 && line.front() == '[' && line.back() == ']') {
            const std::string_view name = line.substr(1, line.size() - 2);
            supply = nullptr;
            if (isUsableName(name) &&
                (tree.contains(std::string(name)) || tree.size() < maximumSupplies)) {
                supply = &tree[std::string(name)];
            }
            continue;
        }
        const std::size_t equals = line.find('=');
        if (supply == nullptr || equals == std::string_view::npos) {
            continue;
        }
        const std::string_view attribute = line.substr(0, equals);
        if (std::find(knownAttributes.begin(), knownAttributes.end(), attribute) ==
            knownAttributes.end()) {
            continue;
        }
        const std::string_view value = line.substr(equals + 1);
        (*supply)[std::string(attribute)] =
            value == directoryMarker ? std::string(directoryMarker) : std::string(value) + "\n";
    }
    return tree;
}

// The tree on disk, changed into the wanted one file by file. Only what this class wrote is
// there, so it removes entries by name rather than by listing directories.
class SysfsTree {
  public:
    SysfsTree() {
        const fs::path shm = "/dev/shm";
        root_ = (fs::is_directory(shm) ? shm : fs::temp_directory_path()) /
                ("voltaro-fuzz-" + std::to_string(::getpid()));
        fs::remove_all(root_);
        fs::create_directories(root_ / "class" / "power_supply");
        classDirectory_ = (root_ / "class" / "power_supply").string() + "/";
    }
    ~SysfsTree() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }

    const fs::path& root() const { return root_; }

    void update(const Tree& wanted) {
        for (auto supply = onDisk_.begin(); supply != onDisk_.end();) {
            if (!wanted.contains(supply->first)) {
                const std::string directory = classDirectory_ + supply->first + "/";
                for (const auto& [attribute, content] : supply->second) {
                    removeAttribute(directory + attribute, content);
                }
                check(::rmdir(directory.c_str()) == 0);
                supply = onDisk_.erase(supply);
            } else {
                ++supply;
            }
        }
        for (const auto& [name, attributes] : wanted) {
            const std::string directory = classDirectory_ + name + "/";
            auto [existing, isNew] = onDisk_.try_emplace(name);
            if (isNew) {
                check(::mkdir(directory.c_str(), 0755) == 0);
            }
            Supply& files = existing->second;
            for (auto file = files.begin(); file != files.end();) {
                const auto want = attributes.find(file->first);
                const bool kindChanges =
                    want != attributes.end() &&
                    (want->second == directoryMarker) != (file->second == directoryMarker);
                if (want == attributes.end() || kindChanges) {
                    removeAttribute(directory + file->first, file->second);
                    file = files.erase(file);
                } else {
                    ++file;
                }
            }
            for (const auto& [attribute, content] : attributes) {
                const auto file = files.find(attribute);
                if (file != files.end() && file->second == content) {
                    continue;
                }
                const std::string path = directory + attribute;
                if (content == directoryMarker) {
                    check(::mkdir(path.c_str(), 0755) == 0);
                } else {
                    writeFile(path, content);
                }
                files[attribute] = content;
            }
        }
    }

  private:
    static void writeFile(const std::string& path, const std::string& content) {
        const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        check(descriptor >= 0);
        check(::write(descriptor, content.data(), content.size()) ==
              static_cast<ssize_t>(content.size()));
        ::close(descriptor);
    }

    static void removeAttribute(const std::string& path, const std::string& content) {
        check((content == directoryMarker ? ::rmdir(path.c_str()) : ::unlink(path.c_str())) == 0);
    }

    fs::path root_;
    std::string classDirectory_;
    Tree onDisk_;
};

// What the reader should make of one attribute, worked out from the wanted tree.
std::optional<std::string> textOf(const Supply& supply, const std::string& attribute) {
    const auto file = supply.find(attribute);
    if (file == supply.end() || file->second == directoryMarker || file->second.size() > 4096) {
        return std::nullopt;
    }
    const std::string_view text = trimmedAttribute(file->second);
    return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

std::optional<std::int64_t> integerOf(const Supply& supply, const std::string& attribute,
                                      std::int64_t minimum, std::int64_t maximum) {
    const auto text = textOf(supply, attribute);
    const auto value = text ? parseIntegerAttribute(*text) : std::nullopt;
    return value && *value >= minimum && *value <= maximum ? value : std::nullopt;
}

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

struct Bounded {
    const char* attribute;
    std::optional<std::int64_t> SysfsBattery::*field;
    std::int64_t minimum;
    std::int64_t maximum;
};
constexpr std::array<Bounded, 13> batteryFields = {{
    {"energy_now", &SysfsBattery::energyNowMicrowattHours, 0, 10'000'000'000},
    {"energy_full", &SysfsBattery::energyFullMicrowattHours, 1, 10'000'000'000},
    {"charge_now", &SysfsBattery::chargeNowMicroampHours, 0, 1'000'000'000},
    {"charge_full", &SysfsBattery::chargeFullMicroampHours, 1, 1'000'000'000},
    {"voltage_now", &SysfsBattery::voltageMicrovolts, 1, 100'000'000},
    {"current_now", &SysfsBattery::currentMicroamps, -100'000'000, 100'000'000},
    {"power_now", &SysfsBattery::powerMicrowatts, -1'000'000'000, 1'000'000'000},
    {"temp", &SysfsBattery::temperatureDecidegreesCelsius, -1'000, 2'000},
    {"time_to_full_avg", &SysfsBattery::timeToFullAverageSeconds, 0, 10'000'000},
    {"time_to_full_now", &SysfsBattery::timeToFullNowSeconds, 0, 10'000'000},
    {"energy_full_design", &SysfsBattery::energyFullDesignMicrowattHours, 1, 10'000'000'000},
    {"charge_full_design", &SysfsBattery::chargeFullDesignMicroampHours, 1, 1'000'000'000},
    {"cycle_count", &SysfsBattery::cycleCount, 1, largest},
}};

void checkSupplies(const Tree& tree, const SysfsPowerSupplies& supplies) {
    auto battery = supplies.batteries.begin();
    auto adapter = supplies.adapters.begin();
    for (const auto& [name, supply] : tree) {
        const auto type = textOf(supply, "type");
        if (!type || textOf(supply, "scope") == "Device") {
            continue;
        }
        if (*type == "Battery") {
            if (integerOf(supply, "present", 0, 1) == 0) {
                continue;
            }
            check(battery != supplies.batteries.end() && battery->name == name);
            check(battery->status == textOf(supply, "status"));
            // Past 100 is full.
            const auto capacity = integerOf(supply, "capacity", 0, largest);
            check(
                battery->capacityPercent ==
                (capacity ? std::optional(std::min<std::int64_t>(*capacity, 100)) : std::nullopt));
            for (const Bounded& bounded : batteryFields) {
                check((*battery).*bounded.field ==
                      integerOf(supply, bounded.attribute, bounded.minimum, bounded.maximum));
            }
            ++battery;
        } else {
            check(adapter != supplies.adapters.end() && adapter->name == name);
            check(adapter->isOnline == (integerOf(supply, "online", 0, largest).value_or(0) > 0));
            check(adapter->voltageMaxMicrovolts ==
                  integerOf(supply, "voltage_max", 1, 100'000'000));
            check(adapter->currentMaxMicroamps == integerOf(supply, "current_max", 1, 100'000'000));
            ++adapter;
        }
    }
    check(battery == supplies.batteries.end() && adapter == supplies.adapters.end());
}

template <typename T>
const T* valueOf(const PropertyDictionary& dictionary, std::string_view key) {
    const PropertyValue* value = dictionary.find(key);
    if (value == nullptr) {
        return nullptr;
    }
    const T* typed = value->getIf<T>();
    check(typed != nullptr);
    return typed;
}

void checkProperties(const SysfsPowerSupplies& supplies) {
    const bool anyOnline =
        std::any_of(supplies.adapters.begin(), supplies.adapters.end(),
                    [](const SysfsAdapter& adapter) { return adapter.isOnline; });
    const auto source = providingPowerSourceType(supplies);
    if (anyOnline) {
        check(source == "AC Power");
    } else {
        check(source == (supplies.batteries.empty() ? std::nullopt
                                                    : std::optional<std::string>("Battery Power")));
    }

    const auto properties = smartBatteryProperties(supplies);
    check(properties.has_value() == !supplies.batteries.empty());
    if (!properties) {
        return;
    }
    constexpr std::array<std::string_view, 18> keys = {
        "CurrentCapacity",    "IsCharging",     "ExternalConnected",   "Voltage",
        "InstantAmperage",    "Temperature",    "AvgTimeToFull",       "InstantTimeToFull",
        "PowerTelemetryData", "AdapterDetails", "CycleCount",          "DesignEnergy",
        "FullChargeEnergy",   "DesignCapacity", "AppleRawMaxCapacity", "Manufacturer",
        "DeviceName",         "Technology",
    };
    for (const auto& entry : properties->entries()) {
        check(std::find(keys.begin(), keys.end(), entry.key) != keys.end());
    }
    if (const auto* level = valueOf<std::int64_t>(*properties, "CurrentCapacity")) {
        check(*level >= 0 && *level <= 100);
    }
    const bool anyCharging =
        std::any_of(supplies.batteries.begin(), supplies.batteries.end(),
                    [](const SysfsBattery& battery) { return battery.status == "Charging"; });
    if (const auto* charging = valueOf<bool>(*properties, "IsCharging")) {
        check(*charging == anyCharging);
    } else {
        check(std::none_of(supplies.batteries.begin(), supplies.batteries.end(),
                           [](const SysfsBattery& battery) { return battery.status; }));
    }
    const auto* connected = valueOf<bool>(*properties, "ExternalConnected");
    check(connected != nullptr && *connected == anyOnline);
    if (const auto* millivolts = valueOf<double>(*properties, "Voltage")) {
        check(std::isfinite(*millivolts) && *millivolts > 0 && *millivolts <= 100'000);
    }
    valueOf<std::int64_t>(*properties, "InstantAmperage");
    if (const auto* decikelvin = valueOf<double>(*properties, "Temperature")) {
        check(*decikelvin >= 2731.5 - 1'000 && *decikelvin <= 2731.5 + 2'000);
    }
    for (const char* key : {"AvgTimeToFull", "InstantTimeToFull"}) {
        if (const auto* minutes = valueOf<std::int64_t>(*properties, key)) {
            check(*minutes >= 0 && *minutes <= 10'000'000);
        }
    }
    if (const auto* telemetry = valueOf<PropertyDictionary>(*properties, "PowerTelemetryData")) {
        check(telemetry->size() == 1 && valueOf<std::int64_t>(*telemetry, "BatteryPower"));
    }
    // Health: whole positive figures (sums in thousandths of the kernel's unit), trimmed texts.
    for (const char* key : {"CycleCount", "DesignEnergy", "FullChargeEnergy", "DesignCapacity",
                            "AppleRawMaxCapacity"}) {
        if (const auto* figure = valueOf<std::int64_t>(*properties, key)) {
            check(*figure >= 0);
        }
    }
    for (const char* key : {"Manufacturer", "DeviceName", "Technology"}) {
        if (const auto* text = valueOf<std::string>(*properties, key)) {
            check(!text->empty() && text->front() != ' ' && text->back() != ' ');
        }
    }
    if (const auto* details = valueOf<PropertyDictionary>(*properties, "AdapterDetails")) {
        const auto* watts = valueOf<double>(*details, "Watts");
        check(details->size() == 1 && watts && std::isfinite(*watts) && *watts > 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SysfsTree disk;
    const Tree tree = treeOf(std::string_view(reinterpret_cast<const char*>(data), size));
    disk.update(tree);
    const SysfsPowerSupplies supplies = SysfsPowerSupplies::read(disk.root());
    checkSupplies(tree, supplies);
    checkProperties(supplies);
    return 0;
}
