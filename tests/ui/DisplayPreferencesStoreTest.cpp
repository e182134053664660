#include "ui/DisplayPreferencesStore.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace voltaro::ui {
namespace {

std::unique_ptr<QSettings> settingsFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(content);
    file.close();
    return std::make_unique<QSettings>(path, QSettings::IniFormat);
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

TEST(DisplayPreferencesStoreTest, ReadsDefaultsFromAnEmptyOrCorruptFileWithoutWriting) {
    QTemporaryDir directory;
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
        const QString path = directory.filePath(QString::fromLatin1(c.description) + ".conf");
        DisplayPreferencesStore store(settingsFile(path, c.content));
        EXPECT_TRUE(store.value(showsPercentageInMenuBar)) << c.description;
        EXPECT_TRUE(store.value(showsPowerUsageInMenuBar)) << c.description;
        EXPECT_TRUE(store.value(highlightsBatteryDrainInMenuBar)) << c.description;
        EXPECT_EQ(store.temperatureUnit(), "celsius") << c.description;
        EXPECT_EQ(contentOf(path), c.content) << c.description;
    }
}

TEST(DisplayPreferencesStoreTest, WritesThroughAndTellsEveryReader) {
    QTemporaryDir directory;
    const QString path = directory.filePath("voltaro.conf");
    DisplayPreferencesStore store(std::make_unique<QSettings>(path, QSettings::IniFormat));
    QSignalSpy changes(&store, &DisplayPreferencesStore::changed);
    store.setValue(showsPowerUsageInMenuBar, false);
    store.setTemperatureUnit("fahrenheit");
    EXPECT_EQ(changes.count(), 2);

    DisplayPreferencesStore reopened(std::make_unique<QSettings>(path, QSettings::IniFormat));
    EXPECT_FALSE(reopened.value(showsPowerUsageInMenuBar));
    EXPECT_TRUE(reopened.value(showsPercentageInMenuBar));
    EXPECT_EQ(reopened.temperatureUnit(), "fahrenheit");
}

TEST(DisplayPreferencesStoreTest, KeepsAStoredUnitItDoesNotKnow) {
    QTemporaryDir directory;
    DisplayPreferencesStore store(
        settingsFile(directory.filePath("voltaro.conf"), "[General]\ntemperatureUnit=kelvin\n"));
    EXPECT_EQ(store.temperatureUnit(), "kelvin");
}

}  // namespace
}  // namespace voltaro::ui
