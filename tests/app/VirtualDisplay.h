#pragma once

#include <string>

#include "ChildProcess.h"

namespace voltaro::testing {

// A private X server on a display number it picks itself, so parallel tests never collide.
class VirtualDisplay {
  public:
    static constexpr int width = 1280;
    static constexpr int height = 800;

    VirtualDisplay();
    // ":N", or empty when the server did not start.
    const std::string& name() const { return name_; }
    // What an X client of the display prints, stdout and stderr together.
    std::string run(const std::string& command) const;

  private:
    ChildProcess server_;
    std::string name_;
};

// Whether the program is on the PATH.
bool installed(const std::string& program);

}  // namespace voltaro::testing
