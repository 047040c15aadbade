#include "panels/right_panel.h"

#include "panels/look.h"

#include <QPainter>

namespace Vantora_TesserinePro {

RightPanel::RightPanel(QWidget* parent, Global* global) : QWidget(parent), m_global(global) {
    setObjectName("RightPanel");
}

void RightPanel::syncFromGlobalLayers() {
    ++m_syncs;
}

void RightPanel::syncFromGlobalPresets() {}

void RightPanel::layer_changed(const app_layer&) {}

void RightPanel::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), look::side_panel);
}

} // namespace Vantora_TesserinePro
