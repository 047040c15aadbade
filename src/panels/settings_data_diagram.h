#pragma once
// The data path of the current screen layer: pattern, colour, width, type
// and pixel limit.

#include "panels/settings_base_window.h"

#include <vector>

class QComboBox;
class QLabel;
class QPushButton;

namespace Vantora_TesserinePro {

class CheckboxWithFocus;
class ColorPicker;
class IntBox;
class ProcessorsDialog;
class W_Image;

class SettingsDataDiagram : public SettingsBaseWindow {
  public:
    // The eight patterns, each a box and its picture; the boxes act as
    // radio buttons.
    // The boxes are named NAME0 to NAME7; by default they choose SnakeMode.
    class W_SnakeChoicer : public QWidget, public SettingsFromLayer {
      public:
        using reader = int (*)(const boxes_layer&);
        using writer = void (*)(boxes_layer&, int);
        W_SnakeChoicer(QWidget* parent, Global* global, const char* name = "SnakeCheckbox",
                       reader read = nullptr, writer write = nullptr);
        void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
        std::vector<CheckboxWithFocus*> boxes;
        std::vector<W_Image*> images;

      private:
        reader m_read;
        writer m_write;
    };
    // Colour, width, switches, type and pixel limit of the path.
    class W_SnakeSecondParams : public QWidget, public SettingsFromLayer {
      public:
        W_SnakeSecondParams(QWidget* parent, Global* global);
        void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
        CheckboxWithFocus* random_colors;
        ColorPicker* color;
        CheckboxWithFocus* visible;
        IntBox* line_width;
        CheckboxWithFocus* custom_path;
        CheckboxWithFocus* skip_blank;
        CheckboxWithFocus* novastar;
        CheckboxWithFocus* other_type;
        IntBox* pixel_limit;
    };

    // The processor that feeds the layer: model, unit, first port, colour
    // depth, frame rate and backup, and the library's editor.
    class W_Processor : public QWidget, public SettingsFromLayer {
      public:
        W_Processor(QWidget* parent, Global* global);
        void get_settings_from_layer(const pointer<boxes_layer>& layer) override;
        // Opens the library's editor (window-modal); it is made once.
        void open_library();
        QComboBox* processor;
        IntBox* unit;
        IntBox* first_port;
        QComboBox* bit_depth;
        IntBox* frame_rate;
        QComboBox* backup;
        QPushButton* library;
        ProcessorsDialog* dialog = nullptr;

      private:
        void fill_models(const std::string& chosen);
    };

    SettingsDataDiagram(QWidget* parent, Global* global);
    void get_settings_from_layer(const pointer<boxes_layer>& layer) override;

    W_SnakeChoicer* choicer() const { return m_choicer; }
    W_SnakeSecondParams* second_params() const { return m_second; }
    W_Processor* processor() const { return m_processor; }

    // The line under the processor: the current layer's port count and its
    // fullest port, or its unit and ports where a processor is chosen, as
    // the plan of the whole wall has them. The palette's follow-up, so edits
    // between two turns of the event loop cost one route.
    QLabel* port_line() const { return m_port_line; }
    void update_port_line();

  private:
    W_SnakeChoicer* m_choicer;
    W_SnakeSecondParams* m_second;
    W_Processor* m_processor;
    QLabel* m_port_line;
    void follow_up() override { update_port_line(); }
};

} // namespace Vantora_TesserinePro
