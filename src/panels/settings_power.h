#pragma once
// The power inputs of the current screen layer and its total in amperes.

#include "panels/settings_base_window.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace Vantora_TesserinePro {

class IntBox;

class SettingsPower : public SettingsBaseWindow {
  public:
    class W_Grid : public QWidget {
      public:
        explicit W_Grid(QWidget* parent) : QWidget(parent) {}
    };

    SettingsPower(QWidget* parent, Global* global);

    void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
    // The amperes of the current screen layer; 0 without one.
    float getAmp() const;
    // Rewrites the total line from the current screen layer.
    void update_amperes();

    QComboBox* volts = nullptr;
    QLabel* custom_caption = nullptr;
    QLineEdit* custom_volts = nullptr;
    QComboBox* phases = nullptr;
    IntBox* watts = nullptr;
    QLabel* total = nullptr;

  private:
    void on_volts(int index);
    void on_custom_volts();
    void show_custom(bool shown);
};

} // namespace Vantora_TesserinePro
