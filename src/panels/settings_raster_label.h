#pragma once
// The one label of the whole raster: switch, place, font size and lines.
// Its values live in the workspace, not in a layer.

#include "panels/settings_base_window.h"

namespace Vantora_TesserinePro {

class SettingsRasterLabel : public SettingsBaseWindow {
  public:
    SettingsRasterLabel(QWidget* parent, Global* global);
    // Copies the palette's values into the workspace.
    void get_settings_from_raster();
};

} // namespace Vantora_TesserinePro
