#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/monitor/BatteryMonitor.h"
#include "core/presentation/DashboardModel.h"

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace voltaro::ui {

class BatteryStatusIcon;
class DisplayPreferencesStore;
class Divider;

// The dashboard: the monitor's state, the low power switch and the application ranking, 380 × 550.
// It shows the dashboard model and decides nothing itself. Built once; every change of the monitor
// or of the temperature unit updates it in place.
// What the dashboard's buttons ask for; the history button shows only where there is one.
struct DashboardActions {
    std::function<void()> openSettings;
    std::function<void()> openBatterySettings;
    std::function<void()> openHistory = {};
};

class DashboardView : public QWidget {
    Q_OBJECT

  public:
    // The power card's title is the platform's English key for it.
    DashboardView(BatteryMonitor& monitor, std::string_view systemPowerTitle,
                  DashboardActions actions, QWidget* parent = nullptr);
    // Reading the temperature unit from the given store rather than the user's.
    DashboardView(BatteryMonitor& monitor, DisplayPreferencesStore& preferences,
                  std::string_view systemPowerTitle, DashboardActions actions,
                  QWidget* parent = nullptr);

  protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // The widgets of one section and of its rows, kept for the life of the view: shown, hidden
    // and refilled, never rebuilt while the kind of a row stays the same.
    struct ShownRow {
        Divider* divider;
        QWidget* widget;  // a MetricCard, or an ApplicationEnergyRow for a ranked row
    };
    struct Section {
        QWidget* widget;
        QLabel* title;
        QLabel* detail;
        QVBoxLayout* rowLayout;
        std::vector<ShownRow> rows = {};
        QWidget* placeholder = nullptr;
        QLabel* placeholderText = nullptr;
    };

    QWidget* makeHeader();
    QWidget* makeContent();
    QWidget* makeFooter();
    QPushButton* makeFooterButton(const QString& text, const char* objectName, QWidget* parent);
    Section& section(std::size_t index);
    void addPlaceholder(Section& shown);

    void render();
    void showSection(Section& shown, const DashboardSection& section);
    void showRow(Section& shown, std::size_t index, const DashboardRow& row);
    void showButtonSymbols();
    void showScrollBarStyle();
    void fitContentBesideScrollBar();

    BatteryMonitor& monitor_;
    DisplayPreferencesStore& preferences_;
    std::string systemPowerTitle_;
    DashboardActions actions_;

    BatteryStatusIcon* batteryIcon_ = nullptr;
    QLabel* chargeLine_ = nullptr;
    QLabel* stateLabel_ = nullptr;
    QLabel* chargeTime_ = nullptr;
    QScrollArea* scrollArea_ = nullptr;
    QWidget* content_ = nullptr;
    QVBoxLayout* sectionLayout_ = nullptr;
    std::vector<Section> sections_;
    QPushButton* batterySettingsButton_ = nullptr;
    QPushButton* settingsButton_ = nullptr;
    QPushButton* historyButton_ = nullptr;
};

}  // namespace voltaro::ui
