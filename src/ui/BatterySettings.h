#pragma once

namespace voltaro::ui::BatterySettings {

// Opens the system's battery settings; does nothing where there are none. Each OS folder
// defines it.
void open();

}  // namespace voltaro::ui::BatterySettings
