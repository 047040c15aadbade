#pragma once
// The small menu of the list's "+": a screen layer, a picture or the logo.

#include <QWidget>

namespace Vantora_TesserinePro {

class Global;

class AddLayerContextMenu : public QWidget {
  public:
    AddLayerContextMenu(QWidget* parent, Global* global);

  private:
    Global* m_global;
};

} // namespace Vantora_TesserinePro
