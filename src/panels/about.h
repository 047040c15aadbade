#pragma once
// The logo, the version and the program's folders.

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class About : public SettingsBaseWindow {
  public:
    About(QWidget* parent, Global* global);
};

} // namespace Vantora_TesserinePro
