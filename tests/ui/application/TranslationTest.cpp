#include "ui/application/Translation.h"

#include <gtest/gtest.h>

#include "core/presentation/DashboardModel.h"
#include "core/text/Localization.h"
#include "support/FakeLoginItemService.h"
#include "ui/QtPrinters.h"
#include "ui/TemporaryPreferences.h"
#include "ui/application/ShownTexts.h"
#include "ui/views/SettingsView.h"

namespace voltaro::ui {
namespace {

// Installs German for one test and goes back to the English the other tests expect.
class GermanTest : public ::testing::Test {
  protected:
    GermanTest() { installTranslation(QLocale(QLocale::German, QLocale::Germany)); }
    ~GermanTest() override { installTranslation(QLocale(QLocale::English, QLocale::UnitedStates)); }
};

// The real German catalogue reaches the core's texts, plurals and decimal commas; the
// English texts themselves are the core's tests.
TEST_F(GermanTest, TheCoresTextsAndNumbersReadGerman) {
    DashboardState state;
    state.snapshot.level = 80;
    state.snapshot.isConnectedToPower = true;
    state.snapshot.isCharging = true;
    state.snapshot.timeToFullMinutes = 95;
    state.snapshot.adapterCapacityWatts = 96;
    state.snapshot.temperatureCelsius = 31.46;
    state.applications = {{"a", "a", 1.2345, {}}, {"b", "b", 0.005, {}}};
    DashboardModel model = dashboardModel(state, {"celsius", "Mac power usage"});
    EXPECT_EQ(model.header.stateLine, "Lädt");
    EXPECT_EQ(model.header.chargeTime, "Bis vollständig geladen\n1 Stunde, 35 Minuten");
    EXPECT_EQ(model.sections[0].rows[0].title, "Stromverbrauch des Mac");
    EXPECT_EQ(model.sections[0].rows[2].caption, "Netzteil mit 96 W Nennleistung");
    EXPECT_EQ(model.sections[1].rows[0].value, "31,5 °C");
    EXPECT_EQ(model.sections[2].rows[0].value, "1,23 W");
    EXPECT_EQ(model.sections[2].rows[1].value, "weniger als 0,01 W");
    state.snapshot.isCharging = false;
    model = dashboardModel(state, {"celsius", "Power usage"});
    EXPECT_EQ(model.header.stateLine, "Netzteil");
    EXPECT_EQ(model.header.chargeTime, "Wird nicht geladen");
    EXPECT_EQ(model.sections[0].rows[0].title, "Stromverbrauch");
    EXPECT_EQ(formattedChargeDuration(125), "2 Stunden, 5 Minuten");
    EXPECT_EQ(formattedChargeDuration(61), "1 Stunde, 1 Minute");
}

TEST_F(GermanTest, TheSettingsWindowReadsGerman) {
    testing::TemporaryPreferences preferences;
    auto service = std::make_unique<voltaro::testing::FakeLoginItemService>();
    service->currentStatus = LoginItemStatus::requiresApproval;
    SettingsView view(std::move(service), {"1.4", "27"});
    EXPECT_EQ(
        shownTexts(view),
        QStringList({"Bei der Anmeldung starten",
                     "Bestätigung in den Systemeinstellungen erforderlich",
                     "Prozent in der Menüleiste zeigen", "Stromverbrauch in der Menüleiste zeigen",
                     "Akkuentladung gelb hervorheben", "Temperatureinheit", "Temperatureinheit",
                     "Version 1.4 (27)", "Voltaro beenden"}));
}

}  // namespace
}  // namespace voltaro::ui
