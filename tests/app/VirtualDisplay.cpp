#include "VirtualDisplay.h"

namespace voltaro::testing {

VirtualDisplay::VirtualDisplay()
    : server_(
          {.arguments = {"/bin/sh", "-c",
                         "exec Xvfb -displayfd 3 -nolisten tcp -screen 0 " + std::to_string(width) +
                             "x" + std::to_string(height) + "x24 2>/dev/null"},
           .pipedDescriptor = 3}) {
    const std::optional<std::string> number = server_.readLine(std::chrono::seconds(20));
    if (number && !number->empty()) {
        name_ = ":" + *number;
    }
}

std::string VirtualDisplay::run(const std::string& command) const {
    return outputOf(command + " -display " + name_ + " 2>&1");
}

bool installed(const std::string& program) {
    return !outputOf("command -v " + program + " 2>/dev/null").empty();
}

}  // namespace voltaro::testing
