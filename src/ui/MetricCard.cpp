#include "ui/MetricCard.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "core/presentation/DashboardTexts.h"
#include "ui/SymbolView.h"
#include "ui/TextStyle.h"

namespace voltaro::ui {
namespace {

constexpr int symbolFrameWidth = 18;
constexpr qreal symbolPoints = 15;
constexpr int itemSpacing = 10;
constexpr int verticalPadding = 9;
constexpr int lineSpacing = 2;

}  // namespace

MetricCard::MetricCard(const QString& title, std::string_view symbol, QWidget* parent)
    : QWidget(parent),
      symbol_(new SymbolView(symbol, QSize(symbolFrameWidth, static_cast<int>(symbolPoints)),
                             QSizeF(symbolPoints, symbolPoints), this)),
      title_(new QLabel(title, this)),
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

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, verticalPadding, 0, verticalPadding);
    row->setSpacing(itemSpacing);
    row->addWidget(symbol_, 0, Qt::AlignVCenter);
    row->addLayout(texts);
    row->addStretch(1);
    row->addWidget(value_, 0, Qt::AlignVCenter);
}

void MetricCard::setTitle(const QString& title) {
    title_->setText(title);
}

void MetricCard::setSymbol(std::string_view symbol) {
    symbol_->setSymbol(symbol);
}

void MetricCard::setCaption(const std::optional<QString>& caption) {
    caption_->setText(caption.value_or(QString()));
    caption_->setVisible(caption.has_value());
}

void MetricCard::setValue(std::optional<double> value, const QString& unit) {
    setValueText(QString::fromStdString(metricValueText(value, unit.toStdString())));
}

void MetricCard::setValueText(const QString& text) {
    value_->setText(text);
}

QString MetricCard::title() const {
    return title_->text();
}

std::optional<QString> MetricCard::caption() const {
    if (caption_->isHidden()) {
        return std::nullopt;
    }
    return caption_->text();
}

QString MetricCard::valueText() const {
    return value_->text();
}

std::string_view MetricCard::symbol() const {
    return symbol_->symbol();
}

}  // namespace voltaro::ui
