#include "ui/linux/TrayItem.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QTest>
#include <chrono>
#include <memory>

#include "support/BatterySnapshots.h"
#include "ui/TemporaryPreferences.h"
#include "ui/application/DisplayPreferencesStore.h"
#include "ui/linux/DBusMenu.h"
#include "ui/linux/StatusNotifierItem.h"

namespace voltaro::ui {
namespace {

// Just enough of a panel's StatusNotifierWatcher: owns the name on a connection of its own,
// writes down who registers and lists them, less the first `drops` (as a flaky host would).
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER listed)

  public:
    FakeStatusNotifierWatcher()
        : connectionName_(QStringLiteral("watcher-%1").arg(++instances_)),
          bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_)) {
        bus_.registerObject(
            QStringLiteral("/StatusNotifierWatcher"), this,
            QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportAllProperties);
        bus_.registerService(QString::fromLatin1(StatusNotifierItem::watcherService));
    }
    ~FakeStatusNotifierWatcher() override {
        // Released by a call the bus answers, so the next test never sees a stale owner.
        bus_.unregisterService(QString::fromLatin1(StatusNotifierItem::watcherService));
        QDBusConnection::disconnectFromBus(connectionName_);
    }

    // The registering connections, and the paths they gave.
    QStringList registrations;
    QStringList paths;
    QStringList listed;
    int drops = 0;

  public slots:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& path) {
        registrations.append(message().service());
        paths.append(path);
        if (drops-- <= 0) {
            listed.append(message().service() + path);
        }
    }

  private:
    static inline int instances_ = 0;
    QString connectionName_;
    QDBusConnection bus_;
};

// Writes down the signals one object sends, as a host would receive them.
class SignalRecorder : public QObject {
    Q_OBJECT

  public:
    SignalRecorder(QDBusConnection bus, const QString& service, const QString& path,
                   const QString& interface, const QStringList& names) {
        for (const QString& name : names) {
            bus.connect(service, path, interface, name, this, SLOT(record(QDBusMessage)));
        }
    }

    QList<QDBusMessage> named(const QString& name) const {
        QList<QDBusMessage> found;
        for (const QDBusMessage& message : messages) {
            if (message.member() == name) {
                found.append(message);
            }
        }
        return found;
    }

    QList<QDBusMessage> messages;

  public slots:
    void record(const QDBusMessage& message) { messages.append(message); }
};

BatterySnapshot fixtureSnapshot() {
    return voltaro::testing::battery(57, false, false, -12.5, 12.5);
}

// On a private session bus only (tests/ui/tray_bus.sh): a panel on the desktop's own bus would
// show the test's items.
class TrayItemBusTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("VOLTARO_TRAY_BUS")) {
            GTEST_SKIP() << "needs the private bus of tests/ui/tray_bus.sh";
        }
        StatusNotifierItem::registerDBusTypes();
        DBusMenu::registerDBusTypes();
        host = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("host"));
    }

    void TearDown() override { QDBusConnection::disconnectFromBus(QStringLiteral("host")); }

    // A tray item, registered with a watcher that was there first.
    std::unique_ptr<TrayItem> registeredTray() {
        watcher = std::make_unique<FakeStatusNotifierWatcher>();
        auto tray =
            std::make_unique<TrayItem>(snapshot, preferences, QDBusConnection::sessionBus());
        EXPECT_TRUE(QTest::qWaitFor([&] { return !watcher->registrations.isEmpty(); }));
        if (!watcher->registrations.isEmpty()) {
            itemService = watcher->registrations.first();
        }
        return tray;
    }

    // A call from the panel's side, answered while the item's side runs.
    QDBusMessage call(const char* path, const char* interface, const QString& method,
                      const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(itemService, path, interface, method);
        message.setArguments(arguments);
        QDBusPendingCall pending = host.asyncCall(message);
        EXPECT_TRUE(QTest::qWaitFor([&] { return pending.isFinished(); }));
        return pending.reply();
    }
    QDBusMessage callItem(const QString& method, const QVariantList& arguments) {
        return call("/StatusNotifierItem", "org.kde.StatusNotifierItem", method, arguments);
    }
    QDBusMessage callMenu(const QString& method, const QVariantList& arguments) {
        return call("/MenuBar", "com.canonical.dbusmenu", method, arguments);
    }
    QVariant itemProperty(const QString& name) {
        const QDBusMessage reply = call("/StatusNotifierItem", "org.freedesktop.DBus.Properties",
                                        "Get", {"org.kde.StatusNotifierItem", name});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << name.toStdString();
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    std::unique_ptr<SignalRecorder> recordItemSignals() {
        auto recorder = std::make_unique<SignalRecorder>(
            host, itemService, QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.kde.StatusNotifierItem"),
            QStringList{QStringLiteral("NewIcon"), QStringLiteral("NewToolTip"),
                        QStringLiteral("XAyatanaNewLabel")});
        itemProperty(QStringLiteral("Id"));  // a round trip: the bus now forwards the signals
        return recorder;
    }

    testing::TemporaryPreferences temporaryPreferences;
    DisplayPreferencesStore& preferences = DisplayPreferencesStore::shared();
    Published<BatterySnapshot> snapshot{fixtureSnapshot()};
    QDBusConnection host{QStringLiteral("host")};  // the panel's side of the bus
    std::unique_ptr<FakeStatusNotifierWatcher> watcher;
    QString itemService;
};

