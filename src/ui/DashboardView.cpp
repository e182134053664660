#include "ui/DashboardView.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "core/presentation/DashboardTexts.h"
#include "core/presentation/TemperatureUnitPreference.h"
#include "ui/ApplicationEnergyRow.h"
#include "ui/BatterySettings.h"
#include "ui/BatteryStatusIcon.h"
#include "ui/BusyIndicator.h"
#include "ui/DisplayPreferencesStore.h"
#include "ui/Divider.h"
#include "ui/MetricCard.h"
#include "ui/Observation.h"
#include "ui/SymbolImage.h"
#include "ui/SymbolView.h"
#include "ui/TextStyle.h"
#include "ui/ToggleSwitch.h"
#include "ui/Translation.h"

namespace voltaro::ui {
namespace {

constexpr QSize viewSize(380, 550);
constexpr int headerPadding = 16;
constexpr int headerSpacing = 12;
constexpr qreal batteryIconWidth = 32;
constexpr int contentSidePadding = 16;
constexpr int lineSpacing = 2;
constexpr int rowSpacing = 10;
constexpr int rowVerticalPadding = 9;
constexpr int symbolFrameWidth = 18;
constexpr qreal symbolPoints = 15;
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

QLabel* sectionTitle(const QString& text, const char* objectName, QWidget* parent) {
    QLabel* title = secondaryLabel(captionFont(parent->font()), objectName, parent);
    title->setText(text);
    title->setContentsMargins(0, sectionTitleTop, 0, sectionTitleBottom);
    return title;
}

Divider* sectionDivider(QWidget* parent) {
    auto* divider = new Divider(0, sectionDividerPadding, parent);
    divider->setObjectName("sectionDivider");
    return divider;
}

// At most the first two lines: the header has room for no more.
QString firstTwoLines(const QString& text) {
    return text.section(QLatin1Char('\n'), 0, 1);
}

}  // namespace

DashboardView::DashboardView(BatteryMonitor& monitor, std::function<void()> openSettings,
                             QWidget* parent)
    : DashboardView(monitor, DisplayPreferencesStore::shared(), std::move(openSettings), parent) {}

DashboardView::DashboardView(BatteryMonitor& monitor, DisplayPreferencesStore& preferences,
                             std::function<void()> openSettings, QWidget* parent)
    : QWidget(parent),
      monitor_(monitor),
      preferences_(preferences),
      openSettings_(std::move(openSettings)) {
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

    observe(this, monitor_.snapshot(), [this](const BatterySnapshot&) { showSnapshot(); });
    observe(this, monitor_.topApplications(), [this](const std::vector<AppEnergy>&) {
        showApplications();
        showWindowLabel();
    });
    observe(this, monitor_.appEnergyWindowDuration(), [this](double) { showWindowLabel(); });
    observe(this, monitor_.isLowPowerModeEnabled(), [this](bool) { showLowPowerMode(); });
    observe(this, monitor_.isChangingLowPowerMode(), [this](bool) { showLowPowerMode(); });
    observe(this, monitor_.lowPowerModeError(),
            [this](const std::optional<std::string>&) { showLowPowerMode(); });
    connect(&preferences_, &DisplayPreferencesStore::changed, this,
            &DashboardView::showTemperature);

    showSnapshot();
    showLowPowerMode();
    showApplications();
    showWindowLabel();
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

    auto* content = new QWidget(scrollArea_);
    content_ = content;
    content->setObjectName("content");
    content->setAutoFillBackground(false);
    auto* list = new QVBoxLayout(content);
    list->setContentsMargins(contentSidePadding, 0, contentSidePadding, 0);
    list->setSpacing(0);

    list->addWidget(sectionTitle(ui::tr("Power"), "powerTitle", content));
    systemPowerCard_ = new MetricCard(fromStd(systemPowerTitle()), "bolt", content);
    systemPowerCard_->setObjectName("systemPowerCard");
    list->addWidget(systemPowerCard_);
    batteryDivider_ = new Divider(cardInset, 0, content);
    batteryDivider_->setObjectName("batteryDivider");
    list->addWidget(batteryDivider_);
    batteryCard_ = new MetricCard(QString(), "arrow.down.to.line.compact", content);
    batteryCard_->setObjectName("batteryCard");
    list->addWidget(batteryCard_);
    chargerDivider_ = new Divider(cardInset, 0, content);
    chargerDivider_->setObjectName("chargerDivider");
    list->addWidget(chargerDivider_);
    chargerCard_ = new MetricCard(ui::tr("Charger output"), "powerplug", content);
    chargerCard_->setObjectName("chargerCard");
    list->addWidget(chargerCard_);

    list->addWidget(sectionDivider(content));
    list->addWidget(sectionTitle(ui::tr("Battery"), "batteryTitle", content));
    temperatureRow_ = new MetricCard(ui::tr("Temperature"), "thermometer.medium", content);
    temperatureRow_->setObjectName("temperatureRow");
    list->addWidget(temperatureRow_);
    auto* lowPowerDivider = new Divider(cardInset, 0, content);
    lowPowerDivider->setObjectName("lowPowerDivider");
    list->addWidget(lowPowerDivider);
    list->addWidget(makeLowPowerRow(content));

    list->addWidget(sectionDivider(content));
    auto* energyHeading = new QHBoxLayout;
    energyHeading->addWidget(sectionTitle(ui::tr("App energy usage"), "energyTitle", content));
    energyHeading->addStretch(1);
    energyWindowLabel_ = secondaryLabel(captionFont(font()), "energyWindowLabel", content);
    energyWindowLabel_->setContentsMargins(0, sectionTitleTop, 0, sectionTitleBottom);
    energyHeading->addWidget(energyWindowLabel_);
    list->addLayout(energyHeading);
    list->addWidget(makeApplications(content));
    list->addStretch(1);

    scrollArea_->setWidget(content);
    return scrollArea_;
}

QWidget* DashboardView::makeLowPowerRow(QWidget* parent) {
    auto* row = new QWidget(parent);
    row->setObjectName("lowPowerRow");
    auto* symbol = new SymbolView("leaf", QSize(symbolFrameWidth, static_cast<int>(symbolPoints)),
                                  QSizeF(symbolPoints, symbolPoints), row);
    symbol->setObjectName("symbol");
    auto* title = new QLabel(ui::tr("Low Power Mode"), row);
    title->setObjectName("title");
    lowPowerError_ = secondaryLabel(captionFont(font()), "lowPowerError", row);
    lowPowerError_->hide();
    lowPowerSwitch_ = new ToggleSwitch(row);
    lowPowerSwitch_->setFollowsClicks(false);
    lowPowerSwitch_->setObjectName("lowPowerSwitch");
    lowPowerSwitch_->setAccessibleName(ui::tr("Low Power Mode"));
    lowPowerBusy_ = new BusyIndicator(row);
    lowPowerBusy_->setObjectName("lowPowerBusy");
    lowPowerBusy_->hide();
    // The switch keeps showing the published state; the monitor answers with the new one.
    connect(lowPowerSwitch_, &ToggleSwitch::toggleRequested, this,
            [this](bool enabled) { monitor_.setLowPowerMode(enabled); });

    auto* texts = new QVBoxLayout;
    texts->setSpacing(lineSpacing);
    texts->addWidget(title);
    texts->addWidget(lowPowerError_);

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, rowVerticalPadding, 0, rowVerticalPadding);
    layout->setSpacing(rowSpacing);
    layout->addWidget(symbol, 0, Qt::AlignVCenter);
    layout->addLayout(texts);
    layout->addStretch(1);
    layout->addWidget(lowPowerBusy_, 0, Qt::AlignVCenter);
    layout->addWidget(lowPowerSwitch_, 0, Qt::AlignVCenter);
    return row;
}

