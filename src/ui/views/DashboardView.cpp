#include "ui/views/DashboardView.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/application/DisplayPreferencesStore.h"
#include "ui/application/Observation.h"
#include "ui/application/Translation.h"
#include "ui/images/BatteryStatusIcon.h"
#include "ui/images/SymbolImage.h"
#include "ui/views/ApplicationEnergyRow.h"
#include "ui/views/MetricCard.h"
#include "ui/widgets/BusyIndicator.h"
#include "ui/widgets/Divider.h"
#include "ui/widgets/TextStyle.h"

namespace voltaro::ui {
namespace {

constexpr QSize viewSize(380, 550);
constexpr int headerPadding = 16;
constexpr int headerSpacing = 12;
constexpr qreal batteryIconWidth = 32;
constexpr int contentSidePadding = 16;
constexpr int lineSpacing = 2;
constexpr int rowSpacing = 10;
constexpr int symbolFrameWidth = 18;
// Where a card's title starts: the symbol frame and the spacing after it.
constexpr int cardInset = symbolFrameWidth + rowSpacing;
// Dividers between applications leave the rank column free.
constexpr int applicationInset = 48;
constexpr int sectionDividerPadding = 4;
constexpr int sectionTitleTop = 12;
constexpr int sectionTitleBottom = 5;
constexpr int placeholderMinimumHeight = 120;
constexpr int placeholderSpacing = 8;
constexpr int footerPadding = 12;
// The button symbols at the size of the caption text beside them.
constexpr QSize batterySymbolSize(20, 11);
constexpr QSize gearSymbolSize(13, 13);
constexpr QSize chartSymbolSize(12, 12);
constexpr int scrollBarWidth = 9;

QString fromStd(const std::string& text) {
    return QString::fromStdString(text);
}

QLabel* secondaryLabel(const QFont& font, const char* objectName, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(objectName);
    label->setFont(font);
    useSecondaryColor(label);
    return label;
}

// At most the first two lines: the header has room for no more.
QString firstTwoLines(const QString& text) {
    return text.section(QLatin1Char('\n'), 0, 1);
}

}  // namespace

DashboardView::DashboardView(BatteryMonitor& monitor, std::string_view systemPowerTitle,
                             DashboardActions actions, QWidget* parent)
    : DashboardView(monitor, DisplayPreferencesStore::shared(), systemPowerTitle,
                    std::move(actions), parent) {}

DashboardView::DashboardView(BatteryMonitor& monitor, DisplayPreferencesStore& preferences,
                             std::string_view systemPowerTitle, DashboardActions actions,
                             QWidget* parent)
    : QWidget(parent),
      monitor_(monitor),
      preferences_(preferences),
      systemPowerTitle_(systemPowerTitle),
      actions_(std::move(actions)) {
    setObjectName("dashboard");
    setFixedSize(viewSize);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());
    layout->addWidget(new Divider(0, 0, this));
    layout->addWidget(makeContent(), 1);
    layout->addWidget(new Divider(0, 0, this));
    layout->addWidget(makeFooter());

    const auto rerender = [this](const auto&) { render(); };
    observe(this, monitor_.snapshot(), rerender);
    observe(this, monitor_.topApplications(), rerender);
    observe(this, monitor_.appEnergyWindowDuration(), rerender);
    observe(this, monitor_.isLowPowerModeEnabled(), rerender);
    observe(this, monitor_.isLowPowerModeKnown(), rerender);
    observe(this, monitor_.isChangingLowPowerMode(), rerender);
    observe(this, monitor_.lowPowerModeError(), rerender);
    connect(&preferences_, &DisplayPreferencesStore::changed, this, &DashboardView::render);

    render();
    showButtonSymbols();
    showScrollBarStyle();
}

QWidget* DashboardView::makeHeader() {
    auto* header = new QWidget(this);
    header->setObjectName("header");

    batteryIcon_ = new BatteryStatusIcon(batteryIconWidth, header);
    batteryIcon_->setObjectName("batteryIcon");
    chargeLine_ = new QLabel(header);
    chargeLine_->setObjectName("chargeLine");
    chargeLine_->setFont(withTabularDigits(headlineFont(font())));
    stateLabel_ = secondaryLabel(captionFont(font()), "stateLabel", header);
    chargeTime_ = secondaryLabel(withTabularDigits(captionFont(font())), "chargeTime", header);
    chargeTime_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* lines = new QVBoxLayout;
    lines->setSpacing(lineSpacing);
    lines->addWidget(chargeLine_);
    lines->addWidget(stateLabel_);

    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(headerPadding, headerPadding, headerPadding, headerPadding);
    row->setSpacing(headerSpacing);
    row->addWidget(batteryIcon_, 0, Qt::AlignVCenter);
    row->addLayout(lines);
    row->addStretch(1);
    row->addWidget(chargeTime_, 0, Qt::AlignVCenter);
    return header;
}

