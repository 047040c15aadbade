#pragma once
// The texts a screen layer writes on itself, their colour and sizes, and
// the layer's name.

#include "document/boxes_layer.h"
#include "panels/settings_base_window.h"

class QLineEdit;

namespace Vantora_TesserinePro {

class CheckboxWithFocus;
class ColorPicker;
class IntBox;

class SettingsLabels : public SettingsBaseWindow {
  public:
    // Groups controls so that the Tab walk goes into them.
    class W_Grid : public QWidget {
      public:
        explicit W_Grid(QWidget* parent) : QWidget(parent) {}
    };

    SettingsLabels(QWidget* parent, Global* global);

    void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
    // One corner's coordinate label on the current screen layer.
    void setBitForCurrentLayer(Corner corner, bool value);

    // Top left, top right, bottom left, bottom right.
    CheckboxWithFocus* corners[4] = {};
    CheckboxWithFocus* layer_name = nullptr;
    CheckboxWithFocus* size_px = nullptr;
    CheckboxWithFocus* size_m = nullptr;
    CheckboxWithFocus* size_ft = nullptr;
    CheckboxWithFocus* power = nullptr;
    CheckboxWithFocus* info = nullptr;
    ColorPicker* labels_color = nullptr;
    IntBox* labels_font_size = nullptr;
    IntBox* name_font_size = nullptr;
    QLineEdit* name = nullptr;
};

} // namespace Vantora_TesserinePro
