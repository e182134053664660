#include "ui/views/DashboardPopup.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPainter>
#include <QVBoxLayout>
#include <chrono>

#include "ui/application/PopupScreenPlacement.h"
#include "ui/views/DashboardView.h"

namespace voltaro::ui {
namespace {

// A click on the tray item while the popup is open first closes it as a click elsewhere; if the
// panel then passes the same click on as an activation, it must not open the popup again.
constexpr std::chrono::milliseconds sameClick(300);

// Wayland gives no client a global position, and a popup there needs a parent window the tray
// item does not have: the dashboard opens as an ordinary window and the compositor places it.
bool placesWindowsItself() {
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

Qt::WindowFlags popupFlags() {
    return placesWindowsItself() ? Qt::Popup | Qt::FramelessWindowHint : Qt::Window;
}

}  // namespace

DashboardPopup::DashboardPopup(BatteryMonitor& monitor, std::string_view systemPowerTitle,
                               DashboardActions actions, const Clock& clock)
    : QWidget(nullptr, popupFlags()), monitor_(monitor), clock_(clock) {
    setWindowTitle("Voltaro");
    auto* layout = new QVBoxLayout(this);
    // Room for a hairline edge: without a frame, the popup would melt into a light window
    // behind it.
    layout->setContentsMargins(1, 1, 1, 1);
    // The settings window opens over the desktop, not under a popup that holds the mouse.
    actions.openSettings = [this, openSettings = std::move(actions.openSettings)] {
        close();
        openSettings();
    };
    auto* dashboard = new DashboardView(monitor_, systemPowerTitle, std::move(actions));
    layout->addWidget(dashboard);
    setFixedSize(dashboard->size() + QSize(2, 2));
}

void DashboardPopup::open(std::optional<QRect> anchor) {
    if (isVisible()) {
        raise();
        return;
    }
    dismissedAt_.reset();
    if (placesWindowsItself()) {
        move(placePopup(anchor, QCursor::pos(), size(), QGuiApplication::screens()));
    }
    show();
    raise();
    monitor_.refreshNow();
}

void DashboardPopup::toggle(std::optional<QRect> anchor) {
    if (isVisible()) {
        close();
        dismissedAt_.reset();
        return;
    }
    if (dismissedAt_ && clock_.monotonicNow() - *dismissedAt_ < sameClick) {
        dismissedAt_.reset();
        return;
    }
    open(anchor);
}

void DashboardPopup::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void DashboardPopup::hideEvent(QHideEvent* event) {
    dismissedAt_ = clock_.monotonicNow();
    QWidget::hideEvent(event);
}

}  // namespace voltaro::ui
