#include "ui/application/DesktopShell.h"
#include "ui/macos/ActivationPolicy.h"
#include "ui/macos/MenuBarItem.h"
#include "ui/macos/RgbaBitmapImage.h"
#include "ui/macos/SystemSettingsUrls.h"
#include "ui/macos/bindings/AppKitStatusBarButton.h"
#include "ui/macos/bindings/ApplicationActivation.h"
#include "ui/macos/bindings/Workspace.h"

#include <QPixmap>

namespace voltaro::ui {

namespace DesktopShell {

std::unique_ptr<StatusItem> makeStatusItem(Observable<BatterySnapshot>& snapshot,
                                           DisplayPreferencesStore& preferences) {
    return std::make_unique<MenuBarItem>(snapshot, preferences,
                                         std::make_unique<AppKitStatusBarButton>());
}

SessionStart claimSession(QObject&, std::function<void()>) {
    // Launch Services starts an application once and brings that one forward.
    return SessionStart::first;
}

void presentApplication(bool withPreviewWindow) {
    applyActivationPolicy(activationPolicy(withPreviewWindow));
}

std::optional<QIcon> iconForPath(const QString& path) {
    QIcon icon;
    // The rows draw icons at 24 points; these cover ordinary and Retina screens.
    for (const int side : {32, 64}) {
        if (const auto bitmap = Workspace::iconForPath(path.toStdString(), side)) {
            icon.addPixmap(QPixmap::fromImage(RgbaBitmapImage::toImage(*bitmap)));
        }
    }
    if (icon.isNull()) {
        return std::nullopt;
    }
    return icon;
}

void openBatterySettings(CommandRunner&) {
    // System Settings opens its battery pane by URL.
    Workspace::openUrl(batterySettingsUrl);
}

}  // namespace DesktopShell

}  // namespace voltaro::ui
