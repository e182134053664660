#include "ui/macos/CocoaScreenCoordinates.h"

#include <gtest/gtest.h>

namespace voltaro::ui {
namespace {

TEST(CocoaScreenCoordinatesTest, TurnsAppKitsBottomUpRectanglesIntoTopDownOnes) {
    struct Case {
        const char* what;
        CocoaRect item;
        double primaryHeight;
        ScreenRect expected;
    };
    const Case cases[] = {
        {"menu bar of the primary screen", {1200, 876, 96, 24}, 900, {1200, 0, 96, 24}},
        {"screen above the primary one", {100, 1956, 80, 24}, 900, {100, -1080, 80, 24}},
        {"screen left of it, lower down", {-1500, 600, 60, 24}, 1117, {-1500, 493, 60, 24}},
        // Half points round outwards, so the anchor still covers the whole item.
        {"fractional item", {10.5, 875.5, 40.2, 24}, 900, {10, 0, 41, 25}},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(topLeftScreenRect(test.item, test.primaryHeight), test.expected) << test.what;
    }
}

}  // namespace
}  // namespace voltaro::ui
