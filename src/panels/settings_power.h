#pragma once
// The power inputs of the current screen layer and its total in amperes.

#include "panels/settings_base_window.h"
#include "panels/settings_data_diagram.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace Vantora_TesserinePro {

class CheckboxWithFocus;
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
    // The circuits line under the power plan's controls and the project's
    // totals under it; the palette's follow-up, so edits between two turns
    // of the event loop cost one plan.
    void update_circuits_line();

    QComboBox* volts = nullptr;
    QLabel* custom_caption = nullptr;
    QLineEdit* custom_volts = nullptr;
    QComboBox* phases = nullptr;
    IntBox* watts = nullptr;
    QLabel* total = nullptr;
    // The power plan: breaker rating, derate, chain pattern, the path on
    // the map and the circuits it gives.
    IntBox* circuit_amps = nullptr;
    IntBox* derate = nullptr;
    SettingsDataDiagram::W_SnakeChoicer* pattern = nullptr;
    CheckboxWithFocus* power_path = nullptr;
    QLabel* circuits = nullptr;
    // The bill of materials: a cabinet's weight, the spares to bring, and
    // the whole project's totals.
    QLineEdit* cabinet_weight = nullptr;
    IntBox* spares = nullptr;
    QLabel* materials = nullptr;

  private:
    void on_volts(int index);
    void on_custom_volts();
    void on_weight();
    void show_custom(bool shown);
    void follow_up() override { update_circuits_line(); }
};

} // namespace Vantora_TesserinePro
