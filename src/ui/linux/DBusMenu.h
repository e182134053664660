#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace voltaro::ui {

// The tray item's menu for hosts that show it themselves: com.canonical.dbusmenu at /MenuBar,
// three fixed entries. The members in capitals are the D-Bus interface.
class DBusMenu : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    // An entry with its children, (ia{sv}av); the children travel as variants of the same.
    struct LayoutItem {
        int id = 0;
        QVariantMap properties;
        QList<LayoutItem> children;
    };
    struct ItemProperties {
        int id = 0;
        QVariantMap properties;
    };
    struct ItemPropertyNames {
        int id = 0;
        QStringList names;
    };
    struct ItemEvent {
        int id = 0;
        QString eventId;
        QDBusVariant data;
        uint timestamp = 0;
    };

    enum ItemId : int { rootId = 0, openDashboardId = 1, settingsId = 2, quitId = 3 };
    static constexpr const char* objectPath = "/MenuBar";

    explicit DBusMenu(const QDBusConnection& bus, QObject* parent = nullptr);
    ~DBusMenu() override;

    static void registerDBusTypes();
    bool isExported() const { return isExported_; }

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

  public slots:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                voltaro::ui::DBusMenu::LayoutItem& layout);
    Q_SCRIPTABLE QList<voltaro::ui::DBusMenu::ItemProperties> GetGroupProperties(
        const QList<int>& ids, const QStringList& propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SCRIPTABLE void Event(int id, const QString& eventId, const QDBusVariant& data,
                            uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<voltaro::ui::DBusMenu::ItemEvent>& events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  signals:
    Q_SCRIPTABLE void ItemsPropertiesUpdated(
        const QList<voltaro::ui::DBusMenu::ItemProperties>& updatedProperties,
        const QList<voltaro::ui::DBusMenu::ItemPropertyNames>& removedProperties);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    Q_SCRIPTABLE void ItemActivationRequested(int id, uint timestamp);

    void openDashboardRequested();
    void openSettingsRequested();
    void quitRequested();

  private:
    static bool isKnown(int id) { return id >= rootId && id <= quitId; }
    // Acts on one event; false for an entry that does not exist.
    bool handleEvent(int id, const QString& eventId);
    QVariantMap propertiesOf(int id, const QStringList& names) const;
    void replyUnknownId(int id);

    QDBusConnection bus_;
    bool isExported_ = false;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenu::LayoutItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenu::LayoutItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenu::ItemProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenu::ItemProperties& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenu::ItemPropertyNames& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenu::ItemPropertyNames& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenu::ItemEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenu::ItemEvent& event);

}  // namespace voltaro::ui

Q_DECLARE_METATYPE(voltaro::ui::DBusMenu::LayoutItem)
Q_DECLARE_METATYPE(voltaro::ui::DBusMenu::ItemProperties)
Q_DECLARE_METATYPE(voltaro::ui::DBusMenu::ItemPropertyNames)
Q_DECLARE_METATYPE(voltaro::ui::DBusMenu::ItemEvent)
