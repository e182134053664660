#include "VirtualDisplay.h"

namespace voltaro::testing {

VirtualDisplay::VirtualDisplay()
    : server_({"/bin/sh", "-c",
               "exec Xvfb -displayfd 3 -nolisten tcp -screen 0 " + std::to_string(width) + "x" +
                   std::to_string(height) + "x24 2>/dev/null"},
              {}, 3) {
    std::string number;
    if (server_.readLine(number, 20000) && !number.empty()) {
        name_ = ":" + number;
    }
}

std::string VirtualDisplay::run(const std::string& command) const {
    return outputOf(command + " -display " + name_ + " 2>&1");
}

bool installed(const std::string& program) {
    return !outputOf("command -v " + program + " 2>/dev/null").empty();
}

}  // namespace voltaro::testing
