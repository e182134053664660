#include "ui/linux/StatusNotifierItem.h"

#include <algorithm>

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>
#include <QtEndian>

namespace voltaro::ui {
namespace {

// Registrations per appearance of a watcher: enough to outlast a dropped one, never endless.
constexpr int maximumRegistrations = 3;

}  // namespace

// What the hosts see: the item's D-Bus interface, kept apart from the owner's signals.
class StatusNotifierItem::Adaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(QList<voltaro::ui::StatusNotifierItem::Pixmap> IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(QList<voltaro::ui::StatusNotifierItem::Pixmap> OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ none)
    Q_PROPERTY(QList<voltaro::ui::StatusNotifierItem::Pixmap> AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(voltaro::ui::StatusNotifierItem::ToolTipValue ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)
    Q_PROPERTY(uint XAyatanaOrderingIndex READ orderingIndex)

  public:
    explicit Adaptor(StatusNotifierItem* item) : QDBusAbstractAdaptor(item), item_(item) {}

    QString category() const { return QStringLiteral("Hardware"); }
    QString id() const { return QStringLiteral("voltaro"); }
    QString title() const { return QStringLiteral("Voltaro"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString iconName() const { return item_->iconName_; }
    QString iconThemePath() const { return item_->iconThemePath_; }
    QList<Pixmap> iconPixmap() const { return item_->iconPixmap_; }
    QString none() const { return {}; }
    QList<Pixmap> noPixmaps() const { return {}; }
    ToolTipValue toolTip() const {
        return {item_->iconName_, {}, item_->toolTipTitle_, item_->toolTipDescription_};
    }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return item_->menuPath_; }
    QString label() const { return item_->label_; }
    QString labelGuide() const { return item_->labelGuide_; }
    uint orderingIndex() const { return 0; }

  public slots:
    void Activate(int x, int y) { item_->activate(x, y, true); }
    void SecondaryActivate(int x, int y) { item_->activate(x, y, false); }
    void ContextMenu(int x, int y) { emit item_->contextMenuRequested(QPoint(x, y)); }
    void Scroll(int, const QString&) {}

  signals:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    void NewIconThemePath(const QString& path);
    void XAyatanaNewLabel(const QString& label, const QString& guide);

  private:
    StatusNotifierItem* item_;
};

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, const QDBusObjectPath& menuPath,
                                       QObject* parent)
    : QObject(parent), bus_(bus), menuPath_(menuPath), adaptor_(new Adaptor(this)) {
    registerDBusTypes();
}

void StatusNotifierItem::publish() {
    if (isPublished_ || !bus_.isConnected()) {
        return;
    }
    isPublished_ = true;
    isExported_ =
        bus_.registerObject(QString::fromLatin1(objectPath), this, QDBusConnection::ExportAdaptors);

    // A watcher that starts later, or restarts with the panel, learns of the item again.
    auto* watcher = new QDBusServiceWatcher(QString::fromLatin1(watcherService), bus_,
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                setWatcherPresent(!newOwner.isEmpty());
                if (!newOwner.isEmpty()) {
                    registrationsLeft_ = maximumRegistrations;
                    registerWithWatcher();
                }
            });
    // A host that comes back may find the watcher without the item.
    bus_.connect(QString::fromLatin1(watcherService), QStringLiteral("/StatusNotifierWatcher"),
                 QString::fromLatin1(watcherService),
                 QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(checkRegistration()));
    if (bus_.interface() &&
        bus_.interface()->isServiceRegistered(QString::fromLatin1(watcherService))) {
        isWatcherPresent_ = true;
        registrationsLeft_ = maximumRegistrations;
        registerWithWatcher();
    }
}

StatusNotifierItem::~StatusNotifierItem() {
    if (isExported_) {
        bus_.unregisterObject(QString::fromLatin1(objectPath));
    }
}

StatusNotifierItem::Pixmap StatusNotifierItem::pixmapOf(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    Pixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.argb.resize(static_cast<qsizetype>(argb.width()) * argb.height() * 4);
    auto* out = reinterpret_cast<uchar*>(pixmap.argb.data());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x, out += 4) {
            qToBigEndian<quint32>(line[x], out);
        }
    }
    return pixmap;
}

void StatusNotifierItem::registerDBusTypes() {
    static const bool registered = [] {
        qDBusRegisterMetaType<Pixmap>();
        qDBusRegisterMetaType<QList<Pixmap>>();
        qDBusRegisterMetaType<ToolTipValue>();
        return true;
    }();
    Q_UNUSED(registered);
}

