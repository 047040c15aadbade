#pragma once
// The strip under the menu: the file buttons, the raster size, the three
// switches and the counts.

#include "panels/settings_base_window.h"

#include <QWidget>

namespace Vantora_TesserinePro {

class TopPanel : public QWidget, public SettingsFromLayer {
  public:
    TopPanel(QWidget* parent, Global* global);

    void updateCounts(long long layers, long long presets);
    // The raster fields follow the workspace.
    void updatePaperNumbersVisual();
    // The aspect box shows for image layers only.
    void showHideAspectRatio(bool show);
};

} // namespace Vantora_TesserinePro
