#include "ui/views/DashboardView.h"

#include <gtest/gtest.h>
#include <QLabel>
#include <map>

#include "ui/DashboardHarness.h"
#include "ui/QtPrinters.h"
#include "ui/application/ShownTexts.h"
#include "ui/views/ApplicationEnergyRow.h"
#include "ui/widgets/BusyIndicator.h"
#include "ui/widgets/Divider.h"
#include "ui/widgets/ToggleSwitch.h"

namespace voltaro::ui {
namespace {

using testing::Battery;

class DashboardViewTest : public ::testing::Test {
  protected:
    template <typename T = QWidget>
    T* find(const char* name) {
        T* found = harness.view().findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    bool shown(const QWidget* widget) { return widget->isVisibleTo(&harness.view()); }
    std::vector<ApplicationEnergyRow*> shownRows() {
        std::vector<ApplicationEnergyRow*> rows;
        for (auto* row : harness.view().findChildren<ApplicationEnergyRow*>()) {
            if (shown(row)) {
                rows.push_back(row);
            }
        }
        return rows;
    }
    // The texts shown, then the low power switch: on, off, or a spinner in its place.
    QStringList shownNow() {
        QStringList texts = shownTexts(harness.view());
        for (auto* toggle : harness.view().findChildren<ToggleSwitch*>("switch")) {
            texts << (shown(toggle) ? (toggle->isChecked() ? "on" : "off") : "");
        }
        for (auto* busy : harness.view().findChildren<BusyIndicator*>("busy")) {
            texts << (shown(busy) ? "changing" : "");
        }
        texts.removeAll("");
        return texts;
    }
    DashboardModel model() {
        return dashboardModel(
            DashboardState::of(harness.monitor),
            {harness.preferences().temperatureUnit().toStdString(), "Power usage"});
    }

    testing::DashboardHarness harness;
};

// The model's texts in the order the view shows them, then its switch; a switch whose state is
// not known yet stands at off.
QStringList textsOf(const DashboardModel& model) {
    QStringList texts;
    const auto add = [&texts](const std::string& text) {
        if (!text.empty()) {
            texts << QString::fromStdString(text).simplified();
        }
    };
    add(model.header.chargeLine);
    add(model.header.stateLine);
    add(model.header.chargeTime);
    for (const DashboardSection& section : model.sections) {
        add(section.title);
        add(section.detail);
        for (const DashboardRow& row : section.rows) {
            add(row.rank ? std::to_string(*row.rank) : "");
            add(row.title);
            add(row.caption.value_or(""));
            add(row.switchState ? "" : row.value);
        }
        add(section.placeholder.value_or(""));
    }
    texts << "Battery Settings"
          << "Settings";
    for (const DashboardSection& section : model.sections) {
        for (const DashboardRow& row : section.rows) {
            if (row.switchState) {
                texts << (row.switchState == SwitchState::on         ? "on"
                          : row.switchState == SwitchState::changing ? "changing"
                                                                     : "off");
            }
        }
    }
    return texts;
}

TEST_F(DashboardViewTest, ShowsTheModelOfEachStateAndNothingElse) {
    const struct {
        const char* description;
        std::optional<Battery> battery;
        std::vector<testing::Application> applications;
        bool failLowPowerChange;
    } cases[] = {
        {"no battery yet", std::nullopt, {}, false},
        {"on battery",
         Battery{.level = 64, .systemMilliwatts = 8400, .decikelvin = 3046},
         {},
         false},
        {"charging, five applications",
         Battery{.level = 80,
                 .connected = true,
                 .batteryMilliwatts = 20000,
                 .inputMilliwatts = 32000,
                 .timeToFullMinutes = 95},
         {{"editor", 1}, {"browser", 6}, {"compiler", 4}, {"player", 0.004}, {"chat", 2}},
         false},
        {"drained on AC, a failed change",
         Battery{.level = 80, .connected = true, .batteryMilliwatts = -3200, .ratedWatts = 29.5},
         {{"editor", 1}},
         true},
        {"unplugged again", Battery{.level = 45, .batteryMilliwatts = -9000}, {}, false},
    };
    harness.view().show();  // names are cut to the width they are shown in
    for (const auto& c : cases) {
        SCOPED_TRACE(c.description);
        if (c.battery) {
            harness.setBattery(*c.battery);
        }
        if (!c.applications.empty()) {
            harness.runApplications(c.applications);
        }
        if (c.failLowPowerChange) {
            harness.lowPowerMode.setOutcome(LowPowerModeError::cancelled());
            harness.monitor.setLowPowerMode(true);
            EXPECT_EQ(shownNow(), textsOf(model()));
            harness.finishLowPowerChange();
        }
        EXPECT_EQ(shownNow(), textsOf(model()));
        // Rows are divided from each other only, ranked ones past the rank column.
        std::map<int, int> expected;
        std::map<int, int> dividers;
        for (const DashboardSection& section : model().sections) {
            for (std::size_t i = 1; i < section.rows.size(); ++i) {
                ++expected[section.rows[i].rank ? 48 : 28];
            }
        }
        for (auto* divider : harness.view().findChildren<Divider*>("rowDivider")) {
            dividers[divider->leadingInset()] += shown(divider) ? 1 : 0;
        }
        std::erase_if(dividers, [](const auto& count) { return count.second == 0; });
        EXPECT_EQ(dividers, expected);
    }
}

TEST_F(DashboardViewTest, TemperatureFollowsTheStoredUnitAtOnce) {
    harness.setBattery({.decikelvin = 3046});  // 31.45 °C
    EXPECT_TRUE(shownTexts(harness.view()).contains("31.5 °C"));
    const int refreshes = static_cast<int>(harness.monitor.refreshCount().get());
    harness.preferences().setTemperatureUnit("fahrenheit");
    EXPECT_TRUE(shownTexts(harness.view()).contains("88.6 °F"));
    EXPECT_EQ(harness.monitor.refreshCount().get(), refreshes);  // no new reading needed
}

TEST_F(DashboardViewTest, ThePlaceholderSpinsInAtLeastItsHeight) {
    harness.setBattery({});
    harness.view().show();
    EXPECT_GE(find("placeholder")->height(), 120);
    EXPECT_TRUE(find<BusyIndicator>("placeholderBusy")->isAnimating());
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
    EXPECT_EQ(after, before);
    EXPECT_EQ(after[0]->row().title, "c");

    for (int i = 0; i < 12; ++i) {  // the window passes; nothing used lately
        harness.scheduler.spend(std::chrono::seconds(2));
        harness.refresh();
    }
    EXPECT_TRUE(shownRows().empty());
    EXPECT_TRUE(shown(find("placeholder")));
}

TEST_F(DashboardViewTest, TheSwitchShowsOnlyWhatTheMonitorPublishes) {
    harness.view().show();
    auto* toggle = find<ToggleSwitch>("switch");
    auto* busy = find<BusyIndicator>("busy");
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_TRUE(toggle->isVisible());
    EXPECT_FALSE(busy->isVisible());

    toggle->click();
    EXPECT_EQ(harness.monitor.isChangingLowPowerMode().get(), true);
    EXPECT_FALSE(toggle->isChecked());  // not before the system says so
    EXPECT_FALSE(toggle->isVisible());
    EXPECT_TRUE(busy->isAnimating());

    harness.finishLowPowerChange();
    EXPECT_TRUE(toggle->isChecked());
    EXPECT_TRUE(toggle->isVisible());
    EXPECT_FALSE(busy->isAnimating());
    EXPECT_EQ(harness.lowPowerMode.requests(), std::vector<bool>{true});
}

// Its settings button: VoltaroApplicationTest.TheMenuAndTheDashboardsButtonOpenTheSettings.
}  // namespace
}  // namespace voltaro::ui
