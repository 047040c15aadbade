#include "panels/settings_labels.h"

namespace Vantora_TesserinePro {

SettingsLabels::SettingsLabels(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Labels") {
    resize(306, 612);
}

} // namespace Vantora_TesserinePro
