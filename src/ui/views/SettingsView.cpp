#include "ui/views/SettingsView.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <iterator>
#include <utility>

#include "core/presentation/DisplayPreferences.h"
#include "core/presentation/SettingsTexts.h"
#include "core/presentation/TemperatureUnitPreference.h"
#include "ui/application/DisplayPreferencesStore.h"
#include "ui/application/Translation.h"
#include "ui/widgets/BusyIndicator.h"
#include "ui/widgets/Divider.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/TextStyle.h"
#include "ui/widgets/ToggleSwitch.h"

namespace voltaro::ui {
namespace {

constexpr int viewWidth = 360;
constexpr int listPadding = 20;
constexpr int listSpacing = 14;
constexpr int bottomPadding = 12;

constexpr TemperatureUnitPreference segmentUnits[] = {TemperatureUnitPreference::celsius,
                                                      TemperatureUnitPreference::fahrenheit};

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The system's red for actions that cannot be taken back, a shade lighter on dark windows.
QColor destructiveColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0xff, 0x45, 0x3a) : QColor(0xd7, 0x00, 0x15);
}

QString cssColour(const QColor& colour) {
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alphaF(), 0, 'f', 2);
}

// A rounded push button in the window's own colours, its title in red.
QString quitButtonStyle(const QPalette& palette) {
    const bool dark = isDark(palette);
    QColor face = dark ? QColor(255, 255, 255, 40) : QColor(Qt::white);
    QColor pressed = dark ? QColor(255, 255, 255, 64) : QColor(0, 0, 0, 20);
    QColor edge = dark ? QColor(255, 255, 255, 18) : QColor(0, 0, 0, 38);
    QColor focus = palette.color(QPalette::Highlight);
    return QStringLiteral(
               "QPushButton { color: %1; background: %2; border: 1px solid %3;"
               " border-radius: 6px; padding: 3px 14px; }"
               "QPushButton:pressed { background: %4; }"
               "QPushButton:focus { border: 2px solid %5; padding: 2px 13px; }")
        .arg(cssColour(destructiveColour(palette)), cssColour(face), cssColour(edge),
             cssColour(pressed), cssColour(focus));
}

QLabel* rowTitle(QWidget* parent) {
    auto* title = new QLabel(parent);
    title->setWordWrap(true);
    return title;
}

ToggleSwitch* modelSwitch(const char* name, QWidget* parent) {
    auto* control = new ToggleSwitch(parent);
    control->setObjectName(QLatin1String(name));
    return control;
}

QHBoxLayout* switchRow(QLabel* title, ToggleSwitch* control) {
    auto* row = new QHBoxLayout;
    row->addWidget(title, 1, Qt::AlignVCenter);
    row->addWidget(control, 0, Qt::AlignVCenter | Qt::AlignRight);
    return row;
}

}  // namespace

SettingsView::BundleInfo SettingsView::BundleInfo::ofThisBuild() {
    return {VOLTARO_VERSION, VOLTARO_BUILD_NUMBER};
}

