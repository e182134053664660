#include "ui/linux/TrayItem.h"

#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QPalette>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <chrono>

#include "ui/application/DisplayPreferencesStore.h"
#include "ui/application/Observation.h"
#include "ui/application/Translation.h"
#include "ui/images/MenuBarBatteryImage.h"
#include "ui/images/TrayGlyphImage.h"
#include "ui/linux/ColorSchemePortal.h"
#include "ui/linux/DBusMenu.h"
#include "ui/linux/StatusNotifierItem.h"

namespace voltaro::ui {
namespace {

bool sameChoices(const MenuBarLabelChoices& a, const MenuBarLabelChoices& b) {
    return a.showsPercentage == b.showsPercentage && a.showsPowerUsage == b.showsPowerUsage &&
           a.highlightsBatteryDrain == b.highlightsBatteryDrain;
}

// A menu entry's text with its ampersands shown rather than taken as shortcut marks.
QString menuText(const char* english) {
    return tr(english).replace(QLatin1Char('&'), "&&");
}

}  // namespace

TrayItem::TrayItem(Observable<BatterySnapshot>& snapshot, DisplayPreferencesStore& preferences,
                   const QDBusConnection& bus, QObject* parent)
    : StatusItem(parent),
      snapshot_(snapshot),
      preferences_(preferences),
      colorScheme_(new ColorSchemePortal(bus, this)),
      iconFolder_(TrayIconFolder::inRuntimeDirectory()),
      // The menu is on the bus before the item that names it.
      dbusMenu_(new DBusMenu(bus, this)),
      statusNotifierItem_(new StatusNotifierItem(
          bus, QDBusObjectPath(QString::fromLatin1(DBusMenu::objectPath)), this)),
      contextMenu_(std::make_unique<QMenu>()),
      panelProbe_(new QTimer(this)) {
    connect(dbusMenu_, &DBusMenu::openDashboardRequested, this, &TrayItem::openDashboardRequested);
    connect(dbusMenu_, &DBusMenu::openSettingsRequested, this, &TrayItem::openSettingsRequested);
    connect(dbusMenu_, &DBusMenu::quitRequested, this, &TrayItem::quitRequested);

    contextMenu_->addAction(menuText("Open Dashboard"), this, &TrayItem::openDashboardRequested);
    contextMenu_->addAction(menuText("Settings…"), this, &TrayItem::openSettingsRequested);
    contextMenu_->addAction(menuText("Quit Voltaro"), this, &TrayItem::quitRequested);

    connect(statusNotifierItem_, &StatusNotifierItem::activated, this,
            [this](std::optional<QPoint> at) {
                emit activated(at ? std::optional<QRect>(QRect(*at, QSize(0, 0))) : std::nullopt);
            });
    // Hosts with a menu of their own show the D-Bus menu; others ask for ours.
    connect(statusNotifierItem_, &StatusNotifierItem::contextMenuRequested, this,
            [this](QPoint at) { contextMenu_->popup(at); });
    connect(statusNotifierItem_, &StatusNotifierItem::watcherPresenceChanged, this,
            &TrayItem::chooseSurface);

    observe(this, snapshot_, [this](const BatterySnapshot&) { update(false); });
    // The store also tells of the temperature unit, which the label does not show.
    connect(&preferences_, &DisplayPreferencesStore::changed, this, [this] { update(false); });
    connect(colorScheme_, &ColorSchemePortal::changed, this, [this] { update(true); });
    // An XEmbed tray announces itself to nobody: look for one while no panel shows the item.
    panelProbe_->setInterval(std::chrono::seconds(3));
    connect(panelProbe_, &QTimer::timeout, this, &TrayItem::chooseSurface);

    update(true);
    // Only now that the item shows the battery may a host learn of it.
    statusNotifierItem_->publish();
    chooseSurface();
}

TrayItem::~TrayItem() = default;

QColor TrayItem::textColor() const {
    if (const auto dark = colorScheme_->prefersDark()) {
        return *dark ? QColor(Qt::white) : QColor(Qt::black);
    }
    return QGuiApplication::palette().color(QPalette::WindowText);
}

std::optional<QRect> TrayItem::lastKnownAnchor() const {
    if (const auto clicked = statusNotifierItem_->lastActivation()) {
        return QRect(*clicked, QSize(0, 0));
    }
    return fallbackAnchor();
}

bool TrayItem::usesStatusNotifier() const {
    return statusNotifierItem_->isExported() && statusNotifierItem_->isWatcherPresent();
}

QList<QImage> TrayItem::iconSizes(const BatterySnapshot& snapshot, const QColor& color) {
    return TrayGlyphImage::squares(MenuBarBatteryImage::outline(snapshot), color);
}

MenuBarLabelChoices TrayItem::currentChoices() const {
    return {preferences_.value(showsPercentageInMenuBar),
            preferences_.value(showsPowerUsageInMenuBar),
            preferences_.value(highlightsBatteryDrainInMenuBar)};
}

void TrayItem::update(bool force) {
    const BatterySnapshot& snapshot = snapshot_.get();
    const MenuBarLabelChoices choices = currentChoices();
    if (!force && shownSnapshot_ == snapshot && sameChoices(shownChoices_, choices)) {
        return;
    }
    shownSnapshot_ = snapshot;
    shownChoices_ = choices;

    // Each setter tells the hosts only of what really changed: a new reading time alone
    // leaves the label, the icon and the tooltip as they were.
    updateIcon(snapshot, force);
    statusNotifierItem_->setToolTip(QString::fromStdString(accessibilityText(snapshot)),
                                    QString::fromStdString(toolTipDescription(snapshot)));
    statusNotifierItem_->setLabel(
        QString::fromStdString(statusText(snapshot, choices).value_or("")),
        QString::fromStdString(reservedStatusText(choices)));
    updateFallbackIcon();
}

void TrayItem::updateIcon(const BatterySnapshot& snapshot, bool force) {
    const QString look = TrayGlyphImage::iconName(snapshot);
    if (!force && look == shownLook_) {
        return;
    }
    shownLook_ = look;
    shownOutline_ = MenuBarBatteryImage::outline(snapshot);
    QString name;
    QString themePath;
    if (iconFolder_ &&
        iconFolder_->write(look, TrayGlyphImage::symbolicSvg(shownOutline_, textColor()))) {
        name = look;
        themePath = iconFolder_->themePath();
    }
    statusNotifierItem_->setIcon(TrayGlyphImage::squares(shownOutline_, textColor()), name,
                                 themePath);
}

void TrayItem::updateFallbackIcon() {
    if (!fallback_ || !shownSnapshot_) {
        return;
    }
    // The tray's own icon size where it tells it, beside the usual ones.
    QList<int> sides(TrayGlyphImage::sides.begin(), TrayGlyphImage::sides.end());
    if (fallback_->geometry().isValid()) {
        sides.append(fallback_->geometry().height());
    }
    QIcon icon;
    for (const int side : sides) {
        icon.addPixmap(
            QPixmap::fromImage(TrayGlyphImage::square(shownOutline_, side, textColor())));
    }
    fallback_->setIcon(icon);
    fallback_->setToolTip(QString::fromStdString(accessibilityText(*shownSnapshot_) + "\n" +
                                                 toolTipDescription(*shownSnapshot_)));
}

void TrayItem::chooseSurface() {
    placeInPanel();
    if (isInPanel()) {
        panelProbe_->stop();
    } else if (!panelProbe_->isActive()) {
        panelProbe_->start();
    }
    // The watcher's presence has already changed when this runs: compare with what was told.
    if (isInPanel() != toldInPanel_) {
        toldInPanel_ = isInPanel();
        emit panelPresenceChanged(toldInPanel_);
    }
}

void TrayItem::placeInPanel() {
    if (usesStatusNotifier()) {
        delete fallback_;
        fallback_ = nullptr;
        return;
    }
    if (fallback_ || !QSystemTrayIcon::isSystemTrayAvailable()) {
        return;
    }
    fallback_ = new QSystemTrayIcon(this);
    fallback_->setContextMenu(contextMenu_.get());
    connect(fallback_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    emit activated(fallbackAnchor());
                }
            });
    updateFallbackIcon();
    fallback_->show();
    // Embedded, the icon has the tray's size: drawn again for it.
    QTimer::singleShot(std::chrono::milliseconds(500), this, &TrayItem::updateFallbackIcon);
}

std::optional<QRect> TrayItem::fallbackAnchor() const {
    if (!fallback_ || !fallback_->geometry().isValid()) {
        return std::nullopt;
    }
    return fallback_->geometry();
}

}  // namespace voltaro::ui
