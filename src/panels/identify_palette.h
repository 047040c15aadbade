#pragma once
// The Identify palette: where the crew steps the wall's identification
// (previous, next, auto) and sees which port or circuit the wall shows,
// without reaching for the keyboard. It shows when an identify starts.

#include "panels/settings_base_window.h"

class QCheckBox;
class QLabel;

namespace Vantora_TesserinePro {

class live_show;

class IdentifyPalette : public SettingsBaseWindow {
  public:
    IdentifyPalette(QWidget* parent, Global* global, live_show& shown);

    QLabel* status = nullptr;
    QCheckBox* automatic = nullptr;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void refresh();
    live_show& m_show;
};

// Shows the palette of this main screen (made at its first showing).
void show_identify_palette(MainScreen& screen);

} // namespace Vantora_TesserinePro
