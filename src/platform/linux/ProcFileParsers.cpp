#include "platform/linux/ProcFileParsers.h"

#include <array>
#include <charconv>
#include <limits>

namespace voltaro::platform {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (isBlank(text.front()) || text.front() == '\n')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (isBlank(text.back()) || text.back() == '\n')) {
        text.remove_suffix(1);
    }
    return text;
}

// Calls visit(key, value) for every "key: value" line until it returns false.
template <typename Visit>
void forEachKeyValueLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        if (!visit(line.substr(0, colon), line.substr(colon + 1))) {
            return;
        }
    }
}

std::string_view firstWord(std::string_view text) {
    text = trimmed(text);
    std::size_t end = 0;
    while (end < text.size() && !isBlank(text[end])) {
        ++end;
    }
    return text.substr(0, end);
}

}  // namespace

std::optional<std::uint64_t> parseDecimal(std::string_view text) {
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<StatFields> parseStat(std::string_view text) {
    const std::size_t close = text.rfind(')');
    if (close == std::string_view::npos || text.find('(') > close) {
        return std::nullopt;
    }
    // Fields 3 (state) to 22 (start time) follow the name.
    constexpr std::size_t firstField = 3;
    constexpr std::size_t lastField = 22;
    std::array<std::string_view, lastField - firstField + 1> fields;
    std::string_view rest = text.substr(close + 1);
    for (std::string_view& field : fields) {
        if (rest.empty() || rest.front() != ' ') {
            return std::nullopt;
        }
        rest.remove_prefix(1);
        const std::size_t end = rest.find_first_of(" \n");
        field = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end);
        if (field.empty()) {
            return std::nullopt;
        }
    }
    const auto field = [&fields](std::size_t number) { return fields[number - firstField]; };

    std::int32_t parentPID = 0;
    const std::string_view ppid = field(4);
    const auto [end, error] = std::from_chars(ppid.data(), ppid.data() + ppid.size(), parentPID);
    const auto userTicks = parseDecimal(field(14));
    const auto systemTicks = parseDecimal(field(15));
    const auto startTime = parseDecimal(field(22));
    if (error != std::errc{} || end != ppid.data() + ppid.size() || parentPID < 0 || !userTicks ||
        !systemTicks || !startTime) {
        return std::nullopt;
    }
    return StatFields{parentPID, *userTicks, *systemTicks, *startTime};
}

std::optional<StatusFields> parseStatus(std::string_view text) {
    std::optional<std::uint64_t> realUID;
    std::optional<std::uint64_t> switches;
    bool isKernelThread = false;
    forEachKeyValueLine(text, [&](std::string_view key, std::string_view value) {
        if (key == "Kthread") {
            isKernelThread = trimmed(value) == "1";
        } else if (key == "Uid" && !realUID) {
            realUID = parseDecimal(firstWord(value));
            if (!realUID) {
                realUID = std::numeric_limits<std::uint64_t>::max();  // present but garbled
            }
        } else if (key == "voluntary_ctxt_switches" && !switches) {
            switches = parseDecimal(trimmed(value));
        }
        return !(realUID && switches);
    });
    if (!realUID || *realUID > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return StatusFields{static_cast<std::uint32_t>(*realUID), switches.value_or(0), isKernelThread};
}

std::optional<IoFields> parseIo(std::string_view text) {
    std::optional<std::uint64_t> readBytes;
    std::optional<std::uint64_t> writeBytes;
    forEachKeyValueLine(text, [&](std::string_view key, std::string_view value) {
        if (key == "read_bytes") {
            readBytes = parseDecimal(trimmed(value));
        } else if (key == "write_bytes") {
            writeBytes = parseDecimal(trimmed(value));
        }
        return true;
    });
    if (!readBytes || !writeBytes) {
        return std::nullopt;
    }
    return IoFields{*readBytes, *writeBytes};
}

std::optional<std::uint64_t> parseSchedstatRunTime(std::string_view text) {
    return parseDecimal(firstWord(text));
}

}  // namespace voltaro::platform
