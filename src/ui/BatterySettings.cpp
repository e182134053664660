#include "ui/BatterySettings.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

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
#ifdef __APPLE__
    const QUrl url(
        QStringLiteral("x-apple.systempreferences:com.apple.Battery-Settings.extension"));
    if (url.isValid()) {
        QDesktopServices::openUrl(url);
    }
#else
    const auto found = command(
        [](const QString& program) { return !QStandardPaths::findExecutable(program).isEmpty(); });
    if (found) {
        QProcess::startDetached(found->front(), found->mid(1));
    }
#endif
}

}  // namespace voltaro::ui::BatterySettings
