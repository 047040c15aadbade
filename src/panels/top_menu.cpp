#include "panels/top_menu.h"

#include "panels/look.h"

#include <QPainter>

namespace Vantora_TesserinePro {

TopMenu::TopMenu(QWidget* parent, Global* global) : QWidget(parent), m_global(global) {
    setObjectName("TopMenu");
}

bool TopMenu::keytrigger(const std::string&) {
    return false;
}

void TopMenu::fold() {}

void TopMenu::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), look::menu_strip);
}

} // namespace Vantora_TesserinePro
