// The "Screen Info" palette: each control's field, the fill from a layer,
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
    check_edits({
        {"Offset X", [&] { type(s->offset_x, "37"); }, [](boxes_layer& l) { l.offset_x = 37; }},
        {"Offset Y", [&] { type(s->offset_y, "12"); }, [](boxes_layer& l) { l.offset_y = 12; }},
        {"Cabinet Width", [&] { type(s->cabinet_width, "100"); },
         [](boxes_layer& l) { l.Width = 100; }},
        {"Cabinet Height", [&] { type(s->cabinet_height, "90"); },
         [](boxes_layer& l) { l.Height = 90; }},
        {"Screen Columns", [&] { type(s->columns, "3"); }, [](boxes_layer& l) { l.Columns = 3; }},
        {"Screen Rows", [&] { type(s->rows, "4"); }, [](boxes_layer& l) { l.Rows = 4; }},
        {"Panel Width", [&] { type(s->panel_width, "640"); },
         [](boxes_layer& l) { l.PhysW = 640; }},
        {"Panel Height", [&] { type(s->panel_height, "320"); },
         [](boxes_layer& l) { l.PhysH = 320; }},
        {"Half First Column", [&] { click(s->half_first_column); },
         [](boxes_layer& l) { l.HalfColumns = 0b0001; }},
        {"Half Last Column", [&] { click(s->half_last_column); },
         [](boxes_layer& l) { l.HalfColumns = 0b0010; }},
        {"Half First Row", [&] { click(s->half_first_row); },
         [](boxes_layer& l) { l.HalfColumns = 0b0110; }},
        {"Half Last Row", [&] { click(s->half_last_row); },
         [](boxes_layer& l) { l.HalfColumns = 0b1010; }},
        {"Border number", [&] { type(s->grid_width, 7); }, [](boxes_layer& l) { l.GridWidth = 7; }},
        {"Border box", [&] { click(s->draw_grid); },
         [](boxes_layer& l) { l.DrawGrid = !l.DrawGrid; }},
        {"Border colour", [&] { s->border_color->choose(red); },
         [](boxes_layer& l) { l.BoxBorderColor = red; }},
        {"Circle number", [&] { type(s->circle_width, 5); },
         [](boxes_layer& l) { l.CircleWidth = 5; }},
        {"Circle box", [&] { click(s->draw_circle); },
         [](boxes_layer& l) { l.DrawCircle = !l.DrawCircle; }},
        {"Cabinet ID number", [&] { type(s->names_font_size, 3); },
         [](boxes_layer& l) { l.BoxesNamesFontSize = BoxesLayerDescription::FontSize(3); }},
        {"Cabinet ID colour", [&] { s->names_color->choose(red); },
         [](boxes_layer& l) { l.BoxesNamesColor = red; }},
        {"IDs in order", [&] { click(s->names_ordinary); },
         [](boxes_layer& l) { l.DrawBoxesNames = 1, l.BoxesNamesReverse = 0; }},
        {"IDs reversed", [&] { click(s->names_reverse); },
         [](boxes_layer& l) { l.DrawBoxesNames = 1, l.BoxesNamesReverse = 1; }},
    });
}

TEST_F(screen_info, FillsFromTheLayerWithoutRunningCallbacks) {
    const pointer<boxes_layer> l = layer();
    l->offset_x = 11, l->offset_y = 22, l->Width = 33, l->Height = 44;
    l->Columns = 5, l->Rows = 6, l->PhysW = 2.46f, l->PhysH = 7.0f;
    l->HalfColumns = 0b1001, l->GridWidth = 9, l->DrawGrid = 1, l->CircleWidth = 4;
    l->DrawCircle = 1, l->BoxBorderColor = red, l->BoxesNamesColor = color::color(1, 2, 3);
    l->DrawBoxesNames = 1, l->BoxesNamesReverse = 1;
    l->BoxesNamesFontSize = BoxesLayerDescription::FontSize(2); // shows as 5
    const auto before = saved(*l);
    l->changed = false;
    SettingsBoxes* s = p();
    s->get_settings_from_layer(l);
    EXPECT_FALSE(l->changed);
    EXPECT_EQ(saved(*l), before);
    const QString texts[] = {s->offset_x->text(),      s->offset_y->text(),
                             s->cabinet_width->text(), s->cabinet_height->text(),
                             s->columns->text(),       s->rows->text(),
                             s->panel_width->text(),   s->panel_height->text()};
    const QString wanted[] = {"11", "22", "33", "44", "5", "6", "2.5", "7.0"};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(texts[i], wanted[i]) << i;
    EXPECT_TRUE(s->half_first_column->isChecked());
    EXPECT_FALSE(s->half_last_column->isChecked());
    EXPECT_FALSE(s->half_first_row->isChecked());
    EXPECT_TRUE(s->half_last_row->isChecked());
    EXPECT_EQ(s->grid_width->value(), 9);
    EXPECT_TRUE(s->draw_grid->isChecked());
    EXPECT_EQ(s->circle_width->value(), 4);
    EXPECT_TRUE(s->draw_circle->isChecked());
    EXPECT_EQ(s->border_color->get_color(), red);
    EXPECT_EQ(s->names_color->get_color(), color::color(1, 2, 3));
    EXPECT_EQ(s->names_font_size->value(), 5);
    EXPECT_FALSE(s->names_ordinary->isChecked());
    EXPECT_TRUE(s->names_reverse->isChecked());
}

TEST_F(screen_info, FieldsTakeArithmeticAndShowTheResult) {
    SettingsBoxes* s = p();
    type(s->cabinet_width, "1920/2");
    EXPECT_EQ(layer()->Width, 960);
    EXPECT_EQ(s->cabinet_width->text(), "960");
    type(s->columns, "abc");
    EXPECT_EQ(layer()->Columns, 0);
    EXPECT_EQ(s->columns->text(), "0");
    layer()->set_offset_x(50);
    type(s->offset_x, "-5");
    EXPECT_EQ(layer()->get_offset_x(), 0);
    EXPECT_EQ(s->offset_x->text(), "0");
    type(s->panel_width, "2.46");
    EXPECT_EQ(s->panel_width->text(), "2.5");
    EXPECT_FLOAT_EQ(layer()->PhysW, 2.46f);
}

TEST_F(screen_info, HalfBoxesShowWhatThePairLeaves) {
    SettingsBoxes* s = p();
    click(s->half_last_column);
    EXPECT_TRUE(s->half_last_column->isChecked());
    click(s->half_first_column);
    EXPECT_EQ(layer()->HalfColumns.to_ulong(), 0b0001u);
    EXPECT_TRUE(s->half_first_column->isChecked());
    EXPECT_FALSE(s->half_last_column->isChecked()); // cleared at once
}

TEST_F(screen_info, TabStartsAtOffsetX) {
    ASSERT_FALSE(screen->tab_order().empty());
    EXPECT_EQ(screen->tab_order().front(), p()->offset_x);
    QTest::keyClick(screen, Qt::Key_Tab);
    EXPECT_TRUE(wait_until([&] { return p()->offset_x->hasFocus(); }));
}
