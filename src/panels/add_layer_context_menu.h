#pragma once
// The small menu of the list's "+": a screen layer, a picture or the logo.

#include "panels/widgets/clickable_widget.h"

#include <QWidget>

#include <vector>

namespace Vantora_TesserinePro {

class Global;

class AddLayerContextMenu : public QWidget, public item_container {
  public:
    AddLayerContextMenu(QWidget* parent, Global* global);

    // "Led Screen", "Images", "Logo", "Cancel", top to bottom.
    const std::vector<WidgetWithBackground*>& entries() const { return m_entries; }

    // The entry held down shows as selected.
    bool is_item_selected(const QWidget* item) const override;

  private:
    Global* m_global;
    std::vector<WidgetWithBackground*> m_entries;
};

} // namespace Vantora_TesserinePro