TEST_F(TrayItemBusTest, RegistersWithEveryWatcherThatAppears) {
    TrayItem tray(snapshot, preferences, QDBusConnection::sessionBus());
    EXPECT_FALSE(tray.usesStatusNotifier());
    std::vector<bool> presence;
    QObject::connect(&tray, &TrayItem::panelPresenceChanged,
                     [&](bool isInPanel) { presence.push_back(isInPanel); });

    watcher = std::make_unique<FakeStatusNotifierWatcher>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher->registrations.isEmpty(); }));
    const QString service = watcher->registrations.first();
    EXPECT_TRUE(tray.usesStatusNotifier());

    // The panel restarts.
    watcher.reset();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tray.usesStatusNotifier(); }));
    watcher = std::make_unique<FakeStatusNotifierWatcher>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher->registrations.isEmpty(); }));
    EXPECT_EQ(watcher->registrations, QStringList{service});
    EXPECT_EQ(presence, (std::vector<bool>{true, false, true}));
    EXPECT_TRUE(tray.isInPanel());
}

TEST_F(TrayItemBusTest, ExportsTheSnapshotAsIconTooltipAndLabel) {
    const auto tray = registeredTray();
    ASSERT_FALSE(itemService.isEmpty());
    EXPECT_TRUE(tray->usesStatusNotifier());

    // Every property a host may ask for answers, empty where the item has nothing. The id,
    // title, icon, label, its guide and the menu are what the real panels read
    // (tests/ui/linux/desktops).
    const std::pair<const char*, QVariant> properties[] = {
        {"Category", "Hardware"}, {"Status", "Active"},          {"WindowId", 0},
        {"OverlayIconName", ""},  {"AttentionIconName", ""},     {"AttentionMovieName", ""},
        {"ItemIsMenu", false},    {"XAyatanaOrderingIndex", 0u},
    };
    for (const auto& [name, expected] : properties) {
        EXPECT_EQ(itemProperty(name).toString(), expected.toString()) << name;
    }
    for (const char* name : {"OverlayIconPixmap", "AttentionIconPixmap"}) {
        EXPECT_TRUE(qdbus_cast<QList<StatusNotifierItem::Pixmap>>(itemProperty(name)).isEmpty());
    }
    const auto tip = qdbus_cast<StatusNotifierItem::ToolTipValue>(itemProperty("ToolTip"));
    EXPECT_EQ(tip.title, "Battery 57 percent, On battery");
    EXPECT_EQ(tip.description, "57% · 13 W");
}

TEST_F(TrayItemBusTest, TellsTheHostsWhenTheBatteryOrTheLabelChoiceChangesAndOnlyThen) {
    const auto tray = registeredTray();
    const auto recorder = recordItemSignals();

    BatterySnapshot sameButLater = fixtureSnapshot();
    sameButLater.updatedAt += std::chrono::seconds(2);
    snapshot.set(sameButLater);

    BatterySnapshot charging = sameButLater;
    charging.level = 100;
    charging.systemWatts = 20.2;
    charging.batteryPowerWatts = 0.4;
    charging.isConnectedToPower = true;
    charging.isCharging = true;
    snapshot.set(charging);

    // The label goes out last, so everything the change sent has arrived with it.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !recorder->named("XAyatanaNewLabel").isEmpty(); }));
    const auto labels = recorder->named("XAyatanaNewLabel");
    ASSERT_EQ(labels.size(), 1);  // none for the new reading time alone
    EXPECT_EQ(labels[0].arguments(),
              (QVariantList{QStringLiteral("100% · 20 W"), QStringLiteral("100% · 000 W")}));
    EXPECT_EQ(recorder->named("NewToolTip").size(), 1);
    EXPECT_EQ(qdbus_cast<StatusNotifierItem::ToolTipValue>(itemProperty("ToolTip")).title,
              "Battery 100 percent, Charging");
    EXPECT_EQ(itemProperty("IconName").toString(), "voltaro-battery-100-charging-symbolic");
    EXPECT_EQ(recorder->named("NewIcon").size(), 1);

    // The label choices change the label at once.
    preferences.setValue(showsPowerUsageInMenuBar, false);
    preferences.setValue(showsPercentageInMenuBar, false);
    preferences.setTemperatureUnit("fahrenheit");  // not shown in the label
    ASSERT_TRUE(QTest::qWaitFor([&] { return recorder->named("XAyatanaNewLabel").size() >= 3; }));
    const auto choices = recorder->named("XAyatanaNewLabel");
    ASSERT_EQ(choices.size(), 3);
    EXPECT_EQ(choices[1].arguments(),
              (QVariantList{QStringLiteral("100%"), QStringLiteral("100%")}));
    EXPECT_EQ(choices[2].arguments(), (QVariantList{QString(), QString()}));
}

