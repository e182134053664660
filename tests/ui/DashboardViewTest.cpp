#include "ui/DashboardView.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

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

TEST_F(DashboardViewTest, ShowsTheBatteryStateInTheHeaderAndPowerSection) {
    const struct {
        const char* description;
        Battery battery;
        const char* chargeLine;
        const char* state;
        const char* chargeTime;
        QStringList order;
    } cases[] = {
        {"on battery",
         {.level = 64, .systemMilliwatts = 8400},
         "Battery — 64%",
         "On battery",
         "Not charging",
         onBatteryOrder},
        {"full on battery",
         {.level = 100},
         "Battery — 100%",
         "On battery",
         "Battery is fully charged",
         onBatteryOrder},
        {"charging with an estimate",
         {.level = 80,
          .connected = true,
          .systemMilliwatts = 12000,
          .batteryMilliwatts = 20000,
          .inputMilliwatts = 32000,
          .timeToFullMinutes = 95},
         "Battery — 80%",
         "Charging",
         "Until fully charged\n1 hour, 35 minutes",
         connectedOrder},
        {"charging without an estimate",
         {.level = 80, .connected = true, .batteryMilliwatts = 20000},
         "Battery — 80%",
         "Charging",
         "Calculating time…",
         connectedOrder},
        {"drained on AC",
         {.level = 45, .connected = true, .batteryMilliwatts = -3200},
         "Battery — 45%",
         "Power adapter",
         "Not charging",
         connectedOrder},
        {"unplugged again",
         {.level = 45, .batteryMilliwatts = -9000},
         "Battery — 45%",
         "On battery",
         "Not charging",
         onBatteryOrder},
    };
    for (const auto& c : cases) {
        harness.setBattery(c.battery);
        EXPECT_EQ(text("chargeLine"), c.chargeLine) << c.description;
        EXPECT_EQ(text("stateLabel"), c.state) << c.description;
        EXPECT_EQ(text("chargeTime"), c.chargeTime) << c.description;
        EXPECT_EQ(contentOrder(), c.order) << c.description;
    }
}

TEST_F(DashboardViewTest, PowerCardsFollowTheFlowAndTheCharger) {
    const struct {
        const char* description;
        Battery battery;
        const char* systemValue;
        const char* flowTitle;
        const char* flowSymbol;
        const char* flowValue;
        const char* chargerValue;
        std::optional<QString> chargerCaption;
    } cases[] = {
        {"charging",
         {.connected = true,
          .systemMilliwatts = 12000,
          .batteryMilliwatts = 20000,
          .inputMilliwatts = 32000},
         "12.0 W",
         "To battery",
         "arrow.down.to.line.compact",
         "20.0 W",
         "32.0 W",
         std::nullopt},
        {"drained on AC",
         {.connected = true,
          .systemMilliwatts = 33200,
          .batteryMilliwatts = -3200,
          .inputMilliwatts = 30000,
          .ratedWatts = 29.5},
         "33.2 W",
         "From battery",
         "arrow.up.to.line.compact",
         "3.2 W",
         "30.0 W",
         "Charger rated at 30 W"},
        {"a trickle out is not a drain",
         {.connected = true,
          .batteryMilliwatts = -50,
          .inputMilliwatts = 20000,
          .ratedWatts = 96.0},
         "20.1 W",
         "To battery",
         "arrow.down.to.line.compact",
         "0.1 W",
         "20.0 W",
         "Charger rated at 96 W"},
        {"nothing measured",
         {.connected = true},
         "— W",
         "To battery",
         "arrow.down.to.line.compact",
         "— W",
         "— W",
         std::nullopt},
    };
    for (const auto& c : cases) {
        harness.setBattery(c.battery);
        EXPECT_EQ(card("systemPowerCard")->title(), "Power usage") << c.description;
        EXPECT_EQ(card("systemPowerCard")->valueText(), c.systemValue) << c.description;
        EXPECT_EQ(card("batteryCard")->title(), c.flowTitle) << c.description;
        EXPECT_EQ(card("batteryCard")->symbol(), c.flowSymbol) << c.description;
        EXPECT_EQ(card("batteryCard")->valueText(), c.flowValue) << c.description;
        EXPECT_EQ(card("chargerCard")->title(), "Charger output") << c.description;
        EXPECT_EQ(card("chargerCard")->valueText(), c.chargerValue) << c.description;
        EXPECT_EQ(card("chargerCard")->caption(), c.chargerCaption) << c.description;
    }
}

TEST_F(DashboardViewTest, TemperatureFollowsTheStoredUnitAtOnce) {
    harness.setBattery({.decikelvin = 3046});  // 31.45 °C
    EXPECT_EQ(card("temperatureRow")->title(), "Temperature");
    EXPECT_EQ(card("temperatureRow")->valueText(), "31.5 °C");

    const int refreshes = static_cast<int>(harness.monitor.refreshCount().get());
    harness.preferences().setTemperatureUnit("fahrenheit");
    EXPECT_EQ(card("temperatureRow")->valueText(), "88.6 °F");
    EXPECT_EQ(harness.monitor.refreshCount().get(), refreshes);  // no new reading needed

    harness.setBattery({});
    EXPECT_EQ(card("temperatureRow")->valueText(), "— °F");
    harness.preferences().setTemperatureUnit("Fahrenheit");
    EXPECT_EQ(card("temperatureRow")->valueText(), "— °C");
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
    EXPECT_EQ(text("energyTitle"), "App energy usage");
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

    toggle->click();
    harness.finishLowPowerChange();
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_EQ(harness.lowPowerMode.requests(), (std::vector<bool>{true, false}));
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

TEST_F(DashboardViewTest, FooterOffersBothSettings) {
    EXPECT_EQ(find<QPushButton>("batterySettingsButton")->text(), "Battery Settings");
    auto* settings = find<QPushButton>("settingsButton");
    EXPECT_EQ(settings->text(), "Settings");
    settings->click();
    EXPECT_EQ(harness.settingsOpened, 1);
    EXPECT_EQ(harness.view().size(), QSize(380, 550));
    EXPECT_EQ(find<QScrollArea>("scrollArea")->frameShape(), QFrame::NoFrame);
}

}  // namespace
}  // namespace voltaro::ui
