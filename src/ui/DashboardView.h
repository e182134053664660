#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "core/monitor/BatteryMonitor.h"

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace voltaro::ui {

class ApplicationEnergyRow;
class BatteryStatusIcon;
class BusyIndicator;
class DisplayPreferencesStore;
class Divider;
class MetricCard;
class ToggleSwitch;

// The dashboard: the monitor's state, the low power switch and the application ranking, 380 × 550.
// Built once; every change of the monitor or of the temperature unit updates it in place.
class DashboardView : public QWidget {
    Q_OBJECT

  public:
    DashboardView(BatteryMonitor& monitor, std::function<void()> openSettings,
                  QWidget* parent = nullptr);
    // Reading the temperature unit from the given store rather than the user's.
    DashboardView(BatteryMonitor& monitor, DisplayPreferencesStore& preferences,
                  std::function<void()> openSettings, QWidget* parent = nullptr);

  protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* makeHeader();
    QWidget* makeContent();
    QWidget* makeLowPowerRow(QWidget* parent);
    QWidget* makeApplications(QWidget* parent);
    QWidget* makeFooter();
    QPushButton* makeFooterButton(const QString& text, const char* objectName, QWidget* parent);

    void showSnapshot();
    void showTemperature();
    void showLowPowerMode();
    void showApplications();
    void showWindowLabel();
    void showButtonSymbols();
    void showScrollBarStyle();
    void fitContentBesideScrollBar();

    BatteryMonitor& monitor_;
    DisplayPreferencesStore& preferences_;
    std::function<void()> openSettings_;

    BatteryStatusIcon* batteryIcon_ = nullptr;
    QLabel* chargeLine_ = nullptr;
    QLabel* stateLabel_ = nullptr;
    QLabel* chargeTime_ = nullptr;
    MetricCard* systemPowerCard_ = nullptr;
    Divider* batteryDivider_ = nullptr;
    MetricCard* batteryCard_ = nullptr;
    Divider* chargerDivider_ = nullptr;
    MetricCard* chargerCard_ = nullptr;
    MetricCard* temperatureRow_ = nullptr;
    QLabel* lowPowerError_ = nullptr;
    ToggleSwitch* lowPowerSwitch_ = nullptr;
    BusyIndicator* lowPowerBusy_ = nullptr;
    QScrollArea* scrollArea_ = nullptr;
    QWidget* content_ = nullptr;
    QLabel* energyWindowLabel_ = nullptr;
    QWidget* gatheringPlaceholder_ = nullptr;
    QWidget* applicationList_ = nullptr;
    QVBoxLayout* applicationLayout_ = nullptr;
    // Kept for the life of the view: shown, hidden and refilled, never rebuilt.
    std::vector<ApplicationEnergyRow*> applicationRows_;
    std::vector<Divider*> applicationDividers_;
    QPushButton* batterySettingsButton_ = nullptr;
    QPushButton* settingsButton_ = nullptr;
};

}  // namespace voltaro::ui
