#include "ui/DashboardView.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QPushButton>

#include "ui/ApplicationEnergyRow.h"
#include "ui/BusyIndicator.h"
#include "ui/DashboardHarness.h"
#include "ui/Divider.h"
#include "ui/MetricCard.h"
#include "ui/QtPrinters.h"
#include "ui/ToggleSwitch.h"

namespace voltaro::ui {
namespace {

using testing::Application;
using testing::Battery;

class DashboardViewTest : public ::testing::Test {
  protected:
    template <typename T = QWidget>
    T* find(const char* name) {
        T* found = harness.view().findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    QString text(const char* name) { return find<QLabel>(name)->text(); }
    bool shown(const QWidget* widget) { return widget->isVisibleTo(&harness.view()); }
    MetricCard* card(const char* name) { return find<MetricCard>(name); }

    QStringList contentOrder() {
        return testing::shownInOrder(find("content")->layout(), &harness.view());
    }
    std::vector<ApplicationEnergyRow*> shownRows() {
        std::vector<ApplicationEnergyRow*> rows;
        for (auto* row : find("applicationList")->findChildren<ApplicationEnergyRow*>()) {
            if (shown(row)) {
                rows.push_back(row);
            }
        }
        return rows;
    }

    testing::DashboardHarness harness;
};

const QStringList onBatteryOrder = {"powerTitle",        "systemPowerCard", "sectionDivider",
                                    "batteryTitle",      "temperatureRow",  "lowPowerDivider",
                                    "lowPowerRow",       "sectionDivider",  "energyTitle",
                                    "energyWindowLabel", "applications"};
const QStringList connectedOrder = {
    "powerTitle",  "systemPowerCard", "batteryDivider", "batteryCard",       "chargerDivider",
    "chargerCard", "sectionDivider",  "batteryTitle",   "temperatureRow",    "lowPowerDivider",
    "lowPowerRow", "sectionDivider",  "energyTitle",    "energyWindowLabel", "applications"};

// The texts themselves are the core's; here, that each reaches its place and that the cards
// for the battery and charger come and go with the connection.
TEST_F(DashboardViewTest, ShowsTheBatteryStateInTheHeaderAndPowerSection) {
    const struct {
        const char* description;
        Battery battery;
        const char* state;
        const char* chargeTime;
        QStringList order;
        const char* flowTitle;
        const char* flowValue;
        std::optional<QString> chargerCaption;
    } cases[] = {
        {"on battery",
         {.level = 64, .systemMilliwatts = 8400},
         "On battery",
         "Not charging",
         onBatteryOrder,
         nullptr,
         nullptr,
         std::nullopt},
        {"charging with an estimate, no rating",
         {.level = 80,
          .connected = true,
          .systemMilliwatts = 12000,
          .batteryMilliwatts = 20000,
          .inputMilliwatts = 32000,
          .timeToFullMinutes = 95},
         "Charging",
         "Until fully charged\n1 hour, 35 minutes",
         connectedOrder,
         "To battery",
         "20.0 W",
         std::nullopt},
        {"drained on AC",
         {.level = 80,
          .connected = true,
          .systemMilliwatts = 33200,
          .batteryMilliwatts = -3200,
          .inputMilliwatts = 30000,
          .ratedWatts = 29.5},
         "Power adapter",
         "Not charging",
         connectedOrder,
         "From battery",
         "3.2 W",
         "Charger rated at 30 W"},
        {"unplugged again",
         {.level = 45, .batteryMilliwatts = -9000},
         "On battery",
         "Not charging",
         onBatteryOrder,
         nullptr,
         nullptr,
         std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.description);
        harness.setBattery(c.battery);
        EXPECT_EQ(text("chargeLine"), QStringLiteral("Battery — %1%").arg(c.battery.level));
        EXPECT_EQ(text("stateLabel"), c.state);
        EXPECT_EQ(text("chargeTime"), c.chargeTime);
        EXPECT_EQ(contentOrder(), c.order);
        if (c.battery.connected) {  // the hidden cards keep what they last showed
            EXPECT_EQ(card("batteryCard")->title(), c.flowTitle);
            EXPECT_EQ(card("batteryCard")->valueText(), c.flowValue);
            EXPECT_EQ(card("chargerCard")->caption(), c.chargerCaption);
        }
        if (c.battery.systemMilliwatts) {
            EXPECT_EQ(card("systemPowerCard")->valueText(),
                      QStringLiteral("%1 W").arg(*c.battery.systemMilliwatts / 1000.0, 0, 'f', 1));
        }
    }
}

TEST_F(DashboardViewTest, TemperatureFollowsTheStoredUnitAtOnce) {
    harness.setBattery({.decikelvin = 3046});  // 31.45 °C
    EXPECT_EQ(card("temperatureRow")->valueText(), "31.5 °C");
    const int refreshes = static_cast<int>(harness.monitor.refreshCount().get());
    harness.preferences().setTemperatureUnit("fahrenheit");
    EXPECT_EQ(card("temperatureRow")->valueText(), "88.6 °F");
    EXPECT_EQ(harness.monitor.refreshCount().get(), refreshes);  // no new reading needed
}

TEST_F(DashboardViewTest, EmptyRankingShowsTheGatheringPlaceholder) {
    harness.setBattery({});
    harness.view().show();
    auto* placeholder = find("gatheringPlaceholder");
    EXPECT_TRUE(placeholder->isVisible());
    EXPECT_GE(placeholder->height(), 120);
    EXPECT_EQ(text("gatheringText"), "Gathering data…");
    EXPECT_TRUE(find<BusyIndicator>("gatheringBusy")->isAnimating());
    EXPECT_FALSE(find("applicationList")->isVisible());
    EXPECT_EQ(text("energyWindowLabel"), "collected 0 sec / 20 sec");
}

TEST_F(DashboardViewTest, RanksFiveApplicationsWithFourDividersBetweenThem) {
    harness.setBattery({.systemMilliwatts = 15000});
    harness.view();
    harness.runApplications(
        {{"editor", 1}, {"browser", 6}, {"compiler", 4}, {"player", 0.5}, {"chat", 2}});

    const auto rows = shownRows();
    ASSERT_EQ(rows.size(), 5u);
    const char* names[] = {"browser", "compiler", "chat", "editor", "player"};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i]->application().name, names[i]);
        EXPECT_EQ(rows[i]->findChild<QLabel*>("rank")->text(), QString::number(i + 1));
    }
    EXPECT_FALSE(shown(find("gatheringPlaceholder")));
    EXPECT_EQ(text("energyWindowLabel"), "collected 2 sec / 20 sec");

