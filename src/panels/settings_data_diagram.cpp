#include "panels/settings_data_diagram.h"

namespace Vantora_TesserinePro {

SettingsDataDiagram::SettingsDataDiagram(QWidget* parent, Global* global)
    : SettingsBaseWindow(parent, global, "Data-Flow Diagram") {
    resize(250, 300);
}

} // namespace Vantora_TesserinePro
