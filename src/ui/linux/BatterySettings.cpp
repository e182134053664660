#include "ui/BatterySettings.h"
#include "ui/linux/BatterySettingsCommand.h"

#include <QProcess>
#include <QStandardPaths>

namespace voltaro::ui::BatterySettings {

std::optional<QStringList> command(const std::function<bool(const QString& program)>& isInstalled) {
    const QStringList candidates[] = {
        {"gnome-control-center", "power"},
        {"systemsettings", "kcm_powerdevilprofilesconfig"},
        {"xfce4-power-manager-settings"},
    };
    for (const QStringList& candidate : candidates) {
        if (isInstalled(candidate.front())) {
            return candidate;
        }
    }
    return std::nullopt;
}

void open() {
    const auto found = command(
        [](const QString& program) { return !QStandardPaths::findExecutable(program).isEmpty(); });
    if (found) {
        QProcess::startDetached(found->front(), found->mid(1));
    }
}

}  // namespace voltaro::ui::BatterySettings
