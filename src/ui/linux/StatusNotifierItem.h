#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QPoint>
#include <QString>
#include <optional>

namespace voltaro::ui {

// The tray item as Linux desktops show it: an org.kde.StatusNotifierItem at /StatusNotifierItem,
// announced to the StatusNotifierWatcher whenever one appears. Hosts know it by the unique name
// of the connection it is given, which should be one of its own: another well-known name on it
// would be taken for the item's.
// Beside the icon, the AppIndicator hosts (GNOME, Ubuntu, XFCE, MATE) show the label; KDE shows
// the tooltip.
class StatusNotifierItem : public QObject {
    Q_OBJECT

  public:
    // One icon size: ARGB32 pixels, each in network byte order.
    struct Pixmap {
        int width = 0;
        int height = 0;
        QByteArray argb;
        friend bool operator==(const Pixmap&, const Pixmap&) = default;
    };
    struct ToolTipValue {
        QString iconName;
        QList<Pixmap> iconPixmaps;
        QString title;
        QString description;
    };

    static constexpr const char* objectPath = "/StatusNotifierItem";
    static constexpr const char* watcherService = "org.kde.StatusNotifierWatcher";

    StatusNotifierItem(const QDBusConnection& bus, const QDBusObjectPath& menuPath,
                       QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    // Exports the item and registers it with the watcher; call once the item shows what it
    // should, since a host reads everything the moment it learns of the item.
    void publish();
    // How long after registering the item looks whether the watcher lists it, and registers
    // again if not.
    void setRegistrationCheckInterval(int milliseconds) { checkIntervalMs_ = milliseconds; }

    static Pixmap pixmapOf(const QImage& image);
    static void registerDBusTypes();

    // Whether the item is on the bus, once published.
    bool isExported() const { return isExported_; }
    bool isWatcherPresent() const { return isWatcherPresent_; }

    // Each tells the hosts only when the value changed.
    // The glyph as pixels, and as a themed icon name with the folder holding it (both empty
    // where there is none) for hosts that prefer names to pixels.
    void setIcon(const QList<QImage>& sizes, const QString& name, const QString& themePath);
    void setToolTip(const QString& title, const QString& description);
    void setLabel(const QString& label, const QString& guide);

    // Where the host last said the item was clicked, if it ever did.
    std::optional<QPoint> lastActivation() const { return lastActivation_; }

  signals:
    // Clicked; without a point when the host could not tell where.
    void activated(std::optional<QPoint> at);
    void contextMenuRequested(QPoint at);
    void watcherPresenceChanged(bool isPresent);

  private:
    class Adaptor;
    friend class Adaptor;

    void registerWithWatcher();
    void setWatcherPresent(bool isPresent);
    // A click the host reports; the secondary one only tells where the item is.
    void activate(int x, int y, bool opens);

  private slots:
    void checkRegistration();

  private:
    QDBusConnection bus_;
    QDBusObjectPath menuPath_;
    Adaptor* adaptor_;
    bool isExported_ = false;
    bool isWatcherPresent_ = false;
    QList<Pixmap> iconPixmap_;
    QString toolTipTitle_;
    QString toolTipDescription_;
    QString iconName_;
    QString iconThemePath_;
    std::optional<QPoint> lastActivation_;
    int checkIntervalMs_ = 2000;
    int registrationsLeft_ = 0;
    bool isPublished_ = false;
    QString label_;
    QString labelGuide_;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierItem::Pixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierItem::Pixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierItem::ToolTipValue& tip);
const QDBusArgument& operator>>(const QDBusArgument& argument,
                                StatusNotifierItem::ToolTipValue& tip);

}  // namespace voltaro::ui

Q_DECLARE_METATYPE(voltaro::ui::StatusNotifierItem::Pixmap)
Q_DECLARE_METATYPE(voltaro::ui::StatusNotifierItem::ToolTipValue)
