#pragma once
// The colour pairs of the current screen layer (the title keeps its eight
// blanks, which widen the window). Cabinets take their colours from the
// pairs in turn; "Add" appends a pair and "Delete" takes off the last.

#include "core/color.h"
#include "panels/settings_base_window.h"

#include <utility>
#include <vector>

class QPushButton;

namespace Vantora_TesserinePro {

class ColorPicker;

// The first colours of new pairs, RGBA.
extern const color::color g_colortablea[6];

class SettingsBoxesColors : public SettingsBaseWindow {
  public:
    // "Add" over "Delete".
    class ControlBox : public QWidget {
      public:
        explicit ControlBox(QWidget* parent);
        QPushButton* add;
        QPushButton* remove;
    };
    // Colour and tint, a pair a row. Pairs are only ever added: one that is
    // no longer in use stays, hidden, with its colours.
    class ColorGrid : public QWidget {
      public:
        explicit ColorGrid(QWidget* parent);
        std::vector<std::pair<ColorPicker*, ColorPicker*>> pairs;
    };

    SettingsBoxesColors(QWidget* parent, Global* global);

    // The size of the two buttons and of every swatch.
    static QSize getButtonSize() { return {55, 22}; }
    // The pair at index, made when needed; nulls for an index that is
    // negative or not below the colours in use.
    std::pair<ColorPicker*, ColorPicker*> color_picker_pair(int index);
    // Writes the first (second) swatches into BoxColors (BoxTintColors),
    // with colour in place of swatch index; index -1 takes all from the
    // swatches.
    void syncColorsToLayer(int index, const color::color& colour);
    void syncTintColorsToLayer(int index, const color::color& colour);
    // The column of colours (or of tints) from the boxes into the layer,
    // with the one at index taking colour.
    void sync_column_to_layer(bool tints, int index, const color::color& colour);
    // Shows the pairs in use, writes them to the layer and fits the window.
    void update_visibility();
    void get_settings_from_layer(const pointer<boxes_layer>& layer) override;

    int colors_in_use() const { return m_in_use; }
    ControlBox* control_box() const { return m_control; }
    ColorGrid* color_grid() const { return m_grid; }

  private:
    void on_add();
    void on_delete();

    ControlBox* m_control;
    ColorGrid* m_grid;
    int m_in_use = 0;
};

} // namespace Vantora_TesserinePro
