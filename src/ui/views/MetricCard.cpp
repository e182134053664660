#include "ui/views/MetricCard.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/widgets/BusyIndicator.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/TextStyle.h"
#include "ui/widgets/ToggleSwitch.h"

namespace voltaro::ui {
namespace {

constexpr int symbolFrameWidth = 18;
constexpr qreal symbolPoints = 15;
constexpr int itemSpacing = 10;
constexpr int verticalPadding = 9;
constexpr int lineSpacing = 2;

}  // namespace

MetricCard::MetricCard(QWidget* parent)
    : QWidget(parent),
      layout_(new QHBoxLayout(this)),
      symbol_(new SymbolView({}, QSize(symbolFrameWidth, static_cast<int>(symbolPoints)),
                             QSizeF(symbolPoints, symbolPoints), this)),
      title_(new QLabel(this)),
      caption_(new QLabel(this)),
      value_(new QLabel(this)) {
    symbol_->setObjectName("symbol");
    title_->setObjectName("title");
    caption_->setObjectName("caption");
    value_->setObjectName("value");

    caption_->setFont(captionFont(font()));
    useSecondaryColor(caption_);
    caption_->hide();
    value_->setFont(withTabularDigits(font()));
    value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    useSecondaryColor(value_);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(lineSpacing);
    texts->addWidget(title_);
    texts->addWidget(caption_);

    layout_->setContentsMargins(0, verticalPadding, 0, verticalPadding);
    layout_->setSpacing(itemSpacing);
    layout_->addWidget(symbol_, 0, Qt::AlignVCenter);
    layout_->addLayout(texts);
    layout_->addStretch(1);
    layout_->addWidget(value_, 0, Qt::AlignVCenter);
}

void MetricCard::setRow(const DashboardRow& row) {
    title_->setText(QString::fromStdString(row.title));
    caption_->setText(QString::fromStdString(row.caption.value_or("")));
    caption_->setVisible(row.caption.has_value());
    symbol_->setSymbol(row.symbol);
    value_->setText(QString::fromStdString(row.value));
    value_->setVisible(!row.switchState);
    if (row.switchState && switch_ == nullptr) {
        addSwitch();
    }
    if (switch_ != nullptr) {
        const bool changing = row.switchState == SwitchState::changing;
        switch_->setAccessibleName(title_->text());
        switch_->setChecked(row.switchState == SwitchState::on);
        switch_->setVisible(row.switchState && !changing);
        busy_->setVisible(changing);
    }
}

void MetricCard::addSwitch() {
    busy_ = new BusyIndicator(this);
    busy_->setObjectName("busy");
    switch_ = new ToggleSwitch(this);
    switch_->setObjectName("switch");
    connect(switch_, &ToggleSwitch::toggleRequested, this, &MetricCard::toggleRequested);
    layout_->addWidget(busy_, 0, Qt::AlignVCenter);
    layout_->addWidget(switch_, 0, Qt::AlignVCenter);
}

}  // namespace voltaro::ui
