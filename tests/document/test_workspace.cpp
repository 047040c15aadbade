// The workspace controller: the layer stack, selection and the change flag.

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
