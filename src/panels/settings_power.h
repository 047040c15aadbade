#pragma once
// The power inputs of the current screen layer and its total in amperes.

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class SettingsPower : public SettingsBaseWindow {
  public:
    SettingsPower(QWidget* parent, Global* global);
    // Rewrites the total line from the current screen layer.
    void update_amperes();
};

} // namespace Vantora_TesserinePro
