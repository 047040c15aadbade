#pragma once
// The "Screen Info" palette: position, cabinet size, grid, half cabinets,
// outline, circle and cabinet IDs of the current screen layer.

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class SettingsBoxes : public SettingsBaseWindow {
  public:
    SettingsBoxes(QWidget* parent, Global* global);
};

} // namespace Vantora_TesserinePro
