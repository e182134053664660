#include "ui/MenuBarBatteryImage.h"

namespace voltaro::ui::MenuBarBatteryImage {

QImage make(const BatterySnapshot&, qreal devicePixelRatio) {
    QImage image(static_cast<int>(widthPoints * devicePixelRatio),
                 static_cast<int>(heightPoints * devicePixelRatio),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    return image;
}

}  // namespace voltaro::ui::MenuBarBatteryImage
