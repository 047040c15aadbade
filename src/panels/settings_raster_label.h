#pragma once
// The one label of the whole raster: switch, place, font size and lines.
// Its values live in the workspace, not in a layer.

#include "panels/settings_base_window.h"

class QLineEdit;

namespace Vantora_TesserinePro {

class CheckboxWithFocus;
class IntBox;

class SettingsRasterLabel : public SettingsBaseWindow {
  public:
    class W_Grid : public QWidget {
      public:
        explicit W_Grid(QWidget* parent) : QWidget(parent) {}
    };

    SettingsRasterLabel(QWidget* parent, Global* global);

    // Fills the controls from the workspace; the layer is not used.
    void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
    // Copies the palette's values into the workspace.
    void get_settings_from_raster();

    CheckboxWithFocus* enabled = nullptr;
    QLineEdit* offset_x = nullptr;
    QLineEdit* offset_y = nullptr;
    IntBox* font_size = nullptr;
    QLineEdit* lines[4] = {};

  private:
    // The label changed: a new frame and a repaint, with no layer marked.
    void layout_and_redraw();
    void set_line(int index, const QString& text);
};

} // namespace Vantora_TesserinePro