QWidget* DashboardView::makeApplications(QWidget* parent) {
    auto* applications = new QWidget(parent);
    applications->setObjectName("applications");
    auto* layout = new QVBoxLayout(applications);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    gatheringPlaceholder_ = new QWidget(applications);
    gatheringPlaceholder_->setObjectName("gatheringPlaceholder");
    gatheringPlaceholder_->setMinimumHeight(placeholderMinimumHeight);
    auto* spinner = new BusyIndicator(gatheringPlaceholder_);
    spinner->setObjectName("gatheringBusy");
    QLabel* text = secondaryLabel(font(), "gatheringText", gatheringPlaceholder_);
    text->setText(ui::tr("Gathering data…"));
    auto* placeholderRow = new QHBoxLayout(gatheringPlaceholder_);
    placeholderRow->setContentsMargins(0, 0, 0, 0);
    placeholderRow->setSpacing(placeholderSpacing);
    placeholderRow->addStretch(1);
    placeholderRow->addWidget(spinner, 0, Qt::AlignVCenter);
    placeholderRow->addWidget(text, 0, Qt::AlignVCenter);
    placeholderRow->addStretch(1);
    layout->addWidget(gatheringPlaceholder_);

    applicationList_ = new QWidget(applications);
    applicationList_->setObjectName("applicationList");
    applicationLayout_ = new QVBoxLayout(applicationList_);
    applicationLayout_->setContentsMargins(0, 0, 0, 0);
    applicationLayout_->setSpacing(0);
    layout->addWidget(applicationList_);
    return applications;
}

