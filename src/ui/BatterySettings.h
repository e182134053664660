#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace voltaro::ui::BatterySettings {

// Linux only: the desktop's own power settings as a program and its arguments, the first of
// GNOME's, KDE's and XFCE's panels that is installed, or nothing.
std::optional<QStringList> command(const std::function<bool(const QString& program)>& isInstalled);

// Opens the system's battery settings; does nothing where there are none. Each OS folder
// defines it.
void open();

}  // namespace voltaro::ui::BatterySettings
