#include "ui/macos/MenuBarItem.h"

#include <gtest/gtest.h>
#include <chrono>
#include <vector>

#include "support/BatterySnapshots.h"
#include "ui/QtPrinters.h"
#include "ui/TemporaryPreferences.h"
#include "ui/application/DisplayPreferencesStore.h"

namespace voltaro::ui {
namespace {

// Writes down what the item tells the menu bar, and clicks like the menu bar does.
class FakeStatusBarButton final : public StatusBarButton {
  public:
    struct Record {
        std::vector<RgbaBitmap> images;
        double widthPoints = 0;
        double heightPoints = 0;
        std::vector<StatusTitle> titles;
        std::vector<std::string> accessibilityLabels;
        ClickHandler clickHandler;
    };
    explicit FakeStatusBarButton(Record& record) : record_(record) {}

    void setTemplateImage(const RgbaBitmap& bitmap, double widthPoints,
                          double heightPoints) override {
        record_.images.push_back(bitmap);
        record_.widthPoints = widthPoints;
        record_.heightPoints = heightPoints;
    }
    void setTitle(const StatusTitle& title) override { record_.titles.push_back(title); }
    void setAccessibilityLabel(const std::string& label) override {
        record_.accessibilityLabels.push_back(label);
    }
    void setClickHandler(ClickHandler handler) override {
        record_.clickHandler = std::move(handler);
    }

  private:
    Record& record_;
};

BatterySnapshot drainingWhilePluggedIn() {
    return voltaro::testing::battery(57, true, false, -3.2, 12.5);
}

bool hasOpaquePixel(const RgbaBitmap& bitmap) {
    for (std::size_t alpha = 3; alpha < bitmap.bytes.size(); alpha += 4) {
        if (bitmap.bytes[alpha] != 0) {
            return true;
        }
    }
    return false;
}

class MenuBarItemTest : public ::testing::Test {
  protected:
    testing::TemporaryPreferences temporaryPreferences;
    DisplayPreferencesStore& preferences = DisplayPreferencesStore::shared();
    Published<BatterySnapshot> snapshot{drainingWhilePluggedIn()};
    FakeStatusBarButton::Record button;
};

TEST_F(MenuBarItemTest, ShowsTheTemplateGlyphTheHighlightedTextAndTheSpokenLabelAtOnce) {
    MenuBarItem item(snapshot, preferences, std::make_unique<FakeStatusBarButton>(button));

    ASSERT_EQ(button.images.size(), 1u);
    // 22 × 14 points, drawn at twice the density for Retina menu bars.
    EXPECT_EQ(button.images[0].widthPixels, 44);
    EXPECT_EQ(button.images[0].heightPixels, 28);
    EXPECT_EQ(button.widthPoints, 22);
    EXPECT_EQ(button.heightPoints, 14);
    EXPECT_TRUE(hasOpaquePixel(button.images[0]));
    ASSERT_EQ(button.titles.size(), 1u);
    EXPECT_EQ(button.titles[0], (StatusTitle{"57% · 13 W", "100% · 000 W", true}));
    EXPECT_EQ(button.accessibilityLabels,
              std::vector<std::string>{"Battery 57 percent, Power adapter"});
    EXPECT_TRUE(item.isInPanel());
}

TEST_F(MenuBarItemTest, FollowsTheLabelChoicesDownToTheGlyphAlone) {
    MenuBarItem item(snapshot, preferences, std::make_unique<FakeStatusBarButton>(button));

    preferences.setValue(highlightsBatteryDrainInMenuBar, false);
    preferences.setValue(showsPowerUsageInMenuBar, false);
    preferences.setValue(showsPercentageInMenuBar, false);
    preferences.setTemperatureUnit("fahrenheit");  // not shown in the label

    EXPECT_EQ(button.titles, (std::vector<StatusTitle>{{"57% · 13 W", "100% · 000 W", true},
                                                       {"57% · 13 W", "100% · 000 W", false},
                                                       {"57%", "100%", false},
                                                       {"", "", false}}));
    EXPECT_EQ(button.images.size(), 1u);
}

TEST_F(MenuBarItemTest, TellsTheMenuBarOnlyOfWhatChanged) {
    MenuBarItem item(snapshot, preferences, std::make_unique<FakeStatusBarButton>(button));

    BatterySnapshot later = snapshot.get();
    later.updatedAt += std::chrono::seconds(2);
    snapshot.set(later);
    EXPECT_EQ(button.images.size(), 1u);
    EXPECT_EQ(button.titles.size(), 1u);
    EXPECT_EQ(button.accessibilityLabels.size(), 1u);

    BatterySnapshot charging = later;
    charging.isCharging = true;
    charging.batteryPowerWatts = 20;
    snapshot.set(charging);
    EXPECT_EQ(button.images.size(), 2u);  // the bolt replaces the plug
    EXPECT_NE(button.images[1], button.images[0]);
    EXPECT_EQ(button.titles.back(), (StatusTitle{"57% · 13 W", "100% · 000 W", false}));
    EXPECT_EQ(button.accessibilityLabels.back(), "Battery 57 percent, Charging");
}

TEST_F(MenuBarItemTest, AClickOpensTheDashboardUnderTheItem) {
    MenuBarItem item(snapshot, preferences, std::make_unique<FakeStatusBarButton>(button));
    std::vector<std::optional<QRect>> anchors;
    QObject::connect(&item, &StatusItem::activated,
                     [&](std::optional<QRect> anchor) { anchors.push_back(anchor); });
    ASSERT_TRUE(button.clickHandler);

    button.clickHandler(ScreenRect{1200, 0, 96, 24});
    button.clickHandler(std::nullopt);

    EXPECT_EQ(anchors, (std::vector<std::optional<QRect>>{QRect(1200, 0, 96, 24), std::nullopt}));
}

TEST_F(MenuBarItemTest, LeavesTheButtonWithoutAHandlerWhenGone) {
    { MenuBarItem item(snapshot, preferences, std::make_unique<FakeStatusBarButton>(button)); }
    EXPECT_FALSE(button.clickHandler);
}

}  // namespace
}  // namespace voltaro::ui
