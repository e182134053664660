#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace voltaro {

// "90m", "24h", "7d": a positive whole number and a unit, at most a year; nothing else.
std::optional<std::chrono::seconds> parseHistoryDuration(std::string_view text);

}  // namespace voltaro
