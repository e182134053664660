#include "ui/linux/TrayIconFolder.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QSvgRenderer>
#include <QTemporaryDir>

#include "support/BatterySnapshots.h"
#include "ui/images/MenuBarBatteryImage.h"
#include "ui/images/TrayGlyphImage.h"

namespace voltaro::ui {
namespace {

TEST(TrayIconFolderTest, ReplacesAnIconInOneStepAndLeavesAnEqualOneAlone) {
    QTemporaryDir root;
    const TrayIconFolder folder(root.path() + "/icons");
    const QByteArray half = TrayGlyphImage::symbolicSvg(
        MenuBarBatteryImage::outline(voltaro::testing::battery(57)), Qt::black);
    const QByteArray empty = TrayGlyphImage::symbolicSvg(
        MenuBarBatteryImage::outline(voltaro::testing::battery(5)), Qt::black);

    ASSERT_TRUE(folder.write("voltaro-test-symbolic", half));
    EXPECT_TRUE(QFile::exists(root.path() + "/icons/hicolor/index.theme"));
    EXPECT_TRUE(QSvgRenderer(folder.iconPath("voltaro-test-symbolic")).isValid());

    // A panel reading the old file while it is replaced reads the old file to its end.
    QFile reader(folder.iconPath("voltaro-test-symbolic"));
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(folder.write("voltaro-test-symbolic", empty));
    EXPECT_EQ(reader.readAll(), half);
    QFile replaced(folder.iconPath("voltaro-test-symbolic"));
    ASSERT_TRUE(replaced.open(QIODevice::ReadOnly));
    EXPECT_EQ(replaced.readAll(), empty);

    const auto modified = replaced.fileTime(QFileDevice::FileModificationTime);
    ASSERT_TRUE(folder.write("voltaro-test-symbolic", empty));
    EXPECT_EQ(
        QFile(folder.iconPath("voltaro-test-symbolic")).fileTime(QFileDevice::FileModificationTime),
        modified);
    EXPECT_FALSE(TrayIconFolder("/proc/voltaro-icons").write("voltaro-test-symbolic", empty));
}

}  // namespace
}  // namespace voltaro::ui
