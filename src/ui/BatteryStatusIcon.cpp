#include "ui/BatteryStatusIcon.h"

#include <QPaintEvent>
#include <cmath>

#include "ui/MenuBarBatteryImage.h"

namespace voltaro::ui {

BatteryStatusIcon::BatteryStatusIcon(qreal widthPoints, QWidget* parent)
    : QWidget(parent), snapshot_(BatterySnapshot::empty()), widthPoints_(widthPoints) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void BatteryStatusIcon::setSnapshot(const BatterySnapshot& snapshot) {
    if (snapshot == snapshot_) {
        return;
    }
    snapshot_ = snapshot;
    update();
}

QSize BatteryStatusIcon::sizeHint() const {
    const qreal height =
        widthPoints_ * MenuBarBatteryImage::heightPoints / MenuBarBatteryImage::widthPoints;
    return QSize(static_cast<int>(std::ceil(widthPoints_)), static_cast<int>(std::ceil(height)));
}

void BatteryStatusIcon::paintEvent(QPaintEvent*) {}

}  // namespace voltaro::ui
