#include "ui/linux/ColorSchemePortal.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

namespace voltaro::ui {
namespace {

constexpr char service[] = "org.freedesktop.portal.Desktop";
constexpr char path[] = "/org/freedesktop/portal/desktop";
constexpr char interface[] = "org.freedesktop.portal.Settings";
constexpr char group[] = "org.freedesktop.appearance";
constexpr char key[] = "color-scheme";

// Older portals wrap the value in a second variant.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

}  // namespace

ColorSchemePortal::ColorSchemePortal(const QDBusConnection& bus, QObject* parent)
    : QObject(parent) {
    if (!bus.isConnected()) {
        return;
    }
    // Taken as a message: a slot with a QDBusVariant parameter is refused while QtDBus has not
    // yet registered that type, which at start it may not have.
    QDBusConnection(bus).connect(QString::fromLatin1(service), QString::fromLatin1(path),
                                 QString::fromLatin1(interface), QStringLiteral("SettingChanged"),
                                 this, SLOT(settingChanged(QDBusMessage)));
    auto read =
        QDBusMessage::createMethodCall(QString::fromLatin1(service), QString::fromLatin1(path),
                                       QString::fromLatin1(interface), QStringLiteral("Read"));
    read << QString::fromLatin1(group) << QString::fromLatin1(key);
    auto* pending = new QDBusPendingCallWatcher(QDBusConnection(bus).asyncCall(read), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* p) {
        p->deleteLater();
        if (p->reply().type() == QDBusMessage::ReplyMessage) {
            take(p->reply().arguments().value(0));
        }
    });
}

void ColorSchemePortal::settingChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (arguments.value(0).toString() == QLatin1String(group) &&
        arguments.value(1).toString() == QLatin1String(key)) {
        take(arguments.value(2));
    }
}

void ColorSchemePortal::take(const QVariant& value) {
    bool ok = false;
    const uint scheme = unwrapped(value).toUInt(&ok);
    // 1 dark, 2 light, 0 or anything else no preference.
    std::optional<bool> dark;
    if (ok && (scheme == 1 || scheme == 2)) {
        dark = scheme == 1;
    }
    if (dark != prefersDark_) {
        prefersDark_ = dark;
        emit changed();
    }
}

}  // namespace voltaro::ui