void StatusNotifierItem::setIcon(const QList<QImage>& sizes, const QString& name,
                                 const QString& themePath) {
    QList<Pixmap> pixmaps;
    for (const QImage& image : sizes) {
        pixmaps.append(pixmapOf(image));
    }
    if (themePath != iconThemePath_) {
        iconThemePath_ = themePath;
        emit adaptor_->NewIconThemePath(iconThemePath_);
    }
    if (pixmaps == iconPixmap_ && name == iconName_) {
        return;
    }
    iconPixmap_ = pixmaps;
    iconName_ = name;
    emit adaptor_->NewIcon();
}

void StatusNotifierItem::setToolTip(const QString& title, const QString& description) {
    if (title == toolTipTitle_ && description == toolTipDescription_) {
        return;
    }
    toolTipTitle_ = title;
    toolTipDescription_ = description;
    emit adaptor_->NewToolTip();
}

void StatusNotifierItem::setLabel(const QString& label, const QString& guide) {
    if (label == label_ && guide == labelGuide_) {
        return;
    }
    label_ = label;
    labelGuide_ = guide;
    emit adaptor_->XAyatanaNewLabel(label_, labelGuide_);
}

void StatusNotifierItem::registerWithWatcher() {
    if (!isExported_ || registrationsLeft_ <= 0) {
        return;
    }
    --registrationsLeft_;
    auto call = QDBusMessage::createMethodCall(
        QString::fromLatin1(watcherService), QStringLiteral("/StatusNotifierWatcher"),
        QString::fromLatin1(watcherService), QStringLiteral("RegisterStatusNotifierItem"));
    // By path: the watcher takes the caller's unique name, so there is no bus name of ours for
    // a host to watch. GNOME's extension watches such a name and, when the name's first
    // "appeared" reaches it after it read the item's properties, clears them and drops the item.
    call << QString::fromLatin1(objectPath);
    // Never blocks: a watcher that does not answer must not hang the application.
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* p) {
        p->deleteLater();
        // Some watchers accept the call and still drop the item, so look a little later.
        QTimer::singleShot(checkIntervalMs_, this, &StatusNotifierItem::checkRegistration);
    });
}

void StatusNotifierItem::checkRegistration() {
    auto call = QDBusMessage::createMethodCall(
        QString::fromLatin1(watcherService), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << QString::fromLatin1(watcherService) << QStringLiteral("RegisteredStatusNotifierItems");
    auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* p) {
        p->deleteLater();
        const QDBusMessage reply = p->reply();
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return;  // a watcher that cannot tell, or none any more
        }
        const QStringList items =
            qdbus_cast<QStringList>(reply.arguments().value(0).value<QDBusVariant>().variant());
        // Watchers list the connection alone or joined to the path by '/' (KDE) or '@' (GNOME).
        const QString connection = bus_.baseService();
        const bool listed =
            std::any_of(items.begin(), items.end(), [&connection](const QString& item) {
                return item == connection || item.startsWith(connection + '/') ||
                       item.startsWith(connection + '@');
            });
        if (!listed) {
            registerWithWatcher();
        }
    });
}

void StatusNotifierItem::activate(int x, int y, bool opens) {
    // Hosts that cannot know the pointer's position (Wayland) send the origin.
    const bool known = x != 0 || y != 0;
    if (known) {
        lastActivation_ = QPoint(x, y);
    }
    if (opens) {
        emit activated(known ? std::optional<QPoint>(QPoint(x, y)) : std::nullopt);
    }
}

void StatusNotifierItem::setWatcherPresent(bool isPresent) {
    if (isPresent == isWatcherPresent_) {
        return;
    }
    isWatcherPresent_ = isPresent;
    emit watcherPresenceChanged(isPresent);
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierItem::Pixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierItem::Pixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierItem::ToolTipValue& tip) {
    argument.beginStructure();
    argument << tip.iconName << tip.iconPixmaps << tip.title << tip.description;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument,
                                StatusNotifierItem::ToolTipValue& tip) {
    argument.beginStructure();
    argument >> tip.iconName >> tip.iconPixmaps >> tip.title >> tip.description;
    argument.endStructure();
    return argument;
}

}  // namespace voltaro::ui

#include "StatusNotifierItem.moc"