// Opening the dashboard and quitting from the menu are the real panels' (tests/ui/linux/desktops).
TEST_F(TrayItemBusTest, TheMenusSettingsEntryOpensTheSettingsAndUnknownIdsFail) {
    const auto tray = registeredTray();
    int settings = 0;
    QObject::connect(tray.get(), &TrayItem::openSettingsRequested, [&] { ++settings; });
    const auto layout = qdbus_cast<DBusMenu::LayoutItem>(
        callMenu("GetLayout", {0, -1, QStringList()}).arguments().value(1));
    int settingsId = -1;
    for (const auto& child : layout.children) {
        if (child.properties.value("label").toString() == "Settings…") {
            settingsId = child.id;
        }
    }
    const auto event = [&](int id, const QString& kind) {
        return callMenu("Event", {id, kind, QVariant::fromValue(QDBusVariant(0)), 0u}).type();
    };
    event(settingsId, "hovered");
    EXPECT_EQ(settings, 0);
    EXPECT_EQ(event(settingsId, "clicked"), QDBusMessage::ReplyMessage);
    EXPECT_EQ(settings, 1);
    EXPECT_EQ(event(42, "clicked"), QDBusMessage::ErrorMessage);
}

TEST_F(TrayItemBusTest, AClickOpensTheDashboardWhereTheHostSaysItWas) {
    const auto tray = registeredTray();
    std::vector<std::optional<QRect>> opened;
    QObject::connect(tray.get(), &TrayItem::activated,
                     [&](std::optional<QRect> at) { opened.push_back(at); });

    EXPECT_EQ(tray->lastKnownAnchor(), std::nullopt);
    callItem("Activate", {0, 540});  // a panel on the left edge
    callItem("Activate", {0, 0});    // a host that cannot tell
    EXPECT_EQ(opened, (std::vector<std::optional<QRect>>{QRect(0, 540, 0, 0), std::nullopt}));
    // The menu's dashboard opens by the last place a host told, a middle click's included.
    EXPECT_EQ(tray->lastKnownAnchor(), QRect(0, 540, 0, 0));
    callItem("SecondaryActivate", {900, 1060});
    EXPECT_EQ(tray->lastKnownAnchor(), QRect(900, 1060, 0, 0));
    EXPECT_EQ(opened.size(), 2u);
}

// The glyph's luma on light and dark panels is xfce_panel.py's; here, following the portal.
TEST_F(TrayItemBusTest, RegistersAgainUntilTheWatcherListsTheItem) {
    watcher = std::make_unique<FakeStatusNotifierWatcher>();
    watcher->drops = 1;
    StatusNotifierItem item(QDBusConnection::sessionBus(), QDBusObjectPath("/MenuBar"));
    item.setRegistrationCheckInterval(50);
    EXPECT_TRUE(watcher->registrations.isEmpty()) << "not on the bus before it is published";
    item.publish();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher->listed.isEmpty(); }));
    // By path, from the item's connection, which owns no name a host could watch.
    EXPECT_EQ(watcher->paths, QStringList(2, "/StatusNotifierItem"));
    EXPECT_EQ(watcher->registrations, QStringList(2, QDBusConnection::sessionBus().baseService()));
    QTest::qWait(200);
    EXPECT_EQ(watcher->registrations.size(), 2) << "listed: no more registrations";
}

}  // namespace
}  // namespace voltaro::ui

#include "TrayItemTest.moc"
