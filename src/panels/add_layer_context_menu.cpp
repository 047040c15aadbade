#include "panels/add_layer_context_menu.h"

#include "document/global.h"
#include "panels/look.h"
#include "panels/top_menu.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Vantora_TesserinePro {

AddLayerContextMenu::AddLayerContextMenu(QWidget* parent, Global* global)
    : QWidget(parent), m_global(global) {
    setObjectName("AddLayerContextMenu");
    setGeometry(1, 1, 100, 90);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->setAlignment(Qt::AlignVCenter);
    const char* captions[] = {"Led Screen", "Images", "Logo", "Cancel"};
    for (int i = 0; i < 4; ++i) {
        auto* entry =
            new WidgetWithBackground(this, QColor(0x26, 0x26, 0x26), QColor(0x7f, 0x3f, 0x3f),
                                     QColor(0xbf, 0x3f, 0x3f), global);
        entry->setFixedSize(100, 20);
        entry->set_menu_name(captions[i]);
        auto* row = new QHBoxLayout(entry);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(0);
        row->addStretch(1);
        auto* label = new QLabel(captions[i], entry);
        label->setFont(look::sans(14));
        look::set_text_color(label, look::text);
        row->addWidget(label);
        row->addStretch(1);
        entry->set_callback([this, i] {
            // Hidden first: what the entry opens (a file dialog) comes on top.
            hide();
            switch (i) {
            case 0:
                m_global->new_boxes_layer();
                break;
            case 1:
                TopMenuSubmenu::addImageLayer(m_global);
                break;
            case 2:
                m_global->setLogoLayer();
                break;
            default:
                break;
            }
            return true;
        });
        layout->addWidget(entry);
        m_entries.push_back(entry);
    }
    hide();
}

bool AddLayerContextMenu::is_item_selected(const QWidget* item) const {
    for (WidgetWithBackground* e : m_entries)
        if (e == item) return e->is_pressed();
    return false;
}

} // namespace Vantora_TesserinePro
