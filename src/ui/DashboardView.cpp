#include "ui/DashboardView.h"

namespace voltaro::ui {

DashboardView::DashboardView(BatteryMonitor& monitor, std::function<void()> openSettings,
                             QWidget* parent)
    : QWidget(parent), monitor_(monitor), openSettings_(std::move(openSettings)) {
    setFixedSize(380, 550);
}

}  // namespace voltaro::ui
