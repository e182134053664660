#pragma once

#include <QWidget>
#include <functional>

#include "core/monitor/BatteryMonitor.h"

namespace voltaro::ui {

// The dashboard: the monitor's state, the low power switch and the application ranking, 380 × 550.
class DashboardView : public QWidget {
    Q_OBJECT

  public:
    DashboardView(BatteryMonitor& monitor, std::function<void()> openSettings,
                  QWidget* parent = nullptr);

  private:
    BatteryMonitor& monitor_;
    std::function<void()> openSettings_;
};

}  // namespace voltaro::ui
