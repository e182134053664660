#pragma once

#include <QColor>
#include <QDBusConnection>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPainterPath>
#include <QPoint>
#include <QRect>
#include <memory>
#include <optional>

#include "core/presentation/MenuBarLabelTexts.h"
#include "core/runtime/Published.h"
#include "core/telemetry/BatterySnapshot.h"
#include "ui/application/StatusItem.h"
#include "ui/linux/TrayIconFolder.h"

class QMenu;
class QSystemTrayIcon;
class QTimer;

namespace voltaro::ui {

class ColorSchemePortal;
class DBusMenu;
class DisplayPreferencesStore;
class StatusNotifierItem;

// The application's presence in the panel: the battery glyph with the status text, kept up to
// date with the snapshot and the label choices. Shown through the StatusNotifier hosts when a
// watcher runs on the bus, otherwise as an XEmbed tray icon: the glyph, the text in its tooltip.
class TrayItem final : public StatusItem {
    Q_OBJECT

  public:
    // The snapshot and the store outlive the item; the bus connection should be the item's own
    // (see StatusNotifierItem).
    TrayItem(Observable<BatterySnapshot>& snapshot, DisplayPreferencesStore& preferences,
             const QDBusConnection& bus, QObject* parent = nullptr);
    ~TrayItem() override;

    // The colour the glyph's pixels take, for panels that show pixels: light on a dark desktop,
    // dark on a light one, by the portal's preference, else by the application palette.
    QColor textColor() const;

    // Through a StatusNotifierWatcher rather than an XEmbed tray.
    bool usesStatusNotifier() const;
    // Shown by a StatusNotifierWatcher or an XEmbed tray; neither may run yet at login.
    bool isInPanel() const override { return usesStatusNotifier() || fallback_ != nullptr; }
    std::optional<QRect> lastKnownAnchor() const override;

    // The glyph drawn into each square size hosts draw icons at.
    static QList<QImage> iconSizes(const BatterySnapshot& snapshot, const QColor& color);

  private:
    MenuBarLabelChoices currentChoices() const;
    // Re-renders what the hosts show, if the snapshot or the choices changed or force is set.
    void update(bool force);
    void updateIcon(const BatterySnapshot& snapshot, bool force);
    void updateFallbackIcon();
    // Shows the item through the watcher when one runs, else through an XEmbed tray if any.
    void chooseSurface();
    void placeInPanel();
    std::optional<QRect> fallbackAnchor() const;

    Observable<BatterySnapshot>& snapshot_;
    DisplayPreferencesStore& preferences_;
    ColorSchemePortal* colorScheme_;
    std::optional<TrayIconFolder> iconFolder_;
    QString shownLook_;
    QPainterPath shownOutline_;
    std::optional<BatterySnapshot> shownSnapshot_;
    MenuBarLabelChoices shownChoices_;
    DBusMenu* dbusMenu_;
    StatusNotifierItem* statusNotifierItem_;
    std::unique_ptr<QMenu> contextMenu_;
    QSystemTrayIcon* fallback_ = nullptr;
    // Looks now and then for a panel while none shows the item.
    QTimer* panelProbe_;
    bool toldInPanel_ = false;
};

}  // namespace voltaro::ui
