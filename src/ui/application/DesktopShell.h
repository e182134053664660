#pragma once

#include <QIcon>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "core/controls/CommandRunner.h"
#include "core/runtime/Published.h"
#include "core/telemetry/BatterySnapshot.h"
#include "ui/application/StatusItem.h"

namespace voltaro::ui {

class DisplayPreferencesStore;

// What differs between the desktops the windows run on. Each OS folder (linux/, macos/) defines
// these; CMake builds exactly one of them.
namespace DesktopShell {

// The item showing the battery in the panel (Linux) or the menu bar (macOS). The snapshot and
// the store outlive it.
std::unique_ptr<StatusItem> makeStatusItem(Observable<BatterySnapshot>& snapshot,
                                           DisplayPreferencesStore& preferences);

// One instance per user session: either this process goes on as the session's instance, and
// `activate` runs whenever a later start asks it to come forward, or the running instance came
// forward in its place and this process leaves. Call once the QApplication exists; what keeps the
// claim lives as long as the owner.
enum class SessionStart { first, handedOver, unanswered };
SessionStart claimSession(QObject& owner, std::function<void()> activate);

// Only the item in the menu bar, or, with the preview window, also a Dock icon and menu like an
// ordinary application. Call once the QApplication exists.
void presentApplication(bool withPreviewWindow);

// The icon the desktop shows for a file or bundle path; nothing where the desktop has none.
std::optional<QIcon> iconForPath(const QString& path);

// Opens the system's battery settings, starting a settings program through the runner where
// that is how the desktop opens them; does nothing where there are none.
void openBatterySettings(CommandRunner& runner);

}  // namespace DesktopShell
}  // namespace voltaro::ui
