#pragma once
// The texts a screen layer writes on itself, their colour and sizes, and
// the layer's name.

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class SettingsLabels : public SettingsBaseWindow {
  public:
    SettingsLabels(QWidget* parent, Global* global);
};

} // namespace Vantora_TesserinePro
