#pragma once
// The "Screen Info" palette: position, cabinet size, grid, half cabinets,
// outline, circle and cabinet IDs of the current screen layer.

#include "panels/settings_base_window.h"

class QLineEdit;

namespace Vantora_TesserinePro {

struct BoxesLayerDescription;
class CheckboxWithFocus;
class ColorPicker;
class IntBox;

class SettingsBoxes : public SettingsBaseWindow {
  public:
    // The controls of one row, side by side in the right-hand cell.
    class MyBoxWidget : public QWidget {
      public:
        explicit MyBoxWidget(QWidget* parent);
    };

    SettingsBoxes(QWidget* parent, Global* global);

    void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
    // The four half boxes from HalfColumns: set_half_pair may clear the
    // opposite bit, so they are read back after each change.
    void update_half_checkboxes(const pointer<boxes_layer>& layer);

    QLineEdit* offset_x = nullptr;
    QLineEdit* offset_y = nullptr;
    QLineEdit* cabinet_width = nullptr;
    QLineEdit* cabinet_height = nullptr;
    QLineEdit* columns = nullptr;
    QLineEdit* rows = nullptr;
    QLineEdit* panel_width = nullptr;
    QLineEdit* panel_height = nullptr;
    CheckboxWithFocus* half_first_column = nullptr;
    CheckboxWithFocus* half_last_column = nullptr;
    CheckboxWithFocus* half_first_row = nullptr;
    CheckboxWithFocus* half_last_row = nullptr;
    IntBox* grid_width = nullptr;
    CheckboxWithFocus* draw_grid = nullptr;
    ColorPicker* border_color = nullptr;
    IntBox* circle_width = nullptr;
    CheckboxWithFocus* draw_circle = nullptr;
    IntBox* names_font_size = nullptr;
    ColorPicker* names_color = nullptr;
    CheckboxWithFocus* names_ordinary = nullptr;
    CheckboxWithFocus* names_reverse = nullptr;

  private:
    // A caption and a box of kind Box, in the palette or in a new row
    // group.
    template <class Box> Box* addTextBox(const QString& caption, bool grouped);
    void install_callbacks_handlers();
    // Evaluates a field's text, writes the result back, and stores it on the
    // current screen layer, if any.
    void on_dimension(QLineEdit* field, void (*store)(boxes_layer&, int));
    void on_millimetres(QLineEdit* field, float BoxesLayerDescription::*member);

    int m_row = 0;
    QWidget* m_last_group = nullptr;
};

} // namespace Vantora_TesserinePro