QWidget* DashboardView::makeFooter() {
    auto* footer = new QWidget(this);
    footer->setObjectName("footer");
    footer->setFont(captionFont(font()));
    batterySettingsButton_ =
        makeFooterButton(ui::tr("Battery Settings"), "batterySettingsButton", footer);
    connect(batterySettingsButton_, &QPushButton::clicked, this, [] { BatterySettings::open(); });
    settingsButton_ = makeFooterButton(ui::tr("Settings"), "settingsButton", footer);
    connect(settingsButton_, &QPushButton::clicked, this, [this] {
        if (openSettings_) {
            openSettings_();
        }
    });

    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(footerPadding, footerPadding, footerPadding, footerPadding);
    row->addWidget(batterySettingsButton_);
    row->addStretch(1);
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

void DashboardView::showSnapshot() {
    const BatterySnapshot& snapshot = monitor_.snapshot().get();
    batteryIcon_->setSnapshot(snapshot);
    chargeLine_->setText(fromStd(chargeLine(snapshot)));
    stateLabel_->setText(fromStd(snapshot.stateLabel()));
    chargeTime_->setText(firstTwoLines(fromStd(chargeTimeText(snapshot))));

    const QString watts = fromStd(wattUnit());
    systemPowerCard_->setValue(snapshot.systemWatts, watts);

    const bool connected = snapshot.isConnectedToPower;
    batteryDivider_->setVisible(connected);
    batteryCard_->setVisible(connected);
    chargerDivider_->setVisible(connected);
    chargerCard_->setVisible(connected);
    if (connected) {
        batteryCard_->setTitle(fromStd(batteryFlowTitle(snapshot)));
        batteryCard_->setSymbol(batteryFlowSymbol(snapshot));
        batteryCard_->setValue(batteryFlowWatts(snapshot), watts);
        chargerCard_->setValue(snapshot.adapterWatts, watts);
        const auto caption = adapterCaption(snapshot);
        chargerCard_->setCaption(caption ? std::optional(fromStd(*caption)) : std::nullopt);
    }
    showTemperature();
}

void DashboardView::showTemperature() {
    temperatureRow_->setValueText(
        fromStd(temperatureText(monitor_.snapshot().get().temperatureCelsius,
                                preferences_.temperatureUnit().toStdString())));
}

void DashboardView::showLowPowerMode() {
    const auto& error = monitor_.lowPowerModeError().get();
    lowPowerError_->setText(error ? fromStd(*error) : QString());
    lowPowerError_->setVisible(error.has_value());

    const bool changing = monitor_.isChangingLowPowerMode().get();
    lowPowerSwitch_->setChecked(monitor_.isLowPowerModeEnabled().get());
    lowPowerSwitch_->setVisible(!changing);
    lowPowerBusy_->setVisible(changing);
}

void DashboardView::showApplications() {
    const std::vector<AppEnergy>& applications = monitor_.topApplications().get();
    while (applicationRows_.size() < applications.size()) {
        // Row and divider alternate in the layout; a divider shows only between two rows.
        auto* row = new ApplicationEnergyRow(applicationList_);
        row->setObjectName("applicationRow");
        applicationLayout_->addWidget(row);
        applicationRows_.push_back(row);
        auto* divider = new Divider(applicationInset, 0, applicationList_);
        divider->setObjectName("applicationDivider");
        applicationLayout_->addWidget(divider);
        applicationDividers_.push_back(divider);
    }
    for (std::size_t i = 0; i < applicationRows_.size(); ++i) {
        const bool used = i < applications.size();
        if (used) {
            applicationRows_[i]->setRank(static_cast<int>(i) + 1);
            applicationRows_[i]->setApplication(applications[i]);
        }
        applicationRows_[i]->setVisible(used);
        applicationDividers_[i]->setVisible(i + 1 < applications.size());
    }
    gatheringPlaceholder_->setVisible(applications.empty());
    applicationList_->setVisible(!applications.empty());
}

void DashboardView::showWindowLabel() {
    energyWindowLabel_->setText(fromStd(monitor_.appEnergyWindowLabel()));
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