    // Rows and dividers alternate, a divider only between two rows, past the rank column.
    const QStringList order =
        testing::shownInOrder(find("applicationList")->layout(), &harness.view());
    EXPECT_EQ(order, (QStringList{"applicationRow", "applicationDivider", "applicationRow",
                                  "applicationDivider", "applicationRow", "applicationDivider",
                                  "applicationRow", "applicationDivider", "applicationRow"}));
    for (auto* divider : find("applicationList")->findChildren<Divider*>()) {
        EXPECT_EQ(divider->leadingInset(), 48);
    }
}

TEST_F(DashboardViewTest, KeepsItsRowsWhenTheRankingChanges) {
    harness.setBattery({.systemMilliwatts = 15000});
    harness.view();
    harness.runApplications({{"a", 3}, {"b", 2}, {"c", 1}});
    const auto before = shownRows();
    ASSERT_EQ(before.size(), 3u);

    harness.processes.addEnergy(102, 40);  // "c" takes the lead
    harness.scheduler.spend(std::chrono::seconds(2));
    harness.refresh();
    const auto after = shownRows();
    ASSERT_EQ(after.size(), 3u);
    EXPECT_EQ(after, before);
    EXPECT_EQ(after[0]->application().name, "c");

    for (int i = 0; i < 12; ++i) {  // the window passes; nothing used lately
        harness.scheduler.spend(std::chrono::seconds(2));
        harness.refresh();
    }
    EXPECT_TRUE(shownRows().empty());
    EXPECT_TRUE(shown(find("gatheringPlaceholder")));
    EXPECT_EQ(text("energyWindowLabel"), "average over 20 sec");
}

TEST_F(DashboardViewTest, TheSwitchShowsOnlyWhatTheMonitorPublishes) {
    harness.view().show();
    auto* toggle = find<ToggleSwitch>("lowPowerSwitch");
    auto* busy = find<BusyIndicator>("lowPowerBusy");
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_TRUE(toggle->isVisible());
    EXPECT_FALSE(busy->isVisible());

    toggle->click();
    EXPECT_EQ(harness.monitor.isChangingLowPowerMode().get(), true);
    EXPECT_FALSE(toggle->isChecked());  // not before the system says so
    EXPECT_FALSE(toggle->isVisible());
    EXPECT_TRUE(busy->isVisible());
    EXPECT_TRUE(busy->isAnimating());

    harness.finishLowPowerChange();
    EXPECT_TRUE(toggle->isChecked());
    EXPECT_TRUE(toggle->isVisible());
    EXPECT_FALSE(busy->isVisible());
    EXPECT_FALSE(busy->isAnimating());
    EXPECT_EQ(harness.lowPowerMode.requests(), std::vector<bool>{true});
}

TEST_F(DashboardViewTest, AFailedChangeShowsItsCaptionUntilTheNextRequest) {
    harness.view();
    auto* error = find<QLabel>("lowPowerError");
    EXPECT_FALSE(shown(error));

    harness.lowPowerMode.setOutcome(LowPowerModeError::cancelled());
    find<ToggleSwitch>("lowPowerSwitch")->click();
    harness.finishLowPowerChange();
    EXPECT_TRUE(shown(error));
    EXPECT_EQ(error->text(), "Change cancelled");
    EXPECT_FALSE(find<ToggleSwitch>("lowPowerSwitch")->isChecked());

    harness.lowPowerMode.setOutcome(std::nullopt);
    find<ToggleSwitch>("lowPowerSwitch")->click();
    EXPECT_FALSE(shown(error));
    harness.finishLowPowerChange();
}

TEST_F(DashboardViewTest, TheSettingsButtonOpensTheSettings) {
    find<QPushButton>("settingsButton")->click();
    EXPECT_EQ(harness.settingsOpened, 1);
}

}  // namespace
}  // namespace voltaro::ui
