#include "ui/images/MenuBarBatteryImage.h"

#include <gtest/gtest.h>
#include <QPainter>
#include <cmath>
#include <optional>
#include <set>
#include <string>

#include "support/BatterySnapshots.h"
#include "ui/images/SymbolImage.h"

namespace voltaro::ui {
namespace {

using voltaro::testing::battery;

const BatterySnapshot onBattery = battery(100, false, false);
const BatterySnapshot charging = battery(100, true, true);
const BatterySnapshot pluggedIn = battery(100, true, false);

// The real artwork, less the named symbols.
MenuBarBatteryImage::SymbolLookup artworkWithout(std::set<std::string> missing) {
    return [missing](std::string_view name) {
        return missing.count(std::string(name)) ? SymbolDrawing() : symbolDrawing(name);
    };
}

// The real accessories over a body that is there but draws nothing.
QImage accessoryAlone(const BatterySnapshot& snapshot, qreal scale) {
    return MenuBarBatteryImage::make(snapshot, scale, [](std::string_view name) -> SymbolDrawing {
        if (name.starts_with("battery.")) {
            return [](QPainter&, const QRectF&) {};
        }
        return symbolDrawing(name);
    });
}

int alphaAt(const QImage& image, QPointF point) {
    const qreal scale = image.devicePixelRatio();
    return qAlpha(image.pixel(static_cast<int>(std::floor(point.x() * scale)),
                              static_cast<int>(std::floor(point.y() * scale))));
}

bool isOpaqueAt(const QImage& image, QPointF point) {
    return alphaAt(image, point) >= 192;
}
bool isClearAt(const QImage& image, QPointF point) {
    return alphaAt(image, point) <= 16;
}

TEST(MenuBarBatteryImageTest, Is22By14PointsAtEveryScale) {
    for (const qreal scale : {1.0, 1.5, 2.0, 3.0}) {
        const QImage image = MenuBarBatteryImage::make(charging, scale);
        EXPECT_EQ(image.deviceIndependentSize(), QSizeF(22, 14)) << scale;
        EXPECT_EQ(image.size(), QSize(std::ceil(22 * scale), std::ceil(14 * scale))) << scale;
        EXPECT_TRUE(image.hasAlphaChannel());
    }
}

// Points inside the body where fills of a quarter, a half, three quarters and all differ.
const QPointF quarterFill(4.5, 7), halfFill(7.75, 7), threeQuarterFill(11.25, 7), fullFill(14.5, 7);

TEST(MenuBarBatteryImageTest, FillsTheBodyInQuarterBandsOfTheLevel) {
    struct Case {
        std::int64_t level;
        int filledQuarters;
    };
    const Case cases[] = {{0, 0},  {12, 0}, {13, 1}, {37, 1}, {38, 2},
                          {62, 2}, {63, 3}, {87, 3}, {88, 4}, {100, 4}};
    for (const qreal scale : {1.0, 2.0}) {
        for (const Case& c : cases) {
            const QImage image = MenuBarBatteryImage::make(battery(c.level, false, false), scale);
            SCOPED_TRACE(::testing::Message() << "level " << c.level << " at " << scale << "x");
            EXPECT_TRUE(isOpaqueAt(image, {0.5, 7})) << "outline";
            EXPECT_TRUE(isClearAt(image, {2.25, 7})) << "gap inside the outline";
            const QPointF samples[] = {quarterFill, halfFill, threeQuarterFill, fullFill};
            for (int quarter = 0; quarter < 4; ++quarter) {
                if (quarter < c.filledQuarters) {
                    EXPECT_TRUE(isOpaqueAt(image, samples[quarter])) << "quarter " << quarter;
                } else {
                    EXPECT_TRUE(isClearAt(image, samples[quarter])) << "quarter " << quarter;
                }
            }
        }
    }
}

enum class Accessory { none, bolt, plug };

// Inside the empty body: a point on the bolt's upper stroke, which falls between the plug's
// prongs, and one on the left prong of the plug standing upright, which the bolt leaves free.
Accessory accessoryIn(const QImage& image) {
    const QPointF boltOnly(9.75, 3.5), plugOnly(8, 3);
    if (isOpaqueAt(image, boltOnly) && isClearAt(image, plugOnly)) {
        return Accessory::bolt;
    }
    if (isOpaqueAt(image, plugOnly) && isClearAt(image, boltOnly)) {
        return Accessory::plug;
    }
    EXPECT_TRUE(isClearAt(image, boltOnly) && isClearAt(image, plugOnly)) << "neither accessory";
    return Accessory::none;
}

// Which accessory a state gets is BatteryGlyphTest's; here, that each is drawn where it belongs.
TEST(MenuBarBatteryImageTest, DrawsTheBoltWhileChargingAndThePlugOnPowerOtherwise) {
    const std::pair<BatterySnapshot, Accessory> cases[] = {
        {battery(0, false, false), Accessory::none},
        {battery(0, true, true), Accessory::bolt},
        {battery(0, true, false), Accessory::plug}};
    for (const qreal scale : {2.0, 4.0}) {
        for (const auto& [snapshot, expected] : cases) {
            EXPECT_EQ(accessoryIn(MenuBarBatteryImage::make(snapshot, scale)), expected) << scale;
        }
    }
}

// At 4x the ring is about 3.6 pixels wide: body pixels right beside the accessory are erased,
// pixels beyond the ring are untouched.
TEST(MenuBarBatteryImageTest, CutsATransparentRingAroundTheAccessory) {
    const qreal scale = 4;
    const QImage body = MenuBarBatteryImage::make(onBattery, scale);
    for (const BatterySnapshot& snapshot : {charging, pluggedIn}) {
        SCOPED_TRACE(snapshot.isCharging ? "bolt" : "plug");
        const QImage glyph = MenuBarBatteryImage::make(snapshot, scale);
        const QImage accessory = accessoryAlone(snapshot, scale);
        auto accessoryWithin = [&](int x, int y, int radius, int minimumAlpha) {
            for (int dy = -radius; dy <= radius; ++dy) {
                for (int dx = -radius; dx <= radius; ++dx) {
                    const QPoint p(x + dx, y + dy);
                    if (accessory.rect().contains(p) &&
                        qAlpha(accessory.pixel(p)) >= minimumAlpha) {
                        return true;
                    }
                }
            }
            return false;
        };
        int ringPixels = 0;
        for (int y = 0; y < glyph.height(); ++y) {
            for (int x = 0; x < glyph.width(); ++x) {
                const bool bodyThere = qAlpha(body.pixel(x, y)) >= 192;
                const bool accessoryThere = qAlpha(accessory.pixel(x, y)) > 0;
                if (bodyThere && !accessoryThere && accessoryWithin(x, y, 1, 128)) {
                    ++ringPixels;
                    EXPECT_LE(qAlpha(glyph.pixel(x, y)), 32) << "ring at " << x << ", " << y;
                }
                if (!accessoryWithin(x, y, 5, 1)) {
                    EXPECT_EQ(glyph.pixel(x, y), body.pixel(x, y))
                        << "beyond at " << x << ", " << y;
                }
            }
        }
        EXPECT_GT(ringPixels, 20);
    }
}

TEST(MenuBarBatteryImageTest, FallsBackWhenAnAccessoryHasNoArtwork) {
    struct Case {
        const char* name;
        BatterySnapshot snapshot;
        std::set<std::string> missing;
        std::optional<BatterySnapshot> drawnAs;  // with all artwork present; none: blank
    };
    const Case cases[] = {
        {"no bolt on power: plug", charging, {"bolt.fill"}, pluggedIn},
        {"no bolt, charge flowing in: plug",
         battery(100, true, false, 3),
         {"bolt.fill"},
         pluggedIn},
        {"no bolt off power: nothing", battery(100, false, true), {"bolt.fill"}, onBattery},
        {"no plug: nothing", pluggedIn, {"powerplug.fill"}, onBattery},
        {"no plug, charging: bolt", charging, {"powerplug.fill"}, charging},
        {"neither: nothing", charging, {"bolt.fill", "powerplug.fill"}, onBattery},
        {"no bodies: blank",
         battery(5, true, true),
         {"battery.0percent", "battery.25percent", "battery.50percent", "battery.75percent",
          "battery.100percent"},
         std::nullopt},
    };
    for (const Case& c : cases) {
        for (const qreal scale : {1.0, 2.0}) {
            const QImage image =
                MenuBarBatteryImage::make(c.snapshot, scale, artworkWithout(c.missing));
            QImage expected(image.size(), image.format());
            expected.fill(Qt::transparent);
            if (c.drawnAs) {
                expected = MenuBarBatteryImage::make(*c.drawnAs, scale);
            }
            EXPECT_EQ(image, expected) << c.name << scale;
        }
    }
}

}  // namespace
}  // namespace voltaro::ui
