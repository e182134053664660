#include "core/history/HistoryDuration.h"

#include <charconv>
#include <cstdint>

namespace voltaro {

std::optional<std::chrono::seconds> parseHistoryDuration(std::string_view text) {
    if (text.size() < 2) {
        return std::nullopt;
    }
    std::int64_t secondsPerUnit = 0;
    switch (text.back()) {
        case 'm':
            secondsPerUnit = 60;
            break;
        case 'h':
            secondsPerUnit = 3600;
            break;
        case 'd':
            secondsPerUnit = 86400;
            break;
        default:
            return std::nullopt;
    }
    const std::string_view digits = text.substr(0, text.size() - 1);
    std::int64_t count = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    // from_chars takes a sign; a duration has none.
    if (error != std::errc() || end != digits.data() + digits.size() || digits.front() == '-' ||
        count <= 0) {
        return std::nullopt;
    }
    constexpr std::int64_t yearSeconds = 366 * 86400;
    if (count > yearSeconds / secondsPerUnit) {
        return std::nullopt;
    }
    return std::chrono::seconds(count * secondsPerUnit);
}

}  // namespace voltaro
