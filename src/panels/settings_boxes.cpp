#include "panels/settings_boxes.h"

namespace Vantora_TesserinePro {

SettingsBoxes::SettingsBoxes(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Screen Info") {
    resize(300, 360);
}

} // namespace Vantora_TesserinePro
