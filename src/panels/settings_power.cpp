#include "panels/settings_power.h"

namespace Vantora_TesserinePro {

SettingsPower::SettingsPower(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Power") {
    resize(286, 510);
}

void SettingsPower::update_amperes() {}

} // namespace Vantora_TesserinePro
