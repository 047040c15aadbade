#pragma once
// The data path of the current screen layer: pattern, colour, width, type
// and pixel limit.

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class SettingsDataDiagram : public SettingsBaseWindow {
  public:
    SettingsDataDiagram(QWidget* parent, Global* global);
};

} // namespace Vantora_TesserinePro
