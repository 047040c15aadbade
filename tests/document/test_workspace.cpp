// The workspace controller: the layer stack, selection and the change flag;
// the names new layers take, and the raster label's record and lines (its
// saved text is in the project goldens).

#include "document/names.h"
#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

using names = std::vector<std::string>;

struct workspace : workspace_test {
    pointer<boxes_layer> add(const std::string& name) {
        auto layer = screen_layer(global);
        layer->set_name(name);
        global.insert_layer_at(layer, -1);
        return layer;
    }
};

} // namespace

TEST_F(workspace, SelectionRules) {
    global.set_current_layer_index(-1); // accepted in an empty stack
    EXPECT_EQ(global.get_current_layer_id(), -1);
    add("A");
    add("B");
    global.set_current_layer_index(-5);
    EXPECT_EQ(global.current_layer(), nullptr);
    global.set_current_layer_index(1);
    global.changed = 0;
    global.set_current_layer_index(2); // past the end: refused, no flag
    EXPECT_EQ(global.get_current_layer_id(), 1);
    EXPECT_FALSE(global.is_changed());
    // New layers go to the bottom; there are two kinds.
    auto image = global.new_image_layer();
    EXPECT_EQ(global.get_layer(0), image);
    EXPECT_EQ(global.create_layer(enum_layer(3)), nullptr);
}

// Moves by one and by drag, in visual order (the top first): the ends stay,
// indices out of the stack are refused, and the moved layer stays selected.
TEST_F(workspace, MovesStayInsideTheStack) {
    add("A");
    add("B");
    add("C");
    global.move_layer_to_visual_top_by_1(2);    // the top
    global.move_layer_to_visual_bottom_by_1(0); // the bottom
    global.move_layer_to_visual_top_by_1(-1);
    EXPECT_FALSE(global.move_layer_to_visual(1, 1));
    EXPECT_FALSE(global.move_layer_to_visual(-1, 1));
    EXPECT_FALSE(global.move_layer_to_visual(0, 7));
    host.list_built = false; // no drop while the list is rebuilt
    EXPECT_FALSE(global.move_layer_to_visual(0, 2));
    host.list_built = true;
    EXPECT_EQ(layer_names(global), (names{"A", "B", "C"}));

    global.move_layer_to_visual_top_by_1(0);
    EXPECT_EQ(layer_names(global), (names{"B", "A", "C"}));
    EXPECT_EQ(global.get_current_layer_id(), 1);
    global.move_layer_to_visual_bottom_by_1(2);
    EXPECT_EQ(layer_names(global), (names{"B", "C", "A"}));
    EXPECT_EQ(global.get_current_layer_id(), 1);
    EXPECT_TRUE(global.move_layer_to_visual(0, 2)); // the top to the bottom
    EXPECT_EQ(layer_names(global), (names{"A", "B", "C"}));
    EXPECT_EQ(global.get_current_layer_id(), 0);
}

TEST_F(workspace, DeletingSelectsTheNewTopAndTheOnlyLayerLeavesMinusOne) {
    add("A");
    add("B");
    global.set_current_layer_index(1);
    global.delete_current_layer();
    EXPECT_EQ(layer_names(global), (names{"A"}));
    EXPECT_EQ(global.get_current_layer_id(), 0);
    global.delete_current_layer();
    global.delete_current_layer(); // nothing to delete: still fine
    EXPECT_EQ(global.get_layers_count(), 0);
    EXPECT_EQ(global.get_current_layer_id(), -1);
}

TEST_F(workspace, CloneOfScreenCopiesDescriptionButNotPlacement) {
    auto layer = add("Wall");
    layer->Columns = 3;
    layer->BoxesNamesFontSize.value = 3;
    layer->ExcludeBoxes.add(box_id(1, 1));
    layer->set_offset_x(40);
    layer->set_hidden(true);
    auto copy = std::static_pointer_cast<boxes_layer>(layer->clone());
    EXPECT_EQ(copy->get_all_parameters().as_string(":", "\n"),
              layer->get_all_parameters().as_string(":", "\n"));
    EXPECT_EQ(copy->BoxesNamesFontSize.get(), 5); // normaliser kept
    EXPECT_EQ(copy->get_offset_x(), 0);
    EXPECT_FALSE(copy->is_hidden());
    EXPECT_EQ(copy->get_name(), "Wall");
}