SettingsView::SettingsView(std::unique_ptr<LoginItemService> loginItems, BundleInfo bundle,
                           QWidget* parent)
    : QWidget(parent), launchAtLogin_(std::move(loginItems)), bundle_(std::move(bundle)) {
    setFixedWidth(viewWidth);

    auto* list = new QVBoxLayout;
    list->setContentsMargins(listPadding, listPadding, listPadding, listPadding);
    list->setSpacing(listSpacing);

    launchAtLoginTitle_ = new QLabel(this);
    launchAtLoginCaption_ = new QLabel(this);
    launchAtLoginCaption_->setObjectName("launchAtLoginCaption");
    launchAtLoginCaption_->setWordWrap(true);
    launchAtLoginSwitch_ = modelSwitch("launchAtLoginSwitch", this);
    launchAtLoginBusy_ = new BusyIndicator(this);
    launchAtLoginBusy_->setObjectName("launchAtLoginBusy");
    auto* launchAtLoginTexts = new QVBoxLayout;
    launchAtLoginTexts->setSpacing(2);
    launchAtLoginTexts->addWidget(launchAtLoginTitle_);
    launchAtLoginTexts->addWidget(launchAtLoginCaption_);
    auto* launchAtLoginRow = new QHBoxLayout;
    launchAtLoginRow->setSpacing(12);
    launchAtLoginRow->addLayout(launchAtLoginTexts, 1);
    launchAtLoginRow->addWidget(launchAtLoginBusy_, 0, Qt::AlignVCenter | Qt::AlignRight);
    launchAtLoginRow->addWidget(launchAtLoginSwitch_, 0, Qt::AlignVCenter | Qt::AlignRight);
    list->addLayout(launchAtLoginRow);
    connect(launchAtLoginSwitch_, &ToggleSwitch::toggleRequested, this,
            [this](bool enabled) { launchAtLogin_.setEnabled(enabled); });
    const auto onLoginItemChange = [this](const auto&) { showLoginItem(); };
    launchAtLogin_.isEnabled().subscribe(onLoginItemChange);
    launchAtLogin_.requiresApproval().subscribe(onLoginItemChange);
    launchAtLogin_.isChanging().subscribe(onLoginItemChange);
    launchAtLogin_.errorMessage().subscribe(onLoginItemChange);

    auto& store = DisplayPreferencesStore::shared();
    const auto addSwitchRow = [&](QLabel*& title, ToggleSwitch*& control,
                                  const BooleanPreference& preference, const char* name) {
        list->addWidget(new Divider(0, 0, this));
        title = rowTitle(this);
        control = modelSwitch(name, this);
        list->addLayout(switchRow(title, control));
        connect(control, &ToggleSwitch::toggleRequested, this,
                [&store, preference](bool on) { store.setValue(preference, on); });
    };
    addSwitchRow(showsPercentageTitle_, showsPercentageSwitch_, showsPercentageInMenuBar,
                 "showsPercentageInMenuBar");
    addSwitchRow(showsPowerUsageTitle_, showsPowerUsageSwitch_, showsPowerUsageInMenuBar,
                 "showsPowerUsageInMenuBar");
    addSwitchRow(highlightsBatteryDrainTitle_, highlightsBatteryDrainSwitch_,
                 highlightsBatteryDrainInMenuBar, "highlightsBatteryDrainInMenuBar");

    list->addWidget(new Divider(0, 0, this));
    temperatureUnitTitle_ = rowTitle(this);
    QStringList segments;
    for (const auto unit : segmentUnits) {
        segments << fromUtf8(unitSymbol(unit));
    }
    temperatureUnitPicker_ = new SegmentedControl(segments, this);
    temperatureUnitPicker_->setObjectName("temperatureUnit");
    auto* temperatureRow = new QHBoxLayout;
    temperatureRow->addWidget(temperatureUnitTitle_, 1, Qt::AlignVCenter);
    temperatureRow->addWidget(temperatureUnitPicker_, 0, Qt::AlignVCenter | Qt::AlignRight);
    list->addLayout(temperatureRow);
    connect(temperatureUnitPicker_, &SegmentedControl::segmentChosen, this, [&store](int index) {
        store.setTemperatureUnit(fromUtf8(rawValue(segmentUnits[index])));
    });

    version_ = new QLabel(this);
    version_->setObjectName("version");
    version_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    quit_ = new QPushButton(this);
    quit_->setObjectName("quit");
    quit_->setAutoDefault(false);
    connect(quit_, &QPushButton::clicked, this, [] { QCoreApplication::quit(); });
    auto* bottomRow = new QHBoxLayout;
    bottomRow->setContentsMargins(bottomPadding, bottomPadding, bottomPadding, bottomPadding);
    bottomRow->addWidget(version_, 0, Qt::AlignVCenter);
    bottomRow->addStretch(1);
    bottomRow->addWidget(quit_, 0, Qt::AlignVCenter);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(list);
    layout->addWidget(new Divider(0, 0, this));
    layout->addLayout(bottomRow);

    connect(&store, &DisplayPreferencesStore::changed, this, &SettingsView::showPreferences);
    retranslate();
    applyColours();
    showLoginItem();
    showPreferences();
}

