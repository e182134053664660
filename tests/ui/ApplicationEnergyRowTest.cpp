#include "ui/ApplicationEnergyRow.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QTemporaryDir>

#include "ui/ApplicationIconImage.h"
#include "ui/QtPrinters.h"
#include "ui/SymbolImage.h"

namespace voltaro::ui {
namespace {

AppEnergy application(std::string name, double watts, std::optional<ApplicationIcon> icon = {}) {
    return AppEnergy{name, name, watts, std::move(icon)};
}

QString writeImage(const QTemporaryDir& directory, const QString& name, QColor color) {
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(color);
    const QString path = directory.filePath(name);
    image.save(path);
    return path;
}

QImage shownIcon(const ApplicationEnergyRow& row) {
    return row.findChild<QLabel*>("icon")->pixmap().toImage();
}

TEST(ApplicationEnergyRowTest, ShowsRankNameAndPower) {
    ApplicationEnergyRow row;
    row.setRank(3);
    const std::pair<double, const char*> cases[] = {{1.2345, "1.23 W"},
                                                    {0.005, "less than 0.01 W"}};
    for (const auto& [watts, text] : cases) {
        row.setApplication(application("Editor", watts));
        EXPECT_EQ(row.findChild<QLabel*>("watts")->text(), text) << watts;
    }
    EXPECT_EQ(row.findChild<QLabel*>("rank")->text(), "3");
    EXPECT_EQ(row.findChild<QLabel*>("name")->text(), "Editor");
}

TEST(ApplicationEnergyRowTest, DrawsTheCatalogIconFittedIntoItsFrame) {
    QTemporaryDir directory;
    const QString path = writeImage(directory, "editor.png", Qt::red);
    ApplicationEnergyRow row;
    row.setApplication(application(
        "Editor", 1, ApplicationIcon{ApplicationIcon::Kind::filePath, path.toStdString()}));
    EXPECT_FALSE(row.showsFallbackIcon());
    const QImage icon = shownIcon(row);
    EXPECT_EQ(icon.deviceIndependentSize(), QSizeF(24, 24));
    EXPECT_EQ(icon.pixelColor(icon.width() / 2, icon.height() / 2), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(0, 0), QColor(Qt::red));  // square: fills the frame
}

TEST(ApplicationEnergyRowTest, FallsBackToTheAppSymbolForIconsThatDoNotLoad) {
    QTemporaryDir directory;
    QFile text(directory.filePath("notes.png"));
    text.open(QIODevice::WriteOnly);
    text.write("not an image");
    text.close();
    const struct {
        const char* description;
        std::optional<ApplicationIcon> icon;
    } cases[] = {
        {"no icon", std::nullopt},
        {"unknown theme name", ApplicationIcon{ApplicationIcon::Kind::themeName, "voltaro-none"}},
        {"empty theme name", ApplicationIcon{ApplicationIcon::Kind::themeName, ""}},
        {"missing file",
         ApplicationIcon{ApplicationIcon::Kind::filePath, "/nonexistent/voltaro/icon.png"}},
        {"file that is no image",
         ApplicationIcon{ApplicationIcon::Kind::filePath, text.fileName().toStdString()}},
        {"directory",
         ApplicationIcon{ApplicationIcon::Kind::filePath, directory.path().toStdString()}},
        {"bundle", ApplicationIcon{ApplicationIcon::Kind::bundlePath, "/Applications/X.app"}},
    };
    for (const auto& c : cases) {
        ApplicationEnergyRow row;
        row.setApplication(application("Tool", 1, c.icon));
        EXPECT_TRUE(row.showsFallbackIcon()) << c.description;
        EXPECT_EQ(shownIcon(row).deviceIndependentSize(), QSizeF(24, 24)) << c.description;
    }
}

TEST(ApplicationEnergyRowTest, FallbackSymbolKeepsItsPadding) {
    if (!hasSymbol("app")) {
        GTEST_SKIP() << "no artwork for the app symbol";
    }
    ApplicationEnergyRow row;
    row.setApplication(application("Tool", 1));
    const QImage icon = shownIcon(row);
    const auto inset = static_cast<int>(4 * icon.devicePixelRatio());
    const QRect inner = icon.rect().adjusted(inset, inset, -inset, -inset);
    int drawn = 0;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            if (icon.pixelColor(x, y).alpha() == 0) {
                continue;
            }
            ++drawn;
            EXPECT_TRUE(inner.contains(x, y)) << x << "," << y;
        }
    }
    EXPECT_GT(drawn, 0);
}

TEST(ApplicationEnergyRowTest, ResolvesEachIconOnce) {
    QTemporaryDir directory;
    const QString path = writeImage(directory, "player.png", Qt::blue);
    const ApplicationIcon icon{ApplicationIcon::Kind::filePath, path.toStdString()};
    ASSERT_TRUE(ApplicationIconImage::resolve(icon));
    QFile::remove(path);
    // Later refreshes neither look at the disk again nor lose the picture.
    ApplicationEnergyRow row;
    row.setApplication(application("Player", 1, icon));
    EXPECT_FALSE(row.showsFallbackIcon());
    EXPECT_EQ(shownIcon(row).pixelColor(12, 12), QColor(Qt::blue));
}

TEST(ApplicationEnergyRowTest, CutsALongNameToOneLineAndKeepsThePowerWhole) {
    const QString longName =
        "A Remarkably Long Application Name That Could Never Fit Into One Dashboard Row";
    ApplicationEnergyRow row;
    row.setRank(1);
    row.setApplication(application(longName.toStdString(), 12.5));
    row.resize(300, row.sizeHint().height());
    row.show();

    auto* name = row.findChild<QLabel*>("name");
    auto* watts = row.findChild<QLabel*>("watts");
    EXPECT_TRUE(name->text().endsWith(QChar(0x2026))) << name->text().toStdString();
    EXPECT_LE(name->fontMetrics().horizontalAdvance(name->text()), name->width());
    EXPECT_EQ(name->toolTip(), longName);
    EXPECT_EQ(watts->text(), "12.50 W");
    EXPECT_LE(watts->geometry().right(), row.width());
    EXPECT_GE(watts->width(), watts->fontMetrics().horizontalAdvance("12.50 W"));

    row.resize(900, row.height());
    EXPECT_EQ(name->text(), longName);

    row.setApplication(application("Short\nname", 1));
    EXPECT_EQ(name->text(), "Short name");
}

}  // namespace
}  // namespace voltaro::ui
