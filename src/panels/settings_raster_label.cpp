#include "panels/settings_raster_label.h"

namespace Vantora_TesserinePro {

SettingsRasterLabel::SettingsRasterLabel(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Labels") {
    resize(260, 220);
}

void SettingsRasterLabel::get_settings_from_raster() {}

} // namespace Vantora_TesserinePro
