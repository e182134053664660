#pragma once

#include "app/CommandLine.h"
#include "app/PlatformServices.h"

namespace voltaro {

// Runs the Qt event loop with the tray item and the application's windows until the user quits.
int runDesktopFrontEnd(int& argc, char** argv, const CommandLine& commandLine,
                       const PlatformServices& platformServices);

// Whether Qt's platform opens with these arguments and this environment. Tried in a child
// process, because Qt ends the process when it cannot; the child's messages go nowhere.
bool desktopPlatformOpens(int argc, char** argv);

}  // namespace voltaro
