#pragma once
// The colour pairs of the current screen layer (the title keeps its eight
// blanks, which widen the window).

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class SettingsBoxesColors : public SettingsBaseWindow {
  public:
    SettingsBoxesColors(QWidget* parent, Global* global);
};

} // namespace Vantora_TesserinePro
