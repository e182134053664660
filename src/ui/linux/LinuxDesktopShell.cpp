#include "ui/application/DesktopShell.h"

#include <QGuiApplication>

#include "ui/linux/SingleInstance.h"
#include "ui/linux/TrayItem.h"

namespace voltaro::ui::DesktopShell {

std::unique_ptr<StatusItem> makeStatusItem(Observable<BatterySnapshot>& snapshot,
                                           DisplayPreferencesStore& preferences) {
    return std::make_unique<TrayItem>(
        snapshot, preferences,
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("voltaro-tray")));
}

SessionStart claimSession(QObject& owner, std::function<void()> activate) {
    auto* instance = new SingleInstance(QDBusConnection::sessionBus(),
                                        QGuiApplication::desktopFileName(), &owner);
    QObject::connect(instance, &SingleInstance::activationRequested, &owner, std::move(activate));
    switch (instance->claim()) {
        case SingleInstance::Claim::first:
            return SessionStart::first;
        case SingleInstance::Claim::handedOver:
            return SessionStart::handedOver;
        case SingleInstance::Claim::unanswered:
            break;
    }
    return SessionStart::unanswered;
}

void presentApplication(bool) {
    // A Linux desktop lists windows, not applications: nothing to choose.
}

std::optional<QIcon> iconForPath(const QString&) {
    // Applications here name their icons through desktop entries.
    return std::nullopt;
}

}  // namespace voltaro::ui::DesktopShell