QWidget* DashboardView::makeContent() {
    scrollArea_ = new QScrollArea(this);
    scrollArea_->setObjectName("scrollArea");
    scrollArea_->setFrameShape(QFrame::NoFrame);
    scrollArea_->setWidgetResizable(true);
    scrollArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    scrollArea_->verticalScrollBar()->installEventFilter(this);

    content_ = new QWidget(scrollArea_);
    content_->setObjectName("content");
    content_->setAutoFillBackground(false);
    sectionLayout_ = new QVBoxLayout(content_);
    sectionLayout_->setContentsMargins(contentSidePadding, 0, contentSidePadding, 0);
    sectionLayout_->setSpacing(0);
    sectionLayout_->addStretch(1);
    scrollArea_->setWidget(content_);
    return scrollArea_;
}

DashboardView::Section& DashboardView::section(std::size_t index) {
    while (sections_.size() <= index) {
        auto* widget = new QWidget(content_);
        widget->setObjectName("section");
        auto* layout = new QVBoxLayout(widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        if (!sections_.empty()) {
            auto* divider = new Divider(0, sectionDividerPadding, widget);
            divider->setObjectName("sectionDivider");
            layout->addWidget(divider);
        }
        Section added{widget, secondaryLabel(captionFont(font()), "sectionTitle", widget),
                      secondaryLabel(captionFont(font()), "sectionDetail", widget),
                      new QVBoxLayout};
        auto* heading = new QHBoxLayout;
        for (QLabel* label : {added.title, added.detail}) {
            label->setContentsMargins(0, sectionTitleTop, 0, sectionTitleBottom);
            heading->addWidget(label);
            heading->addStretch(label == added.title ? 1 : 0);
        }
        layout->addLayout(heading);
        added.rowLayout->setSpacing(0);
        layout->addLayout(added.rowLayout);
        sectionLayout_->insertWidget(sectionLayout_->count() - 1, widget);
        sections_.push_back(added);
    }
    return sections_[index];
}

void DashboardView::addPlaceholder(Section& shown) {
    shown.placeholder = new QWidget(shown.widget);
    shown.placeholder->setObjectName("placeholder");
    shown.placeholder->setMinimumHeight(placeholderMinimumHeight);
    auto* spinner = new BusyIndicator(shown.placeholder);
    spinner->setObjectName("placeholderBusy");
    shown.placeholderText = secondaryLabel(font(), "placeholderText", shown.placeholder);
    auto* row = new QHBoxLayout(shown.placeholder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(placeholderSpacing);
    row->addStretch(1);
    row->addWidget(spinner, 0, Qt::AlignVCenter);
    row->addWidget(shown.placeholderText, 0, Qt::AlignVCenter);
    row->addStretch(1);
    shown.widget->layout()->addWidget(shown.placeholder);
}

QWidget* DashboardView::makeFooter() {
    auto* footer = new QWidget(this);
    footer->setObjectName("footer");
    footer->setFont(captionFont(font()));
    batterySettingsButton_ =
        makeFooterButton(ui::tr("Battery Settings"), "batterySettingsButton", footer);
    settingsButton_ = makeFooterButton(ui::tr("Settings"), "settingsButton", footer);
    const auto onClick = [this](QPushButton* button, const std::function<void()>& action) {
        connect(button, &QPushButton::clicked, this, [action] {
            if (action) {
                action();
            }
        });
    };
    onClick(batterySettingsButton_, actions_.openBatterySettings);
    onClick(settingsButton_, actions_.openSettings);

    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(footerPadding, footerPadding, footerPadding, footerPadding);
    row->addWidget(batterySettingsButton_);
    row->addStretch(1);
    if (actions_.openHistory) {
        historyButton_ = makeFooterButton(ui::tr("History"), "historyButton", footer);
        onClick(historyButton_, actions_.openHistory);
        row->addWidget(historyButton_);
    }
    row->addWidget(settingsButton_);
    return footer;
}

QPushButton* DashboardView::makeFooterButton(const QString& text, const char* objectName,
                                             QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void DashboardView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        showButtonSymbols();
        showScrollBarStyle();
    }
}

bool DashboardView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == scrollArea_->verticalScrollBar() &&
        (event->type() == QEvent::Show || event->type() == QEvent::Hide)) {
        fitContentBesideScrollBar();
    }
    return QWidget::eventFilter(watched, event);
}

void DashboardView::render() {
    const DashboardModel model =
        dashboardModel(DashboardState::of(monitor_),
                       {preferences_.temperatureUnit().toStdString(), systemPowerTitle_});
    batteryIcon_->setSnapshot(monitor_.snapshot().get());
    chargeLine_->setText(fromStd(model.header.chargeLine));
    stateLabel_->setText(fromStd(model.header.stateLine));
    chargeTime_->setText(firstTwoLines(fromStd(model.header.chargeTime)));
    for (std::size_t i = 0; i < std::max(model.sections.size(), sections_.size()); ++i) {
        if (i < model.sections.size()) {
            showSection(section(i), model.sections[i]);
        }
        sections_[i].widget->setVisible(i < model.sections.size());
    }
}

