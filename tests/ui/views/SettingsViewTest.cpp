#include "ui/views/SettingsView.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "support/FakeLoginItemService.h"
#include "ui/QtPrinters.h"
#include "ui/TemporaryPreferences.h"
#include "ui/application/ShownTexts.h"
#include "ui/widgets/BusyIndicator.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/ToggleSwitch.h"

namespace voltaro::ui {
namespace {

using voltaro::testing::FakeLoginItemService;
using voltaro::ui::testing::TemporaryPreferences;

const SettingsView::BundleInfo bundle{"1.4", "27"};

// A settings view over a fake login item, with handles on its controls.
struct Settings {
    explicit Settings(LoginItemStatus status = LoginItemStatus::notRegistered,
                      SettingsView::BundleInfo info = bundle) {
        auto owned = std::make_unique<FakeLoginItemService>();
        owned->currentStatus = status;
        service = owned.get();
        view = std::make_unique<SettingsView>(std::move(owned), std::move(info));
    }

    template <typename Widget>
    Widget* find(const char* name) const {
        auto* widget = view->findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    ToggleSwitch* loginSwitch() const { return find<ToggleSwitch>("launchAtLoginSwitch"); }
    BusyIndicator* loginBusy() const { return find<BusyIndicator>("launchAtLoginBusy"); }
    QLabel* loginCaption() const { return find<QLabel>("launchAtLoginCaption"); }
    SegmentedControl* unitPicker() const { return find<SegmentedControl>("temperatureUnit"); }
    bool shows(QWidget* widget) const { return widget->isVisibleTo(view.get()); }
    // The caption under "Launch at Login", empty when there is none.
    QString caption() const { return shows(loginCaption()) ? loginCaption()->text() : QString(); }

    FakeLoginItemService* service = nullptr;
    std::unique_ptr<SettingsView> view;
};

// Every test writes to a preferences file of its own.
class SettingsViewTest : public ::testing::Test {
  protected:
    TemporaryPreferences preferences;
};

TEST_F(SettingsViewTest, OnFirstLaunchEverySwitchIsOnAndCelsiusIsChosenWithoutWritingAnything) {
    Settings settings;
    for (const char* name : {"showsPercentageInMenuBar", "showsPowerUsageInMenuBar",
                             "highlightsBatteryDrainInMenuBar"}) {
        EXPECT_TRUE(settings.find<ToggleSwitch>(name)->isChecked()) << name;
    }
    EXPECT_EQ(settings.unitPicker()->selectedIndex(), 0);
    EXPECT_FALSE(settings.loginSwitch()->isChecked());
    EXPECT_EQ(preferences.content(), "");
    EXPECT_EQ(
        shownTexts(*settings.view),
        QStringList({"Launch at Login", "Show Percentage in Menu Bar",
                     "Show Power Usage in Menu Bar", "Highlight Battery Drain in Yellow",
                     "Temperature Unit", "Temperature Unit", "Version 1.4 (27)", "Quit Voltaro"}));
}

TEST_F(SettingsViewTest, TheUnitPickerSelectsOnlyAnExactStoredValue) {
    const struct {
        QByteArray stored;
        int selected;
    } cases[] = {
        {"celsius", 0},
        {"fahrenheit", 1},
        {"kelvin", -1},
        {"Fahrenheit", -1},
    };
    for (const auto& c : cases) {
        TemporaryPreferences stored("[General]\ntemperatureUnit=" + c.stored + "\n");
        Settings settings;
        EXPECT_EQ(settings.unitPicker()->selectedIndex(), c.selected) << c.stored.toStdString();
    }
}

TEST_F(SettingsViewTest, EveryControlWritesThroughAtOnceAndFollowsTheStore) {
    Settings settings;
    auto* percentage = settings.find<ToggleSwitch>("showsPercentageInMenuBar");
    QTest::mouseClick(percentage, Qt::LeftButton);
    EXPECT_FALSE(percentage->isChecked());
    EXPECT_FALSE(preferences.reopened()->value("showsPercentageInMenuBar").toBool());
    EXPECT_EQ(preferences.reopened()->value("showsPowerUsageInMenuBar"), QVariant());

    SegmentedControl* picker = settings.unitPicker();
    picker->resize(picker->sizeHint());
    QTest::mouseClick(picker, Qt::LeftButton, {}, picker->segmentRect(1).center());
    EXPECT_EQ(picker->selectedIndex(), 1);
    EXPECT_EQ(preferences.reopened()->value("temperatureUnit").toString(), "fahrenheit");

    // Another window writing the same preference moves this one's controls too.
    DisplayPreferencesStore::shared().setValue(highlightsBatteryDrainInMenuBar, false);
    DisplayPreferencesStore::shared().setTemperatureUnit("kelvin");
    EXPECT_FALSE(settings.find<ToggleSwitch>("highlightsBatteryDrainInMenuBar")->isChecked());
    EXPECT_EQ(picker->selectedIndex(), -1);
}

TEST_F(SettingsViewTest, TheLoginCaptionPrefersAPendingApprovalToAnError) {
    const struct {
        const char* description;
        LoginItemStatus statusAfterChange;
        std::optional<std::string> failure;
        bool switchOn;
        QString caption;
    } cases[] = {
        {"approval pending and an error", LoginItemStatus::requiresApproval, "Could not write",
         true, "Approval required in System Settings"},
        {"approval pending", LoginItemStatus::requiresApproval, std::nullopt, true,
         "Approval required in System Settings"},
        {"an error only", LoginItemStatus::notRegistered, "Could not write", false,
         "Could not write"},
        {"registered", LoginItemStatus::enabled, std::nullopt, true, ""},
        {"not found", LoginItemStatus::notFound, std::nullopt, false, ""},
    };
    for (const auto& c : cases) {
        Settings settings;
        settings.service->statusAfterChange = c.statusAfterChange;
        settings.service->nextFailure = c.failure;
        QTest::mouseClick(settings.loginSwitch(), Qt::LeftButton);
        EXPECT_EQ(settings.service->calls, std::vector<std::string>{"register"}) << c.description;
        EXPECT_EQ(settings.loginSwitch()->isChecked(), c.switchOn) << c.description;
        EXPECT_EQ(settings.caption(), c.caption) << c.description;
    }
}

TEST_F(SettingsViewTest, ASpinnerStandsInForTheLoginSwitchWhileItChanges) {
    Settings settings(LoginItemStatus::enabled);
    settings.view->show();
    bool switchShownDuringChange = true;
    bool spinnerShownDuringChange = false;
    settings.service->duringChange = [&] {
        switchShownDuringChange = settings.shows(settings.loginSwitch());
        spinnerShownDuringChange = settings.loginBusy()->isVisible();
    };
    settings.service->statusAfterChange = LoginItemStatus::notRegistered;
    QTest::mouseClick(settings.loginSwitch(), Qt::LeftButton);
    EXPECT_FALSE(switchShownDuringChange);
    EXPECT_TRUE(spinnerShownDuringChange);
    EXPECT_EQ(settings.service->calls, std::vector<std::string>{"unregister"});
    EXPECT_TRUE(settings.shows(settings.loginSwitch()));
    EXPECT_FALSE(settings.shows(settings.loginBusy()));
    EXPECT_FALSE(settings.loginSwitch()->isChecked());
}

TEST_F(SettingsViewTest, ShowingTheWindowReadsTheLoginItemAgain) {
    Settings settings(LoginItemStatus::requiresApproval);
    EXPECT_EQ(settings.caption(), "Approval required in System Settings");
    // Approved in the system's settings while the window was closed.
    settings.service->currentStatus = LoginItemStatus::enabled;
    settings.view->show();
    EXPECT_TRUE(settings.loginSwitch()->isChecked());
    EXPECT_EQ(settings.caption(), "");
    EXPECT_TRUE(settings.service->calls.empty());
}

TEST_F(SettingsViewTest, QuitEndsTheApplication) {
    Settings settings;
    auto* quit = settings.find<QPushButton>("quit");
    QTimer::singleShot(0, quit, [quit] { QTest::mouseClick(quit, Qt::LeftButton); });
    QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
}

}  // namespace
}  // namespace voltaro::ui
