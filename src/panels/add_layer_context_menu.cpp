#include "panels/add_layer_context_menu.h"

namespace Vantora_TesserinePro {

AddLayerContextMenu::AddLayerContextMenu(QWidget* parent, Global* global)
    : QWidget(parent), m_global(global) {
    setObjectName("AddLayerContextMenu");
    setGeometry(1, 1, 100, 80);
    hide();
}

} // namespace Vantora_TesserinePro
