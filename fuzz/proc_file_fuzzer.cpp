// The per-process files of /proc: stat, status, io and schedstat, each given the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "platform/linux/ProcFileParsers.h"

using namespace voltaro::platform;
using voltaro::fuzz::check;

namespace {

bool isDigits(std::string_view text) {
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return false;
        }
    }
    return !text.empty();
}

std::string statLine(const StatFields& fields) {
    std::string line = "42 (name) S " + std::to_string(fields.parentPID);
    for (int field = 5; field <= 22; ++field) {
        line += ' ';
        switch (field) {
            case 14:
                line += std::to_string(fields.userTicks);
                break;
            case 15:
                line += std::to_string(fields.systemTicks);
                break;
            case 22:
                line += std::to_string(fields.startTimeTicks);
                break;
            default:
                line += "-1";
        }
    }
    return line + " 0 0\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    if (const auto decimal = parseDecimal(text)) {
        check(isDigits(text));
        const std::string canonical = std::to_string(*decimal);
        check(text.size() >= canonical.size() &&
              text.substr(text.size() - canonical.size()) == canonical);
    }

    const auto stat = parseStat(text);
    if (stat) {
        check(stat->parentPID >= 0);
        check(parseStat(statLine(*stat)) == stat);
    }
    // Whatever the name holds, only what follows its last ')' counts.
    if (const std::size_t close = text.rfind(')');
        close != std::string_view::npos && text.find('(') < close) {
        check(parseStat("7 (a) b)" + std::string(text.substr(close + 1))) == stat);
    }

    const auto status = parseStatus(text);
    if (status) {
        // The first Uid line counts; later lines change nothing.
        check(parseStatus(std::string(text) + "\nUid:\t4242\t4242\t4242\t4242\n") == status);
    }

    const auto io = parseIo(text);
    if (io) {
        check(parseIo(std::string(text) + "\nrchar: 12\n") == io);
    }

    if (const auto runTime = parseSchedstatRunTime(text)) {
        check(parseSchedstatRunTime(std::to_string(*runTime) + " 0 0\n") == runTime);
    }
    return 0;
}
