#include "panels/top_panel.h"

namespace Vantora_TesserinePro {

TopPanel::TopPanel(QWidget* parent, Global* global) : QWidget(parent), SettingsFromLayer(global) {
    setObjectName("TopPanel");
}

void TopPanel::updateCounts(long long, long long) {}

void TopPanel::updatePaperNumbersVisual() {}

void TopPanel::showHideAspectRatio(bool) {}

} // namespace Vantora_TesserinePro
