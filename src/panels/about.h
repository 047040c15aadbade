#pragma once
// The logo, the version and the program's folders.

#include "panels/settings_base_window.h"

#include <vector>

class QLabel;

namespace Vantora_TesserinePro {

class W_Image;

class About : public SettingsBaseWindow {
  public:
    About(QWidget* parent, Global* global);

  protected:
    // The logo is drawn when the box first shows, not at every start.
    void showEvent(QShowEvent* event) override;

  private:
    W_Image* m_logo;
    std::vector<QLabel*> m_lines;
};

} // namespace Vantora_TesserinePro
