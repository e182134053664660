#pragma once

#include "app/CommandLine.h"
#include "app/PlatformServices.h"

namespace voltaro {

// Runs the Qt event loop with the application's windows until the user quits.
int runDesktopFrontEnd(int& argc, char** argv, const CommandLine& commandLine,
                       const PlatformServices& platformServices);

}  // namespace voltaro
