#include "ui/views/HistoryView.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>

#include "support/ManualScheduler.h"
#include "ui/views/HistoryChart.h"
#include "ui/widgets/ElidedLabel.h"

namespace voltaro::ui {
namespace {

using namespace std::chrono_literals;

// 18:00 on a Sunday, UTC.
const WallTime now{std::chrono::seconds(1'795'370'400)};

// A day seen from its evening: on battery from 21:00, asleep from 00:30 to 07:10, charging until
// 08:40 and over lunch, a busy hour and a half in the afternoon.
std::vector<HistoryRecord> fixtureDay() {
    std::vector<HistoryRecord> records;
    double charge = 80;
    for (int minute = -3 * 60; minute < 18 * 60; ++minute) {
        if (minute >= 30 && minute < 7 * 60 + 10) {
            continue;
        }
        const bool charging = (minute >= 7 * 60 + 10 && minute < 8 * 60 + 40) ||
                              (minute >= 12 * 60 && minute < 13 * 60);
        const bool busy = minute >= 15 * 60 && minute < 16 * 60 + 30;
        const double watts = (busy ? 14.0 : 4.5) + 2.0 * ((minute * 37 + 400) % 11) / 10.0;
        // A 60 Wh battery: a watt for a minute is 1/36 of a percent.
        charge = std::clamp(charge + (charging ? 0.45 : -watts / 36), 3.0, 100.0);
        HistoryRecord record;
        record.time = now - 18h + minute * 1min;
        record.chargePercent = static_cast<std::int64_t>(charge);
        record.systemWatts = watts;
        record.batteryWatts = charging ? 25.0 : -watts;
        record.isConnectedToPower = record.isCharging = charging;
        record.applications = {{"firefox", "Firefox", watts * 0.35},
                               {"code", "Visual Studio Code", busy ? 6.5 : 1.2},
                               {"slack", "Slack", 0.9},
                               {"terminal", "Terminal", 0.3}};
        if (minute < 0) {
            record.applications.push_back({"rhythmbox", "Rhythmbox", 1.8});
        }
        records.push_back(record);
    }
    return records;
}

// Answers each question later, as the worker does, with the records since the time asked for.
struct FixtureLoader {
    std::vector<HistoryRecord> records = fixtureDay();
    std::vector<WallTime> askedSince;
    std::vector<HistoryView::RecordsReady> pending;

    HistoryView::Loader loader() {
        return [this](WallTime since, HistoryView::RecordsReady done) {
            askedSince.push_back(since);
            pending.push_back(std::move(done));
        };
    }
    void answer(std::size_t question) {
        std::vector<HistoryRecord> since;
        std::copy_if(records.begin(), records.end(), std::back_inserter(since),
                     [&](const auto& r) { return r.time >= askedSince[question]; });
        pending[question](since);
    }
};

QStringList applicationNames(const HistoryView& view) {
    QStringList names;
    for (const auto* label : view.findChildren<ElidedLabel*>()) {
        names << label->fullText();
    }
    return names;
}

TEST(HistoryViewTest, ShowsTheChosenPeriodAndDropsOvertakenAnswers) {
    testing::ManualScheduler clock(now);
    FixtureLoader history;
    HistoryView view(history.loader(), clock);
    view.resize(380, 440);
    view.show();
    ASSERT_EQ(history.askedSince, std::vector<WallTime>{now - 24h});
    view.choosePeriod(1);
    history.answer(0);  // overtaken by the question for 7 days
    EXPECT_TRUE(view.chart().model().chargeLines.empty());
    history.answer(1);
    EXPECT_EQ(history.askedSince.back(), now - 7 * 24h);
    const HistoryChartModel& chart = view.chart().model();
    EXPECT_EQ(chart.chargeLines.size(), 2u);  // split where the machine slept
    EXPECT_EQ(chart.chargingSpans.size(), 2u);
    EXPECT_EQ(applicationNames(view),
              (QStringList{"Firefox", "Visual Studio Code", "Slack", "Rhythmbox", "Terminal"}));
    view.chart().showPointNear(now - 18h + 4h);  // asleep: nothing
    EXPECT_FALSE(view.chart().shownPoint());
}

QString screenshotFolder() {
    const QString folder = qEnvironmentVariable("VOLTARO_SCREENSHOT_DIR");
    if (!folder.isEmpty()) {
        QDir().mkpath(folder);
    }
    return folder;
}

// The 24 hours of the fixture, the pointer resting on the busy afternoon, light and dark.
TEST(Screenshots, History) {
    const QString folder = screenshotFolder();
    if (folder.isEmpty()) {
        GTEST_SKIP() << "set VOLTARO_SCREENSHOT_DIR to write the history screenshots";
    }
    QPalette dark(QColor(0x3b, 0x3b, 0x3e), QColor(0x2a, 0x2a, 0x2c));
    dark.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    const std::pair<const char*, QPalette> looks[] = {{"light", QPalette()}, {"dark", dark}};
    for (const auto& [name, palette] : looks) {
        testing::ManualScheduler clock(now);
        FixtureLoader history;
        HistoryView view(history.loader(), clock);
        view.setPalette(palette);
        view.resize(380, 440);
        view.show();
        history.answer(0);
        view.chart().showPointNear(now - 18h + 15h + 40min);
        QCoreApplication::processEvents();
        constexpr qreal scale = 2;
        QPixmap image(view.size() * scale);
        image.setDevicePixelRatio(scale);
        view.render(&image);
        const QString file = QDir(folder).filePath(QStringLiteral("history-%1.png").arg(name));
        EXPECT_TRUE(image.save(file)) << file.toStdString();
    }
}

}  // namespace
}  // namespace voltaro::ui