TEST_F(workspace, LogoLayerIsMadeOnceAtTheBottomAndKeepsItsName) {
    add("A");
    auto logo = global.get_logo_layer();
    ASSERT_NE(logo, nullptr);
    EXPECT_EQ(global.get_layer(0), logo);
    EXPECT_EQ(global.get_current_layer_id(), 0);
    EXPECT_EQ(global.get_logo_layer(), logo);
    logo->set_name("Other");
    EXPECT_EQ(logo->get_name(), "Logo");
    EXPECT_EQ(logo->get_stored_name(), "Other");
}

TEST(Names, GetNewNameTakesFirstFreeNumberIgnoringCase) {
    EXPECT_EQ(_001GetNewName("Screen", 0, {}), "Screen1");
    EXPECT_EQ(_001GetNewName("Screen", 0, {"screen1", "SCREEN2"}), "Screen3");
    EXPECT_EQ(_001GetNewName("Screen", 9, {"screen10"}), "Screen11");
}

TEST(Names, GetNewNameKeptEdges) {
    string_array all;
    for (int i = 1; i <= 999; ++i)
        all.push_back("S" + std::to_string(i));
    // Every number up to 999 taken: the last candidate tried, although taken.
    EXPECT_EQ(_001GetNewName("S", 0, all), "S999");
    EXPECT_EQ(_001GetNewName("S", 1000, {}), "");
    EXPECT_EQ(_001GetNewName("S", 999, {}), "");
}

TEST(Names, IncrementNameRules) {
    EXPECT_EQ(_001IncrementName("Screen1", "Screen", {"Screen1"}), "Screen2");
    EXPECT_EQ(_001IncrementName("Screen 12", "Screen", {}), "Screen 13");
    EXPECT_EQ(_001IncrementName("P 2.6mm", "P 2.6mm", {}), "P 2.6mm1");
    EXPECT_EQ(_001IncrementName("12", "Screen", {}), "Screen13");
    EXPECT_EQ(_001IncrementName("A7", "Screen", {}), "Screen1");
    EXPECT_EQ(_001IncrementName("", "Screen", {"Screen1"}), "Screen2");
    EXPECT_EQ(_001IncrementName("Screen9", "Screen", {"screen10"}), "Screen11");
    EXPECT_EQ(_001IncrementName("Screen1000", "Screen", {}), "");
    // Code points, not bytes: a non-ASCII name before the digits.
    EXPECT_EQ(_001IncrementName("Écran4", "Screen", {}), "Écran5");
}

TEST(RasterLabel, ReadingRules) {
    Global g;
    g.raster_label_lines = {"old"};
    g.load_raster_label_info("Raster Label:0\r\nX:12abc\rY:-4\nLabels:skip\nFontSize:33\n"
                             "Label: a \nLabel:\nLabel:   \nLabel:d\nLabel:e");
    EXPECT_FALSE(g.raster_label_enabled);
    EXPECT_EQ(g.raster_label_x, 12);
    EXPECT_EQ(g.raster_label_y, -4);
    EXPECT_EQ(g.raster_label_font_size, 33);
    EXPECT_EQ(g.raster_label_lines, (string_array{" a ", "", "   ", "d", "e"}));
    string_array lines;
    g.get_raster_label_lines(lines);
    // First four only, trimmed, blanks dropped, then the size line.
    EXPECT_EQ(lines, (string_array{"a", "d", "1920x1080"}));

    // Fields without a line keep their values; the size line shows the
    // raster as drawn, at least one pixel.
    g.load_raster_label_info("Raster Label:1\n");
    EXPECT_TRUE(g.raster_label_enabled);
    EXPECT_EQ(g.raster_label_x, 12);
    g.set_paper_width(0);
    g.raster_label_lines.clear();
    string_array size_line;
    g.get_raster_label_lines(size_line);
    EXPECT_EQ(size_line, (string_array{"1x1080"}));
}