void DashboardView::showSection(Section& shown, const DashboardSection& section) {
    shown.title->setText(fromStd(section.title));
    shown.detail->setText(fromStd(section.detail));
    for (std::size_t i = 0; i < std::max(section.rows.size(), shown.rows.size()); ++i) {
        if (i < section.rows.size()) {
            showRow(shown, i, section.rows[i]);
        }
        // A divider only between two rows.
        shown.rows[i].divider->setVisible(i > 0 && i < section.rows.size());
        shown.rows[i].widget->setVisible(i < section.rows.size());
    }
    if (section.placeholder && shown.placeholder == nullptr) {
        addPlaceholder(shown);
    }
    if (shown.placeholder != nullptr) {
        shown.placeholderText->setText(fromStd(section.placeholder.value_or("")));
        shown.placeholder->setVisible(section.placeholder.has_value());
    }
}

void DashboardView::showRow(Section& shown, std::size_t index, const DashboardRow& row) {
    const bool ranked = row.rank.has_value();
    const auto isRanked = [](const ShownRow& kept) {
        return qobject_cast<ApplicationEnergyRow*>(kept.widget) != nullptr;
    };
    if (index < shown.rows.size() && isRanked(shown.rows[index]) != ranked) {
        delete shown.rows[index].divider;
        delete shown.rows[index].widget;
        shown.rows.erase(shown.rows.begin() + static_cast<std::ptrdiff_t>(index));
    }
    if (index == shown.rows.size() || isRanked(shown.rows[index]) != ranked) {
        // Ranked rows leave the rank column free; cards start where their titles do.
        auto* divider = new Divider(ranked ? applicationInset : cardInset, 0, shown.widget);
        divider->setObjectName("rowDivider");
        QWidget* widget = nullptr;
        if (ranked) {
            widget = new ApplicationEnergyRow(shown.widget);
        } else {
            auto* card = new MetricCard(shown.widget);
            connect(card, &MetricCard::toggleRequested, this,
                    [this](bool enabled) { monitor_.setLowPowerMode(enabled); });
            widget = card;
        }
        widget->setObjectName(ranked ? "applicationRow" : "card");
        const int at = static_cast<int>(index) * 2;
        shown.rowLayout->insertWidget(at, divider);
        shown.rowLayout->insertWidget(at + 1, widget);
        shown.rows.insert(shown.rows.begin() + static_cast<std::ptrdiff_t>(index),
                          {divider, widget});
    }
    if (auto* card = qobject_cast<MetricCard*>(shown.rows[index].widget)) {
        card->setRow(row);
    } else {
        static_cast<ApplicationEnergyRow*>(shown.rows[index].widget)->setRow(row);
    }
}

void DashboardView::showButtonSymbols() {
    const QColor color = palette().color(QPalette::ButtonText);
    const qreal scale = devicePixelRatioF();
    const auto setSymbol = [&](QPushButton* button, std::string_view symbol, QSize size) {
        button->setIcon(QIcon(symbolPixmap(symbol, size, scale, color)));
        button->setIconSize(size);
    };
    setSymbol(batterySettingsButton_, "battery.100percent", batterySymbolSize);
    setSymbol(settingsButton_, "gearshape", gearSymbolSize);
    if (historyButton_ != nullptr) {
        setSymbol(historyButton_, "chart.bar", chartSymbolSize);
    }
}

void DashboardView::showScrollBarStyle() {
    // A slim bar in the side padding, as popovers have, rather than a full trough with arrows.
    const auto rgba = [this](qreal alpha) {
        const QColor color = palette().color(QPalette::WindowText);
        return QStringLiteral("rgba(%1, %2, %3, %4)")
            .arg(color.red())
            .arg(color.green())
            .arg(color.blue())
            .arg(alpha);
    };
    scrollArea_->verticalScrollBar()->setStyleSheet(
        QStringLiteral(
            "QScrollBar:vertical { background: transparent; width: %1px; margin: 3px 3px 3px 0; }"
            "QScrollBar::handle:vertical { background: %2; border-radius: 3px; min-height: 32px; }"
            "QScrollBar::handle:vertical:hover, QScrollBar::handle:vertical:pressed "
            "{ background: %3; }"
            "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical "
            "{ height: 0; border: none; background: none; }"
            "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }")
            .arg(scrollBarWidth)
            .arg(rgba(0.28), rgba(0.45)));
}

void DashboardView::fitContentBesideScrollBar() {
    // The bar takes its width from the right padding, so the rows do not move when it appears.
    const bool barShown = scrollArea_->verticalScrollBar()->isVisibleTo(scrollArea_);
    const int right = contentSidePadding - (barShown ? scrollBarWidth : 0);
    content_->layout()->setContentsMargins(contentSidePadding, 0, right, 0);
}

}  // namespace voltaro::ui
