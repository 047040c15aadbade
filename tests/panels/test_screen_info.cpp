// The "Screen Info" palette: each control's field and the fill from a layer,
// arithmetic in the fields and the half cabinet pairs.

#include "palette_fixture.h"
#include "panels/settings_boxes.h"

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {
struct screen_info : palette_test {
    SettingsBoxes* p() const { return screen->settings_boxes(); }
};
const color::color red(200, 10, 20, 255);
} // namespace

TEST_F(screen_info, EachControlWritesItsFieldAndNothingElse) {
    SettingsBoxes* s = p();
    // Fields take arithmetic, truncated, and show its result; nonsense is 0,
    // and so is a negative offset.
    check_edits(
        s,
        {
            {"Offset X", [&] { type(s->offset_x, "37"); }, [](boxes_layer& l) { l.offset_x = 37; }},
            {"Offset X negative", [&] { type(s->offset_x, "-5"); },
             [](boxes_layer& l) { l.offset_x = 0; }},
            {"Offset Y", [&] { type(s->offset_y, "12"); }, [](boxes_layer& l) { l.offset_y = 12; }},
            {"Cabinet Width", [&] { type(s->cabinet_width, "1920/2"); },
             [](boxes_layer& l) { l.Width = 960; }},
            {"Cabinet Height", [&] { type(s->cabinet_height, "(3+4)*2.9"); },
             [](boxes_layer& l) { l.Height = 20; }},
            {"Screen Columns", [&] { type(s->columns, "3"); },
             [](boxes_layer& l) { l.Columns = 3; }},
            {"Screen Columns 0/0", [&] { type(s->columns, "0/0"); },
             [](boxes_layer& l) { l.Columns = 0; }},
            {"Screen Rows", [&] { type(s->rows, "4"); }, [](boxes_layer& l) { l.Rows = 4; }},
            {"Screen Rows nonsense", [&] { type(s->rows, "abc"); },
             [](boxes_layer& l) { l.Rows = 0; }},
            {"Panel Width", [&] { type(s->panel_width, "2.46"); },
             [](boxes_layer& l) { l.PhysW = 2.46f; }},
            {"Panel Height", [&] { type(s->panel_height, "500/2"); },
             [](boxes_layer& l) { l.PhysH = 250; }},
            {"Half First Column", [&] { click(s->half_first_column); },
             [](boxes_layer& l) { l.HalfColumns = 0b0001; }},
            {"Half Last Column", [&] { click(s->half_last_column); },
             [](boxes_layer& l) { l.HalfColumns = 0b0010; }},
            {"Half First Row", [&] { click(s->half_first_row); },
             [](boxes_layer& l) { l.HalfColumns = 0b0110; }},
            {"Half Last Row", [&] { click(s->half_last_row); },
             [](boxes_layer& l) { l.HalfColumns = 0b1010; }},
            {"Border number", [&] { type(s->grid_width, 7); },
             [](boxes_layer& l) { l.GridWidth = 7; }},
            {"Border box", [&] { click(s->draw_grid); },
             [](boxes_layer& l) { l.DrawGrid = !l.DrawGrid; }},
            {"Border colour", [&] { s->border_color->choose(red); },
             [](boxes_layer& l) { l.BoxBorderColor = red; }},
            {"Circle number", [&] { type(s->circle_width, 5); },
             [](boxes_layer& l) { l.CircleWidth = 5; }},
            {"Circle box", [&] { click(s->draw_circle); },
             [](boxes_layer& l) { l.DrawCircle = !l.DrawCircle; }},
            {"Cabinet ID number", [&] { type(s->names_font_size, 7); },
             [](boxes_layer& l) { l.BoxesNamesFontSize = BoxesLayerDescription::FontSize(7); }},
            {"Cabinet ID colour", [&] { s->names_color->choose(red); },
             [](boxes_layer& l) { l.BoxesNamesColor = red; }},
            {"IDs in order", [&] { click(s->names_ordinary); },
             [](boxes_layer& l) { l.DrawBoxesNames = 1, l.BoxesNamesReverse = 0; }},
            {"IDs reversed", [&] { click(s->names_reverse); },
             [](boxes_layer& l) { l.DrawBoxesNames = 1, l.BoxesNamesReverse = 1; }},
        });
}
