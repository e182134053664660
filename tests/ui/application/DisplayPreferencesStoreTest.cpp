#include "ui/application/DisplayPreferencesStore.h"

#include <gtest/gtest.h>
#include "ui/TemporaryPreferences.h"

namespace voltaro::ui {
namespace {

TEST(DisplayPreferencesStoreTest, ReadsDefaultsFromAnEmptyOrCorruptFileWithoutWriting) {
    const struct {
        const char* description;
        QByteArray content;
    } cases[] = {
        {"empty", ""},
        {"garbage", "\x01\xff[[[=\n\xfe"},
        {"values of the wrong kind",
         "[General]\nshowsPercentageInMenuBar=maybe\nshowsPowerUsageInMenuBar=2\n"},
    };
    for (const auto& c : cases) {
        testing::TemporaryPreferences file(c.content);
        DisplayPreferencesStore store(file.reopened());
        EXPECT_TRUE(store.value(showsPercentageInMenuBar)) << c.description;
        EXPECT_TRUE(store.value(showsPowerUsageInMenuBar)) << c.description;
        EXPECT_TRUE(store.value(highlightsBatteryDrainInMenuBar)) << c.description;
        EXPECT_EQ(store.temperatureUnit(), "celsius") << c.description;
        EXPECT_EQ(file.content(), c.content) << c.description;
    }
}

}  // namespace
}  // namespace voltaro::ui
