#include "ui/MetricCard.h"

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QLabel>

#include "ui/QtPrinters.h"

namespace voltaro::ui {
namespace {

TEST(MetricCardTest, CaptionLineComesAndGoesWithoutChangingTheRest) {
    MetricCard card("Charger output", "powerplug");
    card.setValue(30, "W");
    card.show();
    const int heightWithout = card.sizeHint().height();
    auto* caption = card.findChild<QLabel*>("caption");
    EXPECT_FALSE(caption->isVisible());

    card.setCaption(QString("Charger rated at 30 W"));
    EXPECT_TRUE(caption->isVisible());
    EXPECT_GT(card.sizeHint().height(), heightWithout);

    card.setCaption(std::nullopt);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    EXPECT_FALSE(caption->isVisible());
    EXPECT_EQ(card.sizeHint().height(), heightWithout);
}

TEST(MetricCardTest, KeepsItsHeightWhenTheValueGrowsADigit) {
    MetricCard card("Power usage", "bolt");
    card.setValue(9.9, "W");
    const int before = card.sizeHint().height();
    card.setValue(10.0, "W");
    EXPECT_EQ(card.sizeHint().height(), before);
    EXPECT_EQ(card.findChild<QLabel*>("value")->alignment() & Qt::AlignRight, Qt::AlignRight);
}

}  // namespace
}  // namespace voltaro::ui
