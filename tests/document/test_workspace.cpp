// The workspace controller: the layer stack, selection, the raster and the
// change flag.

#include "support/workspace_fixtures.h"

#include <gtest/gtest.h>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct workspace : workspace_test {
    pointer<boxes_layer> add(const std::string& name, long long index = -1) {
        auto layer = screen_layer(global);
        layer->set_name(name);
        global.insert_layer_at(layer, index);
        return layer;
    }
    std::vector<std::string> names() { return layer_names(global); }
};

} // namespace

TEST_F(workspace, SelectionRules) {
    global.set_current_layer_index(-1); // accepted in an empty stack
    EXPECT_EQ(global.get_current_layer_id(), -1);
    EXPECT_EQ(global.get_layer(0), nullptr);
    add("A");
    add("B");
    global.set_current_layer_index(-5);
    EXPECT_EQ(global.get_current_layer_id(), -1);
    EXPECT_EQ(global.current_layer(), nullptr);

    global.set_current_layer_index(1);
    global.changed = 0;
    global.set_current_layer_index(2); // past the end: refused, no flag
    EXPECT_EQ(global.get_current_layer_id(), 1);
    EXPECT_FALSE(global.is_changed());

    EXPECT_NE(global.current_boxes_layer(), nullptr);
    EXPECT_EQ(global.current_image_layer(), nullptr);
}

TEST_F(workspace, NewLayersGoToTheBottomWithDefaults) {
    auto first = global.new_boxes_layer();
    auto image = global.new_image_layer();
    EXPECT_EQ(global.get_layer(0), image);
    EXPECT_EQ(global.get_layer(1), first);
    EXPECT_EQ(first->DrawGrid, 1);
    EXPECT_EQ(first->DrawSnake, 0);
    ASSERT_EQ(first->BoxColors.size(), 1u);
    EXPECT_EQ(first->BoxColors[0].word(), 0xFF7F7F3Fu);
    EXPECT_EQ(first->BoxTintColors[0].word(), 0xFFB8B895u);
    EXPECT_EQ(first->get_global(), &global);
    EXPECT_EQ(first->get_project(), global.current_project_pointer());
    EXPECT_EQ(global.create_layer(enum_layer(3)), nullptr);
}

TEST_F(workspace, MovingByOneStaysInsideTheStack) {
    add("A");
    add("B");
    add("C");
    global.move_layer_to_visual_top_by_1(2);    // last: nothing
    global.move_layer_to_visual_bottom_by_1(0); // first: nothing
    global.move_layer_to_visual_top_by_1(-1);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B", "C"}));
    global.move_layer_to_visual_top_by_1(0);
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "A", "C"}));
    EXPECT_EQ(global.get_current_layer_id(), 1);
    global.move_layer_to_visual_bottom_by_1(2);
    EXPECT_EQ(names(), (std::vector<std::string>{"B", "C", "A"}));
    EXPECT_EQ(global.get_current_layer_id(), 1);
}

TEST_F(workspace, DragAndDropMove) {
    add("A");
    add("B");
    add("C");
    EXPECT_FALSE(global.move_layer_to_visual(1, 1));
    EXPECT_FALSE(global.move_layer_to_visual(-1, 1));
    EXPECT_FALSE(global.move_layer_to_visual(0, 7)); // out of range: refused, no crash
    host.list_built = false;
    EXPECT_FALSE(global.move_layer_to_visual(0, 2));
    host.list_built = true;
    EXPECT_TRUE(global.move_layer_to_visual(0, 2));
    EXPECT_EQ(names(), (std::vector<std::string>{"C", "A", "B"}));
    EXPECT_EQ(global.get_current_layer_id(), 0);
}

TEST_F(workspace, DeletingSelectsTheNewTopAndTheOnlyLayerLeavesMinusOne) {
    add("A");
    add("B");
    global.set_current_layer_index(1);
    global.delete_current_layer();
    EXPECT_EQ(names(), (std::vector<std::string>{"A"}));
    EXPECT_EQ(global.get_current_layer_id(), 0);
    global.delete_current_layer();
    EXPECT_EQ(global.get_layers_count(), 0);
    EXPECT_EQ(global.get_current_layer_id(), -1);
    global.delete_current_layer(); // nothing to delete: still fine
    EXPECT_EQ(global.get_current_layer_id(), -1);
}

TEST_F(workspace, CloneOfScreenCopiesDescriptionButNotPlacement) {
    auto layer = add("Wall");
    layer->Columns = 3;
    layer->BoxesNamesFontSize.value = 3;
    layer->ExcludeBoxes.add(box_id(1, 1));
    layer->ExcludeBoxes.add(box_id(0, 1));
    layer->set_offset_x(40);
    layer->set_hidden(true);
    auto copy = std::static_pointer_cast<boxes_layer>(layer->clone());
    EXPECT_EQ(copy->Columns, 3);
    EXPECT_EQ(copy->BoxesNamesFontSize.get(), 5); // normaliser kept
    EXPECT_EQ(std::vector<std::uint32_t>(copy->ExcludeBoxes.begin(), copy->ExcludeBoxes.end()),
              (std::vector<std::uint32_t>{box_id(0, 1), box_id(1, 1)}));
    EXPECT_EQ(copy->get_offset_x(), 0);
    EXPECT_FALSE(copy->is_hidden());
    EXPECT_EQ(copy->get_name(), "Wall");
}

TEST_F(workspace, LogoLayerIsMadeOnceAtTheBottom) {
    add("A");
    auto logo = global.get_logo_layer();
    ASSERT_NE(logo, nullptr);
    EXPECT_EQ(global.get_layer(0), logo);
    EXPECT_EQ(global.get_current_layer_id(), 0);
    EXPECT_EQ(logo->get_name(), "Logo");
    EXPECT_EQ(global.get_logo_layer(), logo);
    logo->set_name("Other");
    EXPECT_EQ(logo->get_name(), "Logo");
    EXPECT_EQ(logo->get_stored_name(), "Other");
}
