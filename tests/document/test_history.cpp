// Undo and redo by whole states: exact bytes back, steps named, bounds.

#include "document/history.h"
#include "support/workspace_fixtures.h"

#include <QTemporaryDir>

using namespace Vantora_TesserinePro;
using namespace Vantora_TesserinePro::testing;

namespace {

struct history_test : workspace_test {
    QTemporaryDir dir;
    document_history history;
    history_test() {
        add_screen(global, "Screen1", 0, 0, 4, 3, 10);
        add_screen(global, "Screen2", 50, 40, 2, 2, 10);
        auto pic = add_picture(global, "Photo", 5, 5, 8, 6);
        pic->set_image(std::make_shared<image>(8, 6, QImage::Format_ARGB32));
        pic->picture->fill(Qt::red);
        global.set_current_layer_index(1);
        history.reset(global);
    }
    std::string saved() {
        const std::string path = dir.filePath("p.tsrx").toStdString();
        EXPECT_TRUE(global.save_project_to_file(path));
        return read_file(path);
    }
    pointer<boxes_layer> screen(long long i) {
        return std::dynamic_pointer_cast<boxes_layer>(global.get_layer(i));
    }
};

struct edit_case {
    const char* name;
    std::function<void(history_test&)> edit;
    long long touched; // the layer selected after undo
};

} // namespace

TEST_F(history_test, EveryKindOfEditUndoesToTheSameBytesAndRedoes) {
    const std::vector<edit_case> cases = {
        {"Move Screen2", [](history_test& t) { t.screen(1)->set_offset_x(70); }, 1},
        {"Cabinet Width", [](history_test& t) { t.screen(0)->Width = 12; }, 0},
        {"Outline", [](history_test& t) { t.screen(1)->DrawGrid = 1; }, 1},
        {"Exclude Cabinets", [](history_test& t) { t.screen(0)->trigger_for_exclude_boxes(1, 1); },
         0},
        {"Rename Screen1", [](history_test& t) { t.screen(0)->set_name("Left"); }, 0},
        {"Hide Photo", [](history_test& t) { t.global.get_layer(2)->set_hidden(true); }, 2},
        {"Resize Photo",
         [](history_test& t) {
             auto p = std::dynamic_pointer_cast<image_layer>(t.global.get_layer(2));
             p->set_width(16);
         },
         2},
        {"Delete Screen2", [](history_test& t) { t.global.delete_current_layer(); }, 1},
        {"Add Screen1", [](history_test& t) { t.global.new_boxes_layer(); }, 1},
        {"Move Screen2 in the List",
         [](history_test& t) { t.global.move_layer_to_visual_top_by_1(1); }, 1},
        {"Raster Size", [](history_test& t) { t.global.set_paper_width(3840); }, 1},
        {"Raster Label",
         [](history_test& t) {
             t.global.raster_label_enabled = true;
             t.global.raster_label_lines = {"Stage left"};
         },
         1},
        {"New", [](history_test& t) { t.global.load_default_layers(); }, 1},
    };
    const std::string before = saved();
    for (const edit_case& c : cases) {
        SCOPED_TRACE(c.name);
        global.set_current_layer_index(1);
        c.edit(*this);
        const std::string edited = saved();
        ASSERT_NE(edited, before);
        const std::string name = std::string(c.name) == "New" ? "New" : "";
        ASSERT_TRUE(history.record(global, name));
        EXPECT_EQ(history.undo_name(), c.name);
        EXPECT_TRUE(history.is_modified());
        ASSERT_TRUE(history.undo(global));
        EXPECT_EQ(saved(), before);
        EXPECT_EQ(global.get_current_layer_id(), c.touched);
        EXPECT_FALSE(history.is_modified());
        EXPECT_EQ(history.redo_name(), c.name);
        ASSERT_TRUE(history.redo(global));
        EXPECT_EQ(saved(), edited);
        ASSERT_TRUE(history.undo(global));
        EXPECT_FALSE(history.record(global)); // nothing changed since
    }
}

TEST_F(history_test, StepsShareLayersAndPicturesAndKeepTheirBounds) {
    auto photo = std::dynamic_pointer_cast<image_layer>(global.get_layer(2));
    const auto copy = std::dynamic_pointer_cast<image_layer>(copy_layer(*photo));
    EXPECT_EQ(copy->picture, photo->picture);
    EXPECT_EQ(layer_print(*copy), layer_print(*photo));

    for (int i = 1; i <= int(document_history::max_steps) + 5; ++i) {
        screen(0)->set_offset_x(i);
        ASSERT_TRUE(history.record(global));
    }
    EXPECT_EQ(history.steps(), document_history::max_steps);
    // 205 states of three layers, each step copying one layer: small.
    EXPECT_LT(history.bytes(), std::size_t(4) << 20);
    while (history.undo(global)) {
    }
    EXPECT_EQ(screen(0)->get_offset_x(), 5); // the five oldest went
    EXPECT_TRUE(history.is_modified());

    // A selection alone is no step; a save makes the state clean.
    global.set_current_layer_index(0);
    EXPECT_FALSE(history.record(global));
    history.mark_saved();
    EXPECT_FALSE(history.is_modified());
    history.redo(global);
    EXPECT_TRUE(history.is_modified());
    history.undo(global);
    EXPECT_FALSE(history.is_modified());
    history.reset(global);
    EXPECT_FALSE(history.can_undo() || history.can_redo());
    // After an undo a new edit ends the redo list, and it is not the state
    // saved before the undo.
    for (int x : {1, 2}) {
        screen(0)->set_offset_x(x);
        ASSERT_TRUE(history.record(global));
        if (x == 1) history.mark_saved(), history.undo(global);
    }
    EXPECT_FALSE(history.can_redo());
    EXPECT_TRUE(history.is_modified());
}

TEST_F(history_test, PicturesOverTheByteBoundDropTheOldestSteps) {
    // Four new pictures of 160 MiB (never filled, so no memory is touched):
    // 640 MiB held, and the two oldest steps go to come under 512.
    auto photo = std::dynamic_pointer_cast<image_layer>(global.get_layer(2));
    for (int i = 0; i < 4; ++i) {
        photo->set_image(std::make_shared<image>(8192, 5120, QImage::Format_ARGB32));
        ASSERT_TRUE(history.record(global));
    }
    EXPECT_LE(history.bytes(), document_history::max_bytes);
    EXPECT_EQ(history.steps(), 2u);
}
