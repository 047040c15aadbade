#pragma once
// The Arrange palette: the Arrange menu's commands as buttons, Pack's gap,
// and how many screens are selected. Made at its first showing.

#include "panels/settings_base_window.h"

class QLabel;

namespace Vantora_TesserinePro {

class IntBox;
class selection_tool;

class ArrangePalette : public SettingsBaseWindow {
  public:
    ArrangePalette(QWidget* parent, Global* global, selection_tool& tool);

    IntBox* gap = nullptr;
    QLabel* count = nullptr;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void show_count();
    selection_tool& m_tool;
};

// The palette of this main screen, null before its first showing.
ArrangePalette* arrange_palette_of(const MainScreen& screen);
// Shows the palette, or hides it when it shows.
void toggle_arrange_palette(MainScreen& screen);

} // namespace Vantora_TesserinePro