SettingsView::~SettingsView() = default;

void SettingsView::retranslate() {
    launchAtLoginTitle_->setText(ui::tr("Launch at Login"));
    showsPercentageTitle_->setText(ui::tr("Show Percentage in Menu Bar"));
    showsPowerUsageTitle_->setText(ui::tr("Show Power Usage in Menu Bar"));
    highlightsBatteryDrainTitle_->setText(ui::tr("Highlight Battery Drain in Yellow"));
    temperatureUnitTitle_->setText(ui::tr("Temperature Unit"));
    // The controls' own labels are hidden; assistive technology reads them.
    launchAtLoginSwitch_->setAccessibleName(launchAtLoginTitle_->text());
    showsPercentageSwitch_->setAccessibleName(showsPercentageTitle_->text());
    showsPowerUsageSwitch_->setAccessibleName(showsPowerUsageTitle_->text());
    highlightsBatteryDrainSwitch_->setAccessibleName(highlightsBatteryDrainTitle_->text());
    temperatureUnitPicker_->setAccessibleName(temperatureUnitTitle_->text());
    version_->setText(QString::fromStdString(versionText(bundle_.version, bundle_.buildNumber)));
    quit_->setText(ui::tr("Quit Voltaro"));
    showLoginItem();
}

void SettingsView::applyColours() {
    const QFont caption = captionFont(font());
    for (QLabel* label : {launchAtLoginCaption_, version_}) {
        QPalette colours = label->palette();
        colours.setColor(QPalette::WindowText, secondaryTextColor(palette()));
        label->setPalette(colours);
        label->setFont(caption);
    }
    quit_->setStyleSheet(quitButtonStyle(palette()));
}

void SettingsView::showLoginItem() {
    // An approval the system still waits for matters more than an earlier failure.
    QString caption;
    if (launchAtLogin_.requiresApproval().get()) {
        caption = ui::tr("Approval required in System Settings");
    } else if (const auto& error = launchAtLogin_.errorMessage().get()) {
        caption = QString::fromStdString(*error);
    }
    launchAtLoginCaption_->setText(caption);
    launchAtLoginCaption_->setVisible(!caption.isEmpty());

    const bool changing = launchAtLogin_.isChanging().get();
    launchAtLoginBusy_->setVisible(changing);
    launchAtLoginSwitch_->setVisible(!changing);
    launchAtLoginSwitch_->setChecked(launchAtLogin_.isEnabled().get());
}

void SettingsView::showPreferences() {
    const auto& store = DisplayPreferencesStore::shared();
    showsPercentageSwitch_->setChecked(store.value(showsPercentageInMenuBar));
    showsPowerUsageSwitch_->setChecked(store.value(showsPowerUsageInMenuBar));
    highlightsBatteryDrainSwitch_->setChecked(store.value(highlightsBatteryDrainInMenuBar));

    // An unknown stored unit selects nothing rather than pretending to be one of the two.
    const QString stored = store.temperatureUnit();
    int selected = -1;
    for (int index = 0; index < static_cast<int>(std::size(segmentUnits)); ++index) {
        if (stored == fromUtf8(rawValue(segmentUnits[index]))) {
            selected = index;
        }
    }
    temperatureUnitPicker_->setSelectedIndex(selected);
}

void SettingsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // The user may have approved or removed the login item in the system's settings meanwhile.
    launchAtLogin_.refresh();
    window()->raise();
    window()->activateWindow();
}

void SettingsView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    } else if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        applyColours();
    }
    QWidget::changeEvent(event);
}

}  // namespace voltaro::ui
