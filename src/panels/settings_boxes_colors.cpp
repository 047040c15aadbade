#include "panels/settings_boxes_colors.h"

namespace Vantora_TesserinePro {

SettingsBoxesColors::SettingsBoxesColors(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Colors        ") {
    resize(120, 120);
}

} // namespace Vantora_TesserinePro
